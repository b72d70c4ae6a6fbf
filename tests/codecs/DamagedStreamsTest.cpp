#include "dicom/codecs/FrameDecoder.h"
#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <random>
#include <sstream>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using Kind = dicom::DecodeError::Kind;
using Bytes = std::vector<std::uint8_t>;
using enum dicom::DecodeError::Kind;

struct Sample {
    std::string what;
    Bytes bytes;
    dicom::PixelFormat format;
    Compression compression;
};

/// One stream of every kind.
const std::vector<Sample>& everyKind() {
    static const std::vector<Sample> all = [] {
        const Raster grey = raster(48, 40, 1, 8), grey12 = raster(48, 40, 1, 12), rgb = raster(48, 40, 3, 8);
        const auto format8 = formatOf(grey), format12 = formatOf(grey12), formatRgb = formatOf(rgb);
        const auto jpeg = Compression::Jpeg, ls = Compression::JpegLs, wavelet = Compression::Jpeg2000;
        const auto lossy12 = [&](LossyProcess process) { return dcmtkLossy(grey12, process, 90); };
        const Jpeg2000Making boxed{.reversible = false, .transformComponents = true, .inFileFormat = true};
        Bytes rle(64), box{0, 0, 0,   12,  'j', 'P', ' ', ' ', 13, 10, 0x87, 10, 0, 0,
                           0, 1, 'j', 'p', '2', 'c', 0,   0,   0,  0,  0,    1,  0, 0};
        rle[0] = 1, rle[4] = 64;
        rle.insert(rle.end(), {254, 7, 2, 1, 2, 3});
        Raster empty = raster(64, 64, 1, 8, Texture::Flat);
        for (auto& sample : empty.samples) sample = 128;
        const Bytes blank = jpeg2000Encoded(empty, {.levels = 3, .precinct = 32});
        box.insert(box.end(), blank.begin(), blank.end());
        return std::vector<Sample>{
            {"RLE by hand", rle, greyFormat(2, 3, 8), Compression::Rle},
            {"blank in a box", box, greyFormat(64, 64, 8), wavelet},
            {"RLE", rleEncoded(grey12), format12, Compression::Rle},
            {"lossless", repeated(losslessEncoded(raster(12, 40, 1, 8)), 4), format8, jpeg},
            {"lossless colour", losslessEncoded(rgb, {7, 0, false}), formatRgb, jpeg},
            {"baseline", dcmtkLossy(grey, LossyProcess::Baseline, 100), format8, jpeg},
            {"progressive", dcmtkLossy(rgb, LossyProcess::Progressive, 100), formatRgb, jpeg},
            {"extended", lossy12(LossyProcess::Sequential), format12, jpeg},
            {"12 bit progressive", lossy12(LossyProcess::Progressive), format12, jpeg},
            {"JPEG-LS", jpegLsEncoded(grey), format8, ls},
            {"JPEG-LS colour", jpegLsEncoded(rgb, 2, LsInterleave::Line), formatRgb, ls},
            {"JPEG 2000", jpeg2000Encoded(grey12, {.tileSize = 32}), format12, wavelet},
            {"JPEG 2000 colour", jpeg2000Encoded(rgb, boxed), formatRgb, wavelet},
            {"blank", blank, greyFormat(64, 64, 8), wavelet},
        };
    }();
    return all;
}

TEST(DamagedStreams, EveryCutAndOtherSizesAreErrors) {
    for (const Sample& sample : everyKind()) {
        if (sample.what.starts_with("blank") || sample.what == "RLE by hand") continue;
        for (std::size_t length = 0; length + 8 < sample.bytes.size(); length += 7) {
            Bytes start = sample.bytes;
            start.resize(length);
            const auto frame = decoded(start, sample.format, sample.compression);
            ASSERT_FALSE(frame.ok()) << sample.what << " at " << length;
            if (sample.compression == Compression::Jpeg && length > 2) {
                ASSERT_EQ(frame.error().kind, CutOff) << sample.what << " at " << length;
            }
        }
        for (int dicom::PixelFormat::*side : {&dicom::PixelFormat::rows, &dicom::PixelFormat::columns}) {
            auto larger = sample.format;
            ++(larger.*side);
            EXPECT_FALSE(decoded(sample.bytes, larger, sample.compression).ok()) << sample.what;
        }
    }
}

/// Whatever the bytes are, the outcome is a frame of the right size or an error.
void expectSane(const Bytes& bytes, const dicom::PixelFormat& format, Compression compression) {
    const auto frame = decoded(bytes, format, compression);
    if (frame) {
        EXPECT_EQ(samplesOf(frame).size(),
                  static_cast<std::size_t>(format.rows * format.columns * format.samplesPerPixel));
    }
}

TEST(DamagedStreams, DamagedBytesAndOtherHeadersNeverLeadAstray) {
    std::mt19937 engine(99);
    for (const Sample& sample : everyKind()) {
        SCOPED_TRACE(sample.what);
        const std::size_t size = sample.bytes.size();
        for (int round = 0; round < 250; ++round) {
            Bytes bytes = sample.bytes;
            // Headers are short and matter most, so that half of the damage is done there.
            const std::size_t reach = round % 2 ? size : std::min<std::size_t>(size, 120);
            for (unsigned hits = 1 + engine() % 4; hits > 0; --hits) {
                const std::size_t at = engine() % reach;
                static constexpr std::uint8_t likely[] = {0, 1, 0x7F, 0x80, 0xFF};
                bytes[at] = engine() % 3 ? static_cast<std::uint8_t>(engine()) : likely[engine() % 5];
            }
            if (round % 5 == 0) bytes.resize(engine() % size);
            expectSane(bytes, sample.format, sample.compression);
        }
        for (const int bits : {1, 8, 16, 32})
            for (const int samplesPerPixel : {1, 3}) {
                auto other = sample.format;
                other.bitsAllocated = other.bitsStored = bits;
                other.highBit = bits - 1;
                other.samplesPerPixel = samplesPerPixel;
                expectSane(sample.bytes, other, sample.compression);
            }
    }
}

/// Changes of good streams, each for itself: other bytes at a place that is counted from a marker (0: from
/// the start of the whole), or with + more bytes before the marker. The stream is broken then, or with ? not
/// supported, with / cut off, with = as it was.
struct Change {
    const char* streams;  ///< parted by |
    int marker;
    const char* changes;
};

const char *const whole = "lossless|baseline|extended|JPEG-LS", *const more = "progressive|lossless colour";

const Change changes[] = {
    // Zeros that fill the data up, ones before a marker, what stands behind the end, no end, a comment.
    {whole, 0xD9, "+0000000000000000000000000000= +FFFFFFFFFF= 2:00FFD807FF= 0:0000="},
    {more, 0xD9, "+0000000000000000000000000000= +FFFFFFFFFF= 2:00FFD807FF="},
    {whole, 0xDA, "+FFFE0005FFD907FFEA0002="},
    {more, 0xDA, "+FFFE0005FFD907FFEA0002="},
    // Coefficients 0 to 0, which mean something in progressive streams only.
    {"baseline|extended", 0xDA, "8:00="},
    // Process, length, precision, size, components and their sampling.
    {"lossless", 0xC3, "1:C9? 1:C5? 1:EA 2:0001 2:0002 2:000A 4:01 4:11 6:2F 8:29 9:00 9:02 9:05"},
    {"lossless", 0xC3, "11:01 11:10 11:15 11:51 11:44="},
    {"lossless colour", 0xC3, "9:02? 11:21? 14:12?"},
    {"extended", 0xC1, "4:09?"},
    {"baseline", 0xC0, "5:0000"},
    // Another frame or the end before the scan.
    {"baseline", 0xDA, "+FFC0000B080030002801011100 +FFD9"},
    // Scans: length, components, tables, predictors, shift.
    {"lossless", 0xDA, "2:0007 4:00 4:02 5:09 6:10 7:00 7:08 9:08 9:03"},
    {"lossless colour", 0xDA, "2:000A0201000200010000?"},
    // Code tables: their number, no prefix codes, too many symbols, symbols beyond 16; no codes, too short.
    {"lossless", 0xC4, "4:04 4:10 5:03 20:C8 21:11"},
    {"lossless", 0xDA,
     "+FFC400130000000000000000000000000000000000 +FFC4001201010000000000000000000000000000"},
    // Restarts: too short, after other rows, within a row, out of order, with an early end; bytes left over.
    {"lossless", 0xDD, "2:0003 4:28 5:E1"},
    {"lossless", 0xD0, "+FFD0010203"},
    {"lossless", 0xD1, "1:D2 +5555555555555555555555555555= +555555555555555555555555555555555555"},
    // JPEG-LS: precision, sampling; error allowed, length, order of components, interleave.
    {"JPEG-LS", 0xF7, "4:01 4:11"},
    {"JPEG-LS", 0xDA, "7:80"},
    {"JPEG-LS colour", 0xF7, "11:21?"},
    {"JPEG-LS colour", 0xDA, "2:000B 7:01 12:00 12:03"},
    // Its parameters: the usual ones, none, others; too short; each of them beyond its bounds.
    {"JPEG-LS", 0xDA, "+FFF8000D0100FF0003000700150040= +FFF8000D0100000000000000000000= +FFF8000302="},
    {"JPEG-LS", 0xDA, "+FFF8000C01000000000000000000 +FFF80002 +FFF8000D0101000003000700150040"},
    {"JPEG-LS", 0xDA, "+FFF8000D0100FF0008000700150040 +FFF8000D0100FF0003000701000040"},
    {"JPEG-LS", 0xDA, "+FFF8000D0100FF0003000700060040 +FFF8000D0100FF0003000700150002"},
    {"JPEG-LS", 0xDA, "+FFF8000D0100FF0003000700150100"},
    {"JPEG-LS colour", 0xDA, "+FFF8000D0100FF0002001100230040"},
    // Restarts and colour transforms of it, or nearly so.
    {"JPEG-LS", 0xDA, "+FFDD00040001? +FFDD00040000="},
    {"JPEG-LS colour", 0xDA,
     "+FFE800076D72667801? +FFE800076D72667800= +FFE800066D726678= +FFE800076D72667901="},
    // Wavelets: end before the beginning, tiles of no size or that begin inside, components and their steps.
    {"blank", 0x51, "17:41 25:00 29:00 33:01 37:01 39:04? 41:00 42:00"},
    // Their coding: length, levels, code blocks, precincts; of a component of its own.
    {"blank", 0x52, "0:00 1:30? 3:0F 3:0B 9:21 10:09 11:09 15:50 16:05"},
    {"blank", 0x5C, "+FF53000900000304040001= +FF53000901000304040001 +FF530008000003040400 +FF53000300"},
    // Markers: a comment, of the other part, of no length, beyond the end; parts of a tile.
    {"blank", 0x5C, "+FF6400040001= +FF660002? +FF730002? +FF640001/ +FF64FFFF/"},
    {"blank", 0x90, "9:0D 6:00000000="},
    // Boxes: of another name, up to the end, of no length, shorter than their header, beyond the end.
    {"blank in a box", 0, "16:66726565 12:000000006A703263 12:00000007 20:000000000000000F 20:FF="},
    // Runs: without meaning, single bytes, padding behind and within; cut ones.
    {"RLE by hand", 0, "64:80FE078002010203= 66:000100020003= 70:00= 66:0301020300="},
    {"RLE by hand", 0, "64:060707070102/ 64:8080808080FB/ 64:80808080F901/"},
    // Segments: their number and offsets.
    {"RLE by hand", 0, "0:00 0:100000004000000046 0:0F0000004000000046="},
    {"RLE by hand", 0, "0:02000000400000000A 0:020000004000000044 4:3F 4:46/"},
};

TEST(DamagedStreams, HeadersThatMakeNoSenseAreErrors) {
    for (const Sample& sample : everyKind())
        for (const auto& [streams, marker, texts] : changes) {
            if (('|' + (streams + std::string("|"))).find('|' + sample.what + '|') == std::string::npos)
                continue;
            const std::size_t place = marker ? placeOf(sample.bytes, static_cast<std::uint8_t>(marker)) : 0;
            ASSERT_LT(place, sample.bytes.size());
            std::istringstream all(texts);
            for (std::string change; all >> change;) {
                SCOPED_TRACE(testing::Message() << sample.what << ' ' << std::hex << marker << ' ' << change);
                Bytes stream = sample.bytes, bytes;
                for (std::size_t i = change.find_first_of("+:") + 1; i + 1 < change.size(); i += 2)
                    bytes.push_back(static_cast<std::uint8_t>(std::stoi(change.substr(i, 2), nullptr, 16)));
                if (change[0] == '+') {
                    stream.insert(stream.begin() + static_cast<std::ptrdiff_t>(place), bytes.begin(),
                                  bytes.end());
                } else {
                    const std::size_t at = place + std::stoul(change);
                    stream.resize(std::max(stream.size(), at + bytes.size()));
                    std::copy(bytes.begin(), bytes.end(), &stream[at]);
                }
                const auto frame = decoded(stream, sample.format, sample.compression);
                const Kind kind = frame ? NoPicture : frame.error().kind;
                const std::map<Kind, char> signs{
                    {NoPicture, '='}, {Broken, '!'}, {Unsupported, '?'}, {CutOff, '/'}};
                ASSERT_EQ(signs.at(kind), std::isxdigit(change.back()) ? '!' : change.back());
                if (frame) {
                    EXPECT_EQ(samplesOf(frame),
                              samplesOf(decoded(sample.bytes, sample.format, sample.compression)));
                }
            }
        }
}

TEST(DamagedStreams, WhatCannotBeDecodedIsNamed) {
    auto cells12 = greyFormat(4, 4, 12), cells64 = cells12, four = colourFormat(4, 4);
    cells12.bitsAllocated = 12;
    cells64.bitsAllocated = 64;
    four.samplesPerPixel = 4;
    auto floats = greyFormat(4, 4, 32), colourFloats = colourFormat(4, 4);
    auto doubles = greyFormat(6000, 6000, 32);
    floats.sampleKind = colourFloats.sampleKind = dicom::SampleKind::Float;
    doubles.sampleKind = dicom::SampleKind::Double;
    const auto pairs = dicom::Photometric::YbrFull422, partial420 = dicom::Photometric::YbrPartial420;
    struct Case {
        Kind kind;
        std::size_t bytes;
        std::vector<dicom::PixelFormat> formats;
        Compression compression = Compression::None;
    };
    const Case cases[] = {
        {CutOff, 31, {greyFormat(4, 4, 12), colourFormat(4, 4, pairs)}},
        {CutOff, 0, {greyFormat(4, 4, 12)}},
        {CutOff, 47, {colourFormat(4, 4), floats}},
        {Broken, 100, {greyFormat(0, 4, 8), greyFormat(4, 0, 8)}},
        {Broken, 100, {greyFormat(65536, 1, 8), greyFormat(1, 65536, 8)}},
        {CutOff, 100, {greyFormat(1, 65535, 8), greyFormat(65535, 1, 8)}},
        {CutOff, 100, {greyFormat(16384, 16384, 8), colourFormat(8000, 8000)}},
        {TooLarge, 100, {greyFormat(16384, 16385, 8), greyFormat(16384, 8193, 16)}},
        {TooLarge, 100, {doubles, colourFormat(8500, 8500)}},
        {Unsupported, 1000, {colourFormat(4, 4, partial420), colourFloats, cells12, cells64, four}},
        {Unsupported, 100, {floats, cells12}, Compression::Rle},
        {CutOff, 0, {greyFormat(4, 4, 8)}, Compression::Jpeg},
        {Broken, 9, {greyFormat(4, 4, 8)}, Compression::Jpeg},
        {Broken, 9, {greyFormat(4, 4, 8)}, Compression::Jpeg2000},
        {CutOff, 63, {greyFormat(4, 4, 8)}, Compression::Rle},
        {Unsupported, 9, {greyFormat(4, 4, 8)}, Compression::Unsupported},
    };
    for (const Case& c : cases)
        for (const auto& format : c.formats) {
            const auto frame = decoded(Bytes(c.bytes), format, c.compression);
            ASSERT_FALSE(frame.ok()) << &c - cases;
            EXPECT_EQ(frame.error().kind, c.kind) << &c - cases << frame.error().detail;
        }
    const Sample& extended = everyKind()[7];
    Bytes stream = extended.bytes;
    stream[placeOf(stream, 0xC1) + 4] = 9;
    const auto frame = decoded(stream, extended.format, extended.compression);
    EXPECT_EQ(frame.error().detail, "JPEG process 1, 9 bit");
}

}  // namespace
}  // namespace cinedisc::test
