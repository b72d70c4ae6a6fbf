#include "control/picture/DirectTarget.h"
#include "control/picture/TextPieces.h"
#include "control/picture/ViewState.h"
#include "tests/control/ViewFixture.h"

#include <QPixmap>

namespace cinedisc {
namespace {

using test::greyRun;

constexpr QRgb untouched = qRgb(255, 0, 255);

TEST(PictureRenderer, PaintsTheSameDirectlyAndFromWhatItKept) {
    test::FakeLibrary fake;
    fake.files["/run"] = greyRun(61, 47, 2);
    ViewState view(fake.library);
    view.picture.load("/run");
    for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        for (const int percent : {30, 100, 200, 900}) {
            for (const QPoint corner : {QPoint(0, 0), QPoint(5, 3), QPoint(2, 2), QPoint(-7, 6)}) {
                view.picture.show(3 - view.picture.currentFrame());
                view.pixelRatio = ratio;
                view.deviceSize = (QSizeF(101, 83) * ratio).toSize();
                view.zoom.putPercent(percent);
                const auto painted = [&] {
                    QImage image((QSizeF(120, 100) * ratio).toSize(), QImage::Format_RGB32);
                    image.setDevicePixelRatio(ratio);
                    image.fill(untouched);
                    QPainter painter(&image);
                    painter.translate(corner);
                    EXPECT_TRUE(DirectTarget::of(painter, ratio));
                    const QRect covered =
                        view.renderer.paint(painter, ratio, view.placement(), view.smoothing);
                    EXPECT_EQ(covered, view.placement().visible());
                    return image;
                };
                const QImage directly = painted();
                EXPECT_EQ(directly, painted()) << ratio << " at " << percent << " % from " << corner.x();
            }
        }
    }
}

TEST(DirectTarget, IsOnlyThereWhereAPixelIsAPixel) {
    QImage grey(40, 30, QImage::Format_Grayscale8), wide(40, 30, QImage::Format_RGB32);
    QPixmap pixmap(40, 30);
    struct Case {
        const char* what;
        QPaintDevice& device;
        std::function<void(QPainter&)> prepare;
        bool isThere;
    };
    const Case cases[] = {
        {"a shift", wide, [](QPainter& p) { p.translate(3, -4); }, true},
        {"greys", grey, [](QPainter&) {}, false},
        {"a pixmap", pixmap, [](QPainter&) {}, true},
        {"a clip", wide, [](QPainter& p) { p.setClipRect(0, 0, 5, 5); }, false},
        {"enlarged", wide, [](QPainter& p) { p.scale(2, 2); }, false},
        {"mirrored", wide, [](QPainter& p) { p.scale(-1, 1); }, false},
        {"turned", wide, [](QPainter& p) { p.rotate(90); }, false},
        {"translucent", wide, [](QPainter& p) { p.setOpacity(0.5); }, false},
    };
    for (const auto& c : cases) {
        QPainter painter(&c.device);
        c.prepare(painter);
        EXPECT_EQ(DirectTarget::of(painter, 1).has_value(), c.isThere) << c.what;
    }
    QPainter painter(&wide);
    EXPECT_FALSE(DirectTarget::of(painter, 1.5)) << "another scaling of the screen than counted with";
}

TEST(TextPieces, LookLikeTheLineDrawnWhole) {
    QFont font;
    TextPieces pieces;
    for (const int pixels : {10, 12, 13}) {
        for (const double ratio : {1.0, 1.5, 2.0}) {
            font.setPixelSize(pixels);
            pieces.use(font, ratio);
            for (const char* text : {"Frame 17 / 120", "C 1811  W 2904", "Zoom 98 %", "Frame 9 / 9"}) {
                const auto line = pieces.split(text);
                if (line.pieces.isEmpty()) continue;  // where its glyphs lie between pixels
                for (const TextInk ink : {TextInk::OutlinedLight, TextInk::PlainDark}) {
                    const auto drawn = [&](auto draw) {
                        QImage image((QSizeF(180, 24) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
                        image.setDevicePixelRatio(ratio);
                        image.fill(Qt::transparent);
                        QPainter painter(&image);
                        painter.setFont(font);
                        draw(painter);
                        return image;
                    };
                    const QImage whole = drawn([&](QPainter& painter) {
                        drawInked(painter, {2, 16}, text, ink);
                    });
                    const QImage pieced = drawn([&](QPainter& painter) {
                        pieces.draw(painter, {2, 16}, line, ink);
                    });
                    for (qsizetype i = 0; i < whole.sizeInBytes(); ++i) {
                        ASSERT_NEAR(whole.constBits()[i], pieced.constBits()[i], 8)
                            << text << " of " << pixels << " at " << ratio;
                    }
                }
            }
        }
    }
    EXPECT_TRUE(pieces.split("x2").pieces.isEmpty()) << "a letter beside a digit";
    EXPECT_TRUE(pieces.split("Jos\u00e9 1").pieces.isEmpty()) << "letters that may join";
}

class Painting : public test::ViewFixture {};

TEST_F(Painting, KeepsToThePartThatIsAskedFor) {
    load(greyRun(100, 90, 2));
    view.putBackgroundFill(true);
    const QRegion parts[] = {QRect(0, 0, 140, 120), QRect(30, 40, 17, 9),
                             QRect(0, 0, 40, 120),  QRect(0, 0, 9, 9),
                             QRect(139, 119, 1, 1), QRegion(QRect(10, 10, 60, 60)) - QRect(30, 30, 20, 20)};
    for (const qint32 percent : {100, 170}) {
        view.putZoomPercent(percent);
        for (const QRegion& part : parts) {
            view.putCurrentFrame(3 - view.CurrentFrame());
            QImage image(view.size(), QImage::Format_RGB32);
            image.fill(untouched);
            view.render(&image, part.boundingRect().topLeft(), part);
            const QImage whole = seen();
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    ASSERT_EQ(image.pixel(x, y), part.contains(QPoint(x, y)) ? whole.pixel(x, y) : untouched)
                        << x << "," << y << " of " << part.boundingRect().width() << " at " << percent;
                }
            }
        }
    }
}

}  // namespace
}  // namespace cinedisc
