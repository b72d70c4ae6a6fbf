#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

#include <optional>

namespace cinedisc::test {
namespace {

using dicom::Compression;
using Bytes = std::vector<std::uint8_t>;
using Kind = dicom::DecodeError::Kind;

TEST(Rle, SingleBitsArePackedAsInNativeFrames) {
    constexpr int rows = 5;
    for (const int columns : {1, 7, 8, 200})
        for (const int components : {1, 3}) {
            SCOPED_TRACE(columns);
            const Raster bits = raster(rows, columns, components, 1, Texture::Noise);
            Raster packed{1, (rows * columns + 7) / 8, components, 8, {}};
            packed.samples.resize(packed.size());
            const auto step = static_cast<std::size_t>(components);
            for (std::size_t i = 0; i < bits.size(); ++i)
                packed.samples[i / step / 8 * step + i % step] |= bits.samples[i] << (i / step % 8);
            auto format = formatOf(bits);
            format.bitsAllocated = 1;
            EXPECT_EQ(samplesOf(decoded(rleEncoded(packed), format, Compression::Rle)), shown(bits));
        }
}

/// A header of one segment; `changes` are places of bytes and what to put there.
Bytes oneSegment(const Bytes& data, const std::vector<std::pair<std::size_t, int>>& changes = {}) {
    Bytes frame(64);
    frame[0] = 1;
    frame[4] = 64;
    for (const auto& [at, value] : changes) frame[at] = static_cast<std::uint8_t>(value);
    frame.insert(frame.end(), data.begin(), data.end());
    return frame;
}

TEST(Rle, SegmentsHoldWhatTheStandardAllowsOrEncodersDoAndNothingElse) {
    Bytes tooMany = oneSegment({250, 1}, {{0, 16}});
    for (std::size_t at = 8; at < 64; at += 4) tooMany[at] = 66;
    struct Case {
        const char* what;
        Bytes frame;
        std::optional<Kind> error;
    };
    const Case cases[] = {
        {"plain", oneSegment({254, 7, 2, 1, 2, 3}), {}},
        {"control byte without meaning", oneSegment({128, 254, 7, 128, 2, 1, 2, 3}), {}},
        {"padding behind", oneSegment({254, 7, 2, 1, 2, 3, 0}), {}},
        {"padding within the last literal", oneSegment({254, 7, 3, 1, 2, 3, 0}), {}},
        {"single bytes", oneSegment({254, 7, 0, 1, 0, 2, 0, 3}), {}},
        {"header cut", Bytes(63, 1), Kind::CutOff},
        {"literal cut", oneSegment({5, 1, 2, 3, 4, 5}), Kind::CutOff},
        {"run without its byte", oneSegment({251}), Kind::CutOff},
        {"nothing but its header", oneSegment({}), Kind::CutOff},
        {"run longer by two", oneSegment({249, 1}), Kind::CutOff},
        {"no segments", oneSegment({250, 1}, {{0, 0}}), Kind::Broken},
        {"too many segments", tooMany, Kind::Broken},
        {"offset within the header", oneSegment({250, 1}, {{4, 63}}), Kind::Broken},
        {"offset beyond the end", oneSegment({250, 1}, {{6, 1}}), Kind::CutOff},
        {"offsets that go back", oneSegment({250, 1}, {{0, 2}, {8, 10}}), Kind::Broken},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto frame = decoded(c.frame, greyFormat(2, 3, 8), Compression::Rle);
        ASSERT_EQ(frame.ok(), !c.error);
        if (c.error) {
            EXPECT_EQ(frame.error().kind, *c.error);
        } else {
            EXPECT_EQ(samplesOf(frame), (std::vector<std::int64_t>{7, 7, 7, 1, 2, 3}));
        }
    }
}

}  // namespace
}  // namespace cinedisc::test
