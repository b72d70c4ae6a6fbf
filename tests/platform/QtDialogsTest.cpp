#include "platform/widgets/QtDialogs.h"
#include "tests/support/ModalDialog.h"

#include <QDirIterator>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

namespace cinedisc {
namespace {

using test::ModalDialog;

struct QtDialogsTest : testing::Test {
    // The toolkit asks only once where settings belong.
    static void SetUpTestSuite() {
        for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) qunsetenv(name);
        qputenv("HOME", home.path().toUtf8());
    }
    void TearDown() override {
        QDirIterator left(home.path(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        EXPECT_FALSE(left.hasNext()) << qPrintable(left.next());
    }
    static void type(QFileDialog& dialog, const QString& name) {
        if (name.isEmpty()) return dialog.reject();
        dialog.findChild<QLineEdit*>()->setText(name);
        static_cast<QDialog&>(dialog).accept();
    }

    static inline const QTemporaryDir home;
    QWidget window;
    QtDialogs dialogs{&window};
};

TEST_F(QtDialogsTest, TheQuestionIsPlainTextUnderTheProgramsTitle) {
    for (const auto& [button, isYes] : {std::pair{QMessageBox::Yes, true}, {QMessageBox::No, false}}) {
        ModalDialog<QMessageBox> box([&, which = button](QMessageBox& shown) {
            EXPECT_EQ(shown.windowTitle(), "Cine Disc Viewer");
            EXPECT_EQ(shown.text(), "<b>Really?</b>");
            EXPECT_EQ(shown.textFormat(), Qt::PlainText);
            shown.button(which)->click();
        });
        EXPECT_EQ(dialogs.askYesNo("<b>Really?</b>"), isYes);
    }
}

TEST_F(QtDialogsTest, TheFolderBrowserStartsOnTheDiscAndReturnsTheFolderOrNothing) {
    QTemporaryDir disc;
    const QDir images(disc.filePath("dicom"));
    for (const char* name : {"dicom/a", "dicom/b/c"}) QDir(disc.path()).mkpath(name);
    for (const char* name : {"a/1.dcm", "a/2.DCM", "a/text", "b/c/1.dcm"})
        QFile(images.filePath(name)).open(QFile::WriteOnly);
    ModalDialog<QFileDialog> without([](QFileDialog& shown) {
        EXPECT_EQ(shown.directory(), QDir::home());
        shown.reject();
    });
    EXPECT_EQ(dialogs.browseForFolder("Dicom"), "");
    dialogs.setDiscFolder(disc.path());
    for (const QString& chosen : {disc.path(), QString()}) {
        ModalDialog<QFileDialog> browser([&](QFileDialog& shown) {
            EXPECT_EQ(shown.windowTitle(), "Dicom");
            EXPECT_TRUE(shown.testOption(QFileDialog::DontUseNativeDialog));
            EXPECT_EQ(shown.directory(), images);
            EXPECT_EQ(shown.sidebarUrls().value(1), QUrl::fromLocalFile(images.path()));
            const auto& folders = *shown.findChild<QTreeView*>("treeView");
            const auto seen = [&](int row, int column) {
                return folders.model()->index(row, column, folders.rootIndex()).data().toString();
            };
            EXPECT_TRUE(QTest::qWaitFor([&] { return seen(0, 0) + seen(0, 1) == "a2"; }));
            EXPECT_TRUE(QTest::qWaitFor([&] { return seen(1, 0) + seen(1, 1) == "b1 below"; }));
            type(shown, chosen);
        });
        EXPECT_EQ(dialogs.browseForFolder("Dicom"), chosen);
    }
}

TEST_F(QtDialogsTest, TheSaveDialogPassesTheNameOnAsTypedAndStartsWhereTheLastOneWas) {
    QDir folder(home.path());
    QString startsIn = home.path();
    const auto save = [&](const QString& typed) {
        ModalDialog<QFileDialog> drive([&](QFileDialog& shown) {
            EXPECT_EQ(shown.windowTitle(), "Save as");
            EXPECT_EQ(shown.acceptMode(), QFileDialog::AcceptSave);
            EXPECT_EQ(shown.nameFilters(), QStringList{"(*.jpg)"});
            EXPECT_EQ(shown.directory().path(), startsIn);
            type(shown, typed);
        });
        return dialogs.saveFileName("Save as", "(*.jpg)|*.jpg");
    };
    EXPECT_EQ(save(""), "");
    folder.mkdir("Pictures");
    startsIn = folder.filePath("Pictures");
    EXPECT_EQ(save(""), "");
    folder.mkdir("exports");
    QDir exports(folder.filePath("exports"));
    QFile existing(exports.filePath("there.jpg"));
    ASSERT_TRUE(existing.open(QFile::WriteOnly));
    EXPECT_EQ(save(existing.fileName()), existing.fileName());
    startsIn = exports.path();
    for (const char* name : {"no extension", "there.jpg", "other.bmp", "Left \"prox\".jpg", "\"a\" \"b.jpg",
                             "100%41 #1? ;&.jpg", " blanks "}) {
        EXPECT_EQ(save(name), exports.filePath(name));
        EXPECT_EQ(save(""), "") << "cancelled";
        EXPECT_EQ(save(exports.filePath(name)), exports.filePath(name));
    }
    exports.removeRecursively();
    startsIn = folder.filePath("Pictures");
    EXPECT_EQ(save(""), "") << "that folder is gone";
    QDir(startsIn).removeRecursively();
}

}  // namespace
}  // namespace cinedisc
