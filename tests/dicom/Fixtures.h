#pragma once

#include "dicom/DicomFile.h"
#include "tests/support/DicomBuilder.h"

#include <filesystem>
#include <memory>

namespace cinedisc::test {

/// Opens built bytes; the test fails when they are refused.
std::shared_ptr<const dicom::DicomFile> opened(const Bytes& bytes);
std::shared_ptr<const dicom::DicomFile> opened(const DicomBuilder& builder);

/// An RLE frame of one 8-bit sample a pixel, all of it literal runs.
Bytes rleFrame(const Bytes& pixels);
/// `count` different pixels: what frame `frame` of a fixture shows.
Bytes pixelsOfFrame(int frame, std::size_t count);
/// A grey 8-bit RLE run whose frames are pixelsOfFrame().
DicomBuilder rleRun(int rows, int columns, int frames, OffsetTable table, int fragmentsPerFrame = 1);
/// Native 8-bit samples of a decoded frame.
Bytes samplesOf(const dicom::Frame& frame);

/// The sample files of the environment, none when there are not any.
std::vector<std::filesystem::path> samplePaths();

/// Bytes that begin like a JPEG stream and hold `size` in all, recognisable by `mark`.
Bytes fakeJpeg(std::size_t size, int mark);

inline constexpr const char* implicitUid = "1.2.840.10008.1.2";
inline constexpr const char* explicitUid = "1.2.840.10008.1.2.1";
inline constexpr const char* bigEndianUid = "1.2.840.10008.1.2.2";
inline constexpr const char* deflatedUid = "1.2.840.10008.1.2.1.99";
inline constexpr const char* rleSyntax = "1.2.840.10008.1.2.5";
inline constexpr const char* jpegSyntax = "1.2.840.10008.1.2.4.50";

}  // namespace cinedisc::test
