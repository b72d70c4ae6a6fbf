#include "tests/codecs/DcmtkJpeg.h"
#include "tests/codecs/Encoders.h"
#include "tests/codecs/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using dicom::Photometric;
using Kind = dicom::DecodeError::Kind;
using Marker = JpegMaking::Marker;
using Names = JpegMaking::Names;
using Stored = JpegMaking::Stored;

std::int64_t largestDifference(const std::vector<std::int64_t>& a, const std::vector<std::int64_t>& b) {
    if (a.size() != b.size()) return -1;
    std::int64_t largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i) largest = std::max(largest, std::abs(a[i] - b[i]));
    return largest;
}

/// Coloured fields, the left one orange, the right one blue.
std::vector<std::uint8_t> fields(int rows, int columns) {
    std::vector<std::uint8_t> samples;
    for (int i = 0; i < rows * columns; ++i) {
        const bool left = i % columns < columns / 2;
        for (const int part : {left ? 230 : 20, left ? 120 : 40, left ? 30 : 200})
            samples.push_back(static_cast<std::uint8_t>(part));
    }
    return samples;
}

TEST(Jpeg, ColoursAreWhatTheStreamSaysAndOnlyThenWhatTheHeaderSays) {
    struct Case {
        const char* what;
        JpegMaking making;
        Photometric photometric;
    };
    const Case cases[] = {
        {"JFIF under YBR_FULL_422", {Stored::Ycc, Marker::Jfif}, Photometric::YbrFull422},
        {"JFIF under RGB", {Stored::Ycc, Marker::Jfif}, Photometric::Rgb},
        {"Adobe's YCbCr under RGB", {Stored::Ycc, Marker::AdobeYcc}, Photometric::Rgb},
        {"Adobe's RGB under YBR_FULL", {Stored::Rgb, Marker::AdobeRgb}, Photometric::YbrFull},
        {"Adobe's RGB under RGB", {Stored::Rgb, Marker::AdobeRgb}, Photometric::Rgb},
        {"nothing but YBR_FULL", {Stored::Ycc, Marker::None}, Photometric::YbrFull},
        {"nothing but RGB", {Stored::Rgb, Marker::None}, Photometric::Rgb},
        {"named R, G, B under YBR_FULL", {Stored::Rgb, Marker::None, Names::Letters}, Photometric::YbrFull},
        {"subsampled under RGB", {Stored::Ycc, Marker::None, Names::Numbers, true}, Photometric::Rgb},
        {"subsampled", {Stored::Ycc, Marker::Jfif, Names::Numbers, true}, Photometric::YbrFull422},
        {"progressive", {Stored::Ycc, Marker::Jfif, Names::Numbers, false, true}, Photometric::YbrFull},
        {"with restarts", {Stored::Ycc, Marker::Jfif, Names::Numbers, false, false, 2}, Photometric::YbrFull},
    };
    const auto samples = fields(24, 32);
    for (const Case& c : cases) {
        const auto frame = decoded(jpegEncoded(samples, 24, 32, 3, c.making),
                                   colourFormat(24, 32, c.photometric), Compression::Jpeg);
        const auto result = samplesOf(frame);
        ASSERT_EQ(result.size(), samples.size()) << c.what;
        for (const std::size_t pixel : {5, 26})  // away from the border, which subsampling blurs
            for (std::size_t i = pixel * 3; i < pixel * 3 + 3; ++i)
                EXPECT_NEAR(static_cast<double>(result[i]), samples[i], 3) << c.what;
    }
}

TEST(Jpeg, DecodesLikeAnotherDecoder) {
    for (const auto process : {LossyProcess::Baseline, LossyProcess::Sequential, LossyProcess::Progressive})
        for (const int bits : {8, 12}) {
            if (bits == 12 && process == LossyProcess::Baseline) continue;
            SCOPED_TRACE(testing::Message() << bits << " bit, process " << static_cast<int>(process));
            const auto samples = picture(83 * 50, bits, Texture::Smooth);
            const JpegSource source{50, 83, 1, bits, samples};
            const auto stream = dcmtkLossy(source, process, 85);
            const auto frame = decoded(stream, greyFormat(50, 83, bits), Compression::Jpeg);
            EXPECT_EQ(samplesOf(frame), wide(dcmtkDecoded(stream, source)));
        }
}

TEST(Jpeg, TwelveBitColourIsReducedToEight) {
    std::vector<std::uint16_t> samples;
    for (const std::uint8_t sample : fields(16, 16))
        samples.push_back(static_cast<std::uint16_t>(sample << 4));
    const auto stream = dcmtkLossy({16, 16, 3, 12, samples}, LossyProcess::Sequential, 100);
    auto format = colourFormat(16, 16, Photometric::YbrFull);
    format.bitsAllocated = 16;
    format.bitsStored = 12;
    format.highBit = 11;
    EXPECT_LE(largestDifference(samplesOf(decoded(stream, format, Compression::Jpeg)), wide(fields(16, 16))),
              6);
}

TEST(Jpeg, NumberOfComponentsFollowsTheHeader) {
    const auto colour = jpegEncoded(fields(16, 16), 16, 16, 3);
    const auto grey = samplesOf(decoded(colour, greyFormat(16, 16, 8), Compression::Jpeg));
    ASSERT_EQ(grey.size(), 256u);
    EXPECT_NEAR(static_cast<double>(grey[0]), 0.299 * 230 + 0.587 * 120 + 0.114 * 30, 2);

    const std::vector<std::uint8_t> flat(256, 77);
    const auto tripled =
        samplesOf(decoded(jpegEncoded(flat, 16, 16, 1), colourFormat(16, 16), Compression::Jpeg));
    EXPECT_EQ(tripled, std::vector<std::int64_t>(768, 77));
}

TEST(Jpeg, EveryCutIsNoticed) {
    const auto random = picture(64 * 64, 12, Texture::Smooth);
    std::vector<std::uint8_t> samples(random.begin(), random.end());
    JpegMaking progressive;
    progressive.progressive = true;
    struct Case {
        const char* what;
        std::vector<std::uint8_t> stream;
        int bits;
    };
    const Case cases[] = {
        {"baseline", jpegEncoded(samples, 64, 64, 1), 8},
        {"progressive", jpegEncoded(samples, 64, 64, 1, progressive), 8},
        {"12 bit", dcmtkLossy({64, 64, 1, 12, random}, LossyProcess::Sequential, 90), 12},
        {"12 bit progressive", dcmtkLossy({64, 64, 1, 12, random}, LossyProcess::Progressive, 90), 12},
    };
    for (const Case& c : cases)
        for (std::size_t length = 3; length + 8 < c.stream.size(); length += 41) {
            const auto frame =
                decoded({c.stream.begin(), c.stream.begin() + static_cast<std::ptrdiff_t>(length)},
                        greyFormat(64, 64, c.bits), Compression::Jpeg);
            ASSERT_FALSE(frame.ok()) << c.what << " at " << length << " of " << c.stream.size();
            EXPECT_EQ(frame.error().kind, Kind::CutOff)
                << c.what << " at " << length << " of " << c.stream.size();
        }
}

}  // namespace
}  // namespace cinedisc::test
