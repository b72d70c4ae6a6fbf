#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <random>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using Bytes = std::vector<std::uint8_t>;
using Random = std::function<int(int, int)>;  ///< from the first number to the last

/// Codes a raster, which it may change before, in one of many ways; `near` is how far samples may get.
using Encode = std::function<Bytes(Raster&, const Random&, int& near)>;

void shiftOut(Raster& raster, int bits) {
    for (auto& sample : raster.samples) sample = sample >> bits << bits;
}

Bytes losslessOwn(Raster& raster, const Random& random, int&) {
    LosslessMaking making{random(1, 7), 0, random(0, 3) * random(0, 1), random(0, 2) > 0, random(0, 3) > 0};
    making.shortest = random(-1, 16);
    if (raster.bits > 4) making.pointTransform = random(0, 3) * random(0, 1);
    shiftOut(raster, making.pointTransform);
    const Bytes stream = losslessEncoded(raster, making);
    const bool isKnown = raster.bits == 8 || raster.bits == 12 || raster.bits == 16;
    if (isKnown && making.rowsAnnounced && (making.interleaved || raster.components == 1)) {
        EXPECT_EQ(dcmtkDecoded(stream, raster), raster.samples) << "by another decoder";
    }
    return stream;
}

Bytes losslessByDcmtk(Raster& raster, const Random& random, int&) {
    const int predictor = random(1, 7), shift = random(0, 3) * random(0, 1);
    shiftOut(raster, shift);
    return dcmtkLossless(raster, predictor, shift);
}

Bytes jpegLs(Raster& raster, const Random& random, int& near) {
    const auto interleave = static_cast<LsInterleave>(random(0, 2));
    for (std::size_t i = 0; i < raster.size() / 2; ++i) raster.samples[i] = raster.samples[i - i % 300];
    if (raster.components == 1 && raster.bits >= 8) near = random(0, 10) * random(0, 1);
    return jpegLsEncoded(raster, near, raster.components == 1 ? LsInterleave::None : interleave);
}

Bytes jpeg2000(Raster& raster, const Random& random, int&) {
    raster.isSigned = raster.components == 1 && raster.bits > 1 && random(0, 1);
    if (raster.isSigned)
        for (auto& sample : raster.samples) sample -= 1 << (raster.bits - 1);
    Jpeg2000Making making;
    making.transformComponents = raster.components == 3 && random(0, 1);
    making.inFileFormat = random(0, 1);
    // Even: OpenJPEG loses a bit of tiles of one column or row that begin at an odd one.
    making.tileSize = 18 * random(0, 1);
    making.layers = random(1, 3);
    making.block = 16 << random(0, 2);
    return jpeg2000Encoded(raster, making);
}

TEST(RoundTrip, RandomPicturesComeBackWhateverTheCoder) {
    struct Case {
        const char* what;
        Compression compression;
        std::vector<int> bits, colourBits;
        int smallest;  ///< number of rows and columns
        Encode encode;
    };
    const std::vector<int> all{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    const Case cases[] = {
        {"lossless", Compression::Jpeg, all, {8}, 1, losslessOwn},
        {"lossless by DCMTK", Compression::Jpeg, {8, 12, 16}, {8}, 1, losslessByDcmtk},
        {"JPEG-LS", Compression::JpegLs, all, all, 2, jpegLs},
        {"JPEG 2000", Compression::Jpeg2000, {1, 2, 8, 10, 12, 16}, {8, 12}, 16, jpeg2000},
        {"RLE",
         Compression::Rle,
         {8, 16, 32},
         {8, 16, 32},
         1,
         [](Raster& raster, const Random&, int&) { return rleEncoded(raster); }},
    };
    for (const Case& c : cases) {
        std::mt19937 engine(5);
        const auto random = [&](int first, int last) {
            return first + static_cast<int>(engine() % static_cast<unsigned>(last - first + 1));
        };
        for (unsigned round = 0; round < 400; ++round) {
            const auto& depths = round % 3 ? c.bits : c.colourBits;
            const int bits = depths[engine() % depths.size()], largest = round % 2 ? 15 : 70;
            Raster picture = raster(random(c.smallest, largest + c.smallest), random(c.smallest, 2 * largest),
                                    round % 3 ? 1 : 3, bits, static_cast<Texture>(random(0, 2)), round);
            int near = 0;
            const Bytes stream = c.encode(picture, random, near);
            SCOPED_TRACE(testing::Message() << c.what << ", round " << round << ", " << picture.rows << " x "
                                            << picture.columns << ", " << bits << " bit");
            const auto result = samplesOf(decoded(stream, formatOf(picture), c.compression));
            const auto expected = shown(picture);
            ASSERT_EQ(result.size(), expected.size());
            for (std::size_t i = 0; i < result.size(); ++i)
                ASSERT_LE(std::abs(result[i] - expected[i]), near) << "at " << i;
        }
    }
}

TEST(RoundTrip, LosslessDifferenceOf32768HasNoExtraBits) {
    Raster picture{10, 20, 1, 16, {}};
    for (int i = 0; i < 200; ++i) picture.samples.push_back(i % 3 == 0 ? 40000 : 7232);
    for (const int shortest : {-1, 0, 16}) {
        LosslessMaking making;
        making.shortest = shortest;
        EXPECT_EQ(samplesOf(decoded(losslessEncoded(picture, making), formatOf(picture), Compression::Jpeg)),
                  shown(picture));
    }
}

}  // namespace
}  // namespace cinedisc::test
