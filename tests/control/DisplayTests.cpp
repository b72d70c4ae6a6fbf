#include "control/CornerText.h"
#include "tests/control/ViewFixture.h"

#include <QPlainTextEdit>
#include <QSignalSpy>

#include <algorithm>
#include <random>

namespace cinedisc {
namespace {

using test::colourRun;
using test::greyRun;
using test::wideRun;

class Display : public test::ViewFixture {};

TEST_F(Display, ShowsTheStoredGreysAtAHundredPercent) {
    load(greyRun(140, 120, 2));
    const QImage first = seen();
    for (int y = 0; y < 120; ++y) {
        for (int x = 0; x < 140; ++x)
            ASSERT_EQ(qRed(first.pixel(x, y)), (x * 3 + y * 5) & 255) << x << "," << y;
    }
    view.putCurrentFrame(2);
    EXPECT_EQ(greyAt(10, 10), 80 + 17);
    view.putPolarity(-3);
    EXPECT_EQ(greyAt(10, 10), 255 - 97);
    view.putPolarity(0);
    EXPECT_EQ(greyAt(10, 10), 97);
}

TEST_F(Display, FitsAndZooms) {
    load(greyRun(20, 20, 1, [](int, int, int) { return 200; }));
    const auto width = [&] {
        const QImage image = seen();
        int bright = 0;
        for (int x = 0; x < image.width(); ++x) bright += qRed(image.pixel(x, 60)) == 200;
        return bright;
    };
    EXPECT_EQ(width(), 20);
    view.putZoomPercent(200);
    EXPECT_EQ(width(), 40);
    view.putBestFit(true);
    EXPECT_EQ(width(), 120);
    view.putZoomPercent(50);
    EXPECT_EQ(width(), 120);
    view.putBestFit(false);
    EXPECT_EQ(width(), 10);
}

TEST_F(Display, TakesTheRangeOfTheFirstFrameOnAllFramesWithoutPadding) {
    const auto file = wideRun(4, 4, 16, {});
    file->frames = file->announced = 3;
    file->grey.padding = {{0, 10}};
    file->picture = test::pictureOf<std::uint16_t>(
        4, 4, 1, [](int x, int y, int f, int) { return x == y ? 5 : 100 + (x == 3) * 200 + f * 1000; });
    load(file);
    view.putCurrentFrame(3);
    EXPECT_EQ(view.WindowCenter(), 200.5);
    EXPECT_EQ(view.WindowWidth(), 201);
}

TEST_F(Display, FollowsWindowsOfSingleFramesUntilOneIsPut) {
    const auto file = greyRun(8, 8, 3);
    file->greyOfFrame = [](int frame) {
        dicom::GreyTransform grey;
        grey.windows = {{10.0 * (frame + 1), 20, dicom::Window::Function::Linear}};
        return grey;
    };
    load(file);
    EXPECT_EQ(view.WindowCenter(), 10);
    view.putCurrentFrame(3);
    EXPECT_EQ(view.WindowCenter(), 30);
    view.putWindowCenter(99);
    view.putCurrentFrame(2);
    EXPECT_EQ(view.WindowCenter(), 99);
    EXPECT_EQ(view.WindowWidth(), 20);
}

TEST_F(Display, LeavesColourToItself) {
    load(colourRun(140, 120, [](int, int) { return qRgb(10, 20, 200); }));
    EXPECT_EQ(view.WindowCenter(), 127.5);
    EXPECT_EQ(view.WindowWidth(), 255);
    view.putWindowCenter(5);
    view.putWindowWidth(5);
    EXPECT_EQ(view.WindowCenter(), 127.5);
    drag({20, 20}, {90, 70});
    EXPECT_EQ(seen().pixel(70, 60), qRgb(10, 20, 200));
    view.putPolarity(-1);
    EXPECT_EQ(seen().pixel(70, 60), qRgb(245, 235, 55));
}

TEST_F(Display, SaysInWordsWhatCannotBeShownAndForThatFrameAlone) {
    const auto file = greyRun(140, 120, 3, [](int, int, int) { return 90; });
    file->broken = {1};
    load(file);
    const QImage picture = seen();
    EXPECT_EQ(view.accessibleDescription(), "");
    view.putCurrentFrame(2);
    EXPECT_TRUE(view.accessibleDescription().contains("Frame 2")) << qPrintable(view.accessibleDescription());
    EXPECT_TRUE(view.accessibleDescription().contains("damaged"));
    EXPECT_NE(seen(), picture);
    view.putCurrentFrame(3);
    EXPECT_EQ(view.accessibleDescription(), "");
    EXPECT_EQ(seen(), picture);

    const QImage empty = [&] {
        view.putFileName("");
        return seen();
    }();
    view.putFileName("/nowhere");
    EXPECT_TRUE(view.accessibleDescription().contains("there is no such file", Qt::CaseInsensitive));
    EXPECT_NE(seen(), empty);
    view.putFileName("");
    EXPECT_EQ(view.accessibleDescription(), "");
}

TEST_F(Display, DrawsOnlyWhatIsVisibleOfExtremePictures) {
    struct Case {
        int columns, rows;
        qint32 percent;
    };
    const Case cases[] = {{1, 1, 100},   {1, 1, 2000000000}, {65535, 1, 100},
                          {1, 65535, 7}, {65535, 3, 800000}, {300, 200, -4}};
    for (const auto& c : cases) {
        load(greyRun(c.columns, c.rows, 1, [](int, int, int) { return 77; }));
        view.putBestFit(false);
        view.putZoomPercent(c.percent);
        view.resize(140, 120);
        EXPECT_EQ(greyAt(69, 59), 77) << c.columns << "x" << c.rows << " at " << c.percent;
        view.putBestFit(true);
        for (const QSize size : {QSize(0, 0), QSize(1, 1), QSize(1, 300), QSize(140, 120)}) {
            view.resize(size);
            seen();
        }
        EXPECT_EQ(greyAt(70, 60), 77);
    }
}

TEST_F(Display, ShowsTheHeaderAsPlainTextInPlaceOfThePicture) {
    load(greyRun(140, 120, 1));
    EXPECT_EQ(view.findChild<QPlainTextEdit*>(), nullptr) << "made when it is wanted";
    view.putShowHeader(true);
    auto* page = view.findChild<QPlainTextEdit*>();
    ASSERT_TRUE(page && page->isVisible());
    EXPECT_TRUE(page->isReadOnly());
    EXPECT_EQ(page->geometry(), view.rect());
    view.resize(200, 150);
    EXPECT_EQ(page->geometry(), view.rect());
    view.putFileName("/nowhere");
    EXPECT_FALSE(page->isVisible()) << "the notice shows";
    view.putFileName("/run");
    EXPECT_TRUE(page->isVisible());
    view.putShowHeader(false);
    EXPECT_FALSE(page->isVisible());
}

TEST_F(Display, ShowsOnTheScreenWhateverIsPutInAnyOrder) {
    fake.files["/a"] = greyRun(64, 48, 5);
    fake.files["/b"] = wideRun(33, 21, 12, [](int x, int y) { return x * y; });
    const auto broken = greyRun(16, 16, 4);
    broken->broken = {0, 2};
    fake.files["/c"] = broken;
    std::mt19937 random(17);
    const auto below = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    const auto number = [&] { return below(4000) - 2000; };
    const auto point = [&] { return QPoint(below(300) - 150, below(300) - 150); };
    const QString paths[] = {"", "/a", "/b", "/c", "/nowhere"};
    const std::function<void()> puts[] = {
        [&] { view.putFileName(paths[below(5)]); },
        [&] { view.putCurrentFrame(number() % 7); },
        [&] { view.putWindowCenter(number()); },
        [&] { view.putWindowWidth(number()); },
        [&] { view.putPolarity(number()); },
        [&] { view.putBestFit(below(2)); },
        [&] { view.putZoomPercent(number()); },
        [&] { view.putSmooth(below(2)); },
        [&] { view.putMouseMode(below(7)); },
        [&] { view.putShowHeader(below(4) == 0); },
        [&] { view.putThumbIndex(below(3) - 1); },
        [&] { view.resize(1 + below(200), 1 + below(200)); },
        [&] { drag(point(), point()); },
        [&] { view.putBackgroundFill(below(2)); },
        [&] { view.putBackgroundColor(below(2)); },
    };
    for (int step = 0; step < 1500; ++step) {
        const int put = below(std::size(puts));
        puts[put]();
        ASSERT_TRUE(view.CurrentFrame() == 1 || view.CurrentFrame() <= view.FrameCount());
        ASSERT_TRUE(QTest::qWaitFor([&] { return onScreen() == seen(); })) << "after " << put;
    }
}

class Preview : public test::ViewFixture {
  protected:
    Preview() : ViewFixture(ViewRole::Preview, {200, 200}) {}
};

TEST_F(Preview, IsClickedWithTheLeftButtonAndTheKeyboardWhateverItShows) {
    QSignalSpy clicks(&view, &ezDICOMX::clicked);
    for (const char* path : {"", "/run", "/nowhere"}) {
        if (QString(path) == "/run") load(greyRun(20, 20, 1));
        view.putFileName(path);
        clicks.clear();
        QTest::mouseClick(&view, Qt::LeftButton, {}, {100, 100});
        EXPECT_EQ(clicks.count(), 1) << path;
        QTest::mouseClick(&view, Qt::RightButton, {}, {100, 100});
        QTest::mouseClick(&view, Qt::MiddleButton, {}, {100, 100});
        drag({100, 100}, {160, 160});
        drag({100, 100}, {-40, 100});
        EXPECT_EQ(clicks.count(), 1) << path;
        QTest::keyClick(&view, Qt::Key_Return);
        EXPECT_EQ(clicks.count(), 2) << path;
    }
}

// Previews of the same file share what was drawn, as long as they look the same.
TEST_F(Preview, ShowsWhatItSaysThoughAnotherHasDrawnTheFileBefore) {
    const auto run = greyRun(90, 70, 3);
    load(run);
    view.clearFocus();
    ezDICOMX other(ViewRole::Preview, nullptr, fake.library);
    const auto seenIn = [&](ezDICOMX& preview) {
        return preview.grab().toImage().convertToFormat(QImage::Format_RGB32);
    };
    other.resize(view.size());
    other.putFileName("/run");
    EXPECT_EQ(seenIn(other), seenIn(view));
    for (const auto& change : std::initializer_list<std::function<void(ezDICOMX&)>>{
             [](auto& preview) { preview.putPolarity(-1); },
             [](auto& preview) { preview.putWindowWidth(80); },
             [](auto& preview) { preview.putCurrentFrame(3); },
             [](auto& preview) { preview.putBestFit(true); },
             [](auto& preview) { preview.putSmooth(!preview.Smooth()); }}) {
        const QImage before = seenIn(view);
        change(other);
        EXPECT_NE(seenIn(other), before);
        change(view);
        EXPECT_EQ(seenIn(view), seenIn(other));
    }
    EXPECT_EQ(run->decodeCount, 2);
}

TEST_F(Preview, CarriesNoWordsAndNoTools) {
    const auto file = greyRun(200, 200, 2, [](int, int, int) { return 50; });
    file->texts[{0x0010, 0x0010}] = "DOE^JOHN";
    load(file);
    view.clearFocus();
    view.putBestFit(true);
    view.putMouseMode(ViewerControl::MouseLabel);
    drag({50, 50}, {100, 100});
    EXPECT_EQ(view.findChild<QWidget*>("labelEditor"), nullptr);
    const QImage image = seen();
    for (int y = 2; y < 198; ++y) {
        for (int x = 2; x < 198; ++x) ASSERT_EQ(image.pixel(x, y), qRgb(50, 50, 50)) << x << "," << y;
    }
    view.putThumbStyle(2);
    EXPECT_NE(seen(), image);
    EXPECT_EQ(greyAt(100, 100), 50);
    view.putThumbStyle(0);
    EXPECT_EQ(seen(), image);
}

class CornerWords : public test::ViewFixture {
  protected:
    CornerWords() : ViewFixture(ViewRole::Main, {600, 300}) {}
    /// Darkest and lightest of a part of the view, where it is not of one colour.
    std::pair<int, int> greysIn(const QRect& part, QRgb ground) {
        const QImage image = seen().copy(part);
        std::pair<int, int> greys{255, 0};
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const int grey = qGray(image.pixel(x, y));
                if (image.pixel(x, y) != ground)
                    greys = {std::min(greys.first, grey), std::max(greys.second, grey)};
            }
        }
        return greys;
    }
    bool anythingIn(const QRect& part) { return greysIn(part, qRgb(0, 0, 0)).second > 0; }
};

TEST_F(CornerWords, StandInTheMarginsAndChangeWithTheFile) {
    view.putBackgroundFill(true);
    view.putBestFit(true);
    const auto file = greyRun(300, 300, 2, [](int, int, int) { return 0; });
    file->texts[{0x0010, 0x0010}] = "A very long name that does not fit into the margin^of the picture";
    load(file);
    EXPECT_TRUE(anythingIn({0, 0, 150, 60})) << "patient";
    EXPECT_TRUE(anythingIn({0, 240, 150, 60})) << "frame";
    EXPECT_TRUE(anythingIn({450, 240, 150, 60})) << "window and zoom";
    EXPECT_FALSE(anythingIn({150, 0, 300, 300})) << "the picture is free";

    const QImage doe = seen();
    const auto other = greyRun(300, 300, 2, [](int, int, int) { return 0; });
    other->texts[{0x0010, 0x0010}] = "ROE^JANE";
    load(other, "/other");
    EXPECT_NE(seen(), doe);
}

TEST_F(CornerWords, CutNothingInTheNarrowestView) {
    view.resize(CornerText::leastWidth(), 500);
    view.putBestFit(true);
    QImage last;
    for (const char* end : {"i", "l", "W"}) {
        const auto file = greyRun(300, 300, 1);
        file->texts[{0x0020, 0x0011}] = "123456789012";
        // The longest that a series description may be.
        file->texts[{0x0008, 0x103E}] =
            std::string("Left coronary artery, cranial and caudal views, after dilatation") + end;
        load(file, QString("/") + end);
        EXPECT_NE(seen(), last) << "the end of the line is seen";
        last = seen();
    }
}

TEST_F(CornerWords, SayThatThePictureIsInverted) {
    load(greyRun(30, 30, 1, [](int, int, int) { return 0; }));
    const QRect corner(450, 250, 150, 16);
    const QImage before = seen().copy(corner);
    view.putPolarity(-1);
    EXPECT_NE(seen().copy(corner), before);
    view.putPolarity(1);
    EXPECT_EQ(seen().copy(corner), before);
}

TEST_F(CornerWords, AreDarkOnlyOnAWhiteMarginBesideThePicture) {
    constexpr QRgb white = qRgb(255, 255, 255), black = qRgb(0, 0, 0), picture = qRgb(90, 90, 90);
    const auto file = greyRun(300, 300, 1, [](int, int, int) { return 90; });
    file->texts[{0x0010, 0x0010}] = "DOE^JANE";
    load(file);
    view.putBackgroundFill(true);
    view.putBackgroundColor(0);
    view.putBestFit(true);
    const QRect margin(0, 0, 150, 60), onPicture(0, 0, 300, 60);
    EXPECT_GT(greysIn(margin, white).first, 25) << "no black rim";
    EXPECT_LT(greysIn(margin, white).first, 80);
    view.putBackgroundColor(1);
    EXPECT_EQ(greysIn(margin, black).second, 255);
    view.putBackgroundColor(0);
    view.putBestFit(false);
    view.putZoomPercent(200);
    EXPECT_EQ(greysIn(onPicture, picture), std::pair(0, 255)) << "light over the picture, with its rim";
}

TEST_F(CornerWords, AreGoneWithTheFileAndSoIsTheFill) {
    const int own = greyAt(300, 150);
    EXPECT_GT(own, 10);
    EXPECT_LT(own, 90);
    load(greyRun(30, 30, 1, [](int, int, int) { return 100; }));
    view.putBackgroundColor(0);
    EXPECT_EQ(greyAt(200, 100), own) << "not filled";
    view.putBackgroundFill(true);
    EXPECT_EQ(greyAt(200, 100), 255);
    view.putBackgroundColor(1);
    EXPECT_EQ(greyAt(200, 100), 0);
    EXPECT_EQ(greyAt(300, 150), 100);
    view.putFileName("/nowhere");
    EXPECT_EQ(greyAt(200, 280), 0) << "around a notice";
    view.putFileName("");
    const QImage empty = seen();
    for (int y = 0; y < empty.height(); ++y)
        for (int x = 0; x < empty.width(); ++x) ASSERT_EQ(qRed(empty.pixel(x, y)), own);
}

TEST(Probe, OpensFilesWithoutDecodingThem) {
    test::FakeLibrary fake;
    const auto file = greyRun(20, 20, 7);
    fake.files["/run"] = file;
    ezDICOMX probe(ViewRole::Probe, nullptr, fake.library);
    probe.putFileName("/run");
    probe.putCurrentFrame(3);
    EXPECT_EQ(probe.FrameCount(), 7);
    EXPECT_EQ(file->decodeCount, 0);
    ezDICOMX main(ViewRole::Main, nullptr, fake.library);
    main.putFileName("/run");
    EXPECT_EQ(fake.opened, 1);
}

}  // namespace
}  // namespace cinedisc
