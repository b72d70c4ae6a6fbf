#include "control/ezDICOMX.h"

#include "control/FilmExport.h"
#include "control/HeaderFacts.h"
#include "control/PictureClipboard.h"
#include "control/PictureExport.h"
#include "control/RunTiming.h"
#include "control/ViewAccessible.h"
#include "control/ezDICOMXParts.h"
#include "control/picture/DisplayedPicture.h"
#include "control/words/ViewWords.h"

#include <exception>
#include <functional>
#include <utility>

namespace cinedisc {

namespace {

constexpr int noticeAfter = 500;  // milliseconds

/// Whether a copy was made: one that memory does not suffice for is not.
bool succeeds(const std::function<bool()>& copy) {
    try {
        return copy();
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace

ezDICOMX::ezDICOMX(ViewRole role, QWidget* parent, ImageLibrary& library)
    : QWidget(parent), parts_(std::make_unique<Parts>(*this, role, library)) {
    ViewAccessible::install();
    parts_->view.picture.setAsker(role == ViewRole::Main    ? Asker::MainView
                                  : role == ViewRole::Probe ? Asker::Probe
                                                            : Asker::Preview);
    setAttribute(Qt::WA_OpaquePaintEvent, role != ViewRole::Probe);
    setFocusPolicy(role == ViewRole::Main      ? Qt::StrongFocus
                   : role == ViewRole::Preview ? Qt::TabFocus
                                               : Qt::NoFocus);
    if (role != ViewRole::Probe)
        setAccessibleName(role == ViewRole::Main ? viewWords::mainViewName() : viewWords::previewName());
    parts_->chooseTool();
}

ezDICOMX::~ezDICOMX() = default;

ViewRole ezDICOMX::role() const { return parts_->role; }

QString ezDICOMX::FileName() const { return parts_->view.picture.path(); }

void ezDICOMX::putFileName(const QString& path) {
    auto& view = parts_->view;
    parts_->tools.leaveFile();
    view.labels.clear();
    const auto loaded = view.picture.load(path);
    parts_->judgePatient();
    if (BestFit()) putBestFit(true);
    parts_->tellChoices();
    // The strip puts the same file again whenever it moves.
    if (loaded == LoadedPicture::Loaded::AsItWas && parts_->role == ViewRole::Preview) return;
    view.representative.leave();
    // Whether the first frame can be shown is found out when it is looked at: a probe never does.
    const bool mayBeShown = view.picture.frameCount() > 0;
    parts_->describeWith(mayBeShown ? std::nullopt : noticeFor(view.picture));
    parts_->refreshHeaderPage();
    update();
}

/// Waits for a slow disc: the command that asks for the count cannot go on without it.
qint32 ezDICOMX::FrameCount() const {
    parts_->settle(Patience::Answer);
    return parts_->view.picture.frameCount();
}

qint32 ezDICOMX::CurrentFrame() const { return parts_->view.picture.currentFrame(); }

void ezDICOMX::putCurrentFrame(qint32 frame) {
    auto& picture = parts_->view.picture;
    if (frame < 1 || frame > FrameCount() || frame == picture.currentFrame()) return;
    parts_->tools.leaveFrame();
    parts_->noteStep(picture.currentFrame(), frame);
    picture.show(frame);
    if (parts_->role != ViewRole::Probe) parts_->describe();
    if (!isReading()) return update();
    // A disc that is nearly in time would make pictures and notices flicker: the last picture of the run,
    // with its own number, stands a little longer.
    if (!parts_->noticeDelay.isActive()) parts_->noticeDelay.start(noticeAfter, this);
}

double ezDICOMX::recordedRate() const {
    const auto* file = parts_->view.picture.file();
    return file ? recordedFrameRate(file->dicom()) : 0;
}

bool ezDICOMX::isCoarse() const { return parts_->view.picture.coarse() != nullptr; }
bool ezDICOMX::isReading() const { return parts_->awaiting || parts_->view.picture.isOpening(); }

qint32 ezDICOMX::ZoomPercent() const { return parts_->view.zoom.percent(); }
bool ezDICOMX::BestFit() const { return parts_->view.zoom.bestFit(); }
bool ezDICOMX::Smooth() const { return parts_->view.smoothing == Smoothing::Smooth; }

void ezDICOMX::putZoomPercent(qint32 percent) {
    auto zoom = parts_->view.zoom;
    zoom.putPercent(percent);
    parts_->putZoom(zoom);
}

void ezDICOMX::putBestFit(bool on) {
    auto zoom = parts_->view.zoom;
    zoom.putBestFit(on);
    parts_->putZoom(zoom);
}

void ezDICOMX::putSmooth(bool on) {
    parts_->view.smoothing = on ? Smoothing::Smooth : Smoothing::Nearest;
    update();
    parts_->tellChoices();
}

qint32 ezDICOMX::Polarity() const { return parts_->view.picture.polarity; }

double ezDICOMX::WindowCenter() const {
    parts_->awaitWindow();
    return parts_->view.picture.window().window.center;
}

double ezDICOMX::WindowWidth() const {
    parts_->awaitWindow();
    return parts_->view.picture.window().window.width;
}

void ezDICOMX::putPolarity(qint32 polarity) {
    parts_->view.picture.polarity = polarity;
    update();
    parts_->tellChoices();
}

void ezDICOMX::putWindowCenter(double center) {
    parts_->awaitWindow();
    parts_->view.picture.putWindowCenter(center);
    parts_->tools.startAnew();
    update();
}

void ezDICOMX::putWindowWidth(double width) {
    parts_->awaitWindow();
    parts_->view.picture.putWindowWidth(width);
    parts_->tools.startAnew();
    update();
}

qint32 ezDICOMX::MouseMode() const { return parts_->mouseMode; }

void ezDICOMX::putMouseMode(qint32 mode) {
    if (mode == parts_->mouseMode) return;
    parts_->mouseMode = mode;
    parts_->chooseTool();
    update();
    parts_->tellChoices();
}

bool ezDICOMX::BackgroundFill() const { return parts_->backgroundFill; }
qint32 ezDICOMX::BackgroundColor() const { return parts_->backgroundColor; }

void ezDICOMX::putBackgroundFill(bool on) {
    if (on == parts_->backgroundFill) return;
    parts_->backgroundFill = on;
    update();
    parts_->tellChoices();
}

void ezDICOMX::putBackgroundColor(qint32 color) {
    parts_->backgroundColor = color;
    update();
    parts_->tellChoices();
}

bool ezDICOMX::ShowHeader() const { return parts_->showHeader; }

void ezDICOMX::putShowHeader(bool on) {
    parts_->showHeader = on;
    parts_->tools.leaveFrame();
    parts_->refreshHeaderPage();
    parts_->tellChoices();
}

bool ezDICOMX::CopyToClipboard() {
    parts_->settle(Patience::Answer);
    parts_->tools.finish();
    // What stands in the view may have been coarse until now.
    update();
    return succeeds([this] { return copyPicture(displayedPicture(parts_->view)); });
}

bool ezDICOMX::CopyHeaderToClipboard() {
    parts_->settle(Patience::Answer);
    const auto header = parts_->view.picture.headerText(dicom::LongValues::Whole);
    return header && parts_->view.picture.waitFor(*header, Patience::Answer) && header->text() &&
           succeeds([&] { return copyText(QString::fromStdString(*header->text())); });
}

void ezDICOMX::putExportFile(const QString& path) {
    parts_->plain.exportFile = path;
    parts_->settle(Patience::Answer);
    parts_->tools.finish();
    update();
    const auto otherwise = parts_->plain.exportFormat == "BMP" ? PictureFormat::Bmp : PictureFormat::Jpeg;
    exportPicture(displayedPicture(parts_->view), path, formatFor(path, otherwise));
}

std::unique_ptr<FilmExport> ezDICOMX::exportFilm(const QString& path, double otherwiseRate) {
    parts_->tools.finish();
    return std::make_unique<FilmExport>(parts_->view, parts_->library, path, otherwiseRate);
}

qint32 ezDICOMX::ThumbIndex() const { return parts_->plain.thumbIndex; }

void ezDICOMX::putThumbIndex(qint32 index) {
    parts_->plain.thumbIndex = index;
    if (index == -1) putFileName({});
}

qint32 ezDICOMX::ThumbStyle() const { return parts_->thumbStyle; }

void ezDICOMX::putThumbStyle(qint32 style) {
    if (style == parts_->thumbStyle) return;
    parts_->thumbStyle = style;
    update();
}

void ezDICOMX::putNamedPatientFolder(const QString& folder) {
    parts_->namedPatientFolder = folder;
    parts_->judgePatient();
}

void ezDICOMX::setMarked(bool on) {
    if (on == std::exchange(parts_->isMarked, on)) return;
    update();
}

bool ezDICOMX::isMarked() const { return parts_->isMarked; }

void ezDICOMX::setNeighbour(Neighbour neighbour) { parts_->neighbour = std::move(neighbour); }

QStringList ezDICOMX::spokenFile() const {
    const auto* file = parts_->view.picture.file();
    if (!file) return {};
    const auto facts = HeaderFacts::of(file->dicom());
    return role() == ViewRole::Main ? QStringList(facts.patient.value(0)) + facts.study : facts.study;
}

QString ezDICOMX::spokenPosition() const {
    const auto& picture = parts_->view.picture;
    if (picture.frameCount() == 0) return {};
    return viewWords::framePosition(picture.currentFrame(), picture.frameCount());
}

QSize ezDICOMX::sizeHint() const {
    return parts_->role == ViewRole::Main ? QSize(512, 512) : QSize(128, 128);
}

QString ezDICOMX::ExportFile() const { return parts_->plain.exportFile; }
QString ezDICOMX::ExportFormat() const { return parts_->plain.exportFormat; }
void ezDICOMX::putExportFormat(const QString& format) { parts_->plain.exportFormat = format; }
qint32 ezDICOMX::RangeStart() const { return parts_->plain.rangeStart; }
void ezDICOMX::putRangeStart(qint32 frame) { parts_->plain.rangeStart = frame; }
qint32 ezDICOMX::RangeEnd() const { return parts_->plain.rangeEnd; }
void ezDICOMX::putRangeEnd(qint32 frame) { parts_->plain.rangeEnd = frame; }
qint32 ezDICOMX::RangeModeA() const { return parts_->plain.rangeModeA; }
void ezDICOMX::putRangeModeA(qint32 mode) { parts_->plain.rangeModeA = mode; }
qint32 ezDICOMX::RangeModeB() const { return parts_->plain.rangeModeB; }
void ezDICOMX::putRangeModeB(qint32 mode) { parts_->plain.rangeModeB = mode; }
bool ezDICOMX::Option247() const { return parts_->plain.option247; }
void ezDICOMX::putOption247(bool on) { parts_->plain.option247 = on; }
bool ezDICOMX::Option256() const { return parts_->plain.option256; }
void ezDICOMX::putOption256(bool on) { parts_->plain.option256 = on; }
bool ezDICOMX::StartupFlag() const { return parts_->plain.startupFlag; }
void ezDICOMX::putStartupFlag(bool on) { parts_->plain.startupFlag = on; }
QString ezDICOMX::Tag() const { return parts_->plain.tag; }
void ezDICOMX::putTag(const QString& tag) { parts_->plain.tag = tag; }

}  // namespace cinedisc
