#include "control/CornerText.h"
#include "control/HeaderFacts.h"
#include "control/Notice.h"
#include "control/picture/PictureLabels.h"
#include "control/picture/TextPieces.h"
#include "control/words/HeaderWords.h"
#include "control/words/ViewWords.h"
#include "dicom/MemoryByteSource.h"
#include "dicom/Tags.h"
#include "tests/control/ViewFixture.h"
#include "tests/support/DicomBuilder.h"

#include <QAccessible>
#include <QAction>
#include <QHelpEvent>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolTip>

#include <random>

namespace cinedisc::test {
namespace {

class Display : public ViewFixture {};

TEST_F(Display, DrawsOnlyWhatIsVisibleOfExtremePictures) {
    for (const auto& [columns, rows, percent] :
         {std::tuple{1, 1, 2000000000}, {65535, 1, 100}, {1, 65535, 7}, {65535, 3, 800000}, {300, 200, -4}}) {
        load(greyRun(columns, rows, 1, [](int, int, int) { return 255; }));
        run(QString("BestFit 0; ZoomPercent %1").arg(percent));
        EXPECT_EQ(greyAt(69, 59), 255) << columns << "x" << rows << " at " << percent;
        view.putBestFit(true);
        for (const QSize size : {QSize(0, 0), QSize(1, 300), QSize(140, 120)}) {
            view.resize(size);
            seen();
        }
        EXPECT_EQ(greyAt(70, 60), 255);
    }
}

// Whatever is put while threads read ahead: the screen shows what the view says of itself, and what a new
// view would show that reads for itself.
TEST_F(Display, ShowsOnTheScreenWhateverIsPutInAnyOrder) {
    fake.library.lookAhead(std::chrono::minutes(1));
    constexpr int frames[] = {5, 4, 40};
    for (const int f : {0, 1, 2}) {
        const auto file =
            greyRun(48, 48, frames[f], [=](int, int, int frame) { return (80 * f + 3 * frame) % 251; });
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
    std::map<int, int> last{{2, 1}, {3, 1}, {6, 1}};
    bool isMoved = false, hasOwnWindow = true;
    for (int step = 0; step < 2000; ++step) {
        const int what = below(20);
        SCOPED_TRACE(testing::Message() << "step " << step << ", put " << what);
        if (what < 12) {
            const int number = puts[what].from + below(puts[what].to - puts[what].from);
            view.setProperty(puts[what].property, last[what] = number);
            isMoved = isMoved && (what > 0 || !number);
            hasOwnWindow = hasOwnWindow && what != 9 && what != 10;
        } else if (what < 14 || step == 0) {
            view.putFileName(paths[below(9)]);
            view.putBestFit(true);
            isMoved = false, hasOwnWindow = true;
        } else if (what < 15) {
            view.resize(9 + below(151), 9 + below(151));
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
        for (int put = 2; put < 8; ++put)  // whatever files come and go
            ASSERT_EQ(view.property(puts[put].property).toInt(), last[put]);
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
            // With a border where the view has none, and none where it has one.
            ezDICOMX fresh(ViewRole::Main, nullptr, unread.library);
            const int rim = view.ThumbStyle() == 2 ? 2 : 0, other = 2 - rim;
            fresh.resize(view.size() + QSize(2, 2) * (other - rim));
            fresh.putFileName(path);
            for (const auto& put : puts)
                if (!hasOwnWindow || !QString(put.property).startsWith("Window"))
                    fresh.setProperty(put.property, view.property(put.property));
            fresh.putThumbStyle(other);
            const QImage inside = fresh.grab(fresh.rect().adjusted(other, other, -other, -other)).toImage();
            ASSERT_EQ(inside.convertToFormat(QImage::Format_RGB32), shown.copy({{rim, rim}, inside.size()}));
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
    for (const bool isReached : {false, true}) {
        isReached ? view.setFocus(Qt::TabFocusReason) : view.clearFocus();
        EXPECT_TRUE(QTest::qWaitFor([&] { return onScreen() == seen(); })) << "who has the keyboard";
    }
}

TEST_F(Preview, CarriesNoWordsAndNoToolsButABorder) {
    const auto file = greyRun(100, 200, 2, [](int, int, int) { return 50; });
    put(*file, dicom::tags::InstanceNumber, "<b>");
    load(file);
    QHelpEvent asked(QEvent::ToolTip, {9, 9}, view.mapToGlobal(QPoint(9, 9)));
    QCoreApplication::sendEvent(&view, &asked);
    EXPECT_EQ(QToolTip::text(), "<p style='white-space:pre'>Run &lt;b&gt;\n2 frames</p>");
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
    const QImage framed = seen();
    for (const auto& [at, grey] :
         {std::pair{0, qRgb(8, 8, 9)}, {1, qRgb(66, 69, 75)}, {199, qRgb(72, 75, 81)}})
        EXPECT_TRUE(framed.pixel(at, 100) == grey && framed.pixel(100, at) == grey) << at;
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
                EXPECT_TRUE(changed(images[0], images[1], 30).isEmpty()) << qPrintable(line);
            }
        }
    }
}

class CornerWords : public ViewFixture {
  protected:
    CornerWords() : ViewFixture(ViewRole::Main, {600, 300}) { run("BackgroundFill 1; BestFit 1"); }
    FakeDicomFile& loadFlat(int grey, const std::string& patient, std::string path = "") {
        const auto file = greyRun(300, 300, 2, [=](int, int, int) { return grey; });
        put(*file, {0x0010, 0x0010}, patient);
        if (path.empty()) path = "/" + patient;
        load(file, path.c_str());
        return *file;
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
    const QRect patient(0, 0, 150, 90), study(450, 0, 150, 60);
    const QRect frame(0, 240, 150, 60), display(450, 240, 150, 60);
    const std::string name = "A NAME THAT DOES NOT FIT^INTO THE MARGIN " + std::string(90, 'W');
    loadFlat(0, name, "/cut").announced = 9;
    loadFlat(0, name, "/program").isProgram = true;
    put(loadFlat(0, name, "/lossy"), dicom::tags::LossyImageCompression, "01");
    put(loadFlat(0, name, "/series"), dicom::tags::SeriesNumber, "7");
    const std::pair<const char*, QRect> changes[] = {
        {"CurrentFrame 2", frame},       {"Polarity -1", display},
        {"WindowWidth 99", display},     {"BestFit 0; ZoomPercent 99", display},
        {"FileName /ROE^JANE", patient}, {"FileName /cut", frame},
        {"FileName /program", frame},    {"FileName /lossy", frame},
        {"FileName /series", study}};
    QImage black = seen();
    black.fill(Qt::black);
    for (const auto& [change, corner] : changes) {
        loadFlat(0, "ROE^JANE");
        loadFlat(0, name);
        run("BestFit 1");
        EXPECT_EQ(greysIn({150, 0, 300, 300}).second, 0) << "the picture is free";
        const QImage before = seen();
        run(change);
        for (const QRect& each : {patient, study, frame, display}) {
            const bool mayBreakElsewhere = each == patient && !view.BestFit();  // within another margin
            EXPECT_TRUE(mayBreakElsewhere || (seen().copy(each) != before.copy(each)) == (each == corner));
        }
        EXPECT_EQ(view.accessibleDescription().isEmpty(), view.FileName() != "/cut");
        const QRect left = changed(black.copy(0, 0, 150, 300), seen().copy(0, 0, 150, 300));
        EXPECT_NEAR(left.left(), 8, 2);
        EXPECT_NEAR(left.top(), 8, 5);
        EXPECT_NEAR(left.bottom(), 300 - 8, 5);
        // Each of the rows at the right ends at the edge.
        for (int y = 240; y < 288; y += 8) {
            const QRect row = changed(black.copy(450, y, 150, 14), seen().copy(450, y, 150, 14));
            EXPECT_TRUE(row.isEmpty() || std::abs(row.right() - 141) <= 1) << y;
        }
    }
    put(loadFlat(0, name, "/wide"), {0x0008, 0x103E}, std::string(60, 'W'));
    EXPECT_EQ(greysIn({150, 0, 300, 300}).second, 0) << "of long words, too";
    run("FileName /series");
    const QImage unwarned = seen();
    EXPECT_NEAR(changed(black.copy(patient), unwarned.copy(patient)).height(), 52, 8) << "in four rows";
    view.putNamedPatientFolder("/elsewhere");
    const int covered = view.findChild<QWidget*>("wrongPatientBar")->height();
    EXPECT_EQ(seen().copy(0, covered, 150, 90), unwarned.copy(patient)) << "below the warning";
    view.putNamedPatientFolder("");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&view)->text(QAccessible::Name),
              "Picture, " + QString(name.c_str()).replace("^", ", ") + ", Series 7, Frame 1 / 2");
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
    const QRect margin(0, 0, 150, 60);
    EXPECT_GT(greysIn(margin, 255).first, 25) << "no black rim";
    EXPECT_LT(greysIn(margin, 255).first, 80);
    run("BackgroundColor 1");
    EXPECT_GT(greysIn(margin).second, 240) << "as thin as some fonts are";
    run("BackgroundColor 0; BestFit 0; ZoomPercent 150; MouseMode 4; drag 300 150 325 150");
    const auto [rim, words] = greysIn({450, 240, 100, 60}, 90);
    EXPECT_TRUE(rim == 0 && words > 240) << "light over the picture, with its rim";
    EXPECT_GT(greysIn(margin, 255).first, 25) << "dark beside it still";
}

TEST_F(CornerWords, GiveWayToANoticeOnTheViewsOwnGround) {
    run("FileName /nowhere; BackgroundColor 0");
    EXPECT_NEAR(greysIn(view.rect(), 38).second, 205, 4);
    QImage empty = seen();
    empty.fill(qRgb(38, 39, 42));
    EXPECT_GT(changed(empty, seen()).height(), 27) << "in large letters";
}

TEST_F(Display, ShowsAFileFromItsFirstFrameAsItsHeaderSays) {
    const auto grey = greyRun(16, 16, 12);
    grey->grey.windows = {{100, 50, dicom::Window::Function::Linear}};
    fake.files = {{"/run", grey}, {"/still", greyRun(16, 16, 1)}, {"/none", greyRun(16, 16, 0)}};
    const auto expectShown = [&](const QString& path, int frames) {
        EXPECT_EQ(view.FileName(), path);
        EXPECT_EQ(view.FrameCount(), frames);
        EXPECT_EQ(view.CurrentFrame(), 1);
        EXPECT_EQ(view.accessibleDescription().isEmpty(), frames > 0 || path.isEmpty());
        EXPECT_GT(view.Polarity(), 0);
        // Frames that there are, and no others.
        for (const int frame : {frames, 0, -1, frames + 1, -2147483647}) {
            view.putCurrentFrame(frame);
            EXPECT_EQ(view.CurrentFrame(), std::max(frames, 1)) << frame;
        }
    };
    run("ZoomPercent is 100; MouseMode is 1; ShowHeader is false");
    expectShown("", 0);
    for (const auto& [path, frames] :
         {std::pair{"/run", 12}, {"/still", 1}, {"/run", 12}, {"/none", 0}, {"/nowhere", 0}, {"/run", 12}}) {
        ASSERT_NO_THROW(view.putFileName(path));
        expectShown(path, frames);
        if (frames == 12) run("WindowCenter is 100; WindowWidth is 50");
        run("WindowCenter -7.5; WindowWidth 300; WindowWidth 0; WindowWidth -1; WindowWidth 0.5");
        if (frames == 12) run("WindowCenter is -7.5; WindowWidth is 300");
        run("Polarity -1; Polarity is -1; Polarity 5; Polarity is 5; Polarity 0; Polarity is 0");
    }
    run("ThumbIndex 3; ThumbIndex is 3; FrameCount is 12; ThumbIndex -1; Polarity 1");
    expectShown("", 0);
}

class MouseTools : public ViewFixture {
  protected:
    MouseTools() {
        const auto file = greyRun(140, 120, 3);
        file->grey.windows = {{100, 80, dicom::Window::Function::Linear}};
        load(file);
    }
};

TEST_F(MouseTools, MoveTheWindowByWhatTheFrameHasNotByWhatItsBitsCouldHold) {
    const std::tuple<int, int, int, double> cases[] = {{8, 255, 255, 6},      {4, 15, 15, 6.25},
                                                       {14, 200, 200, 6},     {16, 200, 60000, 6},
                                                       {16, 4000, 60000, 39}, {16, 60000, 60001, 586}};
    for (const auto& [bits, highest, padding, wider] : cases) {
        SCOPED_TRACE(testing::Message() << bits << " bits up to " << highest);
        const std::array columns{0, highest, padding};
        const auto file = wideRun(140, 120, bits, [=](int x, int y, int) {
            return x < 3 ? columns[static_cast<std::size_t>(x)] : (x + y) % 200;
        });
        using Function = dicom::Window::Function;
        file->grey.windows = {{100, 80, bits == 14 ? Function::LinearExact : Function::Linear}};
        if (padding > highest) file->grey.padding = {{padding, 65535}};
        load(file, QString("/%1").arg(bits + highest));
        const QString window("WindowWidth is %1; WindowCenter is %2");
        run("drag 40 40 60 60;" + window.arg(80 + wider).arg(100 + wider));
        run("FileName " + view.FileName() + "; drag 60 40 60 20;" + window.arg(80).arg(100 - wider));
        run("press 40 40; move 90 75; release 40 40; WindowWidth is 80");
        run("WindowCenter 150; drag 40 40 60 40; WindowCenter is 150; drag 9 9 -4000 9; WindowWidth is 1");
    }
}

TEST_F(MouseTools, RestoreEverythingOnEscapeAndTakeTheLeftButtonOnly) {
    const auto file = greyRun(140, 120, 1);
    file->grey.voiLuts = {{0, 8, {0, 40, 9}}};
    load(file, "/table");
    run("BestFit 1; keep before");
    for (const char* mode : {"1", "2", "3", "4", "5", "77"}) {
        run(QString("MouseMode ") + mode + "; press 40 40 right; move 90 90; release 90 90 right");
        if (*mode != '5') run("press 40 40; move 90 75; key Esc; release 90 75; click 40 40");
        run("ZoomPercent is 100; like before");
    }
    run("MouseMode 1; drag 40 40 80 60; unlike before");
}

TEST_F(MouseTools, ShowWhatADragWouldDo) {
    const std::tuple<int, Qt::CursorShape, Qt::CursorShape> cases[] = {
        {1, Qt::BitmapCursor, Qt::BitmapCursor},
        {3, Qt::BitmapCursor, Qt::BlankCursor},
        {4, Qt::OpenHandCursor, Qt::ClosedHandCursor},
        {5, Qt::IBeamCursor, Qt::IBeamCursor}};
    for (const auto& [mode, before, pressed] : cases) {
        run(QString("MouseMode %1").arg(mode));
        for (const char* end : {"release 60 60", "key Esc; release 60 60"}) {
            EXPECT_EQ(view.cursor().shape(), before) << mode;
            run("press 40 40");
            EXPECT_EQ(view.cursor().shape(), pressed) << mode;
            run(end);
        }
    }
}

TEST_F(MouseTools, ZoomAroundThePointWhereTheDragBegan) {
    run("BestFit 1; MouseMode 2; press 45 99; move 45 40; release 45 99; BestFit is true");
    const int grey = greyAt(45, 100);
    run("drag 45 100 45 40; BestFit is false; ZoomPercent is 141");  // half the way to twice the size
    EXPECT_NEAR(greyAt(45, 100), grey, 12);
    run("drag 45 40 45 100; ZoomPercent is 100; drag 45 40 45 -4000; ZoomPercent is 3200");
    run("drag 45 40 45 4000; ZoomPercent is 5");
}

TEST_F(MouseTools, PanThePictureButDoNotLoseIt) {
    const QImage before = seen();
    run("MouseMode 4; drag 60 60 80 50");
    EXPECT_EQ(seen().copy(20, 0, 100, 100), before.copy(0, 10, 100, 100));
    run("drag 60 60 5000 5000; drag 60 60 5000 5000");
    EXPECT_EQ(seen().copy(71, 61, 60, 50), before.copy(1, 1, 60, 50)) << "half of it stays";
    run("ZoomPercent 200; keep enlarged; ZoomPercent 100; ZoomPercent 200; like enlarged");
}

TEST_F(MouseTools, GoOnFromWhatIsPutMeanwhile) {
    run("BestFit 1; keep fitted; MouseMode 4");
    const QImage fitted = seen();
    for (const QString fit : {"BestFit 1", "FileName /run"}) {
        run("press 60 60; move 80 50; unlike fitted;" + fit);
        EXPECT_TRUE(QTest::qWaitFor([&] { return onScreen() == fitted; }));
        run("move 81 50");
        EXPECT_EQ(seen().copy(1, 0, 139, 120), fitted.copy(0, 0, 139, 120));
        run("release 81 50");
    }
    run("MouseMode 1; press 60 60; move 90 20; WindowWidth 240; move 91 20; release 91 20; WindowWidth is "
        "241");
    run("press 60 60; move 60 30; WindowCenter 10; move 60 29; release 60 29; WindowCenter is 9");
    run("MouseMode 2; press 60 60; move 60 20; ZoomPercent 50; move 60 20; release 60 20; ZoomPercent is 50");
    // Another file has a window of its own.
    run("MouseMode 1; press 4 4; move 6 4; FileName /run; move 9 4; key Esc; release 9 4; WindowWidth is 80");
}

// As the picture is seen at that size; one that is reduced is magnified beyond its own.
TEST_F(MouseTools, MagnifyUnderThePointerWhilePressed) {
    for (const auto& [zoom, magnified] : {std::pair{"100", "250"}, {"20", "150"}}) {
        run(QString("MouseMode 3; ZoomPercent ") + magnified);
        const QImage enlarged = seen();
        run(QString("ZoomPercent %1; keep before").arg(zoom));
        const QImage before = seen();
        run("press 70 60");
        const QImage glass = seen();
        const QRect inside(34, 60, 73, 1), beside(0, 60, 27, 1), corner(34, 24, 5, 5);
        EXPECT_EQ(glass.copy(inside), enlarged.copy(inside)) << zoom;
        EXPECT_EQ(glass.copy(beside), before.copy(beside)) << zoom;
        EXPECT_EQ(glass.copy(corner), before.copy(corner)) << zoom;
        EXPECT_TRUE(qRed(glass.pixel(29, 60)) > 150 &&
                    qRed(glass.pixel(28, 60)) < qRed(before.pixel(28, 60)));
        run("release 70 60; like before");
    }
    run("press 70 60; move 56 60; keep moved");
    EXPECT_TRUE(greyAt(40, 60) == 0 && greyAt(70, 60) > 0) << "moves with the pointer to the picture's edge";
    run("CurrentFrame 2; unlike moved; CurrentFrame 1; like moved");
}

class LabelTool : public MouseTools {
  protected:
    LabelTool() {
        run("MouseMode 5; keep clean");
        clean = seen();
    }
    /// Where a label is: the place in which the picture with it differs from the one without.
    QRect place() { return changed(clean, seen()); }
    QImage clean;
};

TEST_F(LabelTool, PlacesTheTypedTextAtReturnOnThatFrame) {
    QAction ofTheWindow;
    ofTheWindow.setShortcuts({Qt::Key_Escape, Qt::Key_Return});
    view.addAction(&ofTheWindow);
    QSignalSpy taken(&ofTheWindow, &QAction::triggered);
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    run("click 30 50; type LAD; key Esc; like clean; click 30 50; type ; key Return; like clean");
    run("press 30 50; key Esc; release 30 50; like clean; press 30 50; CurrentFrame 2; release 30 50");
    EXPECT_FALSE(editor()->isVisible());
    run("CurrentFrame 1; click 30 50");
    EXPECT_TRUE(editor()->hasFocus());
    run("type LAD; key Return; keep labelled");
    EXPECT_FALSE(editor()->isVisible());
    EXPECT_EQ(taken.count(), 0) << "what is typed belongs to the editor";
    EXPECT_TRUE(QTest::qWaitFor([&] { return onScreen() == seen(); }));
    EXPECT_TRUE(place().contains(35, 50)) << place().x() << "," << place().y();
    run("CurrentFrame 2; keep second; click 30 50; type RCA; key Return; CurrentFrame 1; CurrentFrame 2");
    run("keep both; key Del; like both; CurrentFrame 1; key Del; key Esc; FileName is /run");
    EXPECT_FALSE(place().isEmpty()) << "the frame keeps it";
    run("FileName /run; like clean; CurrentFrame 2; like second; FileName /nowhere; click 30 50");
    EXPECT_FALSE(editor()->isVisible()) << "no picture";
}

TEST_F(LabelTool, MovesALabelWithADragAndBackOnEscape) {
    run("click 30 50; type LAD; key Return");
    const QRect before = place();
    run("drag 35 50 65 80");
    EXPECT_EQ(place(), before.translated(30, 30));
    run("press 70 80; move 40 20; key Esc; release 40 20");
    EXPECT_EQ(place(), before.translated(30, 30));
    run("drag 70 80 400 300");
    const QRect atEdge = place();
    const QPoint mid = atEdge.center();
    run(QString("drag %1 %2 %3 %4").arg(mid.x()).arg(mid.y()).arg(mid.x() - 20).arg(mid.y() - 10));
    const QPoint way = place().topLeft() - atEdge.topLeft();
    EXPECT_LE((way + QPoint(20, 10)).manhattanLength(), 1) << "no way to go first";
}

TEST_F(LabelTool, EditsALabelAndRemovesItWithDeleteOrAnEmptyText) {
    run("click 20 50; type LAD proximal, 3 RAO");
    EXPECT_GT(editor()->width(), editor()->fontMetrics().horizontalAdvance(editor()->text()));
    run("key Return; keep labelled; click 90 99; key Esc; keep left; unlike labelled; double 25 50");
    ASSERT_TRUE(editor()->isVisible());
    EXPECT_EQ(editor()->font().pixelSize(), PictureLabels::font(QRectF(view.rect())).pixelSize());
    EXPECT_TRUE(editor()->geometry().contains(place())) << "nothing of the label beside the editor";
    run("key Esc; like labelled; double 25 50; type RCA; key Return; click 90 99; key Esc; unlike left");
    run("unlike clean; double 25 50; key Del; key Return; like clean");
    for (const char* key : {"Del", "Backspace"})
        run(QString("click 30 50; type LAD; key Return; click 35 50; key A; key ") + key + "; like clean");
    const int end = 30 + QFontMetrics(PictureLabels::font(QRectF(view.rect()))).horizontalAdvance("LAD");
    const QString at = QString("ThumbStyle 2; click 30 50; type LAD; key Return; %1 %2 50; key %3");
    for (const auto& [act, x, key] :
         {std::tuple{"click", 35, "F2"}, {"double", 27, ""}, {"double", end + 3, ""}}) {
        run("FileName /run; ThumbStyle 0; like clean;" + at.arg(act).arg(x).arg(key));
        EXPECT_TRUE(editor()->isVisible() && editor()->text() == "LAD") << x;
    }
    run("key Esc; MouseMode 4");
    EXPECT_EQ(view.cursor().shape(), Qt::OpenHandCursor);
}

TEST_F(LabelTool, CountsWhatIsStillTypedWhenSomethingElseIsDone) {
    const QImage bare = copied();
    const QTemporaryDir folder;
    const QString file = folder.filePath("a.bmp");
    const QString doings[] = {"MouseMode 1", "CurrentFrame 2", "ShowHeader 1", "", "ExportFile " + file};
    for (const QString& done : doings) {
        run("FileName /run; MouseMode 5; click 30 50; type RCA");
        done.isEmpty() ? void(copied()) : run(done);
        EXPECT_FALSE(editor()->isVisible()) << qPrintable(done);
        run("ShowHeader 0; CurrentFrame 1");
        EXPECT_FALSE(place().isEmpty());
        EXPECT_NE(copied(), bare);
    }
    EXPECT_EQ(QImage(file).convertToFormat(QImage::Format_RGB32), copied());
}

TEST_F(LabelTool, KeepsTheWholeTextInsideThePictureAndItsCopies) {
    load(greyRun(2800, 900, 1, [](int, int, int) { return 90; }), "/plain");
    run("BestFit 1");
    const QImage bare = copied();
    const auto with = [&](const QString& text, const QString& at) {
        run("FileName /plain; click " + at);
        for (const QString& typed : {editor()->text(), text}) {
            editor()->setText(typed);
            EXPECT_TRUE(view.rect().contains(editor()->geometry())) << qPrintable(at);
        }
        EXPECT_TRUE(editor()->geometry().contains(at.section(' ', 0, 0).toInt(), at.section(' ', 1).toInt()));
        run("key Return");
        return copied();
    };
    const QSize whole = changed(bare, with("<b>LAD</b>", "70 60")).size();
    EXPECT_GT(whole.width(), 300);
    for (const char* at : {"1 1", "139 119", "139 1", "1 119"}) {
        const QSize difference = changed(bare, with("<b>LAD</b>", at)).size() - whole;
        EXPECT_LE(std::abs(difference.width()) + std::abs(difference.height()), 2) << at;
    }
    const QString longer = QString("a very long text that one row cannot hold ").repeated(4);
    EXPECT_NE(with(longer + "i", "139 119"), with(longer + "W", "139 119")) << "its end is seen";
    EXPECT_GT(changed(bare, with(longer, "1 1")).height(), 2 * whole.height()) << "in rows";
    EXPECT_EQ(with(longer + longer + "i", "1 1"), with(longer + longer + "W", "1 1")) << "it has a limit";
}

TEST(PersonName, ReadsAsPeopleWriteIt) {
    for (const QString each :
         {"DOE#DOE", "Adams^John Robert Quincy^^Rev.^B.A. M.Div.#Adams, Rev. John Robert Quincy, B.A. M.Div.",
          "^JOHN#JOHN", "#", "^^^^#",
          "Yamada^Tarou=山田^太郎=やまだ^たろう#Yamada, Tarou|山田 太郎|やまだ, たろう",
          "=山田^太郎#山田 太郎", "A=B=C=D=E#A|B|C", "<b>DOE</b>^J\nX#<b>DOE</b>, J X"})
        EXPECT_EQ(personNameLines(each.section('#', 0, 0)).join('|'), each.section('#', 1));
}

TEST(ReadableDateAndTime, AreTurnedFromBothSpellings) {
    for (const QString each :
         {"20240131>2024-01-31", "1993.08.22 >1993-08-22", "2024>2024", "unknown>unknown", ">"})
        EXPECT_EQ(readableDate(each.section('>', 0, 0)), each.section('>', 1));
    for (const QString each : {"140509>14:05:09", "14:05:09>14:05:09", "235960.123456 >23:59:60",
                               "1405>14:05", "07>07 h", "240000>", "1460>", "noon>"})
        EXPECT_EQ(readableTime(each.section('>', 0, 0)), each.section('>', 1));
}

TEST(HeaderFacts, TellWhatTheFileSays) {
    FakeDicomFile file;
    // One change after the other, the frames it is looked at with, and what is told then.
    const std::tuple<dicom::Tag, const char*, int, const char*> cases[] = {
        {{0x0008, 0x0020}, "20240131", 1, "2024-01-31"},
        {{0x0020, 0x0011}, "3", 1, "2024-01-31|Series 3"},
        {{0x0020, 0x0013}, "12", 1, "2024-01-31|Series 3|Image 12"},
        {{0x0018, 0x1065}, "0\\100\\60", 1, "2024-01-31|Series 3|Image 12"},
        {{0x0008, 0x103E}, "LCA", 3, "2024-01-31|Series 3 LCA|Run 12  12.5 frames/s"},
        {{0x0018, 0x1063}, "33.333", 3, "2024-01-31|Series 3 LCA|Run 12  30 frames/s"},
        {{0x0018, 0x0040}, "7.468", 3, "2024-01-31|Series 3 LCA|Run 12  7.47 frames/s"},
        {{0x0008, 0x2144}, "99999", 3, "2024-01-31|Series 3 LCA|Run 12  7.47 frames/s"},
        {{0x0008, 0x2144}, "25", 3, "2024-01-31|Series 3 LCA|Run 12  25 frames/s"},
        {{0x0020, 0x0011}, "", 3, "2024-01-31|LCA|Run 12  25 frames/s"},
        {{0x0020, 0x0013}, "", 3, "2024-01-31|LCA|25 frames/s"},
        {{0x0008, 0x0030}, "080910", 1, "2024-01-31 08:09:10|LCA"},
        {{0x0008, 0x0031}, "0811", 1, "2024-01-31 08:11|LCA"},
        {{0x0008, 0x0033}, "0812", 1, "2024-01-31 08:12|LCA"},
        {{0x0008, 0x0023}, "20240201", 1, "2024-01-31|2024-02-01 08:12|LCA"},
        {{0x0008, 0x0032}, "0813", 1, "2024-01-31 08:13|LCA"},
        {{0x0008, 0x0022}, "20240131", 1, "2024-01-31 08:13|LCA"},
        {{0x0008, 0x002A}, "20240201000159.5+0100", 1, "2024-01-31|2024-02-01 00:01:59|LCA"},
        {{0x0008, 0x002A}, "20240201", 1, "2024-01-31 08:13|LCA"},
        {{0x0008, 0x0020}, "", 1, "2024-01-31 08:13|LCA"},
        {{0x0008, 0x0060}, "XA", 1, "2024-01-31 08:13|LCA"},
        {{0x0018, 0x1510}, "-30.4", 1, "2024-01-31 08:13|LCA"},
        {{0x0018, 0x1511}, "20 ", 1, "2024-01-31 08:13|LCA|RAO\u00A030\u00B0  CRAN\u00A020\u00B0"},
        {{0x0018, 0x1510}, "0", 1, "2024-01-31 08:13|LCA|AP  CRAN\u00A020\u00B0"},
        // Other angles than a catheter laboratory's.
        {{0x0008, 0x0060}, "MG", 1, "2024-01-31 08:13|LCA"},
    };
    for (const auto& [tag, value, frames, study] : cases) {
        put(file, tag, value);
        file.announced = frames;
        EXPECT_EQ(HeaderFacts::of(file).study.join('|').toStdString(), study);
    }
    const std::pair<dicom::Tag, const char*> more[] = {
        {{0x0010, 0x0010}, "DOE^JANE"}, {{0x0010, 0x0020}, "4711"}, {{0x0010, 0x0030}, "19500102"},
        {{0x0028, 0x2110}, "01"},       {{0x0028, 0x2112}, "12.5"}, {{0x0008, 0x0060}, "XA"},
        {{0x0020, 0x0013}, "4"}};
    for (const auto& [tag, value] : more) put(file, tag, value);
    EXPECT_EQ(HeaderFacts::of(file).patient, (QStringList{"DOE, JANE", "ID 4711", "Born 1950-01-02"}));
    EXPECT_EQ(HeaderFacts::of(file).lossy, "Lossy 12.5:1");
    // What tells a preview from its neighbours.
    file.announced = 60;
    EXPECT_EQ(HeaderFacts::brief(file, 58).join('|'), "Run 4  25 frames/s|AP  CRAN\u00A020\u00B0|58 frames");
}

TEST(HeaderFacts, WarnOfAFileThatIsAProgramAsWell) {
    for (const std::string start : {"MZ", "\x7F\x45LF", "#!", "\xCA\xFE\xBA\xBE", "II*", "M"}) {
        DicomBuilder builder;
        builder.text(dicom::tags::SOPClassUID, "UI", "1.2");
        auto bytes = builder.build();
        std::ranges::transform(start, bytes.begin(), [](char c) { return std::byte(c); });
        const auto file = dicom::DicomFile::open(std::make_shared<dicom::MemoryByteSource>(bytes));
        EXPECT_EQ(HeaderFacts::of(*file.value()).warning.isEmpty(), start == "II*" || start == "M") << start;
    }
}

TEST(Notice, SaysWhatCannotBeShownAndWhy) {
    using Kind = dicom::DecodeError::Kind;
    using Reason = dicom::DecodeError::Reason;
    dicom::DecodeError fault{Kind::NoPicture};
    EXPECT_EQ(Notice::of(fault, 1, true).words(), "This file cannot be shown. This file holds no picture.");
    fault = {Kind::Unsupported, Reason::Compression, "<b>\n</b>"};
    EXPECT_EQ(Notice::of(fault, 7, false).words(),
              "Frame 7 cannot be shown. The picture is compressed in a way this viewer cannot read "
              "(<b> </b>).");
    fault = {Kind::CutOff, Reason::Frames, {}, {}, 0, 30, 12, 60};
    EXPECT_EQ(Notice::of(fault, 1, true).reason, viewWords::cutOff(12, 60) + ".");
    QSet<QString> reasons;
    for (int reason = 0; reason <= static_cast<int>(Reason::Unknown); ++reason)
        reasons.insert(Notice::of({Kind::Broken, static_cast<Reason>(reason)}, 1, true).reason);
    EXPECT_EQ(reasons.size(), 1 + static_cast<int>(Reason::Unknown));
    EXPECT_EQ(viewWords::cutOff(12, 60), "The file is cut off: 12 of 60 frames can be shown");
    EXPECT_EQ(viewWords::cutOff(60, 60), "");
    EXPECT_EQ(viewWords::cutOff(0, 60), "");
}

}  // namespace
}  // namespace cinedisc::test
