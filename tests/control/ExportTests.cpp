#include "platform/RunTimeError.h"
#include "tests/control/ViewFixture.h"

#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImageReader>
#include <QMimeData>
#include <QTemporaryDir>

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

TEST_F(Export, PicksTheEncodingByTheExtensionThenByTheFormatChosen) {
    load(greyRun(64, 64, 1, [](int x, int y, int) { return x + y; }));
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
        for (int i = 0; i < 64; ++i) EXPECT_NEAR(qRed(read.pixel(i, i)), 2 * i, 3) << qPrintable(c.name);
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
    const auto exported = [&] {
        view.putExportFile(file("a.bmp"));
        return QImage(file("a.bmp"));
    };
    const QImage read = exported();
    ASSERT_EQ(read.size(), QSize(60, 80));
    EXPECT_EQ(qRed(read.pixel(5, 40)), 0x20);
    EXPECT_EQ(qRed(read.pixel(30, 40)), 120);
    EXPECT_EQ(qRed(read.pixel(49, 79)), 255);

    view.putMouseMode(ViewerControl::MouseLabel);
    QTest::mouseClick(&view, Qt::LeftButton, {}, {70, 60});
    QTest::keyClicks(view.findChild<QWidget*>("labelEditor"), "X");
    QTest::keyClick(view.findChild<QWidget*>("labelEditor"), Qt::Key_Return);
    EXPECT_NE(exported(), read);
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
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    EXPECT_EQ(old.readAll(), "what was there");
    EXPECT_EQ(entries(), QStringList{"old.jpg"});
}

TEST_F(Export, CopiesThePictureAsBitmapAndPng) {
    load(greyRun(40, 30, 1));
    view.putPolarity(-1);
    ASSERT_TRUE(view.CopyToClipboard());
    const auto* data = QGuiApplication::clipboard()->mimeData();
    const auto bitmap = qvariant_cast<QImage>(data->imageData());
    QImage png;
    ASSERT_TRUE(png.loadFromData(data->data("image/png"), "PNG"));
    for (const auto& image : {bitmap, png}) {
        ASSERT_EQ(image.size(), QSize(40, 30));
        EXPECT_EQ(qRed(image.pixel(7, 9)), 255 - (7 * 3 + 9 * 5));
    }
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
}

}  // namespace
}  // namespace cinedisc
