#include "dicom/codecs/FrameDecoder.h"
#include "dicom/codecs/Jpeg2000Decoder.h"
#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using dicom::Photometric;

TEST(Jpeg2000, SubsampledComponentsAreSpread) {
    Raster picture{15, 15, 3, 8, {}};
    for (int i = 0; i < 15 * 15; ++i)
        picture.samples.insert(picture.samples.end(), {i, i / 15 / 2 * 2, i % 15 / 2 * 2});
    EXPECT_EQ(samplesOf(decoded(jpeg2000Encoded(picture, {.subsampled = true}), formatOf(picture),
                                Compression::Jpeg2000)),
              shown(picture));
}

// On a slope the lower levels of a wavelet hold the samples themselves, every other one of every other row:
// so a coarse picture is right in its values and in its place.
TEST(Jpeg2000, CoarsePicturesAreThePictureFromFurtherOff) {
    struct Case {
        const char* what;
        Jpeg2000Making making;
        int leastSide = 16, halvings = 2;
        int headerBits = 12, codedBits = 12;
        bool headerSigned = false, codedSigned = false;
        Photometric photometric = Photometric::Monochrome2;
        int components = 1;
    };
    const Case cases[] = {
        {"lossless", {}},
        {"lossy", {.reversible = false}},
        {"signed", {}, 16, 2, 12, 12, true, true},
        {"in tiles and boxes", {.inFileFormat = true, .tileSize = 40}},
        {"whole cells", {}, 16, 2, 12, 16},
        {"larger asked for", {}, 33, 1},
        {"smaller asked for than there is", {}, 4},
        {"colour", {.transformComponents = true}, 16, 2, 8, 8, false, false, Photometric::YbrRct, 3},
        {"no levels", {.levels = 0}, 16, 0},
        {"small enough", {}, 50, 0},
        {"indices", {}, 16, 0, 8, 8, false, false, Photometric::PaletteColor},
        {"signs in unsigned samples", {}, 16, 0, 12, 12, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        // Ends at the largest value, beyond which what is interpolated must not begin anew.
        Raster slope{67, 90, c.components, c.codedBits, {}, c.codedSigned};
        const int top = (1 << c.headerBits) - 1, lowest = c.codedSigned ? -(top + 1) / 2 : 0;
        for (int i = 0; i < slope.rows * slope.columns; ++i) {
            const int value = lowest + std::min(top, (i / slope.columns + i % slope.columns) * top / 140);
            slope.samples.insert(slope.samples.end(), static_cast<std::size_t>(c.components), value);
        }
        auto format = greyFormat(slope.rows, slope.columns, c.headerBits);
        format.isSigned = c.headerSigned;
        format.photometric = c.photometric;
        format.samplesPerPixel = c.components;
        auto stream = jpeg2000Encoded(slope, c.making);
        const auto coarse = dicom::decodeCoarseFrame(std::as_bytes(std::span(stream)), format, c.leastSide);
        ASSERT_EQ(coarse ? coarse->halvings : 0, c.halvings);
        if (!coarse) continue;
        const int step = 1 << c.halvings;
        ASSERT_EQ(coarse->frame.rows, (slope.rows + step - 1) / step);
        ASSERT_EQ(coarse->frame.columns, (slope.columns + step - 1) / step);
        const auto values = samplesOf(coarse->frame);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const auto pixel = static_cast<int>(i) / c.components;
            const int x = pixel % coarse->frame.columns * step, y = pixel / coarse->frame.columns * step;
            const auto at = static_cast<std::size_t>((y * slope.columns + x) * c.components);
            ASSERT_NEAR(static_cast<double>(values[i]), slope.samples[at],
                        2 + top / (c.making.reversible ? 100 : 50))
                << x << "," << y;
        }
        stream.resize(stream.size() / 2);
        EXPECT_FALSE(dicom::decodeCoarseFrame(std::as_bytes(std::span(stream)), format, c.leastSide));
    }
}

}  // namespace
}  // namespace cinedisc::test
