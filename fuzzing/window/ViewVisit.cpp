#include "fuzzing/window/ViewVisit.h"

#include "control/Notice.h"
#include "control/ezDICOMX.h"
#include "platform/RunTimeError.h"

#include <QHelpEvent>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QVBoxLayout>

namespace cinedisc::fuzzing::window {

namespace {

void send(QWidget& to, QEvent&& event) { QCoreApplication::sendEvent(&to, &event); }

void drag(QWidget& view, QPoint by) {
    const auto at = [&](QEvent::Type type, QPointF place, Qt::MouseButtons buttons) {
        send(view,
             QMouseEvent(type, place, view.mapToGlobal(place), Qt::LeftButton, buttons, Qt::NoModifier));
    };
    const QPointF from = view.rect().center();
    at(QEvent::MouseButtonPress, from, Qt::LeftButton);
    at(QEvent::MouseMove, from + by, Qt::LeftButton);
    at(QEvent::MouseButtonRelease, from + by, Qt::NoButton);
}

void exportPicture(ezDICOMX& view) {
    static const QTemporaryDir folder;
    try {
        view.putExportFile(folder.filePath("picture.jpg"));
    } catch (const RunTimeError&) {
        // There is no picture.
    }
}

}  // namespace

Shown visitFile(const QString& path, Watch& watch) {
    QWidget window;
    QVBoxLayout layout(&window);
    ezDICOMX view(ViewRole::Main), preview(ViewRole::Preview), probe(ViewRole::Probe);
    layout.addWidget(&view, 1);
    layout.addWidget(&preview);
    window.resize(300, 420);
    window.show();
    const auto read = [&] { return !view.isReading() && !view.isCoarse() && !preview.isReading(); };

    watch.work("the probe", [&] {
        probe.putFileName(path);
        (void)probe.FrameCount();
    });
    watch.work("putting the file", [&] {
        view.putFileName(path);
        preview.putFileName(path);
    });
    if (!watch.await("the picture", read)) return {};
    Shown shown;
    watch.work("the number of frames", [&] { shown.frames = view.FrameCount(); });
    shown.notice = view.accessibleDescription();
    for (const int frame : {2, shown.frames / 2, shown.frames, 1}) {
        watch.work("a step", [&] { view.putCurrentFrame(frame); });
        if (!watch.await("a frame", read)) return shown;
    }
    watch.work("the header page", [&] { view.putShowHeader(true); });
    if (const auto* page = view.findChild<QPlainTextEdit*>("headerPage"); page && page->isVisible())
        watch.await("the header", [&] { return page->toPlainText() != Notice::ofReading().heading; });
    watch.work("the picture after the header", [&] { view.putShowHeader(false); });
    watch.work("copying the header", [&] { view.CopyHeaderToClipboard(); });
    watch.work("copying the picture", [&] { view.CopyToClipboard(); });
    watch.work("words for assistive programs", [&] { (void)(view.spokenFile(), view.spokenPosition()); });
    watch.work("the tooltip", [&] {
        send(preview, QHelpEvent(QEvent::ToolTip, {9, 9}, preview.mapToGlobal(QPoint(9, 9))));
    });
    watch.work("the window", [&] {
        view.putWindowWidth(view.WindowWidth() / 2);
        view.putWindowCenter(view.WindowCenter() + 1);
        view.putPolarity(-1);
    });
    for (const auto mode :
         {ViewerControl::MouseWindow, ViewerControl::MouseMagnify, ViewerControl::MousePan}) {
        view.putMouseMode(mode);
        watch.work("a drag", [&] { drag(view, {17, -9}); });
    }
    for (const int percent : {100, 200}) {
        watch.work("another size", [&] { view.putZoomPercent(percent), view.putBestFit(false); });
        watch.work("events", [] { QCoreApplication::processEvents(); });
    }
    watch.work("an export", [&] { exportPicture(view); });
    watch.work("taking the file away", [&] {
        view.putFileName({});
        preview.putFileName({});
        probe.putFileName({});
    });
    return shown;
}

}  // namespace cinedisc::fuzzing::window
