#include "platform/RunTimeError.h"
#include "tests/control/ViewFixture.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImageReader>
#include <QMimeData>
#include <QTemporaryDir>

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
    static int errorOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const RunTimeError& error) {
            return error.number();
        }
        return 0;
    }
    QTemporaryDir folder;
};

TEST_F(Export, WritesBmpPixelForPixelWhateverTheViewShows) {
    load(greyRun(77, 51, 2));
    view.putCurrentFrame(2);
    view.putPolarity(-1);
    view.putWindowCenter(100);
    view.putWindowWidth(150);
    view.putZoomPercent(300);
    view.putShowHeader(true);
    view.putExportFile(file("a.bmp"));
    const QImage read(file("a.bmp"));
    ASSERT_EQ(read.size(), QSize(77, 51));
    for (int y = 0; y < 51; ++y) {
        for (int x = 0; x < 77; ++x) {
            const double stored = (x * 3 + y * 5 + 17) & 255;
            const double level = std::clamp(((stored - 99.5) / 149 + 0.5) * 255, 0.0, 255.0);
            const int expected = 255 - static_cast<int>(level + 0.5);
            ASSERT_EQ(read.pixel(x, y), qRgb(expected, expected, expected)) << x << "," << y;
        }
    }
}

TEST_F(Export, PicksTheEncodingByTheExtensionThenByTheFormatAndKeepsColour) {
    const auto colour = [](int x, int y) { return (x + y) % 2 ? qRgb(220, 30, 40) : qRgb(40, 60, 210); };
    load(test::colourRun(64, 64, colour));
    struct Case {
        QString name, format;
        QByteArray encoding;
    };
    const Case cases[] = {{"a.bmp", "JPEG", "bmp"},  {"b.BmP", "", "bmp"},      {"c.jpg", "BMP", "jpeg"},
                          {"d.JPEG", "BMP", "jpeg"}, {"e", "BMP", "bmp"},       {"f", "JPEG", "jpeg"},
                          {"g.png", "BMP", "bmp"},   {"h.dcm", "JPEG", "jpeg"}, {"i", "", "jpeg"}};
    for (const auto& c : cases) {
        view.putExportFormat(c.format);
        view.putExportFile(file(c.name));
        QFile written(file(c.name));
        ASSERT_TRUE(written.open(QIODevice::ReadOnly)) << qPrintable(c.name);
        EXPECT_EQ(QImageReader::imageFormat(&written), c.encoding) << qPrintable(c.name);
        const QImage read = QImage::fromData(written.readAll());
        for (int i = 0; i < 63; ++i) {
            for (const QPoint at : {QPoint(i, i), QPoint(i, i + 1)}) {  // every pixel has its own colour
                const QRgb wanted = colour(at.x(), at.y()), seen = read.pixel(at);
                EXPECT_NEAR(qRed(seen), qRed(wanted), 12) << qPrintable(c.name);
                EXPECT_NEAR(qBlue(seen), qBlue(wanted), 12) << qPrintable(c.name);
            }
        }
    }
    EXPECT_EQ(entries().size(), 9) << "nothing else is left";
}

TEST_F(Export, MakesPixelsSquareAndBurnsInWhatIsDisplayed) {
    const auto picture = greyRun(60, 40, 1, [](int, int, int) { return 120; });
    picture->aspect = 0.5;
    picture->shutterShapes.rectangle = dicom::Shutter::Rectangle{11, 60, 1, 40};
    picture->shutterShapes.presentationValue = 0x2000;
    dicom::Overlay overlay;
    overlay.rows = 40;
    overlay.columns = 1;
    overlay.originColumn = 50;
    overlay.bits.assign(40, 1);
    picture->overlayPlanes = {overlay};
    load(picture);
    view.putExportFile(file("a.bmp"));
    const QImage read(file("a.bmp"));
    ASSERT_EQ(read.size(), QSize(60, 80));
    EXPECT_EQ(qRed(read.pixel(5, 40)), 0x20);
    EXPECT_EQ(qRed(read.pixel(30, 40)), 120);
    EXPECT_EQ(qRed(read.pixel(49, 79)), 255);
}

TEST_F(Export, RaisesAnErrorAndLeavesWhatWasThere) {
    EXPECT_EQ(errorOf([&] { view.putExportFile(file("a.bmp")); }), 75) << "nothing is loaded";
    load(greyRun(8, 8, 1));
    EXPECT_EQ(errorOf([&] { view.putExportFile(file("no/such/folder/a.bmp")); }), 76);
    EXPECT_EQ(errorOf([&] { view.putExportFile(""); }), 75);
    ASSERT_TRUE(QDir(folder.path()).mkdir("b.bmp"));
    EXPECT_EQ(errorOf([&] { view.putExportFile(file("b.bmp")); }), 75) << "a folder";
    EXPECT_EQ(view.ExportFile(), file("b.bmp"));

    QFile old(file("old.jpg"));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("what was there");
    old.close();
    load(greyRun(65535, 1, 1), "/wide");  // more than a JPEG can hold
    EXPECT_EQ(errorOf([&] { view.putExportFile(old.fileName()); }), 75);
    load(greyRun(300, 300, 1), "/large");
#ifdef RLIMIT_FSIZE
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{10000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const int jpegError = errorOf([&] { view.putExportFile(old.fileName()); });
    const int bmpError = errorOf([&] { view.putExportFile(file("new.bmp")); });
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(jpegError, 75);
    EXPECT_EQ(bmpError, 75);
#endif
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    EXPECT_EQ(old.readAll(), "what was there");
    EXPECT_EQ(entries(), QStringList{"old.jpg"});
}

TEST_F(Export, CopiesThePictureWithoutLossAndAsTheJpegOfAnExport) {
    load(greyRun(40, 30, 1));
    view.putPolarity(-1);
    ASSERT_TRUE(view.CopyToClipboard());
    const auto* data = QGuiApplication::clipboard()->mimeData();
#ifndef Q_OS_WIN
    EXPECT_EQ(data->formats(), (QStringList{"image/png", "image/bmp", "image/jpeg"})) << "the best first";
#endif
    for (const auto& image :
         {QGuiApplication::clipboard()->image(), QImage::fromData(data->data("image/png")),
          QImage::fromData(data->data("image/bmp"))}) {
        ASSERT_EQ(image.size(), QSize(40, 30));
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 40; ++x)
                ASSERT_EQ(qRed(image.pixel(x, y)), 255 - ((x * 3 + y * 5) & 255)) << x << "," << y;
    }
    view.putExportFile(file("a.jpg"));
    QFile jpeg(file("a.jpg"));
    ASSERT_TRUE(jpeg.open(QIODevice::ReadOnly));
    EXPECT_EQ(data->data("image/jpeg"), jpeg.readAll());
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
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "mine");
    EXPECT_TRUE(view.CopyHeaderToClipboard()) << "the header can be read";
    struct TooLarge : test::FakeDicomFile {
        dicom::DataSet elementsBehindPixels() const override { throw std::bad_alloc(); }
    };
    load(std::make_shared<TooLarge>(), "/too large");
    EXPECT_FALSE(view.CopyHeaderToClipboard());
}

}  // namespace
}  // namespace cinedisc
