#include "dicom/codecs/FrameDecoder.h"
#include "dicom/codecs/JpegMarkers.h"
#include "fuzzing/CodedInput.h"

#include <cstdlib>

namespace cinedisc::fuzzing {

namespace {

using dicom::Compression;

void decode(const CodedInput& input, Compression compression) {
    using enum dicom::CellBits;
    const auto frame = dicom::decodeFrame(input.stream, input.format, compression, input.bigEndian,
                                          input.firstBit, input.wholeCells ? All : OfValues);
    const auto& format = input.format;
    const auto samples = static_cast<std::size_t>(format.rows) * static_cast<std::size_t>(format.columns) *
                         static_cast<std::size_t>(format.samplesPerPixel);
    const auto count = [](const auto& v) { return v.size(); };
    if (frame && std::visit(count, frame.value().samples) != samples) std::abort();
}

enum class Process { Lossless, Ls, Cosine };

/// What is for another target is left to that.
void decodeJpeg(Bytes bytes, Process wanted) {
    namespace marker = dicom::codecs::marker;
    const auto input = CodedInput::of(bytes);
    if (!input) return;
    const auto start = dicom::codecs::startOfFrameIn(
        {reinterpret_cast<const std::uint8_t*>(input->stream.data()), input->stream.size()});
    if (!start) return;
    const auto process = *start == marker::sof3    ? Process::Lossless
                         : *start == marker::sof55 ? Process::Ls
                                                   : Process::Cosine;
    if (process == wanted) decode(*input, Compression::Jpeg);
}

}  // namespace

void native(Bytes bytes) {
    if (const auto input = CodedInput::of(bytes)) decode(*input, Compression::None);
}

void rle(Bytes bytes) {
    if (const auto input = CodedInput::of(bytes)) decode(*input, Compression::Rle);
}

void lossless(Bytes bytes) { decodeJpeg(bytes, Process::Lossless); }

void jpegls(Bytes bytes) { decodeJpeg(bytes, Process::Ls); }

void jpeg(Bytes bytes) { decodeJpeg(bytes, Process::Cosine); }

void jpeg2000(Bytes bytes) {
    const auto input = CodedInput::of(bytes);
    if (!input) return;
    decode(*input, Compression::Jpeg2000);
    (void)dicom::decodeCoarseFrame(input->stream, input->format, 16);
}

}  // namespace cinedisc::fuzzing
