#include "platform/RunTimeError.h"
#include "tests/control/ViewFixture.h"

#include <QAction>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImageReader>
#include <QMimeData>
#include <QPlainTextEdit>

#if __has_include(<sys/resource.h>)
#include <sys/resource.h>
#endif

namespace cinedisc {
namespace {

using test::greyRun;

class Export : public test::ViewFixture {
  protected:
    QString file(const QString& name) { return folder.filePath(name); }
    QStringList entries() { return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
    /// Of an export.
    int error(const QString& path) {
        try {
            view.putExportFile(path);
        } catch (const RunTimeError& error) {
            return error.number();
        }
        return 0;
    }
    static QByteArray contents(const QString& path) {
        QFile read(path);
        EXPECT_TRUE(read.open(QIODevice::ReadOnly)) << qPrintable(path);
        return read.readAll();
    }
    QTemporaryDir folder;
};

TEST_F(Export, WritesAndCopiesPixelForPixelWhateverTheViewShows) {
    load(greyRun(77, 51, 2));
    run("CurrentFrame 2; Polarity -1; WindowCenter 100; WindowWidth 150; ZoomPercent 300; ShowHeader 1");
    view.putExportFile(file("a.bmp"));
    view.putExportFile(file("a.jpg"));
    ASSERT_TRUE(view.CopyToClipboard());
    const auto* data = QGuiApplication::clipboard()->mimeData();
#ifndef Q_OS_WIN
    EXPECT_EQ(data->formats(), (QStringList{"image/png", "image/bmp", "image/jpeg"})) << "the best first";
#endif
    for (const auto& image :
         {QImage(file("a.bmp")), QGuiApplication::clipboard()->image(),
          QImage::fromData(data->data("image/png")), QImage::fromData(data->data("image/bmp"))}) {
        ASSERT_EQ(image.size(), QSize(77, 51));
        for (int y = 0; y < 51; ++y) {
            for (int x = 0; x < 77; ++x) {
                const double stored = (x * 3 + y * 5 + 17) & 255;
                const double level = std::clamp(((stored - 99.5) / 149 + 0.5) * 255, 0.0, 255.0);
                const int expected = 255 - static_cast<int>(level + 0.5);
                ASSERT_EQ(image.pixel(x, y), qRgb(expected, expected, expected)) << x << "," << y;
            }
        }
    }
    EXPECT_EQ(data->data("image/jpeg"), contents(file("a.jpg")));
}

TEST_F(Export, PicksTheEncodingByTheExtensionThenByTheFormatAndKeepsColour) {
    const auto colour = [](int x, int y) { return (x + y) % 2 ? qRgb(220, 30, 40) : qRgb(40, 60, 210); };
    load(test::colourRun(64, 64, colour));
    run("WindowCenter 5; WindowWidth 5; WindowCenter is 127.5; WindowWidth is 255");
    const QString cases[] = {"a.bmp JPEG bmp",  "b.BmP  bmp",      "c.jpg BMP jpeg",
                             "d.JPEG BMP jpeg", "e BMP bmp",       "f JPEG jpeg",
                             "g.png BMP bmp",   "h.dcm JPEG jpeg", "i  jpeg"};
    for (const QString& each : cases) {
        const QStringList words = each.split(' ');
        view.putExportFormat(words[1]);
        view.putExportFile(file(words[0]));
        EXPECT_EQ(QImageReader::imageFormat(file(words[0])), words[2]) << qPrintable(each);
        const QImage read = QImage::fromData(contents(file(words[0])));
        for (int i = 0; i < 126; ++i) {
            const QPoint at(i / 2, (i + 1) / 2);  // every pixel has its own colour
            const QRgb wanted = colour(at.x(), at.y()), seen = read.pixel(at);
            EXPECT_NEAR(qRed(seen), qRed(wanted), 12) << qPrintable(each);
            EXPECT_NEAR(qBlue(seen), qBlue(wanted), 12) << qPrintable(each);
        }
    }
    EXPECT_EQ(entries().size(), 9) << "nothing else is left";
}

TEST_F(Export, MakesPixelsSquareAndBurnsInWhatIsDisplayed) {
    const auto picture = greyRun(60, 40, 1, [](int, int, int) { return 120; });
    picture->aspect = 0.5;
    picture->shutterShapes.rectangle = dicom::Shutter::Rectangle{11, 60, 1, 40};
    picture->shutterShapes.presentationValue = 0x2000;
    load(picture);
    view.putExportFile(file("a.bmp"));
    const QImage read(file("a.bmp"));
    ASSERT_EQ(read.size(), QSize(60, 80));
    EXPECT_EQ(qRed(read.pixel(5, 40)), 0x20);
    EXPECT_EQ(qRed(read.pixel(30, 79)), 120);
}

TEST_F(Export, RaisesAnErrorAndLeavesWhatWasThere) {
    EXPECT_EQ(error(file("a.bmp")), 75) << "nothing is loaded";
    load(greyRun(8, 8, 1));
    EXPECT_EQ(error(file("no/such/folder/a.bmp")), 76);
    EXPECT_EQ(error(""), 75);
    ASSERT_TRUE(QDir(folder.path()).mkdir("b.bmp"));
    EXPECT_EQ(error(file("b.bmp")), 75) << "a folder";
    EXPECT_EQ(view.ExportFile(), file("b.bmp"));

    QFile old(file("old.jpg"));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("what was there");
    old.close();
    load(greyRun(65535, 1, 1), "/wide");  // more than a JPEG can hold
    EXPECT_EQ(error(file("old.jpg")), 75);
    load(greyRun(300, 300, 1), "/large");
#ifdef RLIMIT_FSIZE
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{10000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const int errors[] = {error(file("old.jpg")), error(file("new.bmp"))};
    setrlimit(RLIMIT_FSIZE, &before);
    for (const int met : errors) EXPECT_EQ(met, 75);
#endif
    EXPECT_EQ(contents(file("old.jpg")), "what was there");
    EXPECT_EQ(entries(), QStringList{"old.jpg"});
}

TEST_F(Export, CopiesNothingWhenThereIsNoPicture) {
    QGuiApplication::clipboard()->setText("mine");
    view.putFileName("/nowhere");
    EXPECT_FALSE(view.CopyToClipboard());
    EXPECT_FALSE(view.CopyHeaderToClipboard());
    const auto file = greyRun(8, 8, 2);
    file->broken = {0};
    load(file);
    EXPECT_FALSE(view.CopyToClipboard());
    file->readingBehind = [] { throw std::bad_alloc(); };
    EXPECT_FALSE(view.CopyHeaderToClipboard());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "mine");
    file->readingBehind = {};
    EXPECT_TRUE(view.CopyHeaderToClipboard()) << "the header can be read";
}

TEST_F(Export, CopiesTheHeaderFromItsPageAndWhole) {
    const auto file = greyRun(8, 8, 1);
    test::put(*file, {0x0010, 0x4000}, "<i>DOE</i>" + std::string(9000, 'x'));
    load(file);
    QAction copiesPicture;
    copiesPicture.setShortcut(QKeySequence::Copy);
    view.addAction(&copiesPicture);
    int pictures = 0;
    QObject::connect(&copiesPicture, &QAction::triggered, [&pictures] { ++pictures; });
    view.putShowHeader(true);
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    auto* page = view.findChild<QPlainTextEdit*>("headerPage");
    page->setFocus();
    QTest::keyClick(page, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pictures, 1) << "nothing is selected";
    QTest::keyClick(page, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(page, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pictures, 1);
    EXPECT_TRUE(page->toPlainText().contains("<i>DOE</i>xxx"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), page->toPlainText());
    EXPECT_LT(page->toPlainText().size(), 9000) << "the page cuts what is very long";
    EXPECT_TRUE(view.CopyHeaderToClipboard());
    EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(QString(9000, 'x')));
}

}  // namespace
}  // namespace cinedisc
