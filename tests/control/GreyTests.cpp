#include "control/pipeline/GreyTable.h"
#include "control/pipeline/PaletteTable.h"
#include "control/pipeline/WindowChoice.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace cinedisc {
namespace {

using dicom::GreyTransform;
using dicom::LookupTable;
using dicom::Window;
using Function = dicom::Window::Function;

LookupTable tableOf(std::int64_t first, int bits, std::vector<std::uint16_t> entries) {
    return {first, bits, std::move(entries)};
}

GreyTransform rescaled(double slope, double intercept) {
    GreyTransform grey;
    grey.rescale = dicom::Rescale{slope, intercept};
    return grey;
}

TEST(GreyRule, FollowsTheThreeWindowFunctions) {
    struct Case {
        Window window;
        double stored;
        int grey;
    };
    const Case cases[] = {
        // PS3.3 C.11.2.1.2.1: c 2048, w 4096 maps 0 ... 4095 to all greys
        {{2048, 4096, Function::Linear}, 0, 0},
        {{2048, 4096, Function::Linear}, 4095, 255},
        {{2048, 4096, Function::Linear}, 2047.5, 128},
        // c 2048, w 1 is a threshold: up to 2047 black
        {{2048, 1, Function::Linear}, 2047, 0},
        {{2048, 1, Function::Linear}, 2048, 255},
        // c 0, w 100: black up to -50, white from 49
        {{0, 100, Function::Linear}, -50, 0},
        {{0, 100, Function::Linear}, 49, 255},
        {{0, 100, Function::Linear}, -0.5, 128},
        // LINEAR_EXACT: from c - w/2 to c + w/2
        {{0, 100, Function::LinearExact}, -50, 0},
        {{0, 100, Function::LinearExact}, 50, 255},
        {{0, 100, Function::LinearExact}, 0, 128},
        {{0.5, 0.25, Function::LinearExact}, 0.5625, 191},
        {{100, 40, Function::Sigmoid}, 100, 128},
        {{100, 40, Function::Sigmoid}, 110, 186},  // 255 / (1 + e^-1)
        {{100, 40, Function::Sigmoid}, -1e9, 0},
    };
    for (const auto& c : cases) {
        const GreyTransform grey;
        const GreyRule rule(grey, {false, c.window}, Polarity::Normal);
        EXPECT_EQ(rule(c.stored), c.grey)
            << "c " << c.window.center << " w " << c.window.width << " of " << c.stored;
    }
}

TEST(GreyRule, TakesTheModalityStepBeforeTheWindow) {
    const Window window{40, 400, Function::Linear};
    const auto grey = rescaled(2, -1000);
    const GreyRule rule(grey, {false, window}, Polarity::Normal);
    EXPECT_EQ(rule(420), 0);    // -160
    EXPECT_EQ(rule(520), 128);  // 40
    EXPECT_EQ(rule(619.5), 255);

    GreyTransform table;
    table.modalityLut = tableOf(10, 16, {100, 200, 300});
    const GreyRule byTable(table, {false, {200, 201, Function::LinearExact}}, Polarity::Normal);
    EXPECT_EQ(byTable(9), byTable(10));
    EXPECT_EQ(byTable(11), 128);
    EXPECT_EQ(byTable(500), byTable(12));
}

TEST(GreyRule, ReadsVoiTablesAgainstTheirRealDepth) {
    struct Case {
        int bits;
        std::vector<std::uint16_t> entries;
        std::vector<int> greys;
    };
    const Case cases[] = {
        {8, {0, 128, 255}, {0, 128, 255}},
        {16, {0, 32768, 65535}, {0, 128, 255}},
        {12, {0, 2048, 4095}, {0, 128, 255}},
        {8, {0, 512, 1023}, {0, 128, 255}},  // announces 8 bits, uses 10
    };
    for (const auto& c : cases) {
        GreyTransform grey;
        grey.voiLuts.push_back(tableOf(100, c.bits, c.entries));
        const auto own = ownWindow(grey);
        ASSERT_TRUE(own && own->byTable);
        const GreyRule rule(grey, *own, Polarity::Normal);
        for (int i = 0; i < 3; ++i) EXPECT_EQ(rule(100 + i), c.greys[static_cast<std::size_t>(i)]) << c.bits;
        EXPECT_EQ(rule(0), c.greys.front());
        EXPECT_EQ(rule(9999), c.greys.back());
    }
}

TEST(GreyRule, InvertsAfterTheWindowAndKeepsPaddingBlack) {
    for (const bool monochrome1 : {false, true}) {
        for (const Polarity polarity : {Polarity::Normal, Polarity::Inverted}) {
            GreyTransform grey;
            grey.inverse = monochrome1;
            grey.padding = {{-5, -2}};
            const GreyRule rule(grey, {false, {128, 256, Function::Linear}}, polarity);
            const bool inverted = monochrome1 != (polarity == Polarity::Inverted);
            EXPECT_EQ(rule(10), inverted ? 245 : 10);
            EXPECT_EQ(rule(1000), inverted ? 0 : 255);
            EXPECT_EQ(rule(-2), 0);
            EXPECT_EQ(rule(-5), 0);
            EXPECT_EQ(rule(-6), inverted ? 255 : 0);
        }
    }
}

TEST(GreyRule, ShowsNumbersThatAreNoneAsBlack) {
    const GreyTransform grey;
    const GreyRule rule(grey, {false, {0.5, 1, Function::LinearExact}}, Polarity::Inverted);
    EXPECT_EQ(rule(std::nan("")), 0);
    EXPECT_EQ(rule(HUGE_VAL), 0);
    EXPECT_EQ(rule(-HUGE_VAL), 255);
}

TEST(GreyTable, AgreesWithTheRuleForEveryStoredValue) {
    std::mt19937 random(7);
    for (int round = 0; round < 60; ++round) {
        dicom::PixelFormat format;
        format.bitsStored = 1 + static_cast<int>(random() % 16);
        format.isSigned = random() % 2 == 0;
        const bool wide = format.bitsStored > 8 || random() % 2 == 0;
        auto grey =
            rescaled(static_cast<int>(random() % 7) - 3.5, static_cast<int>(random() % 2000) - 1000.0);
        grey.inverse = random() % 2 == 0;
        const Window window{static_cast<int>(random() % 4000) - 2000.0, 1 + random() % 4000 / 1.0,
                            static_cast<Function>(random() % 3)};
        const GreyRule rule(grey, {false, window}, Polarity::Normal);
        const GreyTable table(rule, format, wide);
        const int low = format.isSigned ? -(1 << (format.bitsStored - 1)) : 0;
        const int high = low + (1 << format.bitsStored) - 1;
        for (int value = low; value <= high; ++value) {
            const int index = value & (wide ? 0xFFFF : 0xFF);
            ASSERT_EQ(table.entries()[index], rule(value)) << value << " of " << format.bitsStored << " bits";
        }
    }
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
        const auto table = tableOf(0, c.bits, c.entries);
        const PaletteTable palette({table, table, tableOf(1, c.bits, c.entries)}, format, false);
        EXPECT_EQ(palette.entries(0)[1], c.second);
        EXPECT_EQ(palette.entries(1)[255], 255);
        EXPECT_EQ(palette.entries(2)[1], 0) << "blue begins at 1";
    }
}

TEST(OwnWindow, IsTheFirstUsableWindowOrTheTable) {
    GreyTransform grey;
    EXPECT_FALSE(ownWindow(grey));
    grey.windows = {
        {50, 0, Function::Linear}, {60, 0.5, Function::Linear}, {70, 100, Function::Linear}, {80, 9}};
    ASSERT_TRUE(ownWindow(grey));
    EXPECT_EQ(ownWindow(grey)->window.center, 70);
    grey.windows.insert(grey.windows.begin(), {0.5, 0.25, Function::Sigmoid});
    EXPECT_EQ(ownWindow(grey)->window.width, 0.25);
    grey.voiLuts = {tableOf(0, 16, {}), tableOf(-100, 12, std::vector<std::uint16_t>(200))};
    EXPECT_TRUE(ownWindow(grey)->byTable);
    EXPECT_EQ(ownWindow(grey)->window.center, 0);
    EXPECT_EQ(ownWindow(grey)->window.width, 200);
}

TEST(WindowOver, ShowsTheLowestValueBlackAndTheHighestWhite) {
    std::mt19937 random(3);
    for (int round = 0; round < 200; ++round) {
        const double low = static_cast<int>(random() % 2000) - 1000.0;
        const double high = low + 1 + static_cast<double>(random() % 5000) / 8;
        for (const auto kind : {dicom::SampleKind::Integer, dicom::SampleKind::Float}) {
            const GreyTransform grey;
            const GreyRule rule(grey, windowOver({low, high}, kind), Polarity::Normal);
            EXPECT_EQ(rule(low), 0);
            EXPECT_EQ(rule(high), 255);
            EXPECT_NEAR(rule((low + high) / 2), 128, 1);
        }
    }
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
        choice.putWidth(own, c.width);
        EXPECT_EQ(choice.over(own).window.width, c.taken ? c.width : 50) << c.width;
    }
}

}  // namespace
}  // namespace cinedisc
