#include "control/pipeline/PaletteTable.h"
#include "control/pipeline/WindowChoice.h"
#include "tests/control/FakeDicomFile.h"

#include <gtest/gtest.h>

#include <cmath>

namespace cinedisc {
namespace {

using dicom::GreyTransform;
using dicom::LookupTable;
using dicom::Overlay;
using dicom::Shutter;
using Function = dicom::Window::Function;

// Where the formulas themselves could be misread: the standard's own examples, and numbers that are none.
TEST(GreyRule, ShowsTheStandardsExamples) {
    struct Case {
        dicom::Window window;
        double stored;
        int grey;
    };
    const Case cases[] = {
        {{2048, 1, Function::Linear}, 2047, 0},
        {{2048, 1, Function::Linear}, 2048, 255},
        {{0, 100, Function::Linear}, -50, 0},
        {{0, 100, Function::LinearExact}, 50, 255},
        {{0.5, 0.25, Function::LinearExact}, 0.5625, 191},
        {{100, 40, Function::Sigmoid}, 110, 186},
        {{0.5, 1, Function::LinearExact}, std::nan(""), 0},
        {{0.5, 1, Function::LinearExact}, HUGE_VAL, 255},
    };
    for (const auto& c : cases) {
        const GreyTransform grey;
        EXPECT_EQ(GreyRule(grey, {false, c.window}, Polarity::Normal)(c.stored), c.grey) << c.stored;
        const int inverted = std::isnan(c.stored) ? 0 : 255 - c.grey;
        EXPECT_EQ(GreyRule(grey, {false, c.window}, Polarity::Inverted)(c.stored), inverted) << c.stored;
    }
    GreyTransform odd;
    odd.rescale = dicom::Rescale{0, 0};
    EXPECT_EQ(GreyRule(odd, {false, {0.5, 1, Function::LinearExact}}, Polarity::Inverted)(HUGE_VAL), 0);
    odd = {};
    odd.voiLuts = {{0, 8, {0, 0x1FF, 0xFF}}};
    EXPECT_EQ(GreyRule(odd, {true, {}}, Polarity::Normal)(2), 127) << "more bits than it announces";
}

TEST(FrameRange, LeavesPaddingAndNumbersThatAreNoneOut) {
    dicom::Frame frame;
    frame.samples = std::vector<std::int16_t>{-9, -5, 0, 7, 30, 90};
    EXPECT_EQ(frameRange(frame, {{-9, -6}}), (ValueRange{-5, 90}));
    EXPECT_EQ(frameRange(frame, {{30, 90}}), (ValueRange{-9, 7}));
    EXPECT_EQ(frameRange(frame, {{-9, 90}}), ValueRange());
    frame.samples = std::vector<float>{NAN, 0.5F, -HUGE_VALF, 2, HUGE_VALF};
    EXPECT_EQ(frameRange(frame, {}), (ValueRange{0.5, 2}));
    GreyTransform grey;
    grey.modalityLut = {2, 8, {5, 1, 9, 3}};
    EXPECT_EQ(modalityRange(grey, {0, 3}), (ValueRange{1, 5}));
    EXPECT_EQ(modalityRange(grey, {4, 9}), (ValueRange{3, 9}));
}

TEST(PaletteTable, TakesTheUpperByteOfWideEntriesAndAllOfNarrowOnes) {
    const LookupTable tables[] = {{0, 16, {0, 0x80FF, 0xFF00}},
                                  {0, 8, {0, 128, 255}},
                                  {0, 16, {0, 128, 255}}};  // the last announces 16 bits and uses 8
    for (auto table : tables) {
        auto later = table;
        later.firstMapped = 1;
        const PaletteTable palette({table, table, later}, {}, false);
        EXPECT_EQ(palette.entries(0)[1], 128);
        EXPECT_EQ(palette.entries(1)[255], 255);
        EXPECT_EQ(palette.entries(2)[1], 0) << "blue begins at 1";
    }
    const LookupTable least{0, 16, {0, 256}};  // of those that use more than 8 bits
    EXPECT_EQ(PaletteTable({least, least, least}, {}, false).entries(0)[1], 1);
}

TEST(OwnWindow, IsTheFirstUsableWindowOrTheTable) {
    EXPECT_EQ(windowOver({5, 5}, dicom::SampleKind::Float).window.width, 1);
    GreyTransform grey;
    EXPECT_FALSE(ownWindow(grey));
    grey.windows = {{50, 0}, {60, 0.5}, {NAN, 9}, {70, 100}, {80, 9}};
    ASSERT_TRUE(ownWindow(grey));
    EXPECT_EQ(ownWindow(grey)->window.center, 70);
    grey.windows.insert(grey.windows.begin(), {0.5, 0.25, Function::Sigmoid});
    EXPECT_EQ(ownWindow(grey)->window.width, 0.25);
    grey.voiLuts = {{0, 16, {}}, {-100, 12, std::vector<std::uint16_t>(200)}};
    EXPECT_TRUE(ownWindow(grey)->byTable);
    EXPECT_EQ(ownWindow(grey)->window.center, 0);
    EXPECT_EQ(ownWindow(grey)->window.width, 200);
}

TEST(WindowChoice, LeavesATableInForceWhenItsOwnValuesArePutBackAndIgnoresWhatCannotBeUsed) {
    struct Case {
        Function function;
        bool byTable;
        double put, width;
        bool isMade;
    };
    constexpr auto linear = Function::Linear, exact = Function::LinearExact, sigmoid = Function::Sigmoid;
    const Case cases[] = {
        {linear, true, 49.5, 50, false},       {linear, true, 50.5, 50, false},
        {linear, true, 51, 51, true},          {linear, false, 50, 50, true},
        {linear, false, 0.99, 50, false},      {linear, false, 1, 1, true},
        {linear, false, NAN, 50, false},       {exact, false, 0.01, 0.01, true},
        {exact, false, 0, 50, false},          {sigmoid, false, 1e-6, 1e-6, true},
        {sigmoid, false, HUGE_VAL, 50, false},
    };
    for (const auto& c : cases) {
        const WindowInForce own{c.byTable, {50, 50, c.function}};
        WindowChoice choice;
        choice.putCenter(own, NAN);
        choice.putWidth(own, c.put);
        EXPECT_EQ(choice.isMade(), c.isMade) << c.put;
        EXPECT_EQ(choice.over(own).byTable, c.byTable && !c.isMade) << c.put;
        EXPECT_EQ(choice.over(own).window.width, c.width);
        choice.putCenter(own, 50.5);
        EXPECT_EQ(choice.over(own).window.center, c.byTable && !c.isMade ? 50 : 50.5);
    }
}

TEST(Shutter, ThatWouldHideEverythingHidesNothing) {
    Shutter cases[4];
    cases[0].rectangle = Shutter::Rectangle{0, 0, 0, 0};
    cases[1].rectangle = Shutter::Rectangle{9, 3, 1, 8};
    cases[2].circle = Shutter::Circle{500, 500, 10};
    cases[3].circle = Shutter::Circle{5, 5, 0};
    for (const auto& shutter : cases) EXPECT_TRUE(hiddenByShutter(shutter, 10, 10).empty());
    cases[1].circle = Shutter::Circle{5, 5, 2};
    EXPECT_FALSE(hiddenByShutter(cases[1], 10, 10).empty()) << "the shape that can be used still counts";
}

TEST(Cover, IsMadeAndCountedFrameByFrameOnlyWhenItChanges) {
    const auto file = test::greyRun(4, 4, 3);
    const auto store = std::make_shared<FrameStore>();
    EXPECT_EQ(ImageFile(file, {}, store).frame(0)->cover, nullptr);
    for (const auto& [allocated, bytes] : {std::pair{8, 1U}, {16, 2U}, {32, 4U}, {64, 8U}}) {
        file->format.bitsAllocated = allocated;
        EXPECT_EQ(ImageFile(file, {}, store).decodedFrameBytes(), 16 * bytes);
    }
    file->format.bitsAllocated = 8;
    Overlay overlay;
    overlay.rows = overlay.columns = 2;
    overlay.bits = {1, 1, 1};
    file->overlayPlanes = {overlay};
    EXPECT_TRUE(coverOf(*file, 0).empty()) << "too few bits";
    file->overlayPlanes[0].bits.push_back(1);
    ImageFile same(file, {}, store);
    ASSERT_TRUE(same.frame(0)->cover);
    EXPECT_EQ(same.frame(0)->cover, same.frame(1)->cover);
    EXPECT_EQ(same.frame(1)->byteSize(), sizeof(DecodedFrame) + 16);

    file->overlayPlanes[0].multiFrame = true;
    file->bitsOf = [](const Overlay&, int frame) { return std::vector<std::uint8_t>(frame == 1 ? 4 : 0, 1); };
    ImageFile image(file, {}, store);
    // Rows of bits take whole words: of 16 pixels, and of overlays without or with a shutter.
    EXPECT_EQ(image.decodedFrameBytes(), 16U + 2 * 4 * 8);
    EXPECT_EQ(image.frame(1)->byteSize(), sizeof(DecodedFrame) + 16 + 4 * 8);
    EXPECT_TRUE(image.frame(2)->cover->empty());
}

}  // namespace
}  // namespace cinedisc
