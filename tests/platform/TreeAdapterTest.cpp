#include "platform/widgets/Icon.h"
#include "platform/widgets/PatientTreeView.h"
#include "platform/widgets/PlainTextDelegate.h"
#include "platform/widgets/TreeAdapter.h"

#include <QLabel>
#include <QTest>
#include <gtest/gtest.h>

namespace cinedisc {
namespace {

class TreeAdapterTest : public testing::Test {
  protected:
    PatientTreeView view;
    QLabel remark;
    TreeAdapter tree{view, remark, {drawnIcon(Icon::Patient)}};
    QList<int> clicked;

    void SetUp() override {
        view.resize(300, 400);
        tree.onNodeClick([this](int node) {
            EXPECT_EQ(tree.selectedNode(), node);
            clicked += node;
        });
    }
    /// A patient with its study, series and entry.
    int addPatient(const QString& name) {
        const int patient = tree.addNode(0, name);
        tree.addNode(tree.addNode(tree.addNode(patient, "study"), "series"), "entry");
        return patient;
    }
    QPoint centerOf(const QModelIndex& node) { return view.visualRect(node).center(); }
};

TEST_F(TreeAdapterTest, NodesAreCountedFromOneAndShowTextTagAndPicture) {
    EXPECT_EQ(addPatient("DOE^JANE"), 1);
    EXPECT_EQ(addPatient("<b>R&D</b>"), 5);
    tree.putTag(5, "Patient001");
    tree.putImage(5, 1);

    const QModelIndex second = view.model()->index(1, 0);
    EXPECT_EQ(second.data(Qt::DisplayRole).toString(), "<b>R&D</b>");
    EXPECT_EQ(second.data(Qt::UserRole).toString(), "Patient001");
    EXPECT_FALSE(second.data(Qt::DecorationRole).value<QIcon>().isNull());
    EXPECT_FALSE(second.flags().testFlag(Qt::ItemIsEditable));
    EXPECT_EQ(tree.tag(5), "Patient001");
    EXPECT_EQ(tree.tag(1), "");
    EXPECT_EQ(tree.text(8), "entry");
    EXPECT_EQ(view.model()->index(0, 0, view.model()->index(0, 0, second)).data().toString(), "series");
}

TEST_F(TreeAdapterTest, AMouseClickAndReturnOpenANodeAlsoInTheFullestCatalogue) {
    view.show();
    constexpr int patients = 32768;
    for (int i = 0; i < patients; ++i) addPatient(QString::number(i));
    EXPECT_EQ(tree.nodeCount(), 4 * patients);
    EXPECT_EQ(tree.selectedNode(), 0);
    const QModelIndex last = view.model()->index(patients - 1, 0);
    view.scrollTo(last);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, centerOf(last));
    const int node = 4 * patients - 3;
    EXPECT_EQ(clicked, QList<int>{node});
    QTest::keyClick(&view, Qt::Key_Up);
    EXPECT_EQ(clicked.size(), 1) << "moving the selection opens nothing";
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(clicked, (QList<int>{node, node - 4}));
    // Expanding and collapsing is no click.
    tree.putExpanded(node, true);
    EXPECT_TRUE(view.isExpanded(last));
    tree.putExpanded(node, false);
    EXPECT_FALSE(view.isExpanded(last));
    const int arrow = view.visualRect(last).left() / 2;
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(arrow, centerOf(last).y()));
    EXPECT_TRUE(view.isExpanded(last));
    EXPECT_EQ(clicked.size(), 2);
}

TEST(PlainTextTest, ATextFromADiscIsDrawnAsOneLineOfBoundedLength) {
    EXPECT_EQ(oneLine("a\nb\tc\u2028d\r\n"), "a b c d  ");
    EXPECT_EQ(oneLine("a&b <i>"), "a&b <i>");
    EXPECT_LT(oneLine(QString(1'000'000, 'x')).size(), 1000);
    EXPECT_EQ(plainToolTip("<b>&"), "<p>&lt;b&gt;&amp;</p>");
}

}  // namespace
}  // namespace cinedisc
