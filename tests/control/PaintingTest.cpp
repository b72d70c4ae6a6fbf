#include "control/picture/DirectTarget.h"
#include "control/picture/ViewState.h"
#include "tests/control/ViewFixture.h"

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
    using Prepare = std::function<void(QPainter&)>;
    const std::pair<Prepare, bool> cases[] = {
        {[](QPainter& painter) { painter.translate(3, -4); }, true},
        {[](QPainter& painter) { painter.setClipRect(0, 0, 5, 5); }, false},
        {[](QPainter& painter) { painter.scale(2, 2); }, false},
        {[](QPainter& painter) { painter.scale(-1, 1); }, false},
        {[](QPainter& painter) { painter.rotate(90); }, false},
        {[](QPainter& painter) { painter.setOpacity(0.5); }, false},
    };
    for (const auto format : {QImage::Format_RGB32, QImage::Format_Grayscale8}) {
        for (const auto& [prepare, isThere] : cases) {
            QImage image(40, 30, format);
            QPainter painter(&image);
            prepare(painter);
            const bool expected = isThere && format == QImage::Format_RGB32;
            EXPECT_EQ(DirectTarget::of(painter, 1).has_value(), expected);
            EXPECT_FALSE(DirectTarget::of(painter, 1.5)) << "another scaling of the screen";
        }
    }
}

class Painting : public test::ViewFixture {};

TEST_F(Painting, KeepsToThePartThatIsAskedFor) {
    load(greyRun(100, 90, 2));
    view.putBackgroundFill(true);
    const QRegion parts[] = {QRect(0, 0, 140, 120), QRect(30, 40, 17, 9), QRect(0, 0, 9, 9),
                             QRegion(QRect(10, 10, 60, 60)) - QRect(30, 30, 20, 20)};
    for (const qint32 percent : {100, 170}) {
        view.putZoomPercent(percent);
        for (const QRegion& part : parts) {
            view.putCurrentFrame(3 - view.CurrentFrame());
            QImage image(view.size(), QImage::Format_RGB32);
            image.fill(untouched);
            view.render(&image, part.boundingRect().topLeft(), part);
            QImage expected = seen();
            QPainter painter(&expected);
            painter.setClipRegion(QRegion(view.rect()) - part);
            painter.fillRect(view.rect(), QColor(untouched));
            EXPECT_EQ(image, expected) << part.boundingRect().width() << " wide at " << percent;
        }
    }
}

}  // namespace
}  // namespace cinedisc
