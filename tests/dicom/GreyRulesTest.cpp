#include "dicom/DicomFile.h"
#include "dicom/LookupTables.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <tuple>

namespace cinedisc::test {
namespace {

using namespace dicom;

/// `object` is the end of its SOP class.
DicomBuilder greyPicture(const char* modality = "XA", const std::string& object = "12.1") {
    DicomBuilder builder = DicomBuilder::image(2, 2, 3, 16, 12);
    builder.gradientPixels()
        .text(tags::Modality, "CS", modality)
        .text(tags::SOPClassUID, "UI", "1.2.840.10008.5.1.4.1.1." + object);
    return builder;
}

GreyTransform greyOf(const DicomBuilder& builder) { return opened(builder)->greyTransform(0); }

DicomItem lut(std::vector<std::int64_t> descriptor, const std::vector<std::int64_t>& entries,
              const char* kind = "US") {
    DicomItem item;
    item.numbers(tags::LUTDescriptor, kind, descriptor).numbers(tags::LUTData, "US", entries);
    return item;
}

TEST(GreyRules, FirstWindowsComeFirstAndImpossibleOnesAreLeftOut) {
    using Function = Window::Function;
    using Windows = std::vector<std::tuple<double, double, Function>>;
    for (const auto& [name, function] : {std::pair("", Function::Linear),
                                         {"LINEAR_EXACT", Function::LinearExact},
                                         {"SIGMOID", Function::Sigmoid}}) {
        DicomBuilder builder = greyPicture();
        builder.text(tags::WindowCenter, "DS", "40\\300\\7\\8")
            .text(tags::WindowWidth, "DS", "400\\0.5\\1500")
            .text(tags::VOILUTFunction, "CS", name);
        Windows expected{{40, 400, function}, {300, 0.5, function}, {7, 1500, function}}, found;
        if (function == Function::Linear) expected.erase(expected.begin() + 1);
        for (const Window& each : greyOf(builder).windows)
            found.emplace_back(each.center, each.width, each.function);
        EXPECT_EQ(found, expected) << name;
    }
}

TEST(GreyRules, ModalityStepIsLeftOutForProjectionsOfXRayOnly) {
    for (const auto& [modality, object, applied] : {std::tuple("XA", "12.1", false),
                                                    {"RF", "12.2", false},
                                                    {"", "12.1.1", false},
                                                    {"XA", "7", false},
                                                    {"CT", "2", true},
                                                    {"XA", "13.1.1", true}}) {
        DicomBuilder builder = greyPicture(modality, object);
        builder.text(tags::RescaleSlope, "DS", "2").text(tags::RescaleIntercept, "DS", "-1024");
        EXPECT_EQ(greyOf(builder).rescale.has_value(), applied) << modality << object;
        builder.sequence(tags::ModalityLUTSequence, {lut({4, 0, 16}, {1, 2, 3, 65535})});
        EXPECT_EQ(greyOf(builder).modalityLut.has_value(), applied) << modality << object;
        EXPECT_FALSE(greyOf(builder).rescale.has_value());
    }
}

TEST(GreyRules, RescaleThatChangesNothingIsNone) {
    using Numbers = std::optional<std::pair<double, double>>;
    for (const auto& [slope, intercept, expected] : {std::tuple("2", "-1024", Numbers({2, -1024})),
                                                     {"1", "-1", Numbers({1, -1})},
                                                     {"3", "", Numbers({3, 0})},
                                                     {"", "5", Numbers({1, 5})},
                                                     {"1", "0", Numbers()},
                                                     {"0", "5", Numbers()},
                                                     {"", "", Numbers()}}) {
        DicomBuilder builder = greyPicture("CT", "2");
        builder.text(tags::RescaleSlope, "DS", slope).text(tags::RescaleIntercept, "DS", intercept);
        const auto rescale = greyOf(builder).rescale;
        EXPECT_EQ(rescale ? Numbers({rescale->slope, rescale->intercept}) : Numbers(), expected)
            << slope << ' ' << intercept;
    }
}

TEST(GreyRules, LookUpTablesOfManyMakesAreUnderstood) {
    struct Row {
        const char* name;
        LutDescriptor descriptor;
        Bytes data;
        std::size_t entries;
        int bits, last;
    };
    for (const Row& row :
         {Row{"bytes packed in words", {4, 0, 8}, bytesOf({1, 2, 3, 250}), 4, 8, 250},
          {"odd number of bytes", {3, 0, 8}, bytesOf({1, 2, 250, 0}), 3, 8, 250},
          {"8 bits in words", {2, 0, 8}, bytesOf({1, 0, 200, 0}), 2, 8, 200},
          {"says 8, has 12", {2, 0, 8}, bytesOf({1, 0, 0xFF, 0x0F}), 2, 12, 4095},
          {"says 16, has 8", {2, 0, 16}, bytesOf({1, 0, 200, 0}), 2, 8, 200},
          {"says 16, has 15", {2, 0, 16}, bytesOf({1, 0, 0, 0x40}), 2, 16, 0x4000},
          {"says 99", {2, 0, 99}, bytesOf({1, 0, 0xFF, 0x3F}), 2, 14, 0x3FFF},
          {"too short", {8, 0, 16}, bytesOf({0, 0xFF, 0xFE, 0xFF}), 2, 16, 0xFFFE},
          {"all 65536", {65536, 0, 16}, Bytes(2 * 65536, std::byte{0xFF}), 65536, 16, 0xFFFF}}) {
        const auto table = makeLookupTable(row.descriptor, row.data);
        ASSERT_TRUE(table) << row.name;
        EXPECT_EQ(table->entries.size(), row.entries) << row.name;
        EXPECT_EQ(table->bits, row.bits) << row.name;
        EXPECT_EQ(table->entries.back(), row.last) << row.name;
    }
    EXPECT_FALSE(makeLookupTable({4, 0, 16}, {}));
}

TEST(GreyRules, FirstMappedValueIsSignedWhenTheInputIs) {
    struct Row {
        const char* kind;
        int pixelRepresentation;
        const char *slope, *intercept;
        std::int64_t first;
    };
    for (const Row& row : {Row{"US", 0, "1", "0", 0xFC00},
                           {"US", 1, "1", "0", -1024},
                           {"SS", 0, "1", "0", -1024},
                           {"US", 0, "1", "-1024", -1024},
                           {"US", 1, "1", "2048", 0xFC00},
                           {"US", 1, "1", "2047", -1024},
                           {"US", 0, "-1", "4095", 0xFC00},
                           {"US", 0, "-1", "4094", -1024},
                           // As high as 64512, and one below.
                           {"US", 1, "20", "23572", 0xFC00},
                           {"US", 1, "20", "23571", -1024}}) {
        DicomBuilder builder = greyPicture("CT", "2");
        builder.numbers(tags::PixelRepresentation, "US", {row.pixelRepresentation})
            .text(tags::RescaleSlope, "DS", row.slope)
            .text(tags::RescaleIntercept, "DS", row.intercept)
            .sequence(tags::VOILUTSequence, {lut({2, 0xFC00, 12}, {0, 4095}, row.kind)});
        EXPECT_EQ(greyOf(builder).voiLuts.at(0).firstMapped, row.first)
            << row.kind << row.pixelRepresentation << row.slope << row.intercept;
        // Behind a table nothing is negative.
        builder.sequence(tags::ModalityLUTSequence, {lut({2, 0xFC00, 12}, {0, 4095}, row.kind)});
        const auto grey = greyOf(builder);
        EXPECT_EQ(grey.voiLuts.at(0).firstMapped < 0, *row.kind == 'S');
        EXPECT_EQ(grey.modalityLut->firstMapped < 0, *row.kind == 'S' || row.pixelRepresentation == 1);
    }
}

TEST(GreyRules, EnhancedObjectsHaveTheirRulesFrameByFrame) {
    const auto group = [](const char* center, const char* slope, std::int64_t last) {
        DicomItem voi, values, frame;
        voi.text(tags::WindowCenter, "DS", center).text(tags::WindowWidth, "DS", "100");
        voi.sequence(tags::VOILUTSequence, {lut({2, 0, 16}, {0, last})});
        values.text(tags::RescaleSlope, "DS", slope).text(tags::RescaleIntercept, "DS", "1");
        frame.sequence(tags::FrameVOILUTSequence, {voi});
        if (*slope) frame.sequence(tags::PixelValueTransformationSequence, {values});
        return frame;
    };
    DicomBuilder builder = greyPicture("CT", "2.1");
    builder.sequence(tags::SharedFunctionalGroups, {group("1", "5", 30000)});
    builder.sequence(tags::PerFrameFunctionalGroups, {group("10", "2", 40000), group("20", "", 50000)});
    const auto file = opened(builder);
    EXPECT_TRUE(file->hasGreyRulesByFrame());
    EXPECT_FALSE(opened(greyPicture())->hasGreyRulesByFrame());
    const std::array<double, 3> expected[] = {{10, 2, 40000}, {20, 5, 50000}, {1, 5, 30000}};
    for (int frame = 0; frame < 3; ++frame) {
        const auto grey = file->greyTransform(frame);
        EXPECT_EQ(grey.windows.at(0).center, expected[frame][0]);
        EXPECT_EQ(grey.rescale.value().slope, expected[frame][1]);
        EXPECT_EQ(grey.voiLuts.at(0).entries.back(), expected[frame][2]);
    }
}

TEST(GreyRules, InversionAndPadding) {
    DicomBuilder builder = greyPicture();
    EXPECT_FALSE(greyOf(builder).inverse);
    EXPECT_FALSE(greyOf(builder).padding.has_value());
    builder.text(tags::PresentationLUTShape, "CS", "INVERSE");
    EXPECT_TRUE(greyOf(builder).inverse);
    builder.text(tags::PresentationLUTShape, "CS", "IDENTITY")
        .text(tags::PhotometricInterpretation, "CS", "MONOCHROME1");
    EXPECT_TRUE(greyOf(builder).inverse);

    using Range = std::pair<std::int64_t, std::int64_t>;
    builder.numbers(tags::PixelPaddingValue, "US", {0xF830});
    EXPECT_EQ(greyOf(builder).padding, Range(0xF830, 0xF830));
    builder.numbers(tags::PixelRepresentation, "US", {1});
    EXPECT_EQ(greyOf(builder).padding, Range(-2000, -2000));
    builder.numbers(tags::PixelPaddingRangeLimit, "SS", {-2100});
    EXPECT_EQ(greyOf(builder).padding, Range(-2100, -2000));
    builder.numbers(tags::PixelRepresentation, "US", {0});
    EXPECT_EQ(greyOf(builder).padding, Range(0xF7CC, 0xF830));
}

}  // namespace
}  // namespace cinedisc::test
