#include "control/HeaderFacts.h"
#include "control/picture/DisplayedPicture.h"
#include "dicom/MemoryByteSource.h"
#include "dicom/Tags.h"
#include "fuzzing/Targets.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace cinedisc::fuzzing {

namespace {

using File = std::shared_ptr<const dicom::DicomFile>;

dicom::Result<File> opened(Bytes bytes) {
    return dicom::DicomFile::open(
        std::make_shared<dicom::MemoryByteSource>(std::vector<std::byte>(bytes.begin(), bytes.end())));
}

/// The first frames, one in the middle, the last.
std::set<int> framesToVisit(int count) {
    std::set<int> visited;
    for (const int frame : {0, 1, 2, count / 2, count - 1})
        if (frame >= 0 && frame < count) visited.insert(frame);
    return visited;
}

}  // namespace

void header(Bytes bytes) {
    const auto file = opened(bytes);
    if (!file) return;
    (void)dicom::headerText(*file.value());
    (void)dicom::headerText(*file.value(), dicom::LongValues::Whole);
    (void)file.value()->elementsBehindPixels();
}

void frames(Bytes bytes) {
    const auto file = opened(bytes);
    if (!file) return;
    const auto& dicom = *file.value();
    for (const int frame : framesToVisit(dicom.frameCount())) {
        for (int step = 0; step < 1000 && !dicom.approachFrame(frame); ++step) {
        }
        const auto read = dicom.readFrame(frame);
        if (read && read.value().bytes().size() > bytes.size() * 2000 + (1u << 20)) std::abort();
    }
}

void presentation(Bytes bytes) {
    constexpr std::int64_t mostPixels = 1 << 20;
    ImageLibrary library([&](const std::string&) { return opened(bytes); }, std::make_shared<FrameStore>(),
                         [](const std::string&) { return FileStamp{1}; });
    ViewState view(library);
    view.picture.load("file");
    if (view.picture.frameCount() == 0) return;
    const auto& dicom = view.picture.file()->dicom();
    (void)HeaderFacts::of(dicom);
    const QSize size = view.renderer.squareSize();
    if (std::max<std::int64_t>(std::int64_t{size.width()} * size.height(),
                               std::int64_t{dicom.pixelFormat().columns} * dicom.pixelFormat().rows) >
        mostPixels)
        return;
    view.deviceSize = {96, 80};
    for (const int frame : framesToVisit(dicom.frameCount())) {
        view.picture.show(frame + 1);
        (void)displayedPicture(view);
        (void)view.picture.usedRange();
        for (const auto smoothing : {Smoothing::Smooth, Smoothing::Nearest})
            (void)view.renderer.part(view.placement(), view.placement().visible(), smoothing);
        view.picture.polarity = -view.picture.polarity;
    }
}

}  // namespace cinedisc::fuzzing
