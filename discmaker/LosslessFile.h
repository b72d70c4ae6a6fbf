#pragma once

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dctk.h>

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace cinedisc::discmaker {

/// An X-ray angiographic image (PS3.3 A.14) in the making: grey frames as JPEG Lossless, process 14 with
/// selection value 1, written by DCMTK. The representation of each value is named, so that DCMTK's dictionary
/// need not be at hand.
class LosslessFile {
  public:
    struct Format {
        int rows, columns;
        int bits;  ///< precision of the samples, 8 to 12
    };
    using Bytes = std::vector<std::uint8_t>;

    /// Puts what describes the pixels, and that texts are UTF-8.
    explicit LosslessFile(const Format& format);

    void put(const DcmTagKey& tag, DcmEVR representation, const std::string& text);
    void put(const DcmTagKey& tag, DcmEVR representation, std::initializer_list<double> numbers);
    void addFrame(Bytes codeStream);
    /// Raises DiscError when the file cannot be written. `syntax`: that of the frames, where they were not
    /// made by encoded().
    void write(const std::filesystem::path& path, E_TransferSyntax syntax = EXS_JPEGProcess14SV1);

    /// A whole JPEG stream of `rows` times `columns` samples, row after row.
    static Bytes encoded(const Format& format, std::span<const std::uint16_t> samples);

  private:
    void putMetaInformation();

    DcmFileFormat file_;
    std::vector<Bytes> frames_;
};

/// A unique identifier below 2.25 (PS3.5 annex B.2), always the same for the same name.
std::string uidFor(std::string_view name);

}  // namespace cinedisc::discmaker
