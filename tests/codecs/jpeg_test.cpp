#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using dicom::Photometric;
using Marker = JpegMaking::Marker;
using Names = JpegMaking::Names;
using Stored = JpegMaking::Stored;

/// Coloured fields, the left one orange, the right one blue.
Raster fields(int rows, int columns, int bits = 8) {
    Raster raster{rows, columns, 3, bits, {}};
    for (int i = 0; i < rows * columns; ++i) {
        const bool left = i % columns < columns / 2;
        for (const int part : {left ? 230 : 20, left ? 120 : 40, left ? 30 : 200})
            raster.samples.push_back(part << (bits - 8));
    }
    return raster;
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
    const Raster picture = fields(24, 32);
    for (const Case& c : cases) {
        const auto result = samplesOf(
            decoded(jpegEncoded(picture, c.making), colourFormat(24, 32, c.photometric), Compression::Jpeg));
        ASSERT_EQ(result.size(), picture.size()) << c.what;
        for (const std::size_t pixel : {5, 26})  // away from the border, which subsampling blurs
            for (std::size_t i = pixel * 3; i < pixel * 3 + 3; ++i)
                EXPECT_NEAR(static_cast<double>(result[i]), picture.samples[i], 3) << c.what;
    }
}

TEST(Jpeg, DecodesLikeAnotherDecoder) {
    for (const auto process : {LossyProcess::Baseline, LossyProcess::Sequential, LossyProcess::Progressive})
        for (const int bits : {8, 12}) {
            if (bits == 12 && process == LossyProcess::Baseline) continue;
            SCOPED_TRACE(testing::Message() << bits << " bit, process " << static_cast<int>(process));
            Raster picture = raster(50, 83, 1, bits);
            const auto stream = dcmtkLossy(picture, process, 85);
            const auto frame = decoded(stream, formatOf(picture), Compression::Jpeg);
            picture.samples = dcmtkDecoded(stream, picture);
            EXPECT_EQ(samplesOf(frame), shown(picture));
        }
}

TEST(Jpeg, TwelveBitColourIsReducedToEight) {
    const Raster picture = fields(16, 16, 12);
    auto format = formatOf(picture);
    format.photometric = Photometric::YbrFull;
    const auto result =
        samplesOf(decoded(dcmtkLossy(picture, LossyProcess::Sequential, 100), format, Compression::Jpeg));
    const auto expected = shown(picture);
    ASSERT_EQ(result.size(), expected.size());
    for (std::size_t i = 0; i < result.size(); ++i)
        ASSERT_NEAR(static_cast<double>(result[i]), static_cast<double>(expected[i]), 6) << i;
}

TEST(Jpeg, NumberOfComponentsFollowsTheHeader) {
    const auto colour = jpegEncoded(fields(16, 16));
    const auto grey = samplesOf(decoded(colour, greyFormat(16, 16, 8), Compression::Jpeg));
    ASSERT_EQ(grey.size(), 256u);
    EXPECT_NEAR(static_cast<double>(grey[0]), 0.299 * 230 + 0.587 * 120 + 0.114 * 30, 2);

    const Raster flat{16, 16, 1, 8, std::vector<std::int32_t>(256, 77)};
    EXPECT_EQ(samplesOf(decoded(jpegEncoded(flat), colourFormat(16, 16), Compression::Jpeg)),
              std::vector<std::int64_t>(768, 77));
}

}  // namespace
}  // namespace cinedisc::test
