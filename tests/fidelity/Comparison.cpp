#include "tests/fidelity/Comparison.h"

#include "control/ViewPainter.h"
#include "control/picture/ViewState.h"
#include "dicom/TransferSyntax.h"
#include "tests/fidelity/ReferenceFile.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace cinedisc::fidelity {

namespace {

/// The largest difference of any sample; pictures of another size are the worst.
void take(std::optional<int>& worst, const QImage& ours, const QImage& reference) {
    if (reference.isNull()) return;
    int largest = ours.size() == reference.size() ? worst.value_or(0) : anotherSize;
    for (int i = 0; largest < anotherSize && i < ours.width() * ours.height(); ++i) {
        const QRgb one = ours.pixel(i % ours.width(), i / ours.width());
        const QRgb other = reference.pixel(i % ours.width(), i / ours.width());
        for (const int shift : {0, 8, 16})
            largest = std::max(largest, std::abs(int(one >> shift & 255) - int(other >> shift & 255)));
    }
    worst = largest;
}

}  // namespace

QString Comparison::row() const {
    const auto number = [](std::optional<int> all) { return all ? QString::number(*all) : QString(); };
    return QStringList{syntax,          number(frames), number(expectedFrames), decoder, number(toPlain),
                       number(toDcmtk), notice}
        .join('\t');
}

Comparison compare(const QString& path) {
    ReferenceFile file(path.toStdString());
    ViewState view(ImageLibrary::shared());
    view.picture.load(path);
    Comparison result;
    const auto* syntax = dicom::findTransferSyntax(file.syntaxUid());
    result.syntax = syntax ? QString::fromStdString(std::string(syntax->name)) : "unknown";
    result.decoder = result.syntax.contains("JPEG 2000") ? "OpenJPEG" : "DCMTK";
    result.frames = view.picture.frameCount();
    result.expectedFrames = file.frames();
    if (const auto notice = noticeFor(view.picture)) result.notice = notice->reason;
    if (result.frames == 0) return result;
    for (const int frame : std::set{1, result.frames}) {
        view.picture.show(frame);
        view.deviceSize = view.renderer.squareSize();
        const Placement place = view.placement();
        const QImage shown = view.renderer.part(place, place.visible(), Smoothing::Smooth);
        take(result.toPlain, shown, plainPicture(file, frame - 1));
        take(result.toDcmtk, shown, dcmtkPicture(file, frame - 1));
    }
    return result;
}

}  // namespace cinedisc::fidelity
