#pragma once

#include "app/Form1.h"
#include "control/frames/ImageLibrary.h"
#include "panels/ScreenFit.h"
#include "panels/Theme.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/WindowTest.h"
#include "viewerwindow/StripWheel.h"

namespace cinedisc::test {

/// The real window on a disc of DICOM files.
class Form1Test : public WindowTest {
  protected:
    static void SetUpTestSuite() { applyTheme(*qApp); }
    Form1Test() {
        ImageLibrary::shared().lookAhead(std::chrono::minutes(1));
        StripWheel::setMainScrollBar(&form.sb1());
        show();
    }
    QWidget& window() override { return form; }
    /// Gives the window the size that it has on a screen with room for no more.
    void settle(QSize size) {
        form.findChild<ScreenFit*>()->fitTo(size + QSize(4, 36));
        form.resize(size);
        QCoreApplication::processEvents();
    }
    /// Opens the disc and its first patient, whose first run stands still then.
    void openPatient() { walk({{"click Open; node 0; click cmdStop", ""}}); }

    /// Menus as "name=caption shortcut", what they hold in braces; "+" and "-" are what is in force or not,
    /// "!" what cannot be chosen.
    static QString outline(const QList<QAction*>& actions) {
        QStringList items;
        for (const QAction* action : actions) {
            QString item = action->isSeparator() ? "" : action->objectName() + "=" + action->text();
            if (!action->isEnabled()) item += "!";
            if (action->isCheckable()) item += action->isChecked() ? "+" : "-";
            item += action->shortcut().toString();
            if (action->menu()) item += "{" + outline(action->menu()->actions()) + "}";
            items << item;
        }
        return items.join("|");
    }

    DiscBuilder disc{{patientOf("Cine <b>A</b> & Co", {{30, 4, 5, 6, 7, 8, 9}, {3, 3}}),
                      patientOf("Stills", {{1, 1, 1}, {1}})},
                     sampleFile};
    Form1 form{disc.path()};
};

}  // namespace cinedisc::test
