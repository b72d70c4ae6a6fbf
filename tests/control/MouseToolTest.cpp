#include "control/picture/PictureLabels.h"
#include "tests/control/ViewFixture.h"

#include <QAction>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace cinedisc::test {
namespace {

class MouseTools : public ViewFixture {
  protected:
    MouseTools() {
        const auto file = greyRun(140, 120, 3);
        file->grey.windows = {{100, 80, dicom::Window::Function::Linear}};
        load(file);
    }
};

TEST_F(MouseTools, MoveTheWindowByWhatTheFrameHasNotByWhatItsBitsCouldHold) {
    for (const auto& [bits, highest, padding, wider] : {std::tuple{8, 255, 255, 6.},
                                                        {14, 200, 200, 6.},
                                                        {16, 200, 60000, 6.},
                                                        {16, 4000, 60000, 39.},
                                                        {16, 60000, 60001, 586.}}) {
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
        run("press 40 40; move 90 75; move 40 40; release 40 40; WindowWidth is 80");
        run("WindowCenter 150; drag 40 40 60 40; WindowCenter is 150; drag 130 40 -4000 40; WindowWidth is "
            "1");
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
    for (const auto& [mode, before, pressed] : {std::tuple{1, Qt::BitmapCursor, Qt::BitmapCursor},
                                                {3, Qt::BitmapCursor, Qt::BlankCursor},
                                                {4, Qt::OpenHandCursor, Qt::ClosedHandCursor},
                                                {5, Qt::IBeamCursor, Qt::IBeamCursor}}) {
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
    run("BestFit 1; MouseMode 2");
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
    run("MouseMode 1; press 60 60; move 100 20; WindowWidth 240; move 101 20; release 101 20; WindowWidth is "
        "241");
    run("MouseMode 2; press 60 60; move 60 20; ZoomPercent 50; move 60 20; release 60 20; ZoomPercent is 50");
    // Another file has a window of its own.
    run("MouseMode 1; press 40 40; move 60 40; FileName /run; move 90 40; key Esc; release 90 40; "
        "WindowWidth is 80");
}

TEST_F(MouseTools, MagnifyUnderThePointerWhilePressed) {
    const auto grey = [this](int x) { return greyAt(x, 60); };
    const int middle = grey(70), beside = grey(74);
    const QImage before = seen();
    run("MouseMode 3; keep before; press 70 60");
    EXPECT_NEAR(grey(70), middle, 10) << "the point under the pointer stays";
    EXPECT_NEAR(grey(80), beside, 10) << "two and a half times";
    EXPECT_EQ(seen().copy(0, 0, 20, 20), before.copy(0, 0, 20, 20));
    run("move 10 10; keep moved");
    EXPECT_NE(seen().copy(0, 0, 20, 20), before.copy(0, 0, 20, 20));
    EXPECT_EQ(seen().copy(90, 90, 30, 30), before.copy(90, 90, 30, 30));
    // The cine plays on under it.
    run("CurrentFrame 2; unlike moved; CurrentFrame 1; release 10 10; like before");
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
    run("click 30 50; type LAD; key Return; unlike clean; keep labelled");
    EXPECT_FALSE(editor()->isVisible());
    EXPECT_EQ(taken.count(), 0) << "what is typed belongs to the editor";
    EXPECT_TRUE(QTest::qWaitFor([&] { return onScreen() == seen(); }));
    EXPECT_TRUE(place().contains(35, 50)) << place().x() << "," << place().y();
    run("CurrentFrame 2; keep second; CurrentFrame 1; key Esc; FileName is /run");
    EXPECT_FALSE(place().isEmpty()) << "the frame keeps it";
    run("FileName /run; like clean; CurrentFrame 2; like second");
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
    run("click 20 50; type LAD prox; key Return; keep labelled; click 90 99; key Esc; double 25 50");
    ASSERT_TRUE(editor()->isVisible());
    EXPECT_EQ(editor()->text(), "LAD prox");
    EXPECT_EQ(editor()->font().pixelSize(), PictureLabels::font(QRectF(view.rect())).pixelSize());
    EXPECT_TRUE(editor()->geometry().contains(place())) << "nothing of the label beside the editor";
    run("key Esc; like labelled; double 25 50; key Del; key Return; like clean");
    for (const char* key : {"Del", "Backspace"})
        run(QString("click 30 50; type LAD; key Return; click 35 50; key ") + key + "; like clean");
    run("click 30 50; type LAD; key Return; click 35 50; key F2");
    EXPECT_TRUE(editor()->isVisible() && editor()->text() == "LAD");
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
    load(greyRun(280, 90, 1, [](int, int, int) { return 90; }), "/plain");
    run("BestFit 1");
    const QImage bare = copied();
    const auto with = [&](const QString& text, const QString& at) {
        run("FileName /plain; click " + at + "; type " + text + "; key Return");
        return copied();
    };
    const QSize whole = changed(bare, with("<b>LAD</b>", "70 60")).size();
    EXPECT_GT(whole.width(), 40);
    for (const char* at : {"1 1", "139 119", "139 1", "1 119"}) {
        const QSize difference = changed(bare, with("<b>LAD</b>", at)).size() - whole;
        EXPECT_LE(std::abs(difference.width()) + std::abs(difference.height()), 2) << at;
    }
    const QString longer = QString("a very long text that one row cannot hold ").repeated(4);
    EXPECT_NE(with(longer + "i", "139 119"), with(longer + "W", "139 119")) << "its end is seen";
}

}  // namespace
}  // namespace cinedisc::test
