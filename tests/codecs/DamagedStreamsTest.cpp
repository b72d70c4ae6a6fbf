#include "dicom/codecs/FrameDecoder.h"
#include "tests/codecs/BlankStreams.h"
#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <optional>
#include <random>
#include <thread>

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

    auto samples(const Bytes& changed) const { return samplesOf(decoded(changed, format, compression)); }
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
        const Bytes blank = blankJpeg2000({.levels = 3, .precinctBits = 5});
        box.insert(box.end(), blank.begin(), blank.end());
        return std::vector<Sample>{
            {"RLE by hand", rle, greyFormat(2, 3, 8), Compression::Rle},
            {"blank in a box", box, greyFormat(64, 64, 8), wavelet},
            {"RLE", rleEncoded(grey12), format12, Compression::Rle},
            {"lossless", repeated(losslessEncoded(raster(12, 40, 1, 8)), 4), format8, jpeg},
            {"lossless colour", losslessEncoded(rgb, {7, 0, false}), formatRgb, jpeg},
            {"baseline", jpegEncoded(grey, {.restartInterval = 2}), format8, jpeg},
            {"progressive", jpegEncoded(rgb, {.progressive = true}), formatRgb, jpeg},
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

void insertBefore(Bytes& stream, std::uint8_t marker, const Bytes& bytes) {
    stream.insert(stream.begin() + static_cast<std::ptrdiff_t>(placeOf(stream, marker)), bytes.begin(),
                  bytes.end());
}

TEST(DamagedStreams, WhatDoesNotTouchThePictureIsOverlooked) {
    struct Case {
        const char* what;
        std::function<void(Bytes&)> change;
        bool inProgressive = true;
    };
    const Bytes comments{0xFF, 0xFE, 0, 5, 0xFF, 0xD9, 7, 0xFF, 0xEA, 0, 2};
    const auto withoutSelection = [](Bytes& s) {
        std::uint8_t* const scan = &s[placeOf(s, 0xDA)];
        if (auto& last = scan[6 + 2 * scan[4]]; last == 63) last = 0;
    };
    const Case cases[] = {
        {"zeros that fill the data up", [](Bytes& s) { s.insert(s.end() - 2, 40, 0); }},
        {"ones before a marker", [](Bytes& s) { s.insert(s.end() - 2, 5, 0xFF); }},
        {"comments and application data", [&](Bytes& s) { insertBefore(s, 0xDA, comments); }},
        {"a start behind the end",
         [](Bytes& s) {
             s.insert(s.end(), {0, 0xFF, 0xD8, 7});
         }},
        {"ones behind the end", [](Bytes& s) { s.push_back(0xFF); }},
        {"no end marker", [](Bytes& s) { s.resize(s.size() - 2); }, false},
        {"coefficients 0 to 0 in the scan header", withoutSelection, false},
    };
    for (const Sample& sample : everyKind()) {
        Bytes stream = sample.bytes;
        if (stream[0] != 0xFF || stream[1] != 0xD8) continue;
        while (stream.back() != 0xD9) stream.pop_back();
        const auto expected = sample.samples(stream);
        for (const Case& c : cases) {
            if (sample.what.ends_with("progressive") && !c.inProgressive) continue;
            SCOPED_TRACE(testing::Message() << sample.what << ", " << c.what);
            Bytes changed = stream;
            c.change(changed);
            EXPECT_EQ(sample.samples(changed), expected);
        }
    }
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

TEST(DamagedStreams, ThreadsDecodeAtTheSameTime) {
    std::vector<std::vector<std::int64_t>> expected;
    for (const Sample& sample : everyKind()) expected.push_back(sample.samples(sample.bytes));
    std::array<bool, 4> same{};
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < same.size(); ++t)
        threads.emplace_back([&, t] {
            same[t] = true;
            for (std::size_t i = t * 3; i < t * 3 + expected.size(); ++i) {
                const Sample& sample = everyKind()[i % expected.size()];
                same[t] = same[t] && sample.samples(sample.bytes) == expected[i % expected.size()];
            }
        });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(same, (std::array<bool, 4>{true, true, true, true}));
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

constexpr std::uint8_t whole = 0;

/// What becomes of a good stream that is changed at one place: other bytes from `at`, counted from a marker
/// or from the start of the whole; or, where `at` is 0, several bytes more before the marker.
struct Change {
    const char *what, *stream;
    std::uint8_t marker;
    std::size_t at;
    Bytes bytes;
    std::optional<Kind> error = Broken;
};

const std::optional<Kind> none;

const Change changes[] = {
    {"other rows", "lossless", 0xC3, 6, {47}},
    {"other columns", "lossless", 0xC3, 8, {41}},
    {"arithmetic coding", "lossless", 0xC3, 1, {0xC9}, Unsupported},
    {"hierarchical", "lossless", 0xC3, 1, {0xC5}, Unsupported},
    {"cosine of that precision", "extended", 0xC1, 4, {9}, Unsupported},
    {"no rows", "baseline", 0xC0, 5, {0, 0}},
    {"no precision", "lossless", 0xC3, 4, {1}},
    {"too much precision", "lossless", 0xC3, 4, {17}},
    {"no components", "lossless", 0xC3, 9, {0}},
    {"five components", "lossless", 0xC3, 9, {5}},
    {"two components", "lossless colour", 0xC3, 9, {2}, Unsupported},
    {"more components than described", "lossless", 0xC3, 9, {2}},
    {"no length", "lossless", 0xC3, 2, {0, 1}},
    {"nothing but a length", "lossless", 0xC3, 2, {0, 2}},
    {"header too short", "lossless", 0xC3, 2, {0, 10}},
    {"no columns of a sample", "lossless", 0xC3, 11, {0x01}},
    {"no rows of a sample", "lossless", 0xC3, 11, {0x10}},
    {"too many columns of a sample", "lossless", 0xC3, 11, {0x51}},
    {"too many rows of a sample", "lossless", 0xC3, 11, {0x15}},
    {"as many as can be", "lossless", 0xC3, 11, {0x44}, none},
    {"subsampled across", "lossless colour", 0xC3, 11, {0x21}, Unsupported},
    {"subsampled down", "lossless colour", 0xC3, 14, {0x12}, Unsupported},
    {"two frames", "baseline", 0xDA, 0, {0xFF, 0xC0, 0, 11, 8, 0, 48, 0, 40, 1, 1, 0x11, 0}},
    {"no frame", "lossless", 0xC3, 1, {0xEA}},
    {"end before the scan", "baseline", 0xDA, 0, {0xFF, 0xD9}},
    {"table of another scan", "lossless", 0xDA, 6, {0x10}},
    {"component that is not there", "lossless", 0xDA, 5, {9}},
    {"scan without components", "lossless", 0xDA, 4, {0}},
    {"scan of more components", "lossless", 0xDA, 4, {2}},
    {"scan of two", "lossless colour", 0xDA, 2, {0, 10, 2, 1, 0, 2, 0, 1, 0, 0}, Unsupported},
    {"scan header too short", "lossless", 0xDA, 2, {0, 7}},
    {"no predictor", "lossless", 0xDA, 7, {0}},
    {"predictor beyond the last", "lossless", 0xDA, 7, {8}},
    {"everything shifted away", "lossless", 0xDA, 9, {8}},
    {"samples beyond their precision", "lossless", 0xDA, 9, {3}},
    {"codes that are no prefix codes", "lossless", 0xC4, 5, {3}},
    {"no codes", "lossless", 0xDA, 0, {0xFF, 0xC4, 0, 19, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"symbol beyond 16", "lossless", 0xC4, 21, {17}},
    {"fifth table", "lossless", 0xC4, 4, {4}},
    {"table of coefficients", "lossless", 0xC4, 4, {0x10}},
    {"more symbols than there are", "lossless", 0xC4, 20, {200}},
    {"table too short", "lossless", 0xDA, 0, {0xFF, 0xC4, 0, 18, 1, 1, 0, 0, 0, 0,
                                              0,    0,    0, 0,  0, 0, 0, 0, 0, 0}},
    {"restart within a row", "lossless", 0xDD, 5, {0xE1}},
    {"restart too short", "lossless", 0xDD, 2, {0, 3}},
    {"restart after other rows", "lossless", 0xDD, 4, {0, 40}},
    {"restart markers out of order", "lossless", 0xD1, 1, {0xD2}},
    {"bytes left over, few", "lossless", 0xD1, 0, Bytes(14, 0x55), none},
    {"bytes left over", "lossless", 0xD1, 0, Bytes(18, 0x55)},
    {"segment that ends early", "lossless", 0xD0, 0, {0xFF, 0xD0, 1, 2, 3}},
    {"no JPEG-LS precision", "JPEG-LS", 0xF7, 4, {1}},
    {"too much of it", "JPEG-LS", 0xF7, 4, {17}},
    {"JPEG-LS subsampled", "JPEG-LS colour", 0xF7, 11, {0x21}, Unsupported},
    {"unknown interleave", "JPEG-LS colour", 0xDA, 12, {3}},
    {"no interleave", "JPEG-LS colour", 0xDA, 12, {0}},
    {"components out of order", "JPEG-LS colour", 0xDA, 7, {1}},
    {"scan header of JPEG-LS too short", "JPEG-LS colour", 0xDA, 2, {0, 11}},
    {"error of half the range", "JPEG-LS", 0xDA, 7, {128}},
    {"the usual parameters",
     "JPEG-LS",
     0xDA,
     0,
     {255, 0xF8, 0, 13, 1, 0, 255, 0, 3, 0, 7, 0, 21, 0, 64},
     none},
    {"default parameters", "JPEG-LS", 0xDA, 0, {255, 0xF8, 0, 13, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, none},
    {"other parameters", "JPEG-LS", 0xDA, 0, {255, 0xF8, 0, 3, 2}, none},
    {"parameters too short", "JPEG-LS", 0xDA, 0, {255, 0xF8, 0, 12, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"parameters of nothing", "JPEG-LS", 0xDA, 0, {255, 0xF8, 0, 2}},
    {"white beyond the range", "JPEG-LS", 0xDA, 0, {255, 0xF8, 0, 13, 1, 1, 0, 0, 3, 0, 7, 0, 21, 0, 64}},
    {"threshold of 0", "JPEG-LS colour", 0xDA, 0, {255, 0xF8, 0, 13, 1, 0, 255, 0, 2, 0, 17, 0, 35, 0, 64}},
    {"thresholds that fall", "JPEG-LS", 0xDA, 0, {255, 0xF8, 0, 13, 1, 0, 255, 0, 8, 0, 7, 0, 21, 0, 64}},
    {"threshold beyond white", "JPEG-LS", 0xDA, 0, {255, 0xF8, 0, 13, 1, 0, 255, 0, 3, 0, 7, 1, 0, 0, 64}},
    {"reset too early", "JPEG-LS", 0xDA, 0, {255, 0xF8, 0, 13, 1, 0, 255, 0, 3, 0, 7, 0, 21, 0, 2}},
    {"reset too late", "JPEG-LS", 0xDA, 0, {255, 0xF8, 0, 13, 1, 0, 255, 0, 3, 0, 7, 0, 21, 1, 0}},
    {"restarts in JPEG-LS", "JPEG-LS", 0xDA, 0, {255, 0xDD, 0, 4, 0, 1}, Unsupported},
    {"none", "JPEG-LS", 0xDA, 0, {255, 0xDD, 0, 4, 0, 0}, none},
    {"colour transform", "JPEG-LS colour", 0xDA, 0, {255, 0xE8, 0, 7, 'm', 'r', 'f', 'x', 1}, Unsupported},
    {"no colour transform", "JPEG-LS colour", 0xDA, 0, {255, 0xE8, 0, 7, 'm', 'r', 'f', 'x', 0}, none},
    {"its beginning", "JPEG-LS colour", 0xDA, 0, {255, 0xE8, 0, 6, 'm', 'r', 'f', 'x'}, none},
    {"no such name", "JPEG-LS colour", 0xDA, 0, {255, 0xE8, 0, 7, 'm', 'r', 'f', 'y', 1}, none},
    {"components of a wavelet", "blank", 0x51, 39, {4}, Unsupported},
    {"no step across", "blank", 0x51, 41, {0}},
    {"no step down", "blank", 0x51, 42, {0}},
    {"tiles of no width", "blank", 0x51, 25, {0}},
    {"tiles of no height", "blank", 0x51, 29, {0}},
    {"tiles that begin inside", "blank", 0x51, 33, {1}},
    {"tiles that begin below", "blank", 0x51, 37, {1}},
    {"picture that ends before it begins", "blank", 0x51, 17, {65}},
    {"levels", "blank", 0x52, 9, {33}},
    {"code blocks too wide", "blank", 0x52, 10, {9}},
    {"code blocks too high", "blank", 0x52, 11, {9}},
    {"precincts of nothing across", "blank", 0x52, 15, {0x50}},
    {"precincts of nothing down", "blank", 0x52, 16, {0x05}},
    {"fewer precincts than levels", "blank", 0x52, 3, {15}},
    {"coding cut off", "blank", 0x52, 3, {11}},
    {"own coding", "blank", 0x5C, 0, {255, 0x53, 0, 9, 0, 0, 3, 4, 4, 0, 1}, none},
    {"own coding of no component", "blank", 0x5C, 0, {255, 0x53, 0, 9, 1, 0, 3, 4, 4, 0, 1}},
    {"own coding cut off", "blank", 0x5C, 0, {255, 0x53, 0, 8, 0, 0, 3, 4, 4, 0}},
    {"nothing of it", "blank", 0x5C, 0, {255, 0x53, 0, 3, 0}},
    {"comment", "blank", 0x5C, 0, {255, 0x64, 0, 4, 0, 1}, none},
    {"no such marker", "blank", 0x52, 1, {0x30}, Unsupported},
    {"a marker of the other part", "blank", 0x5C, 0, {255, 0x66, 0, 2}, Unsupported},
    {"another", "blank", 0x5C, 0, {255, 0x73, 0, 2}, Unsupported},
    {"marker of no length", "blank", 0x5C, 0, {255, 0x64, 0, 1}, CutOff},
    {"marker beyond the end", "blank", 0x5C, 0, {255, 0x64, 0xFF, 0xFF}, CutOff},
    {"no marker at all", "blank", 0x52, 0, {0}},
    {"tile part shorter than its header", "blank", 0x90, 9, {13}},
    {"tile part up to the end", "blank", 0x90, 6, {0, 0, 0, 0}, none},
    {"box beyond the end", "blank in a box", whole, 20, {255}, none},
    {"box shorter than its header", "blank in a box", whole, 20, {0, 0, 0, 0, 0, 0, 0, 15}},
    {"box up to the end", "blank in a box", whole, 12, {0, 0, 0, 0, 'j', 'p', '2', 'c'}},
    {"box of no length", "blank in a box", whole, 12, {0, 0, 0, 7}},
    {"box of another name", "blank in a box", whole, 16, {'f', 'r', 'e', 'e'}},
    {"control byte without meaning", "RLE by hand", whole, 64, {128, 254, 7, 128, 2, 1, 2, 3}, none},
    {"padding behind", "RLE by hand", whole, 70, {0}, none},
    {"padding within the last literal", "RLE by hand", whole, 66, {3, 1, 2, 3, 0}, none},
    {"single bytes", "RLE by hand", whole, 66, {0, 1, 0, 2, 0, 3}, none},
    {"literal cut", "RLE by hand", whole, 64, {6, 7, 7, 7, 1, 2}, CutOff},
    {"run without its byte", "RLE by hand", whole, 64, {128, 128, 128, 128, 128, 251}, CutOff},
    {"run longer by two", "RLE by hand", whole, 64, {128, 128, 128, 128, 249, 1}, CutOff},
    {"no segments", "RLE by hand", whole, 0, {0}},
    {"too many segments", "RLE by hand", whole, 0, {16, 0, 0, 0, 64, 0, 0, 0, 70}},
    {"as many as can be", "RLE by hand", whole, 0, {15, 0, 0, 0, 64, 0, 0, 0, 70}, none},
    {"offset within the header", "RLE by hand", whole, 4, {63}},
    {"offset beyond the end", "RLE by hand", whole, 4, {70}, CutOff},
    {"offsets that go back", "RLE by hand", whole, 0, {2, 0, 0, 0, 64, 0, 0, 0, 10}},
    {"segment too short", "RLE by hand", whole, 0, {2, 0, 0, 0, 64, 0, 0, 0, 68}},
};

TEST(DamagedStreams, HeadersThatMakeNoSenseAreErrors) {
    for (const Change& change : changes) {
        SCOPED_TRACE(change.what);
        const auto sample = std::find_if(everyKind().begin(), everyKind().end(),
                                         [&](const Sample& one) { return one.what == change.stream; });
        Bytes stream = sample->bytes;
        const std::size_t place = change.marker == whole ? 0 : placeOf(stream, change.marker);
        ASSERT_LT(place, stream.size());
        if (change.marker != whole && change.at == 0 && change.bytes.size() > 1) {
            insertBefore(stream, change.marker, change.bytes);
        } else {
            stream.resize(std::max(stream.size(), place + change.at + change.bytes.size()));
            std::copy(change.bytes.begin(), change.bytes.end(), &stream[place + change.at]);
        }
        const auto frame = decoded(stream, sample->format, sample->compression);
        ASSERT_EQ(frame.ok(), !change.error) << (frame ? "" : frame.error().detail);
        if (frame) {
            EXPECT_EQ(samplesOf(frame), sample->samples(sample->bytes));
        } else {
            EXPECT_EQ(frame.error().kind, *change.error) << frame.error().detail;
        }
    }
}

TEST(DamagedStreams, WhatCannotBeDecodedIsNamed) {
    auto cells12 = greyFormat(4, 4, 12), cells64 = cells12, four = colourFormat(4, 4);
    cells12.bitsAllocated = 12;
    cells64.bitsAllocated = 64;
    four.samplesPerPixel = 4;
    auto floats = greyFormat(4, 4, 32), colourFloats = colourFormat(4, 4),
         doubles = greyFormat(6000, 6000, 32);
    floats.sampleKind = colourFloats.sampleKind = dicom::SampleKind::Float;
    doubles.sampleKind = dicom::SampleKind::Double;
    const auto pairs = dicom::Photometric::YbrFull422, partial420 = dicom::Photometric::YbrPartial420;
    struct Case {
        dicom::PixelFormat format;
        std::size_t bytes;
        Kind kind;
        Compression compression = Compression::None;
    };
    const Case cases[] = {
        {greyFormat(4, 4, 12), 31, CutOff},
        {greyFormat(4, 4, 12), 0, CutOff},
        {colourFormat(4, 4), 47, CutOff},
        {colourFormat(4, 4, pairs), 31, CutOff},
        {colourFormat(4, 4, partial420), 100, Unsupported},
        {floats, 63, CutOff},
        {floats, 64, Unsupported, Compression::Rle},
        {colourFloats, 1000, Unsupported},
        {greyFormat(0, 4, 8), 100, Broken},
        {greyFormat(4, 0, 8), 100, Broken},
        {greyFormat(65536, 1, 8), 100, Broken},
        {greyFormat(1, 65536, 8), 100, Broken},
        {greyFormat(1, 65535, 8), 100, CutOff},
        {greyFormat(65535, 1, 8), 100, CutOff},
        {greyFormat(16384, 16384, 8), 100, CutOff},
        {greyFormat(16384, 16385, 8), 100, TooLarge},
        {greyFormat(16384, 8193, 16), 100, TooLarge},
        {doubles, 100, TooLarge},
        {colourFormat(8000, 8000), 100, CutOff},
        {colourFormat(8500, 8500), 100, TooLarge},
        {cells12, 100, Unsupported},
        {cells12, 100, Unsupported, Compression::Rle},
        {cells64, 1000, Unsupported},
        {four, 100, Unsupported},
        {greyFormat(4, 4, 8), 0, CutOff, Compression::Jpeg},
        {greyFormat(4, 4, 8), 9, Broken, Compression::Jpeg},
        {greyFormat(4, 4, 8), 9, Broken, Compression::Jpeg2000},
        {greyFormat(4, 4, 8), 63, CutOff, Compression::Rle},
        {greyFormat(4, 4, 8), 9, Unsupported, Compression::Unsupported},
    };
    for (const Case& c : cases) {
        const auto frame = decoded(Bytes(c.bytes), c.format, c.compression);
        ASSERT_FALSE(frame.ok()) << &c - cases;
        EXPECT_EQ(frame.error().kind, c.kind) << &c - cases << frame.error().detail;
    }
}

}  // namespace
}  // namespace cinedisc::test
