#include "platform/widgets/QtDialogs.h"
#include "tests/support/EmptyHome.h"
#include "tests/support/ModalDialog.h"

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>

namespace cinedisc {
namespace {

using test::ModalDialog;

class QtDialogsTest : public testing::Test {
  protected:
    static void SetUpTestSuite() { home_ = std::make_unique<test::EmptyHome>(); }
    static void TearDownTestSuite() { home_.reset(); }
    void TearDown() override {
        for (const QString& folder : made) QDir(home().filePath(folder)).removeRecursively();
        EXPECT_TRUE(home().entries().isEmpty()) << qPrintable(home().entries().join(" "));
    }
    static test::EmptyHome& home() { return *home_; }
    void makeFolder(const QString& name) {
        QDir(home().path()).mkdir(name);
        made += name;
    }
    static void type(QFileDialog& dialog, const QString& name) {
        dialog.findChild<QLineEdit*>()->setText(name);
        static_cast<QDialog&>(dialog).accept();
    }

    static inline std::unique_ptr<test::EmptyHome> home_;
    QStringList made;
    QWidget window;
    QtDialogs dialogs{&window};
};

TEST_F(QtDialogsTest, TheQuestionIsPlainTextUnderTheProgramsTitle) {
    for (const auto& [button, answer] : {std::pair{QMessageBox::Yes, true}, {QMessageBox::No, false}}) {
        ModalDialog<QMessageBox> box([&, which = button](QMessageBox& shown) {
            EXPECT_EQ(shown.windowTitle(), "Cine Disc Viewer");
            EXPECT_EQ(shown.text(), "<b>Really?</b>");
            EXPECT_EQ(shown.textFormat(), Qt::PlainText);
            shown.button(which)->click();
        });
        EXPECT_EQ(dialogs.askYesNo("<b>Really?</b>"), answer);
        EXPECT_TRUE(box.wasShown());
    }
}

TEST_F(QtDialogsTest, TheFolderBrowserAnswersTheFolderOrNothing) {
    QTemporaryDir disc;
    ModalDialog<QFileDialog> choose([&](QFileDialog& shown) {
        EXPECT_EQ(shown.windowTitle(), "Dicom");
        EXPECT_TRUE(shown.testOption(QFileDialog::DontUseNativeDialog));
        type(shown, disc.path());
    });
    EXPECT_EQ(dialogs.browseForFolder("Dicom"), disc.path());
    ModalDialog<QFileDialog> cancel([](QFileDialog& shown) { shown.reject(); });
    EXPECT_EQ(dialogs.browseForFolder("Dicom"), "");
}

TEST_F(QtDialogsTest, TheSaveDialogPassesTheNameOnAsTypedAndAsksNothing) {
    makeFolder("exports");
    QFile existing(home().filePath("exports/there.jpg"));
    ASSERT_TRUE(existing.open(QFile::WriteOnly));
    for (const char* name : {"no extension", "there.jpg", "other.bmp"}) {
        ModalDialog<QFileDialog> save([&](QFileDialog& shown) {
            EXPECT_EQ(shown.windowTitle(), "Save as");
            EXPECT_EQ(shown.acceptMode(), QFileDialog::AcceptSave);
            EXPECT_EQ(shown.nameFilters(), QStringList{"(*.jpg)"});
            EXPECT_EQ(shown.directory().path(), home().path());
            type(shown, home().filePath(QString("exports/") + name));
        });
        EXPECT_EQ(dialogs.saveFileName("Save as", "(*.jpg)|*.jpg"),
                  home().filePath(QString("exports/") + name));
    }
}

TEST_F(QtDialogsTest, CancellingTheSaveDialogNamesNothing) {
    ModalDialog<QFileDialog> save([](QFileDialog& shown) { shown.reject(); });
    EXPECT_EQ(dialogs.saveFileName("Save as", "(*.bmp)|*.bmp"), "");
}

TEST_F(QtDialogsTest, TheSaveDialogStartsWithThePicturesWhereThereAreSome) {
    makeFolder("Pictures");
    ModalDialog<QFileDialog> save([&](QFileDialog& shown) {
        EXPECT_EQ(shown.directory().path(), home().filePath("Pictures"));
        shown.reject();
    });
    dialogs.saveFileName("Save as", "(*.bmp)|*.bmp");
}

TEST(NameFiltersTest, PairsBecomeTheToolkitsFilters) {
    EXPECT_EQ(nameFilters("(*.jpg)|*.jpg"), QStringList{"(*.jpg)"});
    EXPECT_EQ(nameFilters("JPEG|*.jpg;*.jpeg|All (*)|*"), (QStringList{"JPEG (*.jpg *.jpeg)", "All (*)"}));
    EXPECT_EQ(nameFilters(""), QStringList());
}

}  // namespace
}  // namespace cinedisc
