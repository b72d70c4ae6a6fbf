#include "control/ezDICOMX.h"
#include "platform/RunTimeError.h"
#include "tests/support/DicomBuilder.h"

#include <QAction>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <filesystem>

namespace cinedisc {
namespace {

/// Files on the disc, read by the program's own library.
class RealFiles : public testing::Test {
  protected:
    RealFiles() { view.resize(150, 130); }

    QString write(const QString& name, const test::DicomBuilder& file) {
        const QString path = folder.filePath(name);
        file.writeTo(std::filesystem::path(path.toStdU16String()));
        return path;
    }
    static test::DicomBuilder run(int frames) {
        auto file = test::DicomBuilder::image(130, 150, frames);
        file.gradientPixels();
        return file;
    }
    int greyAt(int x, int y) { return qRed(view.grab().toImage().pixel(x, y)); }

    QTemporaryDir folder;
    ezDICOMX view;
};

TEST_F(RealFiles, AreShownWhateverTheirNameIsWrittenIn) {
    for (const QString& name : {QString("run.dcm"), QString("Ärzte 冠動脈 <b>.dcm")}) {
        view.putFileName(write(name, run(3)));
        ASSERT_EQ(view.FrameCount(), 3) << qPrintable(view.accessibleDescription());
        view.putCurrentFrame(3);
        EXPECT_EQ(greyAt(10, 20), 14 + 60 + 10);
    }
}

TEST_F(RealFiles, AreSeenToHaveBeenReplacedOrToHaveGone) {
    ezDICOMX other;
    const QString path = write("a.dcm", run(2));
    view.putFileName(path);
    other.putFileName(path);
    write("a.dcm", run(5));
    view.putFileName(path);
    EXPECT_EQ(view.FrameCount(), 5);
    ASSERT_TRUE(QFile::remove(path));
    view.putFileName(path);
    EXPECT_EQ(view.FrameCount(), 0);
    EXPECT_EQ(view.FileName(), path);
    EXPECT_FALSE(view.accessibleDescription().isEmpty());
}

TEST_F(RealFiles, ThatAreCutOffPlayTheFramesTheyHave) {
    const QString path = write("a.dcm", run(10));
    QFile file(path);
    ASSERT_TRUE(file.resize(file.size() - 130 * 150 * 4 - 10));
    view.putFileName(path);
    EXPECT_EQ(view.FrameCount(), 5);
    view.putCurrentFrame(5);
    EXPECT_EQ(greyAt(10, 20), 28 + 60 + 10);
    EXPECT_TRUE(view.accessibleDescription().contains("5 of 10")) << qPrintable(view.accessibleDescription());
}

TEST_F(RealFiles, ThatAreNoneShowANotice) {
    QFile text(folder.filePath("text.dcm"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("not a picture");
    text.close();
    for (const QString& path :
         {text.fileName(), folder.path(), QString("/dev/zero"), QString("relative.dcm"), QString("\n")}) {
        ASSERT_NO_THROW(view.putFileName(path));
        EXPECT_EQ(view.FrameCount(), 0) << qPrintable(path);
        EXPECT_FALSE(view.accessibleDescription().isEmpty()) << qPrintable(path);
    }
}

TEST_F(RealFiles, OfOtherMakersAreShownOrTheReasonIsSaid) {
    const QDir samples(qEnvironmentVariable("CINEDISC_SAMPLES"), "*.dcm");
    if (!samples.exists() || samples.count() == 0) GTEST_SKIP() << "no samples here";
    const QString copy = folder.filePath("copy.bmp");
    for (const QString& name : samples.entryList()) {
        view.putFileName(samples.filePath(name));
        for (int frame = 1; frame <= view.FrameCount(); ++frame) view.putCurrentFrame(frame);
        view.grab();
        if (view.accessibleDescription().isEmpty()) {
            EXPECT_GT(view.FrameCount(), 0) << qPrintable(name);
            EXPECT_NO_THROW(view.putExportFile(copy)) << qPrintable(name);
        } else {
            EXPECT_THROW(view.putExportFile(copy), RunTimeError) << qPrintable(name);
        }
    }
}

TEST_F(RealFiles, HaveTheirHeaderOnThePageAndOnTheClipboardWhole) {
    auto file = run(1);
    file.text({0x0010, 0x0010}, "PN", "<i>DOE</i>^JOHN");
    view.putFileName(write("a.dcm", file));
    QAction copiesPicture;
    copiesPicture.setShortcut(QKeySequence::Copy);
    view.addAction(&copiesPicture);
    int pictures = 0;
    QObject::connect(&copiesPicture, &QAction::triggered, [&pictures] { ++pictures; });
    view.putShowHeader(true);
    view.show();
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    auto* page = view.findChild<QPlainTextEdit*>("headerPage");
    page->setFocus();
    QTest::keyClick(page, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pictures, 1) << "nothing is selected";
    QTest::keyClick(page, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(page, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pictures, 1);
    EXPECT_TRUE(page->toPlainText().contains("<i>DOE</i>^JOHN"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), page->toPlainText());
    EXPECT_TRUE(view.CopyHeaderToClipboard());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), page->toPlainText());
    file.text({0x0010, 0x4000}, "LT", std::string(9000, 'x'));
    view.putFileName(write("b.dcm", file));
    EXPECT_TRUE(view.CopyHeaderToClipboard());
    EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(QString(9000, 'x')));
    EXPECT_LT(page->toPlainText().size(), 9000) << "the page cuts what is very long";
}

}  // namespace
}  // namespace cinedisc
