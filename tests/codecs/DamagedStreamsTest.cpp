#include "dicom/codecs/FrameDecoder.h"
#include "dicom/codecs/Jpeg2000Decoder.h"
#include "dicom/codecs/Jpeg2000Header.h"
#include "dicom/codecs/JpegBounds.h"
#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <random>
#include <sstream>
#include <tuple>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using Kind = dicom::DecodeError::Kind;
using Bytes = std::vector<std::uint8_t>;
using enum dicom::DecodeError::Kind;

/// A picture of a single grey.
Raster blank(int rows, int columns, int components = 1) {
    Raster picture{rows, columns, components, 8, {}};
    picture.samples.assign(picture.size(), 128);
    return picture;
}

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
        const Bytes empty = jpeg2000Encoded(blank(64, 64), {.levels = 3, .precinct = 32});
        box.insert(box.end(), empty.begin(), empty.end());
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
            {"blank", empty, greyFormat(64, 64, 8), wavelet},
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

TEST(DamagedStreams, DamagedBytesAndOtherHeadersNeverLeadAstray) {
    std::mt19937 engine(99);
    for (const Sample& sample : everyKind()) {
        SCOPED_TRACE(sample.what);
        const auto expectSane = [&](const Bytes& bytes, const dicom::PixelFormat& format) {
            const auto frame = decoded(bytes, format, sample.compression);
            const int count = format.rows * format.columns * format.samplesPerPixel;
            EXPECT_TRUE(!frame || std::ssize(samplesOf(frame)) == count);
        };
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
            expectSane(bytes, sample.format);
        }
        for (const int bits : {1, 8, 16, 32})
            for (const int samplesPerPixel : {1, 3}) {
                auto other = sample.format;
                other.bitsAllocated = other.bitsStored = bits;
                other.highBit = bits - 1;
                other.samplesPerPixel = samplesPerPixel;
                expectSane(sample.bytes, other);
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

const char *const sequential = "lossless|baseline|extended|JPEG-LS",
                  *const any = "lossless|baseline|extended|JPEG-LS|progressive|lossless colour";

const Change changes[] = {
    // Zeros that fill the data up, ones before a marker, what stands behind the end, a comment, no end.
    {any, 0xD9, "+0000000000000000000000000000= +FFFFFFFFFF= 2:00FFD807FF="},
    {any, 0xDA, "+FFFE0005FFD907FFEA0002="},
    {sequential, 0xD9, "0:0000="},
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

TEST(DamagedStreams, ImpossibleFormatsAreErrors) {
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
}

/// That a stream is read with as many bytes as it must have for its packets or most of its code blocks, and
/// with one less is not.
void expectBound(const Raster& picture, const Jpeg2000Making& making, int blocks) {
    Bytes stream = jpeg2000Encoded(picture, making);
    int tiles = 0;
    for (std::size_t i = 1; i < stream.size(); ++i) tiles += stream[i - 1] == 0xFF && stream[i] == 0x90;
    // OpenJPEG writes a packet without content as one byte, and in a single grey none has content.
    const int packets = static_cast<int>(stream.size() - placeOf(stream, 0x90)) - 14 * tiles - 2;
    const int enough = std::max(packets, blocks - picture.rows * picture.columns / 256);
    for (const int less : {0, 1}) {
        stream.resize(static_cast<std::size_t>(enough - less));
        EXPECT_EQ(dicom::codecs::readJpeg2000Header(stream, formatOf(picture)).ok(), less == 0);
    }
}

TEST(WorkBounds, AWaveletMustHaveAByteForEachPacketAndForMostCodeBlocks) {
    std::mt19937 engine(21);
    const auto random = [&](int from, int to) {
        return from + static_cast<int>(engine() % static_cast<unsigned>(to - from + 1));
    };
    for (int round = 0; round < 40; ++round) {
        const bool isColour = random(0, 1);
        const Jpeg2000Making making{.tileSize = isColour ? 0 : random(0, 1) * random(120, 160),
                                    .subsampled = isColour,
                                    .levels = random(0, 4),
                                    .layers = random(3, 5),
                                    .precinct = 16,
                                    .offset = random(0, 40)};
        expectBound(blank(random(200, 300), random(200, 300), isColour ? 3 : 1), making, 0);
    }
    const std::pair<Jpeg2000Making, int> ofBlocks[] = {{{.levels = 0, .block = 4}, 3213},
                                                       {{.levels = 3, .block = 8}, 856},
                                                       {{.levels = 2, .precinct = 32, .block = 4}, 3328},
                                                       {{.levels = 2, .precinct = 8, .block = 8}, 3176},
                                                       {{.tileSize = 128, .levels = 1, .block = 8}, 832}};
    for (const auto& [making, blocks] : ofBlocks) expectBound(blank(250, 203), making, blocks);
    for (const auto& [side, tile] : {std::pair(3200, 16), {16000, 16000}}) {
        Bytes stream = jpeg2000Encoded(blank(64, 64), {.levels = 5});
        for (const auto& [at, number] : {std::pair(6, side), {10, side}, {22, tile}, {26, tile}})
            for (int byte = 0; byte < 4; ++byte)
                stream[placeOf(stream, 0x51) + std::size_t(at + byte)] =
                    std::uint8_t(number >> (24 - 8 * byte));
        stream.resize(14 * 200 * 200 * 8);
        const auto frame = decoded(stream, greyFormat(side, side, 8), Compression::Jpeg2000);
        EXPECT_EQ(frame ? Kind::NotDicom : frame.error().kind, Kind::TooLarge);
    }
}

TEST(WorkBounds, PicturesDecodedInBandsAreTheSame) {
    const std::pair<Raster, Jpeg2000Making> cases[] = {
        {raster(600, 40, 1, 12), {.layers = 3}},
        {raster(600, 40, 3, 8), {.reversible = false, .transformComponents = true}},
        {raster(600, 40, 3, 8), {.transformComponents = true, .tileSize = 100, .precinct = 64}},
        {raster(600, 40, 3, 8), {.subsampled = true, .block = 16}},
    };
    for (const auto& [picture, making] : cases) {
        const auto stream = jpeg2000Encoded(picture, making);
        const auto whole = dicom::codecs::decodeJpeg2000(stream, formatOf(picture));
        const auto inBands = dicom::codecs::decodeJpeg2000(stream, formatOf(picture), 1000);
        ASSERT_TRUE(whole.ok() && inBands.ok());
        EXPECT_TRUE(whole.value().cells == inBands.value().cells);
    }
}

/// A progressive stream of a single grey, of which the first scan comes so many times.
Bytes progressive(int scans) {
    const Bytes one = dcmtkLossy(blank(16, 16), LossyProcess::Progressive, 90);
    const std::size_t from = placeOf(one, 0xDA), to = from + placeOf(std::span(one).subspan(from), 0xC4);
    Bytes stream(&one[0], &one[from]);
    for (; scans > 0; --scans) stream.insert(stream.end(), &one[from], &one[to]);
    stream.insert(stream.end(), {0xFF, 0xD9});
    return stream;
}

TEST(WorkBounds, MoreScansThanAPictureCanNeedAreNotDecoded) {
    const auto format = greyFormat(16, 16, 8);
    EXPECT_EQ(samplesOf(decoded(progressive(100), format, Compression::Jpeg)),
              std::vector<std::int64_t>(256, 128));
    EXPECT_EQ(decoded(progressive(101), format, Compression::Jpeg).error().kind, Kind::Broken);

    using namespace dicom::codecs::marker;
    const std::tuple<int, std::uint8_t, int, int, int, std::optional<Kind>> rows[] = {
        {8, sof2, 1, 8192, 64, {}},  // 2 ^ 26 blocks
        {8, sof2, 1, 8193, 64, Kind::Broken},
        {8, sof2, 1, 11500, 2, {}},  // coefficients of 2 bytes each
        {8, sof2, 1, 12000, 2, Kind::TooLarge},
        {12, sof2, 1, 10000, 2, {}},
        {12, sof2, 1, 10500, 2, Kind::TooLarge},
        {8, sof0, 1, 16000, 2, {}},  // the first scan holds all
        {8, sof0, 3, 7000, 2, Kind::TooLarge},
        {12, sof1, 1, 16000, 1, Kind::TooLarge}};
    for (const auto& [precision, process, components, side, scans, error] : rows) {
        const Bytes stream = progressive(scans);
        dicom::codecs::JpegHeader header = dicom::codecs::readJpegHeader(stream).value();
        header.precision = precision;
        header.startOfFrame = process;
        header.componentCount = components;
        const auto found = dicom::codecs::jpegWorkError(stream, header, greyFormat(side, side, 8));
        EXPECT_EQ(found ? std::optional(found->kind) : std::nullopt, error) << side;
    }
}

}  // namespace
}  // namespace cinedisc::test
