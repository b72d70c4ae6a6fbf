#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
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

Bytes lossless(Raster& raster, const Random& random, int&) {
    const bool grey = raster.components == 1;
    const LosslessMaking making{random(1, 7), random(0, 1) * random(0, std::min(3, raster.bits - 2)),
                                random(0, 1) == 0};
    for (auto& sample : raster.samples) sample = sample >> making.pointTransform << making.pointTransform;
    Bytes stream = losslessEncoded(raster, making);
    if (const int times = random(0, 1) * random(2, 20); grey && times > 0) {
        stream = repeated(stream, times);
        const auto once = raster.samples;
        for (int i = 1; i < times; ++i) raster.samples.insert(raster.samples.end(), once.begin(), once.end());
        raster.rows *= times;
    }
    // A marker behind the scan may tell the number of rows.
    if (random(0, 3) == 0) stream[placeOf(stream, 0xC3) + 5] = stream[placeOf(stream, 0xC3) + 6] = 0;
    return stream;
}

Bytes jpegLs(Raster& raster, const Random& random, int& near) {
    // The library's encoder writes beyond its memory when noise gets no shorter.
    for (std::size_t i = 0; i < raster.size(); ++i)
        raster.samples[i] = raster.samples[i - i % (i < raster.size() / 2 ? 300 : 3)];
    // Of fewer bits the library has thresholds of its own.
    if (raster.bits >= 8) near = random(0, 1) * random(0, 10);
    return jpegLsEncoded(
        raster, near, raster.components == 1 ? LsInterleave::None : static_cast<LsInterleave>(random(0, 2)));
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
    // Nor has it enough memory for noise of single bits in small blocks.
    making.block = raster.bits == 1 ? 64 : 16 << random(0, 2);
    return jpeg2000Encoded(raster, making);
}

TEST(RoundTrip, RandomPicturesComeBackWhateverTheCoderAndTheTransferSyntax) {
    struct Case {
        const char* what;
        Compression compression;
        std::vector<int> bits, colourBits;
        int smallest;  ///< number of rows and columns
        Encode encode;
    };
    const std::vector<int> all{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    const auto rle = [](Raster& raster, const Random&, int&) { return rleEncoded(raster); };
    const Case cases[] = {
        {"lossless", Compression::Jpeg, all, {8, 12}, 1, lossless},
        {"JPEG-LS", Compression::JpegLs, all, all, 9, jpegLs},
        {"JPEG 2000", Compression::Jpeg2000, {1, 2, 8, 10, 12, 16}, {8, 12}, 16, jpeg2000},
        {"RLE", Compression::Rle, {8, 16, 32}, {8, 16, 32}, 1, rle},
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
            const auto declared =
                c.compression == Compression::Rle ? Compression::Rle : static_cast<Compression>(random(1, 5));
            const auto result = samplesOf(decoded(stream, formatOf(picture), declared));
            const auto expected = shown(picture);
            ASSERT_EQ(result.size(), expected.size());
            for (std::size_t i = 0; i < result.size(); ++i)
                ASSERT_LE(std::abs(result[i] - expected[i]), near) << "at " << i;
        }
    }
}

TEST(RoundTrip, LosslessCodesAndDifferencesOfAllLengths) {
    Raster picture = raster(400, 500, 1, 16, Texture::Noise);
    std::mt19937 engine(7);
    // The library gives differences that are half as frequent codes that are a bit longer.
    for (std::size_t i = 1; i < picture.size(); ++i) {
        const int bits = std::countl_zero(static_cast<std::uint32_t>(engine())) % 17;
        picture.samples[i] = (picture.samples[i - 1] + (1 << bits) - (engine() % 2 << bits >> 1)) & 0xFFFF;
    }
    for (int predictor = 1; predictor <= 7; ++predictor)
        EXPECT_EQ(
            samplesOf(decoded(losslessEncoded(picture, {predictor}), formatOf(picture), Compression::Jpeg)),
            shown(picture));
}

}  // namespace
}  // namespace cinedisc::test
