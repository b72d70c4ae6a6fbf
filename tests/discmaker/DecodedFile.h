#pragma once

#include <dcmtk/dcmdata/dctk.h>

#include <cstdint>
#include <string>
#include <vector>

namespace cinedisc::test {

/// A DICOM file as another implementation reads it, its pixels decompressed.
class DecodedFile {
  public:
    explicit DecodedFile(const std::string& bytes);

    std::string text(DcmTagKey tag, unsigned long value = 0);
    int number(DcmTagKey tag) { return std::stoi(text(tag)); }
    /// Samples of all frames, one after another.
    std::vector<std::uint16_t> samples();
    /// Bytes between the start of the first fragment and that of frame `frame` (from 0), by the offset table
    /// and by the fragments themselves.
    std::vector<std::uint32_t> offsetTable();
    std::vector<std::uint32_t> fragmentOffsets();

  private:
    DcmPixelSequence* fragments();

    DcmFileFormat file_;
};

}  // namespace cinedisc::test
