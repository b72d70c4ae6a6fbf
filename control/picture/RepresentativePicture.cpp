#include "control/picture/RepresentativePicture.h"

#include "dicom/Tags.h"

namespace cinedisc {

namespace {

/// Counted from 1.
int representativeFrame(const dicom::DicomFile& file) {
    const auto stated = file.header().integer(dicom::tags::RepresentativeFrameNumber).value_or(0);
    return stated >= 1 && stated <= file.frameCount() ? static_cast<int>(stated) : 1 + file.frameCount() / 3;
}

/// Frames that take all processors, or much memory, would be in the way of the main view's.
bool isInNobodysWay(const ImageFile& file) {
    return file.decodingWork() != DecodingWork::AllProcessors && file.decodingRoom() == 0;
}

}  // namespace

void RepresentativePicture::follow(const LoadedPicture& loaded) {
    const bool showsFirst = loaded.currentFrame() == 1 && loaded.frameCount() > 1 && loaded.frame();
    const int frame = showsFirst ? representativeFrame(loaded.file()->dicom()) : 1;
    if (frame > 1 && isInNobodysWay(*loaded.file())) {
        picture_.showWhenIdle(loaded, frame);
        isHere_ = picture_.frame();
    } else {
        leave();
    }
}

void RepresentativePicture::leave() {
    isHere_ = false;
    if (picture_.file()) picture_.load({});
}

bool RepresentativePicture::takeArrival() {
    if (isHere_) return false;
    isHere_ = picture_.frame();
    return isHere_;
}

QRect RepresentativePicture::paint(QPainter& painter, double pixelRatio, const Placement& placement,
                                   Smoothing smoothing) {
    return isHere_ ? renderer_.paintPreview(painter, pixelRatio, placement, smoothing) : QRect();
}

}  // namespace cinedisc
