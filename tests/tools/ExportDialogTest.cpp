#include "app/Form1.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/ModalDialog.h"
#include "tests/support/WindowTest.h"

#include <QFileDialog>
#include <QImageReader>
#include <QLineEdit>
#include <QRadioButton>

namespace cinedisc::test {
namespace {

/// The export command of the real window with its real dialogs.
class ExportDialogTest : public WindowTest {
  protected:
    ExportDialogTest() { show(); }
    QWidget& window() override { return form; }

    DiscBuilder disc{{patientOf("Patient", {{5}})}, sampleFile};
    Form1 form{disc.path()};
};

TEST_F(ExportDialogTest, WritesTheShownFrameUnderTheNameAsTypedOnceBothDialogsAreAnswered) {
    const QTemporaryDir folder;
    // The choice counts where the name tells no format; that of the export before counts for nothing.
    for (const auto& [option, button, name, dialogs, encoding] :
         {std::tuple{"optBMP", "CmdOk", "a.bmp", "", ""},  // nothing is shown yet
          {"optBMP", "CmdOk", "b.bmp", "format name", "bmp"},
          {"OptJPEG", "CmdOk", "c", "format name", "jpeg"},
          {"optBMP", "CmdCancel", "d", "format ", ""},
          {"", "CmdOk", "e", "format ", ""},
          {"OptJPEG", "", "f", "format ", ""},
          {"optBMP", "CmdOk", "", "format name", ""},
          {"optBMP", "CmdOk", "no such folder/g", "format name", ""},
          {"optBMP", "CmdOk", "h", "format name", "bmp"},
          {"OptJPEG", "CmdOk", "i.bmp", "format name", "bmp"}}) {
        SCOPED_TRACE(name);
        const QVariant playing = property("Timer4", "active"), frame = view("CurrentFrame");
        ModalDialog<frmdicom> format(
            [&, chosen = QString(option), pressed = QString(button)](frmdicom& shown) {
                EXPECT_EQ(property("Timer4", "active"), false) << "the cine pauses for the dialogs";
                EXPECT_EQ(shown.objectName() + shown.windowTitle(), "frmdicom Export");
                QPoint before;
                for (const auto* each : shown.findChildren<QAbstractButton*>()) {
                    const QPoint place = each->mapTo(&shown, QPoint());
                    EXPECT_TRUE(place.y() > before.y() || place.x() > before.x()) << "in reading order";
                    EXPECT_TRUE(each->parentWidget()->contentsRect().contains(each->geometry()));
                    before = place;
                }
                for (const auto* each : shown.findChildren<QRadioButton*>()) EXPECT_FALSE(each->isChecked());
                if (!chosen.isEmpty()) shown.findChild<QRadioButton*>(chosen)->click();
                if (pressed.isEmpty()) return void(shown.close());
                QTest::mouseClick(shown.findChild<QWidget*>(pressed), Qt::LeftButton);
            });
        ModalDialog<QFileDialog> save([&, typed = QString(name), jpeg = *option == 'O'](QFileDialog& shown) {
            EXPECT_EQ(shown.windowTitle(), "Save as");
            EXPECT_EQ(shown.nameFilters(), QStringList(jpeg ? "(*.jpg)" : "(*.bmp)"));
            if (typed.isEmpty()) return shown.reject();
            shown.findChild<QLineEdit*>()->setText(folder.filePath(typed));
            static_cast<QDialog&>(shown).accept();
        });
        click("cmdExport");
        EXPECT_EQ(QString(format.wasShown() ? "format " : "") + (save.wasShown() ? "name" : ""), dialogs);
        EXPECT_EQ(property("Timer4", "active"), playing);
        EXPECT_EQ(view("CurrentFrame"), frame);
        EXPECT_EQ(QImageReader::imageFormat(folder.filePath(name)), encoding);
        if (*name == 'b') {
            const QImage written(folder.filePath(name));
            for (int y = 0; y < sampleSize.height(); ++y)
                for (int x = 0; x < sampleSize.width(); ++x)
                    ASSERT_EQ(qRed(written.pixel(x, y)), sampleGrey(x, y, frame.toInt())) << x << "," << y;
            click("cmdStop");
        }
        if (*name == 'a') {
            click("Open");
            clickNode(0);
            ASSERT_TRUE(QTest::qWaitFor([&] { return view("CurrentFrame").toInt() >= 2; }));
        }
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).join(' '), "b.bmp c h i.bmp");
}

}  // namespace
}  // namespace cinedisc::test
