#include "dicom/DicomFile.h"
#include "dicom/LookupTables.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

using namespace dicom;

DicomBuilder greyPicture(int frames = 1) {
    DicomBuilder builder = DicomBuilder::image(2, 2, frames, 16, 12);
    builder.gradientPixels();
    return builder;
}

DicomItem lut(std::vector<std::int64_t> descriptor, const std::vector<std::int64_t>& entries,
              const char* kind = "US") {
    DicomItem item;
    item.numbers(tags::LUTDescriptor, kind, descriptor).numbers(tags::LUTData, "US", entries);
    return item;
}

TEST(GreyRules, FirstWindowsComeFirstAndImpossibleOnesAreLeftOut) {
    DicomBuilder builder = greyPicture();
    builder.text(tags::WindowCenter, "DS", "40\\300\\7\\8").text(tags::WindowWidth, "DS", "400\\0.5\\1500");
    const auto windows = opened(builder)->greyTransform(0).windows;
    ASSERT_EQ(windows.size(), 2u);
    EXPECT_EQ(windows[0].center, 40);
    EXPECT_EQ(windows[0].width, 400);
    EXPECT_EQ(windows[1].width, 1500);
    EXPECT_EQ(windows[0].function, Window::Function::Linear);

    builder.text(tags::VOILUTFunction, "CS", "LINEAR_EXACT");
    const auto exact = opened(builder)->greyTransform(0).windows;
    ASSERT_EQ(exact.size(), 3u);
    EXPECT_EQ(exact[1].function, Window::Function::LinearExact);
    builder.text(tags::VOILUTFunction, "CS", "SIGMOID");
    EXPECT_EQ(opened(builder)->greyTransform(0).windows[0].function, Window::Function::Sigmoid);
}

TEST(GreyRules, ModalityStepIsLeftOutForProjectionsOfXRayOnly) {
    struct Row {
        const char* modality;
        const char* object;
        bool applied;
    };
    for (const Row& row :
         {Row{"XA", "1.2.840.10008.5.1.4.1.1.12.1", false}, Row{"RF", "1.2.840.10008.5.1.4.1.1.12.2", false},
          Row{"", "1.2.840.10008.5.1.4.1.1.12.1.1", false}, Row{"XA", "1.2.840.10008.5.1.4.1.1.7", false},
          Row{"CT", "1.2.840.10008.5.1.4.1.1.2", true}, Row{"XA", "1.2.840.10008.5.1.4.1.1.13.1.1", true}}) {
        DicomBuilder builder = greyPicture();
        builder.text(tags::Modality, "CS", row.modality).text(tags::SOPClassUID, "UI", row.object);
        builder.text(tags::RescaleSlope, "DS", "2").text(tags::RescaleIntercept, "DS", "-1024");
        const auto grey = opened(builder)->greyTransform(0);
        EXPECT_EQ(grey.rescale.has_value(), row.applied) << row.modality << row.object;
        builder.sequence(tags::ModalityLUTSequence, {lut({4, 0, 16}, {1, 2, 3, 65535})});
        const auto withLut = opened(builder)->greyTransform(0);
        EXPECT_EQ(withLut.modalityLut.has_value(), row.applied) << row.modality << row.object;
        EXPECT_FALSE(withLut.rescale.has_value());
    }
}

TEST(GreyRules, LookUpTablesOfManyMakesAreUnderstood) {
    struct Row {
        const char* name;
        LutDescriptor descriptor;
        Bytes data;
        std::size_t entries;
        int bits;
        int last;
    };
    const Bytes full(2 * 65536, std::byte{0xFF});
    for (const Row& row : {
             Row{"bytes packed in words", {4, 0, 8}, bytesOf({1, 2, 3, 250}), 4, 8, 250},
             Row{"odd number of bytes", {3, 0, 8}, bytesOf({1, 2, 250, 0}), 3, 8, 250},
             Row{"8 bits in words", {2, 0, 8}, bytesOf({1, 0, 200, 0}), 2, 8, 200},
             Row{"says 8, has 12", {2, 0, 8}, bytesOf({1, 0, 0xFF, 0x0F}), 2, 12, 4095},
             Row{"says 16, has 8", {2, 0, 16}, bytesOf({1, 0, 200, 0}), 2, 8, 200},
             Row{"says 16, has 15", {2, 0, 16}, bytesOf({1, 0, 0, 0x40}), 2, 16, 0x4000},
             Row{"says 99", {2, 0, 99}, bytesOf({1, 0, 0xFF, 0x3F}), 2, 14, 0x3FFF},
             Row{"too short", {8, 0, 16}, bytesOf({0, 0xFF, 0xFE, 0xFF}), 2, 16, 0xFFFE},
             Row{"all 65536", {65536, 0, 16}, full, 65536, 16, 0xFFFF},
         }) {
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
        const char* intercept;
        std::int64_t first;
    };
    for (const Row& row : {Row{"US", 0, "0", 0xFC00}, Row{"US", 1, "0", -1024}, Row{"SS", 0, "0", -1024},
                           Row{"US", 0, "-1024", -1024}}) {
        DicomBuilder builder = greyPicture();
        builder.text(tags::Modality, "CS", "CT").text(tags::SOPClassUID, "UI", "1.2.840.10008.5.1.4.1.1.2");
        builder.numbers(tags::PixelRepresentation, "US", {row.pixelRepresentation});
        builder.text(tags::RescaleIntercept, "DS", row.intercept);
        builder.sequence(tags::VOILUTSequence, {lut({2, 0xFC00, 12}, {0, 4095}, row.kind)});
        const auto grey = opened(builder)->greyTransform(0);
        ASSERT_EQ(grey.voiLuts.size(), 1u);
        EXPECT_EQ(grey.voiLuts[0].firstMapped, row.first)
            << row.kind << row.pixelRepresentation << row.intercept;
    }
}

TEST(GreyRules, EnhancedObjectsHaveTheirRulesFrameByFrame) {
    const auto group = [](const char* center, const char* slope) {
        DicomItem window, values, frame;
        window.text(tags::WindowCenter, "DS", center).text(tags::WindowWidth, "DS", "100");
        values.text(tags::RescaleSlope, "DS", slope).text(tags::RescaleIntercept, "DS", "1");
        frame.sequence(tags::FrameVOILUTSequence, {window});
        if (*slope) frame.sequence(tags::PixelValueTransformationSequence, {values});
        return frame;
    };
    DicomBuilder builder = greyPicture(3);
    builder.text(tags::Modality, "CS", "CT").text(tags::SOPClassUID, "UI", "1.2.840.10008.5.1.4.1.1.2.1");
    builder.sequence(tags::SharedFunctionalGroups, {group("1", "5")});
    builder.sequence(tags::PerFrameFunctionalGroups, {group("10", "2"), group("20", "")});
    const auto file = opened(builder);
    const std::pair<double, double> expected[] = {{10, 2}, {20, 5}, {1, 5}};
    for (int frame = 0; frame < 3; ++frame) {
        const auto grey = file->greyTransform(frame);
        EXPECT_EQ(grey.windows.at(0).center, expected[frame].first);
        EXPECT_EQ(grey.rescale.value().slope, expected[frame].second);
    }
}

TEST(GreyRules, EnhancedObjectsHaveTheirVoiTablesFrameByFrame) {
    const auto group = [](std::int64_t last) {
        DicomItem table, voi, frame;
        table.numbers(tags::LUTDescriptor, "US", {2, 0, 16}).numbers(tags::LUTData, "US", {0, last});
        voi.sequence(tags::VOILUTSequence, {table});
        return frame.sequence(tags::FrameVOILUTSequence, {voi});
    };
    DicomBuilder builder = greyPicture(2);
    builder.text(tags::SOPClassUID, "UI", "1.2.840.10008.5.1.4.1.1.12.1.1").text(tags::Modality, "CS", "XA");
    builder.sequence(tags::PerFrameFunctionalGroups, {group(40000), group(50000)});
    const auto file = opened(builder);
    EXPECT_EQ(file->greyTransform(0).voiLuts.at(0).entries.back(), 40000);
    EXPECT_EQ(file->greyTransform(1).voiLuts.at(0).entries.back(), 50000);
}

TEST(GreyRules, InversionAndPadding) {
    DicomBuilder builder = greyPicture();
    EXPECT_FALSE(opened(builder)->greyTransform(0).inverse);
    EXPECT_FALSE(opened(builder)->greyTransform(0).padding.has_value());
    builder.text(tags::PresentationLUTShape, "CS", "INVERSE");
    EXPECT_TRUE(opened(builder)->greyTransform(0).inverse);
    builder.text(tags::PresentationLUTShape, "CS", "IDENTITY")
        .text(tags::PhotometricInterpretation, "CS", "MONOCHROME1");
    EXPECT_TRUE(opened(builder)->greyTransform(0).inverse);

    using Range = std::pair<std::int64_t, std::int64_t>;
    builder.numbers(tags::PixelPaddingValue, "US", {0xF830});
    EXPECT_EQ(opened(builder)->greyTransform(0).padding, Range(0xF830, 0xF830));
    builder.numbers(tags::PixelRepresentation, "US", {1});
    EXPECT_EQ(opened(builder)->greyTransform(0).padding, Range(-2000, -2000));
    builder.numbers(tags::PixelPaddingRangeLimit, "SS", {-2100});
    EXPECT_EQ(opened(builder)->greyTransform(0).padding, Range(-2100, -2000));
}

}  // namespace
}  // namespace cinedisc::test
