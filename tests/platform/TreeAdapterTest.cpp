#include "platform/widgets/Icon.h"
#include "platform/widgets/PatientTreeView.h"
#include "platform/widgets/PlainTextDelegate.h"
#include "platform/widgets/TreeAdapter.h"

#include <QHelpEvent>
#include <QLabel>
#include <QTest>
#include <QToolTip>
#include <gtest/gtest.h>

namespace cinedisc {
namespace {

TEST(TreeAdapterTest, AMouseClickAndReturnOpenANodeAlsoInTheFullestCatalogue) {
    PatientTreeView view;
    QLabel remark;
    TreeAdapter tree(view, remark, {drawnIcon(Icon::Patient)});
    QList<int> clicked;
    tree.onNodeClick([&](int node) {
        EXPECT_EQ(tree.selectedNode(), node);
        clicked += node;
    });
    view.resize(300, 400);
    view.show();
    const QImage empty = view.grab().toImage();
    view.setHint("Open a disc.");
    EXPECT_NE(view.grab().toImage(), empty);
    constexpr int patients = 32768;
    for (int i = 0; i < patients; ++i) {
        const int patient = tree.addNode(0, i ? QString::number(i) : "<b>R&D</b>");
        tree.addNode(tree.addNode(tree.addNode(patient, "study"), "series"), "entry");
    }
    tree.putTag(1, "Patient001");
    tree.putImage(1, 1);
    const QModelIndex first = view.model()->index(0, 0);
    EXPECT_NE(dynamic_cast<PlainTextDelegate*>(view.itemDelegate()), nullptr);
    EXPECT_FALSE(first.data(Qt::DecorationRole).value<QIcon>().isNull());
    EXPECT_EQ(tree.tag(1), "Patient001");

    EXPECT_NE(view.grab().toImage(), empty);
    const QModelIndex last = view.model()->index(patients - 1, 0);
    view.scrollTo(last);
    const QPoint center = view.visualRect(last).center();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, center);
    QTest::keyClick(&view, Qt::Key_Up);
    const int node = 4 * patients - 3;
    EXPECT_EQ(clicked, QList<int>{node}) << "moving the selection opens nothing";
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(clicked, (QList<int>{node, node - 4}));
    // Expanding and collapsing is no click.
    for (const bool expanded : {true, false}) {
        tree.putExpanded(node, expanded);
        EXPECT_EQ(view.isExpanded(last), expanded);
    }
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                      QPoint(view.visualRect(last).left() / 2, center.y()));
    EXPECT_TRUE(view.isExpanded(last));
    EXPECT_EQ(clicked.size(), 2);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, center);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, center);
    EXPECT_TRUE(view.isExpanded(last)) << "nor is a double click more than a click";
    const auto tip = [&] {
        QHelpEvent event(QEvent::ToolTip, {60, 5}, {60, 5});
        QCoreApplication::sendEvent(view.viewport(), &event);
        return QToolTip::text();
    };
    view.scrollTo(first);
    EXPECT_EQ(tip(), "");
    view.resize(70, 400);
    EXPECT_EQ(tip(), "<p>&lt;b&gt;R&amp;D&lt;/b&gt;</p>") << "which is cut";
    for (const char* words : {"damaged", ""}) {
        tree.putRemark(words);
        EXPECT_EQ(remark.text(), words);
        EXPECT_EQ(remark.isHidden(), *words == 0);
    }
}

TEST(PlainTextTest, ATextFromADiscIsDrawnAsOneLineOfBoundedLength) {
    EXPECT_EQ(oneLine("a\nb\tc\u2028d\r\n"), "a b c d  ");
    EXPECT_LT(oneLine(QString(1'000'000, 'x')).size(), 1000);
}

}  // namespace
}  // namespace cinedisc
