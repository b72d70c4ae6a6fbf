#include "tests/fidelity/table/MadeFiles.h"

#include "tests/codecs/BlankStreams.h"
#include "tests/codecs/Encoders.h"

#include <algorithm>

namespace cinedisc::fidelity {

namespace {

using test::BlankJpeg;
using test::BlankJpeg2000;
using test::Bytes;
using test::DicomBuilder;
using Stream = std::vector<std::uint8_t>;

constexpr int side = 256;
constexpr const char* baseline = "1.2.840.10008.1.2.4.50";
constexpr const char* extended = "1.2.840.10008.1.2.4.51";
constexpr const char* nearLossless = "1.2.840.10008.1.2.4.81";
constexpr const char* jpeg2000 = "1.2.840.10008.1.2.4.91";
constexpr const char* rle = "1.2.840.10008.1.2.5";

Bytes asBytes(const Stream& stream) {
    const auto bytes = std::as_bytes(std::span(stream));
    return {bytes.begin(), bytes.end()};
}

DicomBuilder encapsulated(DicomBuilder file, const char* syntax, const Stream& stream) {
    file.transferSyntax(syntax);
    file.encapsulatedFrames({asBytes(stream)}, test::OffsetTable::Empty);
    return file;
}

/// A picture with a window over all that its bits can hold.
DicomBuilder grey(int size, int allocated, int stored, bool isSigned = false) {
    DicomBuilder file = DicomBuilder::image(size, size, 1, allocated, stored);
    file.numbers({0x0028, 0x0103}, "US", {isSigned ? 1 : 0});
    file.text({0x0028, 0x1050}, "DS", std::to_string(isSigned ? 0 : 1 << (stored - 1)));
    file.text({0x0028, 0x1051}, "DS", std::to_string(1 << stored));
    return file;
}

/// A slope from black to white and back, flat at both ends.
test::Raster slope(int bits, bool isSigned = false) {
    test::Raster raster{side, side, 1, bits, {}, isSigned};
    const int range = (1 << bits) - 1, lowest = isSigned ? -(1 << (bits - 1)) : 0;
    for (int i = 0; i < side * side; ++i) {
        const int x = i % side, level = (std::min(x, side - x) - 16) * range / 96;
        raster.samples.push_back(lowest + std::clamp(level, 0, range));
    }
    return raster;
}

enum class ScanHeader { AsCoded, NoCoefficients };
DicomBuilder cosine(int bits, ScanHeader header) {
    Stream stream = test::dcmtkLossy(slope(bits), test::LossyProcess::Sequential, 95);
    const std::uint8_t scan[] = {0xFF, 0xDA, 0, 8};
    const auto at = std::search(stream.begin(), stream.end(), std::begin(scan), std::end(scan));
    if (header == ScanHeader::NoCoefficients) at[8] = 0;
    return encapsulated(grey(side, bits > 8 ? 16 : 8, bits), bits > 8 ? extended : baseline, stream);
}

/// Black and white as a loss would leave them: a little beyond the 12 bits stored.
test::Raster beyond(bool isSigned) {
    test::Raster raster = slope(12, isSigned);
    for (auto& sample : raster.samples) {
        if (sample == (isSigned ? 2047 : 4095)) sample += 7;
        if (sample == -2048) sample -= 7;
    }
    raster.bits = 16;
    return raster;
}

MadeFile beyondRange(const std::string& name, const std::string& what, bool isSigned, const char* syntax,
                     std::function<Stream(const test::Raster&)> encode) {
    return {name, what,
            [=] { return encapsulated(grey(side, 16, 12, isSigned), syntax, encode(beyond(isSigned))); },
            [=] {
                DicomBuilder file = grey(side, 16, 12, isSigned);
                Bytes cells;
                for (const std::int32_t sample : slope(12, isSigned).samples)
                    for (const int shift : {0, 8}) cells.push_back(static_cast<std::byte>(sample >> shift));
                file.pixels(std::move(cells));
                return file;
            }};
}

Stream nearLosslessStream(const test::Raster& raster) { return test::jpegLsEncoded(raster, 3); }
Stream waveletStream(const test::Raster& raster) { return test::jpeg2000Encoded(raster); }

Stream singleBits() {
    Stream bits(side * side / 8);
    for (std::size_t i = 0; i < bits.size(); ++i)
        bits[i] = static_cast<std::uint8_t>(i % 32 < i / 256 ? 0xFF : i % 7);
    return bits;
}

constexpr int largeSide = 4800;

Stream largeColour() {
    Stream samples;
    for (int y = 0; y < largeSide; ++y)
        for (int x = 0; x < largeSide; ++x)
            for (const int part : {x / 64 * 3, y / 64 * 3, (x + y) / 128 * 3})
                samples.push_back(static_cast<std::uint8_t>(part));
    return samples;
}

DicomBuilder colour() {
    DicomBuilder file = DicomBuilder::image(largeSide, largeSide);
    file.numbers({0x0028, 0x0002}, "US", {3}).numbers({0x0028, 0x0006}, "US", {0});
    file.text({0x0028, 0x0004}, "CS", "RGB");
    return file;
}

MadeFile blank(const std::string& name, const std::string& what, const BlankJpeg2000& making) {
    const int size = static_cast<int>(making.side);
    return {name, what, [=] { return encapsulated(grey(size, 8, 8), jpeg2000, blankJpeg2000(making)); },
            nullptr};
}

MadeFile blank(const std::string& name, const std::string& what, const BlankJpeg& making) {
    const int size = static_cast<int>(making.side), bits = static_cast<int>(making.precision);
    const char* syntax = bits > 8 ? extended : baseline;
    return {name, what,
            [=] { return encapsulated(grey(size, bits > 8 ? 16 : 8, bits), syntax, blankJpeg(making)); },
            nullptr};
}

/// Many pixels in few bytes, seen through a round shutter.
DicomBuilder largeShutter() {
    constexpr int size = 16000;
    const test::Raster flat{size, size, 1, 8, std::vector<std::int32_t>(std::size_t{size} * size, 200)};
    DicomBuilder file = grey(size, 8, 8);
    file.text({0x0018, 0x1600}, "CS", "CIRCULAR");
    file.text({0x0018, 0x1610}, "IS", "8000\\8000").text({0x0018, 0x1612}, "IS", "7900");
    return encapsulated(file, rle, test::rleEncoded(flat));
}

}  // namespace

const std::vector<MadeFile>& madeFiles() {
    static const std::vector<MadeFile> files{
        {"jpeg_12bit_se0.dcm", "12-bit JPEG, Se = 0 in the scan header",
         [] { return cosine(12, ScanHeader::NoCoefficients); },
         [] { return cosine(12, ScanHeader::AsCoded); }},
        {"jpeg_8bit_se0.dcm", "8-bit JPEG, Se = 0 in the scan header",
         [] { return cosine(8, ScanHeader::NoCoefficients); }, [] { return cosine(8, ScanHeader::AsCoded); }},
        beyondRange("j2k_beyond_range.dcm", "Reversible wavelet cut down: 12 of 16 bits, whites above 4095",
                    false, jpeg2000, waveletStream),
        beyondRange("j2k_beyond_range_signed.dcm", "The same, signed: beyond both ends", true, jpeg2000,
                    waveletStream),
        beyondRange("jls_beyond_range.dcm", "JPEG-LS near-lossless by 3: 12 of 16 bits, whites above 4095",
                    false, nearLossless, nearLosslessStream),
        beyondRange("jls_beyond_range_signed.dcm", "The same, signed: beyond both ends", true, nearLossless,
                    nearLosslessStream),
        {"rle_single_bits.dcm", "RLE of one bit a pixel",
         [] {
             const Stream bits = singleBits();
             const test::Raster bytes{side, side / 8, 1, 8, {bits.begin(), bits.end()}};
             return encapsulated(grey(side, 1, 1), rle, test::rleEncoded(bytes));
         },
         [] {
             DicomBuilder file = grey(side, 1, 1);
             file.pixels(asBytes(singleBits()), "OB");
             return file;
         }},
        {"j2k_colour_23mp.dcm", "JPEG 2000, colour, 4800 x 4800",
         [] {
             const Stream samples = largeColour();
             const test::Raster raster{largeSide, largeSide, 3, 8, {samples.begin(), samples.end()}};
             return encapsulated(colour(), jpeg2000,
                                 test::jpeg2000Encoded(raster, {.transformComponents = true}));
         },
         [] {
             DicomBuilder file = colour();
             file.pixels(asBytes(largeColour()), "OB");
             return file;
         }},
        {"rle_16000_shutter.dcm", "16000 x 16000 under a round shutter", largeShutter, nullptr},
        blank("j2k_precincts.dcm", "JPEG 2000, 4096 x 4096 in precincts of 2 x 2",
              BlankJpeg2000{.side = 4096, .tile = 4096, .levels = 5, .precinctBits = 1, .length = 3700}),
        blank("j2k_layers.dcm", "JPEG 2000, 65,535 layers",
              BlankJpeg2000{.side = 4096, .tile = 4096, .layers = 65535, .levels = 5, .precinctBits = 7}),
        blank("j2k_code_blocks.dcm", "JPEG 2000, 4096 x 4096 in code blocks of 4 x 4",
              BlankJpeg2000{.side = 4096, .tile = 4096, .levels = 5, .blockBits = 2}),
        blank("j2k_tiles.dcm", "JPEG 2000 in 62,500 tiles", BlankJpeg2000{.side = 4000, .tile = 16}),
        blank("j2k_16000.dcm", "JPEG 2000, 16000 x 16000",
              BlankJpeg2000{.side = 16000, .tile = 16000, .levels = 5}),
        blank("jpeg_8bit_scans.dcm", "8-bit progressive JPEG, 4096 x 4096, 500 scans",
              BlankJpeg{.side = 4096, .scans = 500}),
        blank("jpeg_12bit_scans.dcm", "12-bit progressive JPEG, 20,000 scans",
              BlankJpeg{.side = 64, .scans = 20000, .precision = 12}),
        blank("jpeg_8bit_16000.dcm", "8-bit progressive JPEG, 16000 x 16000, 2 scans",
              BlankJpeg{.side = 16000, .scans = 2}),
    };
    return files;
}

}  // namespace cinedisc::fidelity
