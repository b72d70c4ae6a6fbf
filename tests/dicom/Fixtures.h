#pragma once

#include "dicom/DicomFile.h"
#include "dicom/MemoryByteSource.h"
#include "tests/support/DicomBuilder.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace cinedisc::test {

/// Opens built bytes; the test fails when they are refused.
std::shared_ptr<const dicom::DicomFile> opened(const Bytes& bytes);
std::shared_ptr<const dicom::DicomFile> opened(const DicomBuilder& builder);

/// Puts elements written as "Keyword=values" and parted by commas, numbers or text as the dictionary says or
/// as a representation in front does: "SS:PixelPaddingValue=-5, VOILUTSequence[1].LUTData=1\\0xFF". What
/// there is already is replaced; sequences get the items that are missing.
void put(DicomItem& into, const std::string& elements);

/// An RLE frame of one 8-bit sample a pixel, all of it literal runs.
Bytes rleFrame(const Bytes& pixels);
/// `count` different pixels: what frame `frame` of a fixture shows.
Bytes pixelsOfFrame(int frame, std::size_t count);
/// A grey 8-bit RLE run whose frames are pixelsOfFrame().
DicomBuilder rleRun(int rows, int columns, int frames, OffsetTable table);
/// The samples of a decoded frame; none when there is none.
std::vector<double> samplesIn(const dicom::Result<dicom::Frame>& frame);
/// Whether a frame has these samples of 8 bits.
bool shows(const dicom::DicomFile& file, int frame, const Bytes& pixels);
/// Bytes that begin like a JPEG stream and hold `size` in all, recognisable by `mark`.
Bytes fakeJpeg(std::size_t size, int mark);

/// Bytes in memory that record what was read of them; beyond a place they may be unreadable.
struct CountingSource : dicom::ByteSource {
    explicit CountingSource(Bytes bytes, std::uint64_t readable = UINT64_MAX)
        : memory(std::move(bytes)), readable(readable) {}

    std::uint64_t size() const override { return memory.size(); }
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const override {
        const std::uint64_t room = readable - std::min(readable, offset);
        into = into.first(static_cast<std::size_t>(std::min<std::uint64_t>(into.size(), room)));
        const std::size_t got = memory.readAt(offset, into);
        wentForwardOnly = wentForwardOnly && offset >= end;
        end = offset + got;
        bytes += got;
        ++reads;
        return got;
    }
    void forget() {
        reads = bytes = end = 0;
        wentForwardOnly = true;
    }

    dicom::MemoryByteSource memory;
    std::uint64_t readable;
    mutable std::uint64_t reads = 0, bytes = 0, end = 0;
    mutable bool wentForwardOnly = true;  ///< each read began at or behind the end of the one before
};

inline constexpr const char* implicitUid = "1.2.840.10008.1.2";
inline constexpr const char* explicitUid = "1.2.840.10008.1.2.1";
inline constexpr const char* bigEndianUid = "1.2.840.10008.1.2.2";
inline constexpr const char* deflatedUid = "1.2.840.10008.1.2.1.99";
inline constexpr const char* rleSyntax = "1.2.840.10008.1.2.5";
inline constexpr const char* jpegSyntax = "1.2.840.10008.1.2.4.50";

}  // namespace cinedisc::test
