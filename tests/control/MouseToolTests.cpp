#include "control/picture/PictureLabels.h"
#include "tests/control/ViewFixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QTemporaryDir>

namespace cinedisc {
namespace {

using test::greyRun;
using test::wideRun;

class MouseTools : public test::ViewFixture {
  protected:
    MouseTools() {
        const auto file = greyRun(140, 120, 3);
        file->grey.windows = {{100, 80, dicom::Window::Function::Linear}};
        load(file);
    }
};

TEST_F(MouseTools, DragTheWindow) {
    drag({40, 40}, {70, 40});
    EXPECT_GT(view.WindowWidth(), 80) << "right widens";
    EXPECT_EQ(view.WindowCenter(), 100);
    view.putFileName("/run");
    drag({40, 80}, {40, 20});
    EXPECT_LT(view.WindowCenter(), 100) << "up lowers the centre";
    EXPECT_EQ(view.WindowWidth(), 80);
    drag({130, 40}, {-4000, 40});
    EXPECT_GE(view.WindowWidth(), 1);
}

TEST_F(MouseTools, MoveTheWindowByWhatTheFrameHasNotByWhatItsBitsCouldHold) {
    struct Case {
        int bits, highest, padding;
        double wider;
    };
    for (const Case& c : {Case{8, 255, 255, 6},
                          {14, 200, 200, 6},
                          {16, 200, 60000, 6},
                          {16, 4000, 60000, 39},
                          {16, 60000, 60001, 586}}) {
        const auto file = wideRun(140, 120, c.bits, [&c](int x, int y) {
            return x == 0 ? 0 : x == 1 ? c.highest : x == 2 ? c.padding : (x + y) % 200;
        });
        file->grey.windows = {{100, 80, dicom::Window::Function::Linear}};
        if (c.padding > c.highest) file->grey.padding = {{c.padding, 65535}};
        load(file, QString("/%1 %2").arg(c.bits).arg(c.highest));
        drag({40, 40}, {60, 60});
        EXPECT_EQ(view.WindowWidth(), 80 + c.wider) << c.bits << " bits up to " << c.highest;
        EXPECT_EQ(view.WindowCenter(), 100 + c.wider);
    }
}

TEST_F(MouseTools, RestoreEverythingOnEscape) {
    view.putBestFit(true);
    const QImage before = seen();
    for (const int mode : {1, 2, 3, 4}) {
        view.putMouseMode(mode);
        dragAndEscape({40, 40}, {90, 75});
        EXPECT_EQ(view.WindowCenter(), 100) << mode;
        EXPECT_EQ(view.WindowWidth(), 80) << mode;
        EXPECT_TRUE(view.BestFit()) << mode;
        EXPECT_EQ(view.ZoomPercent(), 100) << mode;
        EXPECT_EQ(seen(), before) << mode;
    }
}

TEST_F(MouseTools, LeaveAVoiTableInForceUntilTheWindowIsMoved) {
    const auto file = greyRun(140, 120, 1);
    file->grey.voiLuts = {{0, 8, std::vector<std::uint16_t>(256, 40)}};
    load(file, "/table");
    EXPECT_EQ(greyAt(60, 60), 40);
    drag({40, 40}, {40, 40});
    EXPECT_EQ(greyAt(60, 60), 40);
    dragAndEscape({40, 40}, {80, 60});
    EXPECT_EQ(greyAt(60, 60), 40);
    drag({40, 40}, {80, 60});
    EXPECT_NE(greyAt(60, 60), 40);
}

TEST_F(MouseTools, ZoomAroundThePointWhereTheDragBegan) {
    view.putBestFit(true);
    view.putMouseMode(ViewerControl::MouseZoom);
    const int grey = greyAt(45, 100);
    drag({45, 100}, {45, 40});
    EXPECT_FALSE(view.BestFit());
    EXPECT_GT(view.ZoomPercent(), 100);
    EXPECT_NEAR(greyAt(45, 100), grey, 12);
    const int enlarged = view.ZoomPercent();
    drag({45, 40}, {45, 60});
    EXPECT_LT(view.ZoomPercent(), enlarged);
}

TEST_F(MouseTools, PanThePictureButDoNotLoseIt) {
    view.putMouseMode(ViewerControl::MousePan);
    const QImage before = seen();
    drag({60, 60}, {80, 50});
    EXPECT_EQ(seen().copy(20, 0, 100, 100), before.copy(0, 10, 100, 100));
    for (int i = 0; i < 5; ++i) drag({60, 60}, {5000, 5000});
    EXPECT_EQ(seen().copy(71, 61, 60, 50), before.copy(1, 1, 60, 50)) << "half of it stays";
}

TEST_F(MouseTools, GoOnFromWhatIsPutMeanwhile) {
    view.putBestFit(true);
    const QImage fitted = seen();
    view.putMouseMode(ViewerControl::MousePan);
    for (const auto& fit : std::initializer_list<std::function<void()>>{[&] { view.putBestFit(true); },
                                                                        [&] { view.putFileName("/run"); }}) {
        QTest::mousePress(&view, Qt::LeftButton, {}, {60, 60});
        QTest::mouseMove(&view, {80, 50});
        ASSERT_TRUE(QTest::qWaitFor([&] { return onScreen() == seen(); }));
        EXPECT_NE(onScreen(), fitted);
        fit();
        EXPECT_TRUE(QTest::qWaitFor([&] { return onScreen() == fitted; }));
        QTest::mouseMove(&view, {81, 50});
        EXPECT_EQ(seen().copy(1, 0, 139, 120), fitted.copy(0, 0, 139, 120));
        QTest::mouseRelease(&view, Qt::LeftButton, {}, {80, 50});
    }
    for (const int mode : {ViewerControl::MouseWindow, ViewerControl::MouseZoom}) {
        view.putMouseMode(mode);
        QTest::mousePress(&view, Qt::LeftButton, {}, {60, 60});
        QTest::mouseMove(&view, {100, 20});
        view.putWindowWidth(240);
        view.putZoomPercent(50);
        QTest::mouseMove(&view, {101, 19});
        QTest::mouseRelease(&view, Qt::LeftButton, {}, {101, 19});
        EXPECT_NEAR(view.WindowWidth(), 240, 1);
        EXPECT_NEAR(view.ZoomPercent(), 50, 1);
    }
}

TEST_F(MouseTools, MagnifyUnderThePointerWhilePressed) {
    view.putMouseMode(ViewerControl::MouseMagnify);
    const QImage before = seen();
    QTest::mousePress(&view, Qt::LeftButton, {}, {70, 60});
    const QImage pressed = seen();
    EXPECT_NE(pressed, before);
    EXPECT_NEAR(qRed(pressed.pixel(70, 60)), qRed(before.pixel(70, 60)), 10)
        << "the point under the pointer stays";
    EXPECT_EQ(pressed.copy(0, 0, 20, 20), before.copy(0, 0, 20, 20));
    QTest::mouseMove(&view, {10, 10});
    const QImage moved = seen();
    EXPECT_NE(moved.copy(0, 0, 20, 20), before.copy(0, 0, 20, 20));
    EXPECT_EQ(moved.copy(90, 90, 30, 30), before.copy(90, 90, 30, 30));
    view.putCurrentFrame(2);
    EXPECT_NE(seen(), moved) << "the cine plays on under it";
    view.putCurrentFrame(1);
    QTest::mouseRelease(&view, Qt::LeftButton, {}, {10, 10});
    EXPECT_EQ(seen(), before);
}

TEST_F(MouseTools, AnswerTheLeftButtonOnly) {
    const QImage before = seen();
    for (const auto button : {Qt::RightButton, Qt::MiddleButton}) {
        for (const int mode : {1, 2, 3, 4, 5, 77}) {
            view.putMouseMode(mode);
            QTest::mousePress(&view, button, {}, {40, 40});
            QTest::mouseMove(&view, {90, 90});
            QTest::mouseRelease(&view, button, {}, {90, 90});
            EXPECT_EQ(view.WindowWidth(), 80);
            EXPECT_EQ(seen(), before) << mode;
        }
    }
}

TEST_F(MouseTools, LetGoOfTheWindowWhenAnotherFileIsShown) {
    QTest::mousePress(&view, Qt::LeftButton, {}, {40, 40});
    QTest::mouseMove(&view, {60, 40});
    view.putFileName("/run");
    QTest::mouseMove(&view, {90, 40});
    QTest::keyClick(&view, Qt::Key_Escape);
    QTest::mouseRelease(&view, Qt::LeftButton, {}, {90, 40});
    EXPECT_EQ(view.WindowWidth(), 80);
}

class LabelTool : public MouseTools {
  protected:
    LabelTool() {
        view.putMouseMode(ViewerControl::MouseLabel);
        clean = seen();
    }
    QLineEdit* editor() { return view.findChild<QLineEdit*>("labelEditor"); }
    void write(QPoint at, const QString& text) {
        QTest::mouseClick(&view, Qt::LeftButton, {}, at);
        ASSERT_TRUE(editor()->isVisible());
        QTest::keyClicks(editor(), text);
        QTest::keyClick(editor(), Qt::Key_Return);
        EXPECT_FALSE(editor()->isVisible());
    }
    /// Where a label is: the place in which the picture with it differs from the one without.
    QRect place() {
        const QImage now = seen();
        QRect changed;
        for (int y = 0; y < now.height(); ++y) {
            for (int x = 0; x < now.width(); ++x) {
                if (now.pixel(x, y) != clean.pixel(x, y)) changed |= QRect(x, y, 1, 1);
            }
        }
        return changed;
    }
    QImage clean;
};

TEST_F(LabelTool, PlacesTheTypedTextAtReturnOnThatFrame) {
    write({30, 50}, "LAD");
    EXPECT_TRUE(place().contains(35, 50)) << place().x() << "," << place().y();
    view.putCurrentFrame(2);
    const QImage second = seen();
    view.putCurrentFrame(1);
    EXPECT_FALSE(place().isEmpty()) << "the frame keeps it";
    view.putFileName("/run");
    EXPECT_EQ(seen(), clean) << "gone with its file";
    view.putCurrentFrame(2);
    EXPECT_EQ(seen(), second) << "which never had it";
}

TEST_F(LabelTool, DropsTheTextOnEscapeAndPlacesNoEmptyOne) {
    QTest::mouseClick(&view, Qt::LeftButton, {}, {30, 50});
    QTest::keyClicks(editor(), "LAD");
    QTest::keyClick(editor(), Qt::Key_Escape);
    EXPECT_FALSE(editor()->isVisible());
    EXPECT_EQ(seen(), clean);
    write({30, 50}, "  ");
    EXPECT_EQ(seen(), clean);
}

TEST_F(LabelTool, MovesALabelWithADragAndBackOnEscape) {
    write({30, 50}, "LAD");
    const QRect before = place();
    drag({35, 50}, {65, 80});
    EXPECT_EQ(place(), before.translated(30, 30));
    dragAndEscape({70, 80}, {40, 20});
    EXPECT_EQ(place(), before.translated(30, 30));
    drag({70, 80}, {400, 300});
    const QRect atEdge = place();
    drag(atEdge.center(), atEdge.center() - QPoint(20, 10));
    EXPECT_EQ(place().topLeft(), atEdge.topLeft() - QPoint(20, 10)) << "no way to go first";
}

TEST_F(LabelTool, RemovesALabelWithDeleteOrAnEmptyText) {
    write({30, 50}, "LAD");
    QTest::mouseClick(&view, Qt::LeftButton, {}, {35, 50});
    QTest::keyClick(&view, Qt::Key_Delete);
    EXPECT_EQ(seen(), clean);

    write({30, 50}, "LAD");
    QTest::mouseDClick(&view, Qt::LeftButton, {}, {35, 50});
    ASSERT_TRUE(editor()->isVisible());
    EXPECT_EQ(editor()->text(), "LAD");
    editor()->clear();
    QTest::keyClick(editor(), Qt::Key_Return);
    EXPECT_EQ(seen(), clean);
}

TEST_F(LabelTool, ShowsALabelInItsEditorOnlyWhileItIsTyped) {
    write({20, 50}, "LAD prox");
    const QRect before = place();
    QTest::mouseDClick(&view, Qt::LeftButton, {}, {25, 50});
    ASSERT_TRUE(editor()->isVisible());
    EXPECT_EQ(editor()->font().pixelSize(), PictureLabels::font(QRectF(view.rect())).pixelSize());
    EXPECT_TRUE(editor()->geometry().contains(place())) << "nothing of the label beside the editor";
    QTest::keyClick(editor(), Qt::Key_Escape);
    EXPECT_EQ(place(), before);
}

TEST_F(LabelTool, CountsWhatIsStillTypedWhenSomethingElseIsDone) {
    const auto copied = [this] {
        view.CopyToClipboard();
        return QGuiApplication::clipboard()->image();
    };
    const QImage bare = copied();
    QTemporaryDir folder;
    for (const auto& done : std::initializer_list<std::function<void()>>{
             [&] { view.putMouseMode(ViewerControl::MouseWindow); }, [&] { view.CopyToClipboard(); },
             [&] { view.putExportFile(folder.filePath("a.bmp")); }, [&] { view.putCurrentFrame(2); }}) {
        view.putFileName("/run");
        view.putMouseMode(ViewerControl::MouseLabel);
        QTest::mouseClick(&view, Qt::LeftButton, {}, {30, 50});
        QTest::keyClicks(editor(), "RCA");
        done();
        EXPECT_FALSE(editor()->isVisible());
        view.putCurrentFrame(1);
        EXPECT_FALSE(place().isEmpty());
        EXPECT_NE(copied(), bare);
    }
    EXPECT_NE(QImage(folder.filePath("a.bmp")).convertToFormat(bare.format()), bare);
}

TEST_F(LabelTool, KeepsTheWholeTextInsideThePictureAndItsCopies) {
    view.putBestFit(true);
    load(greyRun(280, 90, 1, [](int, int, int) { return 90; }), "/plain");
    const auto copied = [this](const QString& text, QPoint at) {
        view.putFileName("/plain");
        write(at, text);
        view.CopyToClipboard();
        return QGuiApplication::clipboard()->image();
    };
    const auto inkOf = [&](const QString& text, QPoint at) {
        const QImage with = copied(text, at);
        double ink = 0;
        for (int y = 0; y < with.height(); ++y)
            for (int x = 0; x < with.width(); ++x) ink += std::abs(qRed(with.pixel(x, y)) - 90);
        return ink;
    };
    for (const char* text : {"LAD stenosis", "<b>A</b>"}) {
        const double whole = inkOf(text, {70, 60});
        EXPECT_GT(whole, 10000);
        for (const QPoint at : {QPoint(1, 1), {139, 119}, {139, 1}, {1, 119}})
            EXPECT_NEAR(inkOf(text, at), whole, 0.1 * whole) << text << " at " << at.x() << "," << at.y();
    }
    const QString longer = QString("a very long text that one row cannot hold ").repeated(4);
    EXPECT_NE(copied(longer + "i", {139, 119}), copied(longer + "W", {139, 119})) << "its end is seen";
}

}  // namespace
}  // namespace cinedisc
