#include "platform/widgets/OptionAdapter.h"
#include "platform/widgets/OptionHandler.h"

#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace cinedisc {
namespace {

class OptionTest : public testing::Test {
  protected:
    OptionTest() {
        auto* column = new QVBoxLayout(&window);
        for (QRadioButton* button : {&forward, &reverse}) column->addWidget(button);
        connectOption(forward, [this] { runs += "forward"; });
        connectOption(reverse, [this] { runs += "reverse"; });
        window.show();
    }

    QWidget window;
    QRadioButton forward{&window}, reverse{&window};
    OptionAdapter Option9{forward}, Option10{reverse};
    QStringList runs;
};

TEST_F(OptionTest, APersonsClickRunsTheHandlerOnceAlsoWhenItIsSelectedAlready) {
    QTest::mouseClick(&forward, Qt::LeftButton, {}, QPoint(6, forward.height() / 2));
    EXPECT_EQ(runs, QStringList{"forward"});
    forward.click();
    EXPECT_EQ(runs, (QStringList{"forward", "forward"}));
    QTest::keyClick(&reverse, Qt::Key_Space);
    EXPECT_EQ(runs, (QStringList{"forward", "forward", "reverse"}));
}

TEST_F(OptionTest, CodeRunsTheHandlerOnlyWhenTheSelectionChanges) {
    for (OptionAdapter* option : {&Option9, &Option9, &Option10, &Option9}) option->putValue(true);
    EXPECT_EQ(runs, (QStringList{"forward", "reverse", "forward"}));
    EXPECT_TRUE(Option9.Value());
    EXPECT_FALSE(Option10.Value());
}

TEST_F(OptionTest, AClickAfterCodeHasSelectedTheOptionStillRunsTheHandler) {
    Option9.putValue(true);
    forward.click();
    EXPECT_EQ(runs, (QStringList{"forward", "forward"}));
}

TEST_F(OptionTest, DeselectingLeavesNoneSelectedAndRunsNothing) {
    Option9.putValue(true);
    Option9.putValue(false);
    EXPECT_FALSE(Option9.Value() || Option10.Value());
    EXPECT_EQ(runs, QStringList{"forward"});
    Option10.putValue(true);
    Option9.putValue(true);
    EXPECT_FALSE(Option10.Value()) << "still one group";
}

}  // namespace
}  // namespace cinedisc
