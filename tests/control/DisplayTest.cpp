#include "control/CornerText.h"
#include "control/picture/TextPieces.h"
#include "tests/control/ViewFixture.h"

#include <QPlainTextEdit>
#include <QSignalSpy>

#include <limits>
#include <random>

namespace cinedisc::test {
namespace {

class Display : public ViewFixture {};

TEST_F(Display, DrawsOnlyWhatIsVisibleOfExtremePictures) {
    for (const auto& [columns, rows, percent] :
         {std::tuple{1, 1, 2000000000}, {65535, 1, 100}, {1, 65535, 7}, {65535, 3, 800000}, {300, 200, -4}}) {
        load(greyRun(columns, rows, 1, [](int, int, int) { return 77; }));
        run(QString("BestFit 0; ZoomPercent %1").arg(percent));
        EXPECT_EQ(greyAt(69, 59), 77) << columns << "x" << rows << " at " << percent;
        view.putBestFit(true);
        for (const QSize size : {QSize(0, 0), QSize(1, 300), QSize(140, 120)}) {
            view.resize(size);
            seen();
        }
        EXPECT_EQ(greyAt(70, 60), 77);
    }
}

// Whatever is put while threads read ahead: the screen shows what the view says of itself, and what a new
// view would show that reads for itself.
TEST_F(Display, ShowsOnTheScreenWhateverIsPutInAnyOrder) {
    fake.library.lookAhead(std::chrono::minutes(1));
    constexpr int frames[] = {5, 4, 40};
    const auto stored = [](int file, int frame) { return (80 * file + 3 * frame) % 251; };
    for (const int f : {0, 1, 2}) {
        const auto file = greyRun(48, 48, frames[f], [=](int, int, int frame) { return stored(f, frame); });
        if (f == 1) file->broken = {0, 2};
        if (f == 0)
            file->greyOfFrame = [](int frame) {
                dicom::GreyTransform grey;
                grey.windows = {{40.0 + 20 * frame, 60.0, dicom::Window::Function::Linear}};
                grey.rescale = {1.0, 10.0 * (frame / 2)};
                return grey;
            };
        fake.files["/" + std::to_string(f)] = file;
    }
    // Decoded slowly, every other frame without a window of its own, its pixels not square, partly hidden.
    const auto value = [](int x, int y, int f) { return 500 * f + 20 * x + 7 * y; };
    const auto wide = wideRun(70, 50, 12, value, 4);
    wide->coarse =
        pictureOf<std::uint16_t>(18, 13, 1, [=](int x, int y, int f, int) { return value(x * 4, y * 4, f); });
    wide->greyOfFrame = [](int frame) {
        dicom::GreyTransform grey;
        if (frame % 2) grey.windows = {{900, 700, dicom::Window::Function::Linear}};
        return grey;
    };
    wide->aspect = 1.5;
    wide->shutterShapes.rectangle = dicom::Shutter::Rectangle{9, 60, 5, 40};
    fake.files["/3"] = wide;
    fake.files["/4"] = colourRun(40, 60, [](int x, int y) { return qRgb(x * 6, y * 4, x + y); });
    FakeLibrary unread;
    unread.files = fake.files;
    view.setNeighbour([](const QString& path, PlayDirection towards) {
        return "/" + QString::number((path.back().digitValue() + (towards == PlayDirection::Forward)) % 6);
    });
    std::mt19937 random(17);
    const auto below = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    const QString paths[] = {"", "/0", "/1", "/2", "/2", "/3", "/3", "/4", "/nowhere"};
    const struct {
        const char* property;
        int from, to;
    } puts[] = {{"BestFit", 0, 2},           {"ZoomPercent", -20, 680},  {"Smooth", 0, 2},
                {"MouseMode", 0, 5},         {"ShowHeader", 0, 2},       {"BackgroundFill", 0, 2},
                {"BackgroundColor", 0, 2},   {"ThumbStyle", 1, 3},       {"CurrentFrame", -5, 45},
                {"WindowCenter", -100, 300}, {"WindowWidth", -100, 300}, {"Polarity", -3, 4}};
    bool isMoved = false, hasOwnWindow = true;
    for (int step = 0; step < 2000; ++step) {
        const int what = below(20);
        SCOPED_TRACE(testing::Message() << "step " << step << ", put " << what);
        if (what < 12) {
            const int number = puts[what].from + below(puts[what].to - puts[what].from);
            view.setProperty(puts[what].property, number);
            isMoved = isMoved && (what > 0 || !number);
            hasOwnWindow = hasOwnWindow && what != 9 && what != 10;
        } else if (what < 14 || step == 0) {
            view.putFileName(paths[below(9)]);
            view.putBestFit(true);
            isMoved = false, hasOwnWindow = true;
        } else if (what < 15) {
            view.resize(1 + below(159), 1 + below(159));
        } else if (what < 16) {
            for (const auto type :
                 {QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::MouseButtonRelease}) {
                const QPointF at(below(300) - 150, below(300) - 150);
                QMouseEvent event(type, at, view.mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, {});
                QCoreApplication::sendEvent(&view, &event);
            }
            isMoved = isMoved || view.MouseMode() > 1;
            hasOwnWindow = hasOwnWindow && view.MouseMode() != 1;
        } else {
            view.putCurrentFrame(what < 17 ? view.CurrentFrame() - 1 : view.CurrentFrame() % frames[0] + 1);
        }
        ASSERT_TRUE(view.CurrentFrame() == 1 || view.CurrentFrame() <= view.FrameCount());
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return !view.isReading() && !view.isCoarse() && onScreen() == seen(); }));
        const QString path = view.FileName();
        const int file = path.isEmpty() ? -1 : path.back().digitValue(), frame = view.CurrentFrame() - 1;
        const bool isBroken = file == 1 && (frame == 0 || frame == 2);
        const QString words[] = {"", "This file cannot be shown. The file is missing.",
                                 QString("Frame %1 cannot be shown. This frame is damaged.").arg(frame + 1)};
        const auto* page = view.findChild<QPlainTextEdit*>();
        const bool hasPage = page && page->isVisible();
        ASSERT_EQ(hasPage, view.ShowHeader() && file >= 0);
        if (hasPage) continue;
        ASSERT_EQ(view.accessibleDescription(), words[path.isEmpty() ? 0 : file < 0 ? 1 : 2 * isBroken]);
        const QImage shown = seen();
        if (step % 3 == 0 && !isMoved) {
            ezDICOMX fresh(ViewRole::Main, nullptr, unread.library);
            fresh.resize(view.size());
            fresh.putFileName(path);
            for (const auto& put : puts)
                if (!hasOwnWindow || !QString(put.property).startsWith("Window"))
                    fresh.setProperty(put.property, view.property(put.property));
            ASSERT_EQ(fresh.grab().toImage().convertToFormat(QImage::Format_RGB32), shown);
            // A part of it, drawn anew.
            const QRect part(below(90), below(90), 1 + below(60), 1 + below(60));
            QImage expected(view.size(), QImage::Format_RGB32), drawn = expected;
            expected.fill(Qt::magenta);
            drawn.fill(Qt::magenta);
            QPainter(&expected).drawImage(part.topLeft(), shown, part);
            view.putPolarity(-view.Polarity());
            seen();
            view.putPolarity(-view.Polarity());
            view.render(&drawn, part.topLeft(), part);
            ASSERT_EQ(drawn, expected);
        }
        if (view.ThumbStyle() == 2 || file > 2) continue;
        if (file < 0 || isBroken) {
            EXPECT_EQ(qRed(shown.pixel(0, 0)), 38) << "words stand on the view's own ground";
            continue;
        }
        if (isMoved) continue;
        const int sample = stored(file, frame) + (file == 0 ? 10 * (frame / 2) : 0);
        const double width = std::max(view.WindowWidth() - 1, 1e-9);
        const double level = (sample - view.WindowCenter() + 0.5) / width + 0.5;
        const int grey = static_cast<int>(std::clamp(level, 0.0, 1.0) * 255 + 0.5);
        const int expected = view.Polarity() < 0 ? 255 - grey : grey;
        ASSERT_EQ(qRed(shown.pixel(view.width() / 2, view.height() / 2)), expected);
    }
}

class Preview : public ViewFixture {
  protected:
    Preview() : ViewFixture(ViewRole::Preview, {200, 200}) {}
};

TEST_F(Preview, IsClickedWithTheLeftButtonAndTheKeyboardWhateverItShows) {
    QSignalSpy clicks(&view, &ezDICOMX::clicked);
    EXPECT_EQ(view.cursor().shape(), Qt::PointingHandCursor);
    fake.files["/run"] = greyRun(20, 20, 1);
    for (const QString path : {"", "/run", "/nowhere"}) {
        clicks.clear();
        run("FileName " + path + "; click 100 100; click 100 100 right; drag 100 100 160 160; drag 1 9 -1 9");
        EXPECT_EQ(clicks.count(), 1) << qPrintable(path);
        run("key Return; key Space; key A");
        EXPECT_EQ(clicks.count(), 2) << qPrintable(path);
    }
}

// Previews of the same file share what was drawn, as long as they look the same.
TEST_F(Preview, ShowsWhatItSaysThoughAnotherHasDrawnTheFileBefore) {
    load(greyRun(90, 70, 3));
    view.clearFocus();
    ezDICOMX other(ViewRole::Preview, nullptr, fake.library);
    const auto seenInOther = [&] { return other.grab().toImage().convertToFormat(QImage::Format_RGB32); };
    other.resize(view.size());
    other.putFileName("/run");
    const std::pair<const char*, int> changes[] = {{"ThumbStyle", 2},   {"Polarity", -1}, {"WindowWidth", 80},
                                                   {"CurrentFrame", 3}, {"BestFit", 1},   {"Smooth", 0}};
    for (const auto& [property, value] : changes) {
        const QImage before = seen();
        EXPECT_EQ(seenInOther(), before);
        other.setProperty(property, value);
        EXPECT_NE(seenInOther(), before) << property;
        view.setProperty(property, value);
    }
    EXPECT_EQ(seenInOther(), seen());
}

TEST_F(Preview, CarriesNoWordsAndNoToolsButABorder) {
    const auto file = greyRun(100, 200, 2, [](int, int, int) { return 50; });
    put(*file, {0x0010, 0x0010}, "DOE^JOHN");
    load(file);
    view.clearFocus();
    for (const char* style : {"2", "0"}) {
        run(QString("BestFit 1; MouseMode 5; click 50 50; ThumbStyle ") + style);
        EXPECT_EQ(editor(), nullptr);
        QImage flat = seen();
        flat.fill(qRgb(38, 39, 42));
        QPainter(&flat).fillRect(51, 2, 98, 196, qRgb(50, 50, 50));
        EXPECT_EQ(seen().copy(2, 2, 196, 196), flat.copy(2, 2, 196, 196));
    }
    run("ThumbStyle 2");
    EXPECT_TRUE(seen().pixel(0, 100) == qRgb(8, 8, 9) && seen().pixel(1, 100) == qRgb(66, 69, 75));
}

TEST(TextPieces, LookAsIfTheLineWereDrawnWhole) {
    QFont font;
    font.setPixelSize(13);
    for (const double ratio : {1.0, 1.5, 2.0}) {
        TextPieces pieces;
        pieces.use(font, ratio);
        const bool isUsable = !pieces.split("1 2").pieces.isEmpty();
        EXPECT_FALSE(isUsable && ratio == 1.5);
        for (const char* whole : {"C 127.5", "W255", "5x", "Größe 1"})
            EXPECT_TRUE(pieces.split(whole).pieces.isEmpty()) << whole;
        if (!isUsable) continue;
        for (const QString line : {"Run 12  15 frames/s", "Frame 17 / 204", "7", "Zoom 100 %", "Inverted"}) {
            const auto split = pieces.split(line);
            EXPECT_FALSE(split.pieces.isEmpty()) << qPrintable(line);
            EXPECT_NEAR(split.advance, QFontMetricsF(font).horizontalAdvance(line), 0.01);
            for (const auto ink : {TextInk::OutlinedLight, TextInk::PlainDark}) {
                QImage images[2];
                for (QImage& image : images) {
                    image = QImage((QSizeF(200, 40) * ratio).toSize(), QImage::Format_RGB32);
                    image.setDevicePixelRatio(ratio);
                    image.fill(qRgb(90, 90, 90));
                    QPainter painter(&image);
                    painter.setFont(font);
                    if (&image == images)
                        drawInked(painter, {20.3, 17}, line, ink);
                    else
                        pieces.draw(painter, {20.3, 17}, split, ink);
                }
                for (int y = 0; y < images[0].height(); ++y)
                    for (int x = 0; x < images[0].width(); ++x)
                        ASSERT_NEAR(qRed(images[0].pixel(x, y)), qRed(images[1].pixel(x, y)), 30)
                            << qPrintable(line) << " at " << x << "," << y;
            }
        }
    }
}

class CornerWords : public ViewFixture {
  protected:
    CornerWords() : ViewFixture(ViewRole::Main, {600, 300}) { run("BackgroundFill 1; BestFit 1"); }
    void loadFlat(int grey, const std::string& patient) {
        const auto file = greyRun(300, 300, 2, [=](int, int, int) { return grey; });
        put(*file, {0x0010, 0x0010}, patient);
        load(file, QString("/%1 ").arg(grey) + patient.c_str());
    }
    /// Darkest and lightest of a part of the view, where it is not of one colour.
    std::pair<int, int> greysIn(const QRect& part, int ground = 0) {
        const QImage image = seen().copy(part);
        std::pair<int, int> greys{255, 0};
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const int grey = qRed(image.pixel(x, y));
                if (grey != ground) greys = {std::min(greys.first, grey), std::max(greys.second, grey)};
            }
        }
        return greys;
    }
};

TEST_F(CornerWords, StandInTheMarginsAndChangeWithWhatIsShown) {
    const QRect patient(0, 0, 150, 60), frame(0, 240, 150, 60), display(450, 240, 150, 60);
    for (const auto& [change, corner] : {std::pair{"CurrentFrame 2", frame},
                                         {"Polarity -1", display},
                                         {"WindowWidth 99", display},
                                         {"BestFit 0; ZoomPercent 99", display},
                                         {"FileName /0 ROE^JANE", patient}}) {
        loadFlat(0, "ROE^JANE");
        loadFlat(0, "A very long name that does not fit into the margin^of the picture");
        run("BestFit 1");
        EXPECT_EQ(greysIn({150, 0, 300, 300}).second, 0) << "the picture is free";
        const QImage before = seen();
        run(change);
        for (const QRect& each : {patient, frame, display})
            EXPECT_EQ(seen().copy(each) != before.copy(each), each == corner) << change;
        QImage black = seen();
        black.fill(Qt::black);
        const QRect left = changed(black.copy(0, 0, 150, 300), seen().copy(0, 0, 150, 300));
        EXPECT_NEAR(left.left(), 8, 4);
        EXPECT_NEAR(left.top(), 8, 5);
        EXPECT_NEAR(left.bottom(), 300 - 8, 5);
        // Each of the rows at the right ends at the edge.
        for (int y = 240; y < 288; y += 8) {
            const QRect row = changed(black.copy(450, y, 150, 14), seen().copy(450, y, 150, 14));
            EXPECT_TRUE(row.isEmpty() || std::abs(row.right() - 142) <= 4) << y;
        }
    }
    view.resize(CornerText::leastWidth(), 500);
    for (const char* end : {"i", "l", "W"}) {
        run("keep last");
        // The longest that a name may be.
        loadFlat(0, std::string("Aabcdefg hijklmno^cranial and caudal views, after dilatation") + end);
        run("unlike last");
    }
}

TEST_F(CornerWords, AreDarkOnlyOnAWhiteMarginBesideThePicture) {
    loadFlat(90, "DOE^JANE");
    run("BackgroundColor 0");
    const QRect margin(0, 0, 150, 60), onPicture(0, 0, 300, 60);
    EXPECT_GT(greysIn(margin, 255).first, 25) << "no black rim";
    EXPECT_LT(greysIn(margin, 255).first, 80);
    run("BackgroundColor 1");
    constexpr int nearlyWhite = 240;  // as thin as some fonts are
    EXPECT_GT(greysIn(margin).second, nearlyWhite);
    run("BackgroundColor 0; BestFit 0; ZoomPercent 200");
    const auto [rim, words] = greysIn(onPicture, 90);
    EXPECT_TRUE(rim == 0 && words > nearlyWhite) << "light over the picture, with its rim";
}

TEST_F(CornerWords, GiveWayToANoticeOnTheViewsOwnGround) {
    run("FileName /nowhere; BackgroundColor 0");
    EXPECT_TRUE(view.accessibleDescription().contains("missing"));
    EXPECT_NEAR(greysIn(view.rect(), 38).second, 205, 4);
}

TEST_F(Display, ShowsAFileFromItsFirstFrameAsItsHeaderSays) {
    const auto grey = greyRun(16, 16, 12);
    grey->grey.windows = {{100, 50, dicom::Window::Function::Linear}};
    fake.files = {{"/run", grey}, {"/still", greyRun(16, 16, 1)}};
    const auto expectShown = [&](const QString& path, int frames) {
        EXPECT_EQ(view.FileName(), path);
        EXPECT_EQ(view.FrameCount(), frames);
        EXPECT_EQ(view.CurrentFrame(), 1);
        EXPECT_GT(view.Polarity(), 0);
        // Frames that there are, and no others.
        for (const int frame : {frames, 0, -1, frames + 1, std::numeric_limits<int>::min()}) {
            view.putCurrentFrame(frame);
            EXPECT_EQ(view.CurrentFrame(), std::max(frames, 1)) << frame;
        }
    };
    expectShown("", 0);
    EXPECT_FALSE(view.CopyToClipboard() || view.CopyHeaderToClipboard());
    for (const auto& [path, frames] :
         {std::pair{"/run", 12}, {"/still", 1}, {"/run", 12}, {"/run", 12}, {"/nowhere", 0}, {"/run", 12}}) {
        ASSERT_NO_THROW(view.putFileName(path));
        expectShown(path, frames);
        if (frames == 12) run("WindowCenter is 100; WindowWidth is 50");
        run("WindowCenter -7.5; WindowWidth 300; WindowWidth 0; WindowWidth -1; WindowWidth 0.5");
        if (frames == 12) run("WindowCenter is -7.5; WindowWidth is 300");
        run("Polarity -1; Polarity is -1; Polarity 5; Polarity is 5; Polarity 0; Polarity is 0");
    }
    run("ThumbIndex 3; FrameCount is 12; ThumbIndex -1; Polarity 1");
    expectShown("", 0);
}

TEST_F(Display, KeepsWhatWasPutOverFiles) {
    run("ZoomPercent is 100; MouseMode is 1; ShowHeader is false");
    fake.files["/run"] = greyRun(16, 16, 12);
    for (const QString member :
         {"ZoomPercent 150 50", "MouseMode 4 3", "BackgroundColor 0 1", "RangeStart 3 -1", "RangeEnd 4 0",
          "RangeModeA 5 1", "RangeModeB 6 2", "ThumbIndex 7 0", "ThumbStyle 2 0", "BestFit true false",
          "Smooth true false", "ShowHeader true false", "BackgroundFill true false", "Option247 true false",
          "Option256 true false", "StartupFlag true false", "Tag D:\\A D:\\B"}) {
        for (const int value : {1, 2}) {
            const QString words[] = {member.section(' ', 0, 0), member.section(' ', value, value)};
            run(words[0] + ' ' + words[1]);
            for (const char* path : {"/run", "/nowhere", ""}) {
                view.putFileName(path);
                run(words[0] + " is " + words[1]);
            }
        }
    }
}

}  // namespace
}  // namespace cinedisc::test
