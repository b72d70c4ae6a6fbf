#include "dicom/DicomFile.h"
#include "dicom/LookupTables.h"
#include "dicom/SegmentedPalette.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <tuple>

namespace cinedisc::test {
namespace {

using namespace dicom;

DicomBuilder greyRun(int frames = 1) { return DicomBuilder::image(4, 4, frames).gradientPixels(); }

TEST(Palette, TablesOfThreeColoursArePlainOrSegmented) {
    // A value of 5 and less, and the two behind, as the tables of each colour have them.
    struct Row {
        std::vector<std::int64_t> descriptor;
        Bytes red, blue;
        int bits;
        std::array<unsigned, 2> blueEntries;
        bool isSegmented = false;
    };
    const Bytes bright = bytesOf({0, 0, 0xFF, 0xFF}), steps = bytesOf({0, 0, 2, 0, 1, 0, 0, 0x90});
    const Bytes segmentOfWords = bytesOf({0, 0, 2, 0, 3, 0, 255, 0});
    for (const Row& row :
         // All colours together decide on the bits.
         {Row{{2, 5, 16}, bright, bytesOf({0, 0, 0, 8}), 16, {0, 0x800}},
          {{2, 5, 8}, bytesOf({0, 255}), bytesOf({1, 200}), 8, {1, 200}},
          {{2, 5, 16}, steps, bytesOf({0, 0, 1, 0, 7, 0, 1, 0, 1, 0, 9, 0}), 16, {7, 9}, true},
          {{2, 5, 8}, bytesOf({0, 2, 3, 255}), bytesOf({0, 2, 4, 6}), 8, {4, 6}, true},
          {{2, 5, 8}, segmentOfWords, bytesOf({0, 0, 2, 0, 4, 0, 6, 0}), 8, {4, 6}, true}}) {
        SCOPED_TRACE(testing::PrintToString(row.blue));
        DicomBuilder builder = greyRun();
        builder.text(tags::PhotometricInterpretation, "CS", "PALETTE COLOR");
        const Tag first = row.isSegmented ? tags::SegmentedRedPaletteData : tags::RedPaletteData;
        for (std::size_t colour = 0; colour < 3; ++colour) {
            builder.numbers(tags::forColour(tags::RedPaletteDescriptor, colour), "US", row.descriptor);
            builder.binary(tags::forColour(first, colour), "OW", colour == 2 ? row.blue : row.red);
        }
        const auto file = opened(builder);
        ASSERT_TRUE(file->palette());
        const LookupTable& blue = file->palette()->blue;
        EXPECT_EQ(blue.firstMapped, 5);
        EXPECT_EQ(blue.bits, row.bits);
        ASSERT_EQ(blue.entries.size(), 2u);
        EXPECT_EQ((std::array<unsigned, 2>{blue.entries[0], blue.entries[1]}), row.blueEntries);
        builder.remove(tags::forColour(first, 1));
        EXPECT_FALSE(opened(builder)->palette());
    }
}

TEST(Palette, SegmentsAreExpanded) {
    using Entries = std::vector<std::uint16_t>;
    struct Row {
        Bytes segments;
        std::size_t wordSize, most;
        Entries entries;
    };
    for (const Row& row :
         // Discrete 10 20, linear to 60 in four steps, and once more the discrete segment.
         {Row{bytesOf({0, 2, 10, 20, 1, 4, 60, 2, 1, 0, 0, 0, 0}), 1, 256, {10, 20, 30, 40, 50, 60, 10, 20}},
          {bytesOf({0, 0, 1, 0, 0, 0, 1, 0, 2, 0, 0xFF, 0xFF, 2, 0, 2, 0, 0, 0, 0, 0}),
           2,
           256,
           {0, 0x8000, 0xFFFF, 0, 0x8000, 0xFFFF}},
          {bytesOf({0, 1, 10, 1, 2, 15, 1, 2, 10}), 1, 256, {10, 13, 15, 12, 10}},
          {bytesOf({0, 1, 10, 1, 4, 11}), 1, 256, {10, 10, 11, 11, 11}},
          // Downwards, and no further than is asked for.
          {bytesOf({0, 1, 100, 1, 100, 0}), 1, 3, {100, 99, 98}},
          {bytesOf({0, 3, 1, 2, 3, 0, 1, 4}), 1, 3, {1, 2, 3}},
          // Segments that refer to themselves or to nothing, break off or are unknown end the table.
          {bytesOf({2, 255, 0, 0, 0, 0}), 1, 256, {}},
          {bytesOf({2, 1, 99, 0, 0, 0, 0, 1, 7}), 1, 256, {7}},
          {bytesOf({0, 1, 7, 2, 1, 0, 0, 0}), 1, 256, {7}},
          {bytesOf({1, 2, 9}), 1, 256, {}},
          {bytesOf({0, 1, 7, 3, 1, 9}), 1, 256, {7}},
          {bytesOf({0, 9, 1, 2}), 1, 256, {1, 2}}})
        EXPECT_EQ(expandSegments(row.segments, row.wordSize, row.most), row.entries);
}

TEST(Shutters, OfAllShapesAreReadAndIncompleteOnesLeftOut) {
    DicomBuilder builder = greyRun();
    builder.text(tags::ShutterShape, "CS", "RECTANGULAR\\CIRCULAR\\POLYGONAL\\BITMAP")
        .text(tags::ShutterLeftVerticalEdge, "IS", "2")
        .text(tags::ShutterRightVerticalEdge, "IS", "99999999999")
        .text(tags::ShutterUpperHorizontalEdge, "IS", "7")
        .text(tags::ShutterLowerHorizontalEdge, "IS", "7")
        .text(tags::CenterOfCircularShutter, "IS", "-3\\4")
        .text(tags::RadiusOfCircularShutter, "IS", "1")
        .text(tags::VerticesOfThePolygonalShutter, "IS", "1\\1\\1\\9\\9\\9\\5")
        .numbers(tags::ShutterOverlayGroup, "US", {0x6002})
        .numbers(tags::ShutterPresentationValue, "US", {300});
    const Shutter shutter = opened(builder)->shutter(0);
    ASSERT_TRUE(shutter.rectangle && shutter.circle);
    const auto& [left, right, upper, lower] = *shutter.rectangle;
    EXPECT_EQ((std::array{left, right, upper, lower}), (std::array{2, 1'000'000, 7, 7}));
    EXPECT_EQ(shutter.polygon, (std::vector<std::pair<int, int>>{{1, 1}, {1, 9}, {9, 9}}));

    for (const auto& [tag, value] : {std::pair(tags::ShutterShape, "NONE"),
                                     {tags::ShutterLeftVerticalEdge, "?"},
                                     {tags::ShutterRightVerticalEdge, "1"},
                                     {tags::ShutterUpperHorizontalEdge, "8"},
                                     {tags::ShutterLowerHorizontalEdge, ""},
                                     {tags::CenterOfCircularShutter, "3"},
                                     {tags::RadiusOfCircularShutter, "0"},
                                     {tags::VerticesOfThePolygonalShutter, "1\\1\\9\\9\\5"},
                                     {tags::ShutterOverlayGroup, "6002"}}) {
        DicomBuilder broken = builder;
        broken.text(tag, "IS", value);
        const Shutter rest = opened(broken)->shutter(0);
        const bool isNone = tag == tags::ShutterShape;
        const bool isEdge = tag >= tags::ShutterLeftVerticalEdge && tag <= tags::ShutterLowerHorizontalEdge;
        const bool isCircle = tag == tags::CenterOfCircularShutter || tag == tags::RadiusOfCircularShutter;
        EXPECT_EQ(rest.rectangle.has_value(), !isNone && !isEdge) << tag.element;
        EXPECT_EQ(rest.circle.has_value(), !isNone && !isCircle) << tag.element;
        EXPECT_EQ(rest.polygon.empty(), isNone || tag == tags::VerticesOfThePolygonalShutter) << tag.element;
        EXPECT_EQ(rest.bitmapGroup == 0x6002, !isNone && tag != tags::ShutterOverlayGroup) << tag.element;
        EXPECT_EQ(rest.any(), !isNone) << tag.element;
    }
}

TEST(Shutters, OfEnhancedObjectsStandInTheirGroups) {
    const auto group = [](const char* radius) {
        DicomItem shapes;
        shapes.text(tags::ShutterShape, "CS", "CIRCULAR")
            .text(tags::CenterOfCircularShutter, "IS", "1\\1")
            .text(tags::RadiusOfCircularShutter, "IS", radius);
        return DicomItem().sequence(tags::FrameDisplayShutterSequence, {shapes});
    };
    DicomBuilder builder = greyRun();
    builder.sequence(tags::SharedFunctionalGroups, {group("6")});
    EXPECT_EQ(opened(builder)->shutter(0).circle.value().radius, 6);
    EXPECT_FALSE(opened(builder)->hasShuttersByFrame());
    builder.sequence(tags::PerFrameFunctionalGroups, {group("9"), DicomItem()});
    const auto file = opened(builder);
    EXPECT_TRUE(file->hasShuttersByFrame());
    EXPECT_EQ(file->shutter(0).circle.value().radius, 9);
    EXPECT_EQ(file->shutter(1).circle.value().radius, 6) << "the one that frames share";
}

TEST(PixelAspects, ComeFromTheRatioOrTheSpacing) {
    struct Row {
        Tag tag;
        const char* value;
        double aspect;
    };
    for (const Row& row :
         {Row{tags::PixelAspectRatio, "4\\3", 0.75}, Row{tags::ImagerPixelSpacing, "0.2\\0.3", 1.5},
          Row{tags::PixelSpacing, "0.5\\0.25", 0.5}, Row{tags::NominalScannedPixelSpacing, "0.4\\0.2", 0.5},
          Row{tags::PixelSpacing, "0.1\\0.10009", 1}, Row{tags::PixelAspectRatio, "0\\1", 1},
          Row{tags::PixelAspectRatio, "1\\1000000", 1}, Row{tags::ImagerPixelSpacing, "0.2", 1}}) {
        DicomBuilder builder = DicomBuilder::image(200, 200);
        builder.gradientPixels().text(row.tag, "DS", row.value);
        EXPECT_DOUBLE_EQ(opened(builder)->pixelAspect(), row.aspect) << row.value;
    }
}

constexpr Tag overlay(std::uint16_t element, int group = 0x6000) {
    return {static_cast<std::uint16_t>(group), element};
}

DicomItem& withOverlay(DicomItem& item, int rows, int columns, const Bytes& data, int group = 0x6000) {
    item.numbers(overlay(0x0010, group), "US", {rows}).numbers(overlay(0x0011, group), "US", {columns});
    item.text(overlay(0x0040, group), "CS", "G").numbers(overlay(0x0050, group), "SS", {-3, 9});
    if (!data.empty()) item.binary(overlay(0x3000, group), "OW", data);
    return item;
}

using Bits = std::vector<std::uint8_t>;

Bits bitsOf(const DicomBuilder& builder, int frame) {
    const auto file = opened(builder);
    return file->overlayBits(file->overlays().at(0), frame);
}

TEST(Overlays, AreReadFromSixteenGroups) {
    DicomBuilder builder = greyRun();
    for (int group = 0x6000; group <= 0x6020; group += 2)
        withOverlay(builder, 3, 3, bytesOf({0b11010101, 1}), group);
    builder.text(overlay(0x1500, 0x601E), "LO", "Annotation");
    const auto file = opened(builder);
    ASSERT_EQ(file->overlays().size(), 16u);
    const Overlay& last = file->overlays().back();
    EXPECT_EQ(last.group, 0x601E);
    EXPECT_EQ(last.originRow, -3);
    EXPECT_EQ(last.originColumn, 9);
    EXPECT_EQ(last.label, "Annotation");
    EXPECT_EQ(last.bits, (Bits{1, 0, 1, 0, 1, 0, 1, 1, 1}));
    EXPECT_EQ(file->overlayBits(last, 77), last.bits);
    EXPECT_TRUE(file->overlayBits(last, -1).empty());
}

TEST(Overlays, OfSeveralFramesGoWithTheirImageFrames) {
    DicomBuilder builder = greyRun(5);
    withOverlay(builder, 1, 3, bytesOf({0b00101011, 0})).numbers(overlay(0x0051), "US", {3});
    const Bits first{1, 1, 0}, second{1, 0, 1};
    // Data for five of the frames that are announced; the picture has two behind the third.
    for (const auto& [frames, expected] : {std::pair("1", std::array<Bits, 5>{Bits(), {}, first, {}, {}}),
                                           {"2", {Bits(), {}, first, second, {}}},
                                           {"99", {Bits(), {}, first, second, {0, 0, 0}}}}) {
        builder.text(overlay(0x0015), "IS", frames);
        for (int frame = 0; frame < 5; ++frame)
            EXPECT_EQ(bitsOf(builder, frame), expected[std::size_t(frame)]) << frames << ' ' << frame;
    }
}

TEST(Overlays, ThatAreLargeAreReadFrameByFrameInAnyByteOrder) {
    // Planes of an odd number of bytes, so that every other one begins within a word.
    constexpr std::size_t rows = 301, columns = 1000, planes = 8, planeBytes = rows * columns / 8;
    const Bytes data = pixelsOfFrame(0, planeBytes * planes);
    DicomBuilder builder = greyRun(planes);
    withOverlay(builder, rows, columns, data).text(overlay(0x0015), "IS", std::to_string(planes));
    for (const char* syntax : {"1.2.840.10008.1.2.1", "1.2.840.10008.1.2.2"}) {
        const auto source = std::make_shared<CountingSource>(builder.transferSyntax(syntax).build());
        const auto file = DicomFile::open(source).value();
        const Overlay& plane = file->overlays().at(0);
        EXPECT_TRUE(plane.bits.empty());
        for (std::size_t frame = 0; frame < planes; ++frame) {
            source->forget();
            const auto bits = file->overlayBits(plane, static_cast<int>(frame));
            EXPECT_LE(source->bytes(), planeBytes + 2);
            ASSERT_EQ(bits.size(), rows * columns);
            std::size_t wrong = 0;
            for (std::size_t i = 0; i < bits.size(); ++i)
                wrong +=
                    bits[i] != std::to_integer<int>(data[frame * planeBytes + i / 8] >> i % 8 & std::byte{1});
            EXPECT_EQ(wrong, 0u) << syntax << " " << frame;
        }
    }
}

TEST(Overlays, InUnusedBitsAreTakenFromThePixelsAndImpossibleOnesLeftOut) {
    const auto embedded = [](int bit, int frames = 2) {
        DicomBuilder builder = DicomBuilder::image(1, 4, frames, 16, 12);
        withOverlay(builder, 1, 4, {}).numbers(overlay(0x0102), "US", {bit});
        builder.numbers(tags::HighBit, "US", {12});
        return builder;
    };
    // Pixels in the bits from 1 to 12; those of the first and fourth pixel have bit 13, too.
    const Bytes cells = bytesOf({3, 0x20, 2, 0, 3, 0x40, 4, 0x60, 0, 0, 0, 0x20, 1, 0, 0, 0x80});
    for (const char* syntax : {"1.2.840.10008.1.2.1", "1.2.840.10008.1.2.2"}) {
        const auto bits = [&](int bit, int frame) {
            return bitsOf(embedded(bit).pixels(cells).transferSyntax(syntax), frame);
        };
        EXPECT_EQ(bits(13, 0), (Bits{1, 0, 0, 1}));
        EXPECT_EQ(bits(13, 1), (Bits{0, 1, 0, 0}));
        EXPECT_EQ(bits(0, 0), (Bits{1, 0, 1, 0}));
        EXPECT_EQ(bits(15, 1), (Bits{0, 0, 0, 1}));
    }
    // Compressed cells have them too, here a segment of upper bytes and one of lower ones.
    const Bytes stream = bytesOf({2, 0, 0, 0, 64, 0, 0, 0, 70}) + Bytes(55) +
                         bytesOf({3, 0x20, 0, 0x40, 0x60, 0x80, 3, 1, 2, 3, 4, 0x80});
    DicomBuilder rle = embedded(13, 1).transferSyntax(rleSyntax);
    EXPECT_EQ(bitsOf(rle.encapsulatedFrames({stream}, OffsetTable::Empty), 0), (Bits{1, 0, 0, 1}));
    for (const auto& [rows, columns] : {std::pair(0, 4), {65535, 65535}, {40, 40}}) {
        DicomBuilder builder = greyRun();
        withOverlay(builder, rows, columns, bytesOf({1, 2}));
        EXPECT_TRUE(opened(builder)->overlays().empty()) << rows;
    }
    // A plane without data whose bit belongs to the pixels, or to none, is only a remnant.
    for (const int bit : {1, 12, 16, 40}) {
        EXPECT_TRUE(opened(embedded(bit).pixels(cells))->overlays().empty()) << bit;
    }
}

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
    for (const auto& [slope, intercept, expected] : {std::tuple("1", "-1", Numbers({1, -1})),
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
                           {"SS", 0, "1", "0", -1024},
                           {"US", 0, "1", "-1024", -1024},
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
    // Where a frame's group names neither window nor table, the header's are taken.
    builder.text(tags::WindowCenter, "DS", "9").text(tags::WindowWidth, "DS", "9");
    builder.sequence(tags::VOILUTSequence, {lut({2, 0, 16}, {0, 60000})});
    const DicomItem bare = DicomItem().sequence(tags::FrameVOILUTSequence, {DicomItem()});
    builder.sequence(tags::PerFrameFunctionalGroups, {group("10", "2", 40000), group("20", "", 50000), bare});
    const auto file = opened(builder);
    EXPECT_TRUE(file->hasGreyRulesByFrame());
    EXPECT_FALSE(opened(greyPicture())->hasGreyRulesByFrame());
    const std::array<double, 3> expected[] = {{10, 2, 40000}, {20, 5, 50000}, {9, 5, 60000}, {1, 5, 30000}};
    for (int frame = 0; frame < 4; ++frame) {
        const auto grey = file->greyTransform(frame);
        EXPECT_EQ(grey.windows.at(0).center, expected[frame][0]);
        EXPECT_EQ(grey.rescale.value().slope, expected[frame][1]);
        EXPECT_EQ(grey.voiLuts.at(0).entries.back(), expected[frame][2]);
    }
}

TEST(GreyRules, PaddingIsSignedAsThePixelsAreAndShapesMayInvert) {
    DicomBuilder builder = greyPicture();
    EXPECT_FALSE(greyOf(builder).inverse || greyOf(builder).padding);
    builder.text(tags::PresentationLUTShape, "CS", "INVERSE")
        .numbers(tags::PixelPaddingValue, "US", {0xF830})
        .numbers(tags::PixelPaddingRangeLimit, "SS", {-2100});
    using Range = std::pair<std::int64_t, std::int64_t>;
    for (const auto& [isSigned, range] : {std::pair(0, Range(0xF7CC, 0xF830)), {1, {-2100, -2000}}}) {
        builder.numbers(tags::PixelRepresentation, "US", {isSigned});
        const auto grey = greyOf(builder);
        EXPECT_TRUE(grey.inverse);
        EXPECT_EQ(grey.padding, range);
    }
}

}  // namespace
}  // namespace cinedisc::test
