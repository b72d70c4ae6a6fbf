#include "app/CommandTable.h"

#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <gtest/gtest.h>

namespace cinedisc {
namespace {

/// The menus as a person walks through them: one item a line, deeper ones further in.
QString outline(const QList<QAction*>& actions, int depth = 0) {
    QString text;
    for (const QAction* action : actions) {
        text += QString("%1%2 '%3'").arg(QString(2 * depth, ' '), action->objectName(), action->text());
        if (!action->shortcut().isEmpty()) text += " " + action->shortcut().toString();
        text += "\n";
        if (action->menu()) text += outline(action->menu()->actions(), depth + 1);
    }
    return text;
}

class MenuTest : public testing::Test {
  protected:
    QMainWindow window;
    QStringList run;

    void SetUp() override {
        buildMenus(*window.menuBar(), form1Faces().items,
                   [this](const QString& name) { return [this, name] { run += name; }; });
    }
};

TEST_F(MenuTest, TheTreeOfCaptionsIsTheDesigned) {
    EXPECT_EQ(outline(window.menuBar()->actions()).toStdString(), R"(mnuFile '&File'
  mnuOpen '&Open'
  mnuOpenCD 'OpenCD'
  mnuExport 'Export'
  mnuExit 'E&xit'
mnuEdit '&Edit'
  mnuCopy '&Copy Image' Ctrl+C
  mnuCopyHeader 'Copy Header'
mnuTools '&Tools'
  mnuWindow '&Window'
  mnuPanning '&Panning'
  mnuSmooth '&Smooth'
  mnuMagnify '&Magnify'
  mnuInvert '&Invert'
  mnuLabel '&Label'
  mnuHeader '&Header'
  mnuZoom '&Zoom'
    mnuBestFit '&Bestfit'
    mnu50 '50%'
    mnu100 '100%'
    mnu150 '150%'
    mnu200 '200%'
  mnuOverLay '&Overlay'
    mnuNone 'None'
    mnuBlack '&Black '
    mnuWhite '&White'
  mnuCine '&Cine'
    mnuReverse '&Reverse'
    mnuStop '&Stop'
    mnuPlay '&Play'
    mnuNextSlice 'Next Slice'
    mnuPreviousSlice 'Previous Slice '
    mnuNext 'Next Image'
    mnuPrevious 'Previous Image'
mnuHelp '&Help'
  mnuAbout '&About'
)");
}

TEST_F(MenuTest, EachCommandRunsUnderItsNameAndIsFoundByItFromTheWindow) {
    QStringList commands;
    for (const MenuRow& row : form1Faces().items) {
        auto* action = window.findChild<QAction*>(row.name);
        ASSERT_NE(action, nullptr) << row.name;
        if (row.kind == MenuKind::Menu) {
            EXPECT_NE(window.findChild<QMenu*>(row.name), nullptr) << row.name;
        } else {
            commands += row.name;
        }
        action->trigger();
    }
    EXPECT_EQ(run, commands);
    EXPECT_FALSE(window.menuBar()->isNativeMenuBar());
}

}  // namespace
}  // namespace cinedisc
