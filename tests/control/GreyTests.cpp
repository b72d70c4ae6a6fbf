#include "control/pipeline/GreyTable.h"
#include "control/pipeline/PaletteTable.h"
#include "control/pipeline/RowKernels.h"
#include "control/pipeline/WindowChoice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace cinedisc {
namespace {

using dicom::GreyTransform;
using dicom::LookupTable;
using dicom::Window;
using Function = dicom::Window::Function;

double entryFor(const LookupTable& table, double value) {
    const double last = static_cast<double>(table.entries.size()) - 1;
    const double index = std::floor(value + 0.5) - static_cast<double>(table.firstMapped);
    return table.entries[static_cast<std::size_t>(std::clamp(index, 0.0, last))];
}

double plainModality(const GreyTransform& grey, double stored) {
    if (grey.modalityLut) return entryFor(*grey.modalityLut, stored);
    return grey.rescale ? stored * grey.rescale->slope + grey.rescale->intercept : stored;
}

/// The standard's formulas (PS3.3 C.11.1, C.11.2) for one value, before it is rounded.
double plainLevel(const GreyTransform& grey, const WindowInForce& window, double stored) {
    if (grey.padding && stored >= double(grey.padding->first) && stored <= double(grey.padding->second))
        return -1;
    const double x = plainModality(grey, stored);
    if (window.byTable) {
        const auto& table = grey.voiLuts.front();
        double white = std::exp2(table.bits) - 1;  // a table may use more bits than it announces
        while (*std::max_element(table.entries.begin(), table.entries.end()) > white) white = white * 2 + 1;
        return entryFor(table, x) / white * 255;
    }
    const auto& [c, w, function] = window.window;
    if (function == Function::Sigmoid) return 255 / (1 + std::exp(-4 * (x - c) / w));
    const double shift = function == Function::Linear ? 0.5 : 0,
                 width = function == Function::Linear ? w - 1 : w;
    if (x <= c - shift - width / 2) return 0;
    if (x > c - shift + width / 2) return 255;
    return ((x - (c - shift)) / width + 0.5) * 255;
}

TEST(GreyRule, FollowsTheStandardsFormulasInEveryForm) {
    std::mt19937 random(7);
    const auto upTo = [&](int most) { return static_cast<int>(random() % static_cast<unsigned>(most + 1)); };
    const auto tableOf = [&](int entries, int bits, int usedBits) {
        LookupTable table{upTo(200) - 100, bits,
                          std::vector<std::uint16_t>(static_cast<std::size_t>(entries))};
        for (auto& entry : table.entries) entry = static_cast<std::uint16_t>(upTo((1 << usedBits) - 1));
        return table;
    };
    int lines = 0;
    for (int round = 0; round < 600; ++round) {
        dicom::PixelFormat format;
        format.bitsStored = round % 50 == 0 ? 16 : 1 + upTo(11);
        format.isSigned = upTo(1);
        GreyTransform grey;
        grey.inverse = upTo(1);
        const auto polarity = upTo(1) ? Polarity::Inverted : Polarity::Normal;
        if (upTo(1)) grey.rescale = dicom::Rescale{upTo(16) / 4.0 - 1.9, upTo(2000) - 1000.0};
        if (upTo(5) == 0) grey.modalityLut = tableOf(1 + upTo(300), 16, 12);
        if (const int low = upTo(40) - 20; upTo(5) == 0) grey.padding = {{low, low + upTo(9)}};
        if (upTo(5) == 0) grey.voiLuts = {tableOf(1 + upTo(upTo(1) ? 2 : 300), 8 + upTo(4), 8 + upTo(4))};
        WindowInForce window{!grey.voiLuts.empty(),
                             {upTo(8000) / 2.0 - 2000, 1.0 + upTo(upTo(1) ? 10 : 8000) / 2.0, {}}};
        window.window.function = static_cast<Function>(upTo(2));
        const GreyRule rule(grey, window, polarity);
        const bool wide = format.bitsStored > 8 || upTo(1);
        const GreyTable table(rule, format, wide);
        lines += table.linear().has_value();
        const int low = format.isSigned ? -(1 << (format.bitsStored - 1)) : 0;
        const int high = low + (1 << format.bitsStored) - 1;
        ValueRange values{HUGE_VAL, -HUGE_VAL};
        for (int value = low; value <= high; ++value) {
            const double modality = plainModality(grey, value);
            values = {std::min(values.low, modality), std::max(values.high, modality)};
            const double level = plainLevel(grey, window, value);
            const bool inverted = grey.inverse != (polarity == Polarity::Inverted);
            const double expected = level < 0 ? 0 : inverted ? 255 - level : level;
            ASSERT_NEAR(rule(value), expected, 0.5 + 1e-9) << value << " in round " << round;
            ASSERT_EQ(table.entries()[value & (wide ? 0xFFFF : 0xFF)], rule(value)) << value;
            if (const auto& line = table.linear()) {
                const int straight = static_cast<int>(static_cast<float>(value) * line->slope + line->offset);
                ASSERT_EQ(std::clamp(straight, 0, 255) ^ line->flip, rule(value)) << value;
            }
        }
        EXPECT_EQ(modalityRange(grey, expressibleRange(format)), values) << "round " << round;
        // A window over a range shows its lowest value black and its highest white.
        for (const auto kind : {dicom::SampleKind::Integer, dicom::SampleKind::Float}) {
            const GreyTransform plain;
            const GreyRule over(plain, windowOver(values, kind), Polarity::Normal);
            EXPECT_TRUE(values.span() == 0 || (over(values.low) == 0 && over(values.high) == 255));
        }
        // Values that the stored bits cannot hold show as the nearest that they can.
        const int most = wide ? 0xFFFF : 0xFF;
        EXPECT_EQ(table.entries()[format.isSigned ? (most >> 1) + 1 : most],
                  rule(format.isSigned ? low : high));
    }
    EXPECT_GT(lines, 200) << "the usual windows are worked out rather than looked up";
}

// Where the formulas themselves could be misread: the standard's own examples, and numbers that are none.
TEST(GreyRule, ShowsTheStandardsExamples) {
    struct Case {
        Window window;
        double stored;
        int grey;
    };
    const Case cases[] = {
        {{2048, 4096, Function::Linear}, 4095, 255},
        {{2048, 1, Function::Linear}, 2047, 0},
        {{2048, 1, Function::Linear}, 2048, 255},
        {{0, 100, Function::Linear}, -50, 0},
        {{0, 100, Function::Linear}, 49, 255},
        {{0, 100, Function::LinearExact}, 50, 255},
        {{0.5, 0.25, Function::LinearExact}, 0.5625, 191},
        {{100, 40, Function::Sigmoid}, 110, 186},
        {{0.5, 1, Function::LinearExact}, std::nan(""), 0},
        {{0.5, 1, Function::LinearExact}, HUGE_VAL, 255},
    };
    for (const auto& c : cases) {
        const GreyTransform grey;
        EXPECT_EQ(GreyRule(grey, {false, c.window}, Polarity::Normal)(c.stored), c.grey) << c.stored;
    }
    GreyTransform flat;
    flat.rescale = dicom::Rescale{0, 0};
    EXPECT_EQ(GreyRule(flat, {false, {0.5, 1, Function::LinearExact}}, Polarity::Inverted)(HUGE_VAL), 0);
}

TEST(FrameRange, LeavesPaddingAndNumbersThatAreNoneOut) {
    dicom::Frame frame;
    frame.samples = std::vector<std::int16_t>{-9, -5, 0, 7, 30, 90};
    EXPECT_EQ(frameRange(frame, {}), (ValueRange{-9, 90}));
    EXPECT_EQ(frameRange(frame, {{-9, -6}}), (ValueRange{-5, 90}));
    EXPECT_EQ(frameRange(frame, {{-20, 29}}), (ValueRange{30, 90}));
    EXPECT_EQ(frameRange(frame, {{30, 90}}), (ValueRange{-9, 7}));
    EXPECT_EQ(frameRange(frame, {{-9, 90}}), ValueRange());
    frame.samples = std::vector<float>{NAN, 0.5F, -HUGE_VALF, 2, HUGE_VALF};
    EXPECT_EQ(frameRange(frame, {}), (ValueRange{0.5, 2}));
    dicom::PixelFormat format;
    format.bitsStored = 32;
    EXPECT_EQ(expressibleRange(format).high, 4294967295.0);
}

TEST(PaletteTable, TakesTheUpperByteOfWideEntriesAndAllOfNarrowOnes) {
    dicom::PixelFormat format;
    struct Case {
        int bits;
        std::vector<std::uint16_t> entries;
        int second;
    };
    const Case cases[] = {{16, {0, 0x8000, 0xFFFF}, 128},
                          {16, {0, 0x80FF, 0xFF00}, 128},
                          {8, {0, 128, 255}, 128},
                          {16, {0, 128, 255}, 128}};  // the last announces 16 bits and uses 8
    for (const auto& c : cases) {
        const LookupTable table{0, c.bits, c.entries}, later{1, c.bits, c.entries};
        const PaletteTable palette({table, table, later}, format, false);
        EXPECT_EQ(palette.entries(0)[1], c.second);
        EXPECT_EQ(palette.entries(1)[255], 255);
        EXPECT_EQ(palette.entries(2)[1], 0) << "blue begins at 1";
    }
}

TEST(OwnWindow, IsTheFirstUsableWindowOrTheTable) {
    EXPECT_EQ(windowOver({5, 5}, dicom::SampleKind::Float).window.width, 1);
    GreyTransform grey;
    EXPECT_FALSE(ownWindow(grey));
    grey.windows = {{50, 0, Function::Linear},
                    {60, 0.5, Function::Linear},
                    {NAN, 9},
                    {70, 100, Function::Linear},
                    {80, 9}};
    ASSERT_TRUE(ownWindow(grey));
    EXPECT_EQ(ownWindow(grey)->window.center, 70);
    grey.windows.insert(grey.windows.begin(), {0.5, 0.25, Function::Sigmoid});
    EXPECT_EQ(ownWindow(grey)->window.width, 0.25);
    grey.voiLuts = {{0, 16, {}}, {-100, 12, std::vector<std::uint16_t>(200)}};
    EXPECT_TRUE(ownWindow(grey)->byTable);
    EXPECT_EQ(ownWindow(grey)->window.center, 0);
    EXPECT_EQ(ownWindow(grey)->window.width, 200);
}

TEST(WindowChoice, LeavesATableInForceWhenItsOwnValuesArePutBack) {
    const WindowInForce own{true, {2047.5, 4095, Function::Linear}};
    for (const double center : {2047.0, 2047.5, 2048.0}) {
        WindowChoice choice;
        choice.putCenter(own, center);
        choice.putWidth(own, 4095);
        EXPECT_TRUE(choice.over(own).byTable) << center;
    }
    WindowChoice choice;
    choice.putWidth(own, 4000);
    EXPECT_FALSE(choice.over(own).byTable);
    EXPECT_EQ(choice.over(own).window.center, 2047.5);
    EXPECT_EQ(choice.over(own).window.width, 4000);
}

TEST(WindowChoice, IgnoresWidthsThatCannotBeUsed) {
    struct Case {
        Function function;
        double width;
        bool taken;
    };
    const Case cases[] = {{Function::Linear, 0.99, false},      {Function::Linear, 1, true},
                          {Function::Linear, -5, false},        {Function::LinearExact, 0.01, true},
                          {Function::LinearExact, 0, false},    {Function::Sigmoid, 1e-6, true},
                          {Function::Sigmoid, HUGE_VAL, false}, {Function::Linear, std::nan(""), false}};
    for (const auto& c : cases) {
        const WindowInForce own{false, {100, 50, c.function}};
        WindowChoice choice;
        choice.putCenter(own, NAN);
        choice.putWidth(own, c.width);
        EXPECT_EQ(choice.over(own).window.center, 100);
        EXPECT_EQ(choice.over(own).window.width, c.taken ? c.width : 50) << c.width;
    }
}

}  // namespace
}  // namespace cinedisc
