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

TEST_F(QtDialogsTest, TheSaveDialogPassesTheNameOnAsTypedAndStartsWhereTheLastOneWas) {
    QString startsIn = home().path();
    QString answered;
    const auto save = [&](const QString& typed) {
        ModalDialog<QFileDialog> drive([&](QFileDialog& shown) {
            EXPECT_EQ(shown.windowTitle(), "Save as");
            EXPECT_EQ(shown.acceptMode(), QFileDialog::AcceptSave);
            EXPECT_EQ(shown.nameFilters(), QStringList{"(*.jpg)"});
            EXPECT_EQ(shown.directory().path(), startsIn);
            if (typed.isEmpty()) return shown.reject();
            type(shown, typed);
        });
        return dialogs.saveFileName("Save as", "(*.jpg)|*.jpg");
    };
    EXPECT_EQ(save(""), "");
    makeFolder("Pictures");
    startsIn = home().filePath("Pictures");
    EXPECT_EQ(save(""), "");
    makeFolder("exports");
    const QDir exports(home().filePath("exports"));
    QFile existing(exports.filePath("there.jpg"));
    ASSERT_TRUE(existing.open(QFile::WriteOnly));
    EXPECT_EQ(save(exports.filePath("there.jpg")), exports.filePath("there.jpg"));
    startsIn = exports.path();
    for (const char* name : {"no extension", "there.jpg", "other.bmp", "Left \"prox\".jpg", "\"a\" \"b.jpg",
                             "100%41 #1? ;&.jpg", " blanks "}) {
        EXPECT_EQ(save(name), exports.filePath(name));
        EXPECT_EQ(save(""), "") << "cancelled";
        EXPECT_EQ(save(exports.filePath(name)), exports.filePath(name));
    }
    QDir(exports).removeRecursively();
    startsIn = home().filePath("Pictures");
    EXPECT_EQ(save(""), "") << "that folder is gone";
}

TEST(NameFiltersTest, PairsBecomeTheToolkitsFilters) {
    EXPECT_EQ(nameFilters("(*.jpg)|*.jpg"), QStringList{"(*.jpg)"});
    EXPECT_EQ(nameFilters("JPEG|*.jpg;*.jpeg|All (*)|*"), (QStringList{"JPEG (*.jpg *.jpeg)", "All (*)"}));
    EXPECT_EQ(nameFilters(""), QStringList());
}

}  // namespace
}  // namespace cinedisc
