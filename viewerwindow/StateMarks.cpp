#include "viewerwindow/StateMarks.h"

#include "control/ezDICOMX.h"
#include "panels/StripPanel.h"
#include "panels/ViewerPanels.h"
#include "platform/widgets/StateButton.h"

#include <QAction>
#include <QFileInfo>
#include <QPushButton>

#include <utility>

namespace cinedisc {

namespace {

constexpr const char* needingFile[] = {
    "cmdPlay",      "cmdReverse",       "cmdStop",    "cmdNext",       "cmdPrev",   "cmdNextImage",
    "cmdPrevImage", "mnuPlay",          "mnuReverse", "mnuStop",       "mnuNext",   "mnuPrevious",
    "mnuNextSlice", "mnuPreviousSlice", "mnuCopy",    "mnuCopyHeader", "cmdExport", "mnuExport"};

constexpr const char* needingPlace[] = {"CmdStudyBack", "cmdStudyNext", "cmdSeriesBack", "cmNext"};

}  // namespace

StateMarks::StateMarks(Window window)
    : QObject(&window.widget),
      window_(std::move(window)),
      needingFile_(window_.widget, needingFile),
      needingPlace_(window_.widget, needingPlace) {
    const ezDICOMX& picture = *window_.panels.ezDicom;
    const auto tool = [&](const char* button, const char* item, int mode) {
        add(button, item, [&picture, mode] { return picture.MouseMode() == mode; });
    };
    tool("cmdWindow", "mnuWindow", ViewerControl::MouseWindow);
    tool("cmdMagnify", "mnuMagnify", ViewerControl::MouseMagnify);
    tool("cmdPanning", "mnuPanning", ViewerControl::MousePan);
    tool("cmdLabel", "mnuLabel", ViewerControl::MouseLabel);
    add("cmdInvert", "mnuInvert", [&] { return picture.Polarity() < 0; });
    add("cmdSmooth", "mnuSmooth", [&] { return picture.Smooth(); });
    add("cmdHeader", "mnuHeader", [&] { return picture.ShowHeader(); });
    const auto zoom = [&](const char* button, const char* item, int percent) {
        add(button, item,
            [&picture, percent] { return !picture.BestFit() && picture.ZoomPercent() == percent; });
    };
    add("cmdFit(0)", "mnuBestFit", [&] { return picture.BestFit(); });
    zoom("cmdFit(1)", "mnu100", 100);
    zoom("cmdFit(2)", "mnu50", 50);
    zoom("cmdFit(3)", "mnu150", 150);
    zoom("cmdFit(4)", "mnu200", 200);
    add("", "mnuNone", [&] { return !picture.BackgroundFill(); });
    add("", "mnuBlack", [&] { return picture.BackgroundFill() && picture.BackgroundColor() != 0; });
    add("", "mnuWhite", [&] { return picture.BackgroundFill() && picture.BackgroundColor() == 0; });

    QTimer& clock = *window_.panels.Timer4;
    const CinePanel& cine = *window_.panels.cinePanel;
    add("cmdPlay", "mnuPlay", [&] { return clock.isActive() && cine.Option9->isChecked(); });
    add("cmdReverse", "mnuReverse", [&] { return clock.isActive() && cine.Option10->isChecked(); });
    add("cmdStop", "mnuStop", [&] { return !clock.isActive() && !picture.FileName().isEmpty(); });

    connect(&picture, &ezDICOMX::displayChanged, this, &StateMarks::refresh);
    connect(cine.Option9, &QRadioButton::toggled, this, &StateMarks::refresh);
    clockNotice_ = clock.bindableActive().addNotifier([this] { refresh(); });
    // A clock stops when its window goes, and nothing is left to be marked then.
    connect(window_.panels.surface, &QObject::destroyed, this, [this] { clockNotice_ = {}; });
    for (const ezDICOMX* preview : window_.panels.strip->thumb)
        connect(preview, &ezDICOMX::displayChanged, this, &StateMarks::markPreviews);
    // A checkable menu item turns itself over when it is chosen. And a command may have opened a place.
    for (const QAction* action : window_.widget.findChildren<QAction*>())
        connect(action, &QAction::triggered, this, &StateMarks::refresh);
    for (const QPushButton* button : window_.widget.findChildren<QPushButton*>())
        connect(button, &QPushButton::clicked, this, &StateMarks::refresh);
    refresh();
}

StateMarks::Commands::Commands(const QWidget& window, std::span<const char* const> names) {
    for (const char* name : names) {
        if (auto* button = window.findChild<QPushButton*>(name)) buttons_ << button;
        if (auto* item = window.findChild<QAction*>(name)) items_ << item;
    }
}

void StateMarks::Commands::setEnabled(bool on) const {
    for (QPushButton* button : buttons_) button->setEnabled(on);
    for (QAction* item : items_) item->setEnabled(on);
}

void StateMarks::add(const char* button, const char* item, std::function<bool()> isInForce) {
    auto* action = window_.widget.findChild<QAction*>(item);
    action->setCheckable(true);
    auto* marked = *button ? window_.widget.findChild<StateButton*>(button) : nullptr;
    marks_.push_back({marked, action, std::move(isInForce)});
}

void StateMarks::refresh() {
    for (const Mark& mark : marks_) {
        const bool isInForce = mark.isInForce();
        mark.item->setChecked(isInForce);
        if (mark.button) mark.button->setActive(isInForce);
    }
    needingFile_.setEnabled(!window_.panels.ezDicom->FileName().isEmpty());
    needingPlace_.setEnabled(window_.hasPlace());
    markPreviews();
}

void StateMarks::markPreviews() {
    const QString shown = window_.panels.ezDicom->FileName();
    const auto folderOf = [](const QString& path) { return QFileInfo(path).path(); };
    for (ezDICOMX* preview : window_.panels.strip->thumb) {
        const QString path = preview->FileName();
        // Where stills are paged a preview stands for its series.
        const bool same = path == shown || (window_.isStills() && folderOf(path) == folderOf(shown));
        preview->setMarked(same && !path.isEmpty() && !shown.isEmpty());
    }
}

}  // namespace cinedisc
