#include "platform/widgets/ElidedLabel.h"
#include "platform/widgets/Icon.h"
#include "platform/widgets/IndicatorOption.h"
#include "platform/widgets/LabelAdapter.h"
#include "platform/widgets/PanelAdapter.h"
#include "platform/widgets/PopUpPanel.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace cinedisc {
namespace {

TEST(ElidedLabelTest, ATextOfAnyLengthStaysWholeAndMovesNothing) {
    ElidedLabel label("Study Scroll Bar", "Anonymous^Patient");
    LabelAdapter Label5(label);
    const QSize size = label.sizeHint();
    for (const QString& text :
         {QString(100'000, 'x'), QString("<h1>R & D</h1>"), QString::fromUtf8("כהן^דוד")}) {
        Label5.putCaption(text);
        EXPECT_EQ(label.text(), text);
        EXPECT_EQ(Label5.Caption(), text);
        EXPECT_EQ(label.sizeHint(), size);
        EXPECT_FALSE(label.grab().isNull());
    }
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
}

TEST(PanelAdapterTest, APanelKeepsItsStateInsideAHiddenOne) {
    QWidget window;
    QWidget outer(&window);
    QWidget inner(&outer);
    PanelAdapter Frame9(outer), Frame1(inner);
    Frame9.putVisible(false);
    Frame1.putVisible(true);
    EXPECT_FALSE(Frame9.Visible());
    EXPECT_TRUE(Frame1.Visible());
    window.show();
    EXPECT_FALSE(inner.isVisible());
    Frame9.putVisible(true);
    EXPECT_TRUE(inner.isVisible());
}

TEST(IndicatorOptionTest, TheWordsBesideItCanBeClicked) {
    QWidget window;
    auto* words = new QLabel("Loop", &window);
    auto* option = new IndicatorOption("Continuos", *words, &window);
    (new QVBoxLayout(&window))->addWidget(words);
    window.layout()->addWidget(option);
    window.show();
    EXPECT_EQ(option->text(), "Continuos");
    EXPECT_EQ(option->accessibleName(), "Loop");
    EXPECT_LT(option->sizeHint().width(), option->fontMetrics().horizontalAdvance("Continuos"));
    QTest::mouseClick(words, Qt::RightButton);
    EXPECT_FALSE(option->isChecked());
    QTest::mouseClick(words, Qt::LeftButton);
    EXPECT_TRUE(option->isChecked());
}

TEST(PopUpPanelTest, ItOpensUnderItsButtonInsideTheWindowAndEscapeHidesIt) {
    QWidget window;
    window.resize(400, 300);
    QPushButton button("Zoom", &window);
    button.setGeometry(350, 10, 50, 30);
    PopUpPanel panel(button, window);
    auto* choice = new QPushButton("a rather wide choice", &panel);
    (new QVBoxLayout(&panel))->addWidget(choice);
    window.show();
    EXPECT_FALSE(panel.isVisible());
    EXPECT_FALSE(panel.isWindow());

    panel.setVisible(true);
    EXPECT_GE(panel.y(), button.geometry().bottom());
    EXPECT_TRUE(window.rect().contains(panel.geometry()));
    EXPECT_EQ(window.focusWidget(), choice);
    PopUpPanel second(button, window);
    second.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&window, Qt::Key_Escape);
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(panel.isVisible() || second.isVisible());
}

TEST(IconTest, EveryIconDrawsSomethingAtBothDensitiesAndPairsMirrorEachOther) {
    const auto drawn = [](Icon icon, qreal density) {
        return drawnIcon(icon).pixmap(QSize(iconEdge, iconEdge), density).toImage();
    };
    for (int i = int(Icon::None) + 1; i <= int(Icon::Program); ++i) {
        for (const qreal density : {1.0, 2.0}) {
            const QImage image = drawn(Icon(i), density);
            EXPECT_EQ(image.width(), qRound(iconEdge * density));
            QImage empty(image.size(), image.format());
            empty.fill(Qt::transparent);
            EXPECT_NE(image, empty) << i;
        }
    }
    EXPECT_NE(drawn(Icon::Play, 2), drawn(Icon::Reverse, 2));
    EXPECT_NE(drawn(Icon::NextFrame, 2), drawn(Icon::NextImage, 2));
}

}  // namespace
}  // namespace cinedisc
