#include "dicom/TransferSyntax.h"

#include <algorithm>
#include <array>
#include <string>

namespace cinedisc::dicom {

namespace {

using Pixels = TransferSyntax::Pixels;

constexpr Encoding explicitBig{ByteOrder::Big, true};

constexpr TransferSyntax compressed(std::string_view uid, std::string_view name, Compression compression) {
    return {uid, name, compression, Pixels::Encapsulated};
}

constexpr TransferSyntax lossless(std::string_view uid, std::string_view name, Compression compression) {
    TransferSyntax syntax = compressed(uid, name, compression);
    syntax.isLossless = true;
    return syntax;
}

constexpr TransferSyntax video(std::string_view uid, std::string_view name) {
    return {uid, name, Compression::Unsupported, Pixels::Video};
}

constexpr TransferSyntax referenced(std::string_view uid, std::string_view name, bool deflated = false) {
    return {uid, name, Compression::Unsupported, Pixels::Referenced, explicitLittle, deflated};
}

constexpr std::array table = std::to_array<TransferSyntax>({
    {"1.2.840.10008.1.2", "implicit little endian", Compression::None, Pixels::Native, implicitLittle},
    {"1.2.840.10008.1.2.1", "explicit little endian"},
    {"1.2.840.10008.1.2.1.98", "encapsulated uncompressed", Compression::None, Pixels::Encapsulated},
    {"1.2.840.10008.1.2.1.99", "deflated", Compression::None, Pixels::Native, explicitLittle, true},
    {"1.2.840.10008.1.2.2", "explicit big endian", Compression::None, Pixels::Native, explicitBig, false,
     true},
    {"1.2.840.113619.5.2", "implicit little endian with big endian pixels", Compression::None, Pixels::Native,
     implicitLittle, false, true},
    compressed("1.2.840.10008.1.2.4.50", "JPEG baseline", Compression::Jpeg),
    compressed("1.2.840.10008.1.2.4.51", "JPEG extended", Compression::Jpeg),
    compressed("1.2.840.10008.1.2.4.52", "JPEG process 3 and 5", Compression::Jpeg),
    compressed("1.2.840.10008.1.2.4.53", "JPEG process 6 and 8", Compression::Jpeg),
    compressed("1.2.840.10008.1.2.4.54", "JPEG process 7 and 9", Compression::Jpeg),
    compressed("1.2.840.10008.1.2.4.55", "JPEG process 10 and 12", Compression::Jpeg),
    compressed("1.2.840.10008.1.2.4.56", "JPEG process 11 and 13", Compression::Jpeg),
    lossless("1.2.840.10008.1.2.4.57", "JPEG Lossless", Compression::Jpeg),
    compressed("1.2.840.10008.1.2.4.58", "JPEG process 15", Compression::Jpeg),
    compressed("1.2.840.10008.1.2.4.59", "JPEG process 16 and 18", Compression::Jpeg),
    compressed("1.2.840.10008.1.2.4.60", "JPEG process 17 and 19", Compression::Jpeg),
    compressed("1.2.840.10008.1.2.4.61", "JPEG process 20 and 22", Compression::Jpeg),
    compressed("1.2.840.10008.1.2.4.62", "JPEG process 21 and 23", Compression::Jpeg),
    compressed("1.2.840.10008.1.2.4.63", "JPEG process 24 and 26", Compression::Jpeg),
    compressed("1.2.840.10008.1.2.4.64", "JPEG process 25 and 27", Compression::Jpeg),
    lossless("1.2.840.10008.1.2.4.65", "JPEG process 28", Compression::Jpeg),
    lossless("1.2.840.10008.1.2.4.66", "JPEG process 29", Compression::Jpeg),
    lossless("1.2.840.10008.1.2.4.70", "JPEG Lossless", Compression::Jpeg),
    lossless("1.2.840.10008.1.2.4.80", "JPEG-LS lossless", Compression::JpegLs),
    compressed("1.2.840.10008.1.2.4.81", "JPEG-LS near-lossless", Compression::JpegLs),
    lossless("1.2.840.10008.1.2.4.90", "JPEG 2000 lossless", Compression::Jpeg2000),
    compressed("1.2.840.10008.1.2.4.91", "JPEG 2000", Compression::Jpeg2000),
    lossless("1.2.840.10008.1.2.4.92", "JPEG 2000 part 2 lossless", Compression::Jpeg2000),
    compressed("1.2.840.10008.1.2.4.93", "JPEG 2000 part 2", Compression::Jpeg2000),
    referenced("1.2.840.10008.1.2.4.94", "JPIP"),
    referenced("1.2.840.10008.1.2.4.95", "JPIP", true),
    video("1.2.840.10008.1.2.4.100", "MPEG-2 video"),
    video("1.2.840.10008.1.2.4.100.1", "MPEG-2 video"),
    video("1.2.840.10008.1.2.4.101", "MPEG-2 video"),
    video("1.2.840.10008.1.2.4.101.1", "MPEG-2 video"),
    video("1.2.840.10008.1.2.4.102", "H.264 video"),
    video("1.2.840.10008.1.2.4.102.1", "H.264 video"),
    video("1.2.840.10008.1.2.4.103", "H.264 video"),
    video("1.2.840.10008.1.2.4.103.1", "H.264 video"),
    video("1.2.840.10008.1.2.4.104", "H.264 video"),
    video("1.2.840.10008.1.2.4.104.1", "H.264 video"),
    video("1.2.840.10008.1.2.4.105", "H.264 video"),
    video("1.2.840.10008.1.2.4.105.1", "H.264 video"),
    video("1.2.840.10008.1.2.4.106", "H.264 stereo video"),
    video("1.2.840.10008.1.2.4.106.1", "H.264 stereo video"),
    video("1.2.840.10008.1.2.4.107", "HEVC video"),
    video("1.2.840.10008.1.2.4.108", "HEVC video"),
    lossless("1.2.840.10008.1.2.4.110", "JPEG XL lossless", Compression::Unsupported),
    compressed("1.2.840.10008.1.2.4.111", "JPEG XL", Compression::Unsupported),
    compressed("1.2.840.10008.1.2.4.112", "JPEG XL", Compression::Unsupported),
    lossless("1.2.840.10008.1.2.4.201", "High-Throughput JPEG 2000 lossless", Compression::Jpeg2000),
    lossless("1.2.840.10008.1.2.4.202", "High-Throughput JPEG 2000 lossless", Compression::Jpeg2000),
    compressed("1.2.840.10008.1.2.4.203", "High-Throughput JPEG 2000", Compression::Jpeg2000),
    referenced("1.2.840.10008.1.2.4.204", "JPIP"),
    referenced("1.2.840.10008.1.2.4.205", "JPIP", true),
    lossless("1.2.840.10008.1.2.5", "RLE", Compression::Rle),
    video("1.2.840.10008.1.2.7.1", "uncompressed video stream"),
    video("1.2.840.10008.1.2.7.2", "uncompressed video stream"),
    video("1.2.840.10008.1.2.7.3", "audio stream"),
    {"1.2.840.10008.1.2.8.1", "deflated frames", Compression::None, Pixels::DeflatedFrames},
});

}  // namespace

const TransferSyntax& nativeSyntax(const Encoding& encoding) {
    // The plain ones stand first.
    const auto at = std::find_if(table.begin(), table.end(),
                                 [&encoding](const auto& row) { return row.encoding == encoding; });
    return at == table.end() ? nativeSyntax(implicitLittle) : *at;
}

const TransferSyntax* findTransferSyntax(std::string_view uid) {
    const auto at =
        std::find_if(table.begin(), table.end(), [uid](const auto& row) { return row.uid == uid; });
    return at == table.end() ? nullptr : &*at;
}

}  // namespace cinedisc::dicom
