#include "fuzzing/CodedInput.h"

namespace cinedisc::fuzzing {

namespace {

constexpr std::size_t formatBytes = 11;
constexpr int mostPixels = 1 << 22;

}  // namespace

std::optional<CodedInput> CodedInput::of(Bytes input) {
    if (input.size() < formatBytes) return std::nullopt;
    const auto at = [&](std::size_t place) { return std::to_integer<int>(input[place]); };
    CodedInput read;
    auto& format = read.format;
    format.rows = at(0) | at(1) << 8;
    format.columns = at(2) | at(3) << 8;
    if (format.columns > 0 && format.rows > mostPixels / format.columns) return std::nullopt;
    format.samplesPerPixel = at(4);
    format.bitsAllocated = at(5);
    format.bitsStored = at(6);
    format.highBit = at(7);
    format.isSigned = at(8) & 1;
    format.planar = at(8) & 2;
    format.mayBeLossy = at(8) & 4;
    read.bigEndian = at(8) & 8;
    read.wholeCells = at(8) & 16;
    read.firstBit = at(8) >> 5;
    format.photometric =
        static_cast<dicom::Photometric>(at(9) % (static_cast<int>(dicom::Photometric::Unknown) + 1));
    format.sampleKind = static_cast<dicom::SampleKind>(at(10) % 3);
    read.stream = input.subspan(formatBytes);
    return read;
}

std::vector<std::byte> CodedInput::written() const {
    const int flags = format.isSigned | format.planar << 1 | format.mayBeLossy << 2 | bigEndian << 3 |
                      wholeCells << 4 | firstBit << 5;
    std::vector<std::byte> bytes;
    for (const int value : {format.rows & 255, format.rows >> 8, format.columns & 255, format.columns >> 8,
                            format.samplesPerPixel, format.bitsAllocated, format.bitsStored, format.highBit,
                            flags, static_cast<int>(format.photometric), static_cast<int>(format.sampleKind)})
        bytes.push_back(static_cast<std::byte>(value));
    bytes.insert(bytes.end(), stream.begin(), stream.end());
    return bytes;
}

}  // namespace cinedisc::fuzzing
