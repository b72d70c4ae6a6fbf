#include "control/ezDICOMXParts.h"

#include "control/HeaderFacts.h"
#include "control/words/ViewWords.h"
#include "dicom/DicomFile.h"

#include <utility>

namespace cinedisc {

namespace {

constexpr qint32 sunken = 2;
constexpr int borderWidth = 2;

}  // namespace

ezDICOMX::Parts::Parts(ezDICOMX& widget, ViewRole viewRole, ImageLibrary& openFiles)
    : owner(widget), role(viewRole), library(openFiles), view(openFiles), tools(view, widget) {
    QObject::connect(&library.arrivals(), &FrameArrivals::arrived, &owner, [this] { takeArrival(); });
}

void ezDICOMX::Parts::settle(Patience patience) {
    if (view.picture.settle(patience) != LoadedPicture::Settled::Now) return;
    refreshHeaderPage();
    if (role == ViewRole::Probe) {
        // A probe never looks at a frame.
        awaiting = false;
    } else if (view.picture.frameCount() == 0) {
        // The reason why there is no frame is known already, so it need not wait for the next drawing.
        describeWith(noticeFor(view.picture));
        noticeDelay.stop();
        owner.update();
    }
}

void ezDICOMX::Parts::awaitWindow() {
    settle(Patience::Answer);
    view.picture.awaitWindow();
}

void ezDICOMX::Parts::takeArrival() {
    settle(Patience::Glance);
    fillHeaderPage();
    if (role == ViewRole::Probe || !owner.isVisible()) return;
    if (view.picture.coarse() && view.picture.refine()) {
        describe();
        owner.repaint();
    }
    if (view.representative.takeArrival()) owner.update();
    if (!awaiting) return;
    describe();
    if (awaiting) return;
    noticeDelay.stop();
    // Drawn now: the cine clock is about to put the next frame, for which the view would wait again.
    owner.repaint();
}

QRect ezDICOMX::Parts::content() const {
    const int border = role == ViewRole::Preview || thumbStyle == sunken ? borderWidth : 0;
    return owner.rect().adjusted(border, border, -border, -border);
}

void ezDICOMX::Parts::layOut() {
    view.pixelRatio = owner.devicePixelRatioF();
    view.deviceSize = (QSizeF(content().size()) * view.pixelRatio).toSize().expandedTo({0, 0});
}

std::optional<Notice> ezDICOMX::Parts::describe() {
    settle(Patience::Glance);
    auto notice = noticeFor(view.picture);
    describeWith(notice);
    return notice;
}

void ezDICOMX::Parts::describeWith(const std::optional<Notice>& notice) {
    awaiting = notice && notice->isOfReading();
    QString words;
    if (notice) {
        words = notice->words();
    } else if (view.picture.frameCount() > 0) {
        words =
            viewWords::cutOff(view.picture.frameCount(), view.picture.file()->dicom().announcedFrameCount());
    }
    if (owner.accessibleDescription() != words) owner.setAccessibleDescription(words);
}

/// A run goes round: from the last frame to the first is a step forward.
void ezDICOMX::Parts::noteStep(qint32 from, qint32 to) {
    const qint32 last = view.picture.frameCount();
    if (last < 3) return;
    if (to == from + 1 || (from == last && to == 1)) direction = PlayDirection::Forward;
    if (to == from - 1 || (from == 1 && to == last)) direction = PlayDirection::Reverse;
}

void ezDICOMX::Parts::lookAhead() {
    const auto& picture = view.picture;
    if (role != ViewRole::Main || picture.frameCount() == 0 || !owner.isVisible() || library.isWaiting())
        return;
    if (neighbour && (nextOf != picture.path() || nextTowards != direction)) {
        nextOf = picture.path();
        nextTowards = direction;
        next = neighbour(nextOf, direction);
    }
    picture.lookAhead(direction, next);
}

void ezDICOMX::Parts::putZoom(const ViewZoom& zoom) {
    if (std::exchange(view.zoom, zoom) == zoom) return;
    tools.startAnew();
    owner.update();
    tellChoices();
}

void ezDICOMX::Parts::refreshHeaderPage() {
    const bool wanted = showHeader && view.picture.file() && role != ViewRole::Probe;
    if (!wanted) {
        if (!headerPage || headerPage->isHidden()) return;
        if (headerPage->hasFocus()) owner.setFocus(Qt::OtherFocusReason);
        headerPage->hide();
        return;
    }
    if (!headerPage) headerPage = new HeaderPage(owner);
    if (headerPageOf != view.picture.fileRevision()) {
        headerPageOf = view.picture.fileRevision();
        headerText = view.picture.headerText(dicom::LongValues::Cut);
        headerPage->putText(Notice::ofReading().heading);
        fillHeaderPage();
    }
    placeChildren();
    headerPage->show();
    headerPage->raise();
    if (wrongPatient) wrongPatient->raise();
}

void ezDICOMX::Parts::judgePatient() {
    if (role != ViewRole::Main || (!wrongPatient && namedPatientFolder.isEmpty())) return;
    if (!wrongPatient) wrongPatient = new WrongPatientBar(owner);
    const bool warned = !wrongPatient->isHidden();
    wrongPatient->judge(view.picture.path(), namedPatientFolder);
    if (warned == !wrongPatient->isHidden()) return;
    placeChildren();
    owner.update();
}

void ezDICOMX::Parts::placeChildren() {
    coveredAtTop = wrongPatient ? wrongPatient->layOut(content()) : 0;
    if (headerPage) headerPage->setGeometry(content().adjusted(0, coveredAtTop, 0, 0));
}

void ezDICOMX::Parts::fillHeaderPage() {
    if (!headerText || !view.picture.waitFor(*headerText, Patience::Glance)) return;
    const auto header = std::exchange(headerText, nullptr);
    headerPage->putText(header->text() ? QString::fromStdString(*header->text())
                                       : viewWords::headerTooLarge());
}

QString ezDICOMX::Parts::toolTip() const {
    const int frames = view.picture.frameCount();
    if (!view.picture.file() || frames == 0) return {};
    const QString lines = HeaderFacts::brief(view.picture.file()->dicom(), frames).join('\n');
    // As a paragraph of its own a text from a disc is not taken for markup.
    return "<p style='white-space:pre'>" + lines.toHtmlEscaped() + "</p>";
}

void ezDICOMX::Parts::tellChoices() {
    const DisplayChoices now{
        view.picture.path(),       view.zoom.bestFit(), view.smoothing == Smoothing::Smooth,
        view.picture.polarity < 0, showHeader,          backgroundFill,
        view.zoom.percent(),       backgroundColor,     mouseMode};
    if (told != std::exchange(told, now)) emit owner.displayChanged();
}

void ezDICOMX::Parts::chooseTool() {
    tools.choose(role == ViewRole::Main ? mouseMode : 0);
    if (role == ViewRole::Preview) {
        owner.setCursor(Qt::PointingHandCursor);
    } else {
        owner.setCursor(tools.chosen() ? tools.chosen()->cursor() : QCursor(Qt::ArrowCursor));
    }
}

}  // namespace cinedisc
