#include "control/pipeline/RowKernels.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

namespace cinedisc {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// Rows of every length at every place in memory: each set of kernels must write what the plain one writes,
/// and nothing beside it.
class RowKernelSets : public testing::Test {
  protected:
    void SetUp() override {
        if (!fast) GTEST_SKIP() << "this processor has the portable set only";
    }

    std::mt19937 random{23};
    const RowKernels& plain = RowKernels::portable();
    const RowKernels* fast = RowKernels::avx2();

    int upTo(int most) { return static_cast<int>(random() % static_cast<unsigned>(most + 1)); }
    Bytes noise(std::size_t size) {
        Bytes bytes(size);
        for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
        return bytes;
    }
    /// `draw` writes a row, given the kernels and where the row begins in the bytes that are compared.
    template <typename Draw>
    void expectSame(const char* what, int count, Draw draw) {
        const Bytes before = noise(static_cast<std::size_t>(count) * 4 + 128);
        const int at = upTo(15) * 4;
        Bytes byPlain = before, byFast = before;
        draw(plain, byPlain.data() + at);
        draw(*fast, byFast.data() + at);
        ASSERT_EQ(byPlain, byFast) << what << ", " << count << " pixels";
    }
};

TEST_F(RowKernelSets, DrawTheSameRows) {
    for (int round = 0; round < 600; ++round) {
        const int count = upTo(300);
        const auto size = static_cast<std::size_t>(count) * 3 + 64;
        const Bytes a = noise(size), b = noise(size), c = noise(size), table = noise(65536);
        const int at = upTo(31);
        const std::uint8_t *rowA = a.data() + at, *rowB = b.data() + at, *rowC = c.data() + at;
        std::vector<std::uint16_t> wideA(size), wideB(size), wideC(size);
        for (auto* wide : {&wideA, &wideB, &wideC})
            for (auto& value : *wide) value = static_cast<std::uint16_t>(random() % 65281);
        const auto* samples = wideA.data() + at;
        std::uniform_real_distribution<float> slope(-3, 3), offset(-500, 500);
        const LinearRule rule{slope(random), offset(random), static_cast<std::uint8_t>(random() % 2 * 255)};

        expectSame("line", count, [&](const auto& k, auto* to) { k.linear(rowA, rule, to, count); });
        expectSame("signed line", count, [&](const auto& k, auto* to) {
            k.linear(reinterpret_cast<const std::int8_t*>(rowA), rule, to, count);
        });
        expectSame("wide line", count, [&](const auto& k, auto* to) { k.linear(samples, rule, to, count); });
        expectSame("wide signed line", count, [&](const auto& k, auto* to) {
            k.linear(reinterpret_cast<const std::int16_t*>(samples), rule, to, count);
        });
        expectSame("table", count, [&](const auto& k, auto* to) { k.lookUp(rowA, table.data(), to, count); });
        expectSame("wide table", count,
                   [&](const auto& k, auto* to) { k.lookUp(samples, table.data(), to, count); });
        expectSame("invert", count, [&](const auto& k, auto* to) { k.invert(to, count); });
        expectSame("split", count, [&](const auto& k, auto* to) {
            k.splitColors(rowA, {to, to + count, to + 2 * count}, count);
        });
        expectSame("grey pixels", count, [&](const auto& k, auto* to) {
            k.packGrey(rowA, reinterpret_cast<std::uint32_t*>(to), count);
        });
        const RowSource::Channels colors{const_cast<std::uint8_t*>(rowA), const_cast<std::uint8_t*>(rowB),
                                         const_cast<std::uint8_t*>(rowC)};
        expectSame("colour pixels", count, [&](const auto& k, auto* to) {
            k.packColor(colors, reinterpret_cast<std::uint32_t*>(to), count);
        });
        for (const int taps : {2, 3, 4, 7, 33}) {
            std::vector<const std::uint16_t*> rows;
            for (int k = 0; k < taps; ++k)
                rows.push_back((k % 3 == 0 ? wideA : k % 3 == 1 ? wideB : wideC).data() + upTo(31));
            std::vector<std::uint16_t> weights(static_cast<std::size_t>(taps),
                                               static_cast<std::uint16_t>(AxisTable::fullWeight / taps));
            if (taps == 2) weights = {static_cast<std::uint16_t>(upTo(AxisTable::fullWeight)), 0};
            weights[1] = static_cast<std::uint16_t>(weights[1] + AxisTable::fullWeight -
                                                    std::accumulate(weights.begin(), weights.end(), 0));
            expectSame("mixed rows", count,
                       [&](const auto& k, auto* to) { k.mix(rows.data(), weights.data(), taps, to, count); });
        }
    }
}

}  // namespace
}  // namespace cinedisc
