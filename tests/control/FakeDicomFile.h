#pragma once

#include "control/frames/ImageLibrary.h"
#include "dicom/DicomFile.h"

#include <QRgb>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>

namespace cinedisc::test {

/// A DICOM file that returns what a test sets.
class FakeDicomFile : public dicom::DicomFile {
  public:
    dicom::DataSet headerData;
    dicom::PixelFormat format;
    int frames = 1, announced = 1;
    bool isProgram = false, onAllProcessors = false;
    std::string syntax = "1.2.840.10008.1.2.1";
    std::optional<dicom::DecodeError> error;
    std::optional<dicom::Palette> colours;
    dicom::GreyTransform grey;
    std::function<dicom::GreyTransform(int)> greyOfFrame;
    dicom::Shutter shutterShapes;
    std::vector<dicom::Overlay> overlayPlanes;
    std::function<std::vector<std::uint8_t>(const dicom::Overlay&, int)> bitsOf;
    double aspect = 1;
    std::function<dicom::Frame(int)> picture;
    std::set<int> broken;              ///< frames that cannot be decoded, from 0
    std::function<void(int)> reading;  ///< called when a frame, from 0, is read
    std::function<void()> readingBehind;
    /// A coarse picture of every fourth sample of every fourth row, at hand at once where decoding is slow.
    std::function<dicom::Frame(int)> coarse;

    const dicom::DataSet& header() const override { return headerData; }
    dicom::DataSet elementsBehindPixels() const override {
        if (readingBehind) readingBehind();
        return {};
    }
    bool beginsAsProgram() const override { return isProgram; }
    const std::string& transferSyntax() const override { return syntax; }
    const dicom::PixelFormat& pixelFormat() const override { return format; }
    dicom::Compression compression() const override { return dicom::Compression::None; }
    int frameCount() const override { return frames; }
    int announcedFrameCount() const override { return announced; }
    const std::optional<dicom::DecodeError>& pictureError() const override { return error; }
    dicom::Result<dicom::FrameBytes> readFrame(int frame) const override {
        if (reading) reading(frame);
        expectThere(frame);
        return dicom::FrameBytes();
    }
    dicom::Result<dicom::Frame> decodeRead(int frame, const dicom::FrameBytes&) const override {
        if (broken.contains(frame)) return dicom::DecodeError{.frame = frame};
        return picture(frame);
    }
    bool isSlowToDecode() const override { return coarse != nullptr; }
    bool decodesOnAllProcessors() const override { return onAllProcessors; }
    std::optional<dicom::CoarseFrame> decodeCoarse(int frame, const dicom::FrameBytes&, int) const override {
        return coarse ? std::optional(dicom::CoarseFrame{coarse(frame), 2}) : std::nullopt;
    }
    dicom::GreyTransform greyTransform(int frame) const override {
        expectThere(frame);
        return greyOfFrame ? greyOfFrame(frame) : grey;
    }
    const std::optional<dicom::Palette>& palette() const override { return colours; }
    dicom::Shutter shutter(int) const override { return shutterShapes; }
    const std::vector<dicom::Overlay>& overlays() const override { return overlayPlanes; }
    std::vector<std::uint8_t> overlayBits(const dicom::Overlay& overlay, int frame) const override {
        return bitsOf ? bitsOf(overlay, frame) : overlay.bits;
    }
    dicom::PixelAspect pixelAspect() const override { return aspect; }
    void expectThere(int frame) const {
        if (frame < 0 || frame >= std::max(frames, 1)) throw std::out_of_range("there is no such frame");
    }
    std::string text(dicom::Tag tag) const override { return headerData.string(tag); }
};

/// Frames whose samples are value(x, y, f, s): pixel, frame from 0, sample of the pixel.
template <typename Sample, typename Value>
std::function<dicom::Frame(int)> pictureOf(int columns, int rows, int samplesPerPixel, Value value) {
    return [=](int f) {
        std::vector<Sample> samples;
        for (int y = 0; y < rows; ++y)
            for (int x = 0; x < columns; ++x)
                for (int s = 0; s < samplesPerPixel; ++s)
                    samples.push_back(static_cast<Sample>(value(x, y, f, s)));
        return dicom::Frame{rows, columns, samplesPerPixel, std::move(samples)};
    };
}

/// An 8-bit grey run; pixel (x, y) of frame f, counted from 0, is value(x, y, f).
inline std::shared_ptr<FakeDicomFile> greyRun(
    int columns, int rows, int frames, std::function<int(int, int, int)> value = [](int x, int y, int f) {
        return (x * 3 + y * 5 + f * 17) & 255;
    }) {
    auto file = std::make_shared<FakeDicomFile>();
    file->format.rows = rows;
    file->format.columns = columns;
    file->frames = file->announced = frames;
    file->picture =
        pictureOf<std::uint8_t>(columns, rows, 1, [=](int x, int y, int f, int) { return value(x, y, f); });
    return file;
}

/// The same with 16 bits allocated.
template <typename Value>
std::shared_ptr<FakeDicomFile> wideRun(int columns, int rows, int bitsStored, Value value, int frames = 1) {
    auto file = greyRun(columns, rows, frames);
    file->format.bitsAllocated = 16;
    file->format.bitsStored = bitsStored;
    file->format.highBit = bitsStored - 1;
    file->picture =
        pictureOf<std::uint16_t>(columns, rows, 1, [=](int x, int y, int f, int) { return value(x, y, f); });
    return file;
}

/// One frame of 8-bit colour.
inline std::shared_ptr<FakeDicomFile> colourRun(int columns, int rows, std::function<QRgb(int, int)> value) {
    auto file = greyRun(columns, rows, 1);
    file->format.samplesPerPixel = 3;
    file->format.photometric = dicom::Photometric::Rgb;
    file->picture = pictureOf<std::uint8_t>(
        columns, rows, 3, [=](int x, int y, int, int s) { return value(x, y) >> (16 - 8 * s); });
    return file;
}

/// Puts what is read as text and what is read as a number.
inline void put(FakeDicomFile& file, dicom::Tag tag, const std::string& value) {
    std::erase_if(file.headerData.elements, [&](const auto& element) { return element.tag == tag; });
    const auto* const bytes = reinterpret_cast<const std::byte*>(value.data());
    file.headerData.elements.push_back(
        {tag, dicom::vr("DS"), 0, value.size(), true, {bytes, bytes + value.size()}, {}});
}

/// A library that opens what a test put under a path; any other path is a file that cannot be read.
struct FakeLibrary {
    std::map<std::string, std::shared_ptr<const dicom::DicomFile>> files;
    std::atomic<int> opened = 0;
    std::function<void(const std::string& path)> opening;
    ImageLibrary library{
        [this](const std::string& path) -> dicom::Result<std::shared_ptr<const dicom::DicomFile>> {
            ++opened;
            if (opening) opening(path);
            const auto found = files.find(path);
            if (found != files.end()) return found->second;
            using Error = dicom::DecodeError;
            return Error{Error::Kind::CannotRead, Error::Reason::Missing};
        }};
};

}  // namespace cinedisc::test
