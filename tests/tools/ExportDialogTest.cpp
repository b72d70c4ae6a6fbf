#include "app/Form1.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/EmptyHome.h"
#include "tests/support/ModalDialog.h"
#include "tests/support/SampleFile.h"
#include "tests/support/WindowTest.h"

#include <QDir>
#include <QFileDialog>
#include <QImageReader>
#include <QLineEdit>
#include <QRadioButton>

#include <memory>

namespace cinedisc::test {
namespace {

constexpr int frameCount = 5;
constexpr int jpegLoss = 3;

/// The export command of the real window with its real dialogs.
class ExportDialogTest : public WindowTest {
  protected:
    static void SetUpTestSuite() { home = std::make_unique<EmptyHome>(); }
    static void TearDownTestSuite() { home.reset(); }
    ExportDialogTest() { show(); }
    void TearDown() override { EXPECT_EQ(home->entries().join(' '), ""); }
    QWidget& window() override { return form; }

    /// What is answered to the two dialogs, and what they saw.
    struct Session {
        const char* option = nullptr;  ///< chosen in frmdicom, if any
        const char* button = "CmdOk";
        QString name;  ///< typed into the save dialog; "" cancels it
        bool askedFormat = false, askedName = false;
        int frame = 0;  ///< shown meanwhile
    };
    void exportWith(Session& session) {
        const auto look = [&] {
            EXPECT_EQ(property("Timer4", "active"), false);
            if (session.frame == 0) session.frame = view("CurrentFrame").toInt();
            EXPECT_EQ(view("CurrentFrame"), session.frame);
        };
        ModalDialog<frmdicom> format([&](frmdicom& shown) {
            look();
            EXPECT_EQ(shown.windowTitle(), " Export");
            for (const auto* option : shown.findChildren<QRadioButton*>()) EXPECT_FALSE(option->isChecked());
            if (session.option) shown.findChild<QRadioButton*>(session.option)->click();
            if (!session.button) return void(shown.close());
            QTest::mouseClick(shown.findChild<QWidget*>(session.button), Qt::LeftButton);
        });
        ModalDialog<QFileDialog> save([&](QFileDialog& shown) {
            look();
            EXPECT_EQ(shown.windowTitle(), "Save as");
            EXPECT_EQ(shown.nameFilters(),
                      QStringList{QString(session.option) == "optBMP" ? "(*.bmp)" : "(*.jpg)"});
            if (session.name.isEmpty()) return shown.reject();
            shown.findChild<QLineEdit*>()->setText(folder.filePath(session.name));
            static_cast<QDialog&>(shown).accept();
        });
        click("cmdExport");
        session.askedFormat = format.wasShown();
        session.askedName = save.wasShown();
    }
    /// The file's own grey at every pixel, to within `loss`.
    static void expectFrame(const QImage& picture, int frame, int loss) {
        ASSERT_EQ(picture.size(), sampleSize);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor seen = picture.pixelColor(x, y);
                ASSERT_NEAR(seen.red(), sampleGrey(x, y, frame), loss) << x << "," << y;
                ASSERT_NEAR(seen.blue(), sampleGrey(x, y, frame), loss) << x << "," << y;
            }
        }
    }

    static inline std::unique_ptr<EmptyHome> home;
    QTemporaryDir folder;
    DiscBuilder disc{{patientOf("Patient", {{frameCount}})}, sampleFile};
    Form1 form{disc.path()};
};

TEST_F(ExportDialogTest, WritesTheShownFrameUnderTheNameAsTypedOnceBothDialogsAreAnswered) {
    Session noPicture{"optBMP", "CmdOk", "a.bmp"};
    exportWith(noPicture);
    EXPECT_FALSE(noPicture.askedFormat || noPicture.askedName);
    click("Open");
    clickNode(0);
    ASSERT_EQ(view("FrameCount"), frameCount);
    // The cine pauses for the dialogs and goes on.
    ASSERT_TRUE(QTest::qWaitFor([&] { return view("CurrentFrame").toInt() >= 2; }));
    Session playing{"optBMP", "CmdOk", "a.bmp"};
    exportWith(playing);
    EXPECT_EQ(property("Timer4", "active"), true);
    expectFrame(QImage(folder.filePath("a.bmp")), playing.frame, 0);
    click("cmdStop");
    struct Case {
        Session session;
        const char* encoding;  ///< null: nothing is written
        bool askedName = true;
    };
    QStringList names{"a.bmp"};
    // The choice counts where the name tells no format; that of the export before counts for nothing.
    for (Case c : {Case{{"OptJPEG", "CmdOk", "b"}, "jpeg"},
                   {{"optBMP", "CmdCancel", "c.bmp"}, nullptr, false},
                   {{nullptr, "CmdOk", "c.bmp"}, nullptr, false},
                   {{"OptJPEG", nullptr, "c.jpg"}, nullptr, false},
                   {{"optBMP", "CmdOk", ""}, nullptr},
                   {{"optBMP", "CmdOk", "no such folder/a.bmp"}, nullptr},
                   {{"optBMP", "CmdOk", "d"}, "bmp"},
                   {{"OptJPEG", "CmdOk", "e.bmp"}, "bmp"}}) {
        click("cmdNext");
        exportWith(c.session);
        EXPECT_TRUE(c.session.askedFormat);
        EXPECT_EQ(c.session.askedName, c.askedName);
        if (c.encoding) {
            names << c.session.name;
            QFile file(folder.filePath(c.session.name));
            ASSERT_TRUE(file.open(QFile::ReadOnly));
            EXPECT_EQ(QImageReader::imageFormat(&file), QByteArray(c.encoding)) << qPrintable(names.last());
            expectFrame(QImage::fromData(file.readAll()), view("CurrentFrame").toInt(),
                        *c.encoding == 'b' ? 0 : jpegLoss);
        }
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), names);
    }
}

}  // namespace
}  // namespace cinedisc::test
