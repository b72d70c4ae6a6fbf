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

TEST(GreyRule, KeepsNumbersThatAreNoneAndEntriesThatAreTooWideWithinTheGreys) {
    const WindowInForce window{false, {0.5, 1, Function::LinearExact}};
    for (const auto polarity : {Polarity::Normal, Polarity::Inverted}) {
        GreyTransform grey;
        EXPECT_EQ(GreyRule(grey, window, polarity)(std::nan("")), 0);
        EXPECT_EQ(GreyRule(grey, window, polarity)(HUGE_VAL), polarity == Polarity::Normal ? 255 : 0);
        grey.rescale = dicom::Rescale{0, 0};
        EXPECT_EQ(GreyRule(grey, window, polarity)(HUGE_VAL), 0);
    }
    GreyTransform odd;
    odd.voiLuts = {{0, 8, {0, 0x1FF, 0xFF}}};
    EXPECT_EQ(GreyRule(odd, {true, {}}, Polarity::Normal)(2), 127) << "more bits than it announces";
}

TEST(FrameRange, LeavesPaddingAndNumbersThatAreNoneOut) {
    dicom::Frame frame;
    frame.samples = std::vector<std::int16_t>{-9, 7, 90};
    EXPECT_EQ(frameRange(frame, {{-9, 90}}), ValueRange());
    frame.samples = std::vector<float>{NAN, 0.5F, -HUGE_VALF, 2, HUGE_VALF};
    EXPECT_EQ(frameRange(frame, {}), (ValueRange{0.5, 2}));
    GreyTransform grey;
    grey.modalityLut = {2, 8, {5, 1, 9, 3}};
    EXPECT_EQ(modalityRange(grey, {0, 3}), (ValueRange{1, 5}));
    EXPECT_EQ(modalityRange(grey, {4, 9}), (ValueRange{3, 9}));
}

TEST(PaletteTable, TakesAllOfNarrowEntriesThatAreAnnouncedAsWide) {
    const LookupTable narrow{0, 16, {0, 128, 255}}, least{0, 16, {0, 256}};
    EXPECT_EQ(PaletteTable({narrow, narrow, narrow}, {}, false).entries(0)[1], 128);
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
    for (const auto& [function, byTable, width, isMade] : {std::tuple{Function::Linear, true, 49.5, false},
                                                           {Function::Linear, true, 51., true},
                                                           {Function::Linear, false, 50., true},
                                                           {Function::Linear, false, 0.99, false},
                                                           {Function::Linear, false, 1., true},
                                                           {Function::LinearExact, false, 0.01, true},
                                                           {Function::LinearExact, false, 0., false},
                                                           {Function::Sigmoid, false, HUGE_VAL, false}}) {
        const WindowInForce own{byTable, {50, 50, function}};
        WindowChoice choice;
        choice.putCenter(own, NAN);
        choice.putWidth(own, width);
        EXPECT_EQ(choice.isMade(), isMade) << width;
        EXPECT_EQ(choice.over(own).window.width, isMade ? width : 50);
        const bool keepsTable = byTable && !isMade;
        EXPECT_EQ(choice.over(own).byTable, keepsTable) << width;
        choice.putCenter(own, 50.5);
        EXPECT_EQ(choice.over(own).window.center, keepsTable ? 50 : 50.5);
    }
}

TEST(Shutter, ThatWouldHideEverythingHidesNothing) {
    Shutter shutter;
    for (const Shutter::Circle circle : {Shutter::Circle{500, 500, 10}, {5, 5, 0}, {5, 5, 2}}) {
        shutter.rectangle = Shutter::Rectangle{9, 3, 1, 8};
        shutter.circle = circle;
        EXPECT_EQ(hiddenByShutter(shutter, 10, 10).empty(), circle.radius != 2);
    }
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
