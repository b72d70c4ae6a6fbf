#include "dicom/DicomFile.h"
#include "dicom/Tags.h"
#include "dicom/Utf8.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace cinedisc::test {
namespace {

using namespace dicom;

DicomBuilder described() {
    DicomItem item;
    item.text(tags::SpecificCharacterSet, "CS", "ISO_IR 126").text({0x0010, 0x0010}, "PN", "\xC4");
    DicomBuilder builder = DicomBuilder::image(4, 4);
    builder.gradientPixels()
        .text(tags::SpecificCharacterSet, "CS", "ISO_IR 144")
        .text({0x0010, 0x0010}, "PN", "\xBB\xEE")
        .text({0x0010, 0x4000}, "LT", "two\r\nlines")
        .sequence({0x0008, 0x1140}, {item, DicomItem()})
        .text({0x0009, 0x0010}, "LO", "OUR OWN")
        .binary({0x0009, 0x1001}, "UN", bytesOf({1, 2, 255}))
        .binary({0x0009, 0x1002}, "UN", bytesOf(std::string("readable")))
        .binary({0x0042, 0x0011}, "OB", Bytes(100))
        .numbers({0x0028, 0x0009}, "AT", {0x0018, 0x1063})
        .reals({0x0018, 0x9073}, "FD", {0.1})
        .binary({0xFFFC, 0xFFFC}, "OB", Bytes(4));
    return builder;
}

/// The lines of that depth and tag, one element after the other as "VR Keyword: value".
std::string told(const std::vector<HeaderLine>& lines, Tag tag, int depth = 0) {
    std::string text;
    for (const HeaderLine& line : lines)
        if (line.tag == tag && line.depth == depth) text += line.vr + " " + line.keyword + ": " + line.value;
    return text;
}

TEST(HeaderDescription, NamesAndShowsEveryKindOfElement) {
    struct Row {
        Tag tag;
        const char* told;
        int depth = 0;
    };
    const Row rows[] = {
        {{0x0010, 0x0010}, "PN PatientName: Лю"},
        {{0x0010, 0x0010}, "PN PatientName: Δ", 2},
        {{0x0010, 0x4000}, "LT PatientComments: two  lines"},
        {{0x0008, 0x1140}, "SQ ReferencedImageSequence: 2 items"},
        {tags::Item, " Item: 1 Item: 2", 1},
        {{0x0009, 0x0010}, "LO PrivateCreator: OUR OWN"},
        {{0x0009, 0x1001}, "UN Private: 01 02 FF"},
        {{0x0009, 0x1002}, "UN Private: readable"},
        {{0x0028, 0x0009}, "AT FrameIncrementPointer: (0018,1063)"},
        {{0x0018, 0x9073}, "FD AcquisitionDuration: 0.1"},
        {{0x0028, 0x0010}, "US Rows: 4"},
        {{0x0042, 0x0011},
         "OB EncapsulatedDocument: 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 … (100 bytes)"}};
    for (const char* syntax : {"1.2.840.10008.1.2.1", "1.2.840.10008.1.2", "1.2.840.10008.1.2.2"}) {
        const auto lines = describeHeader(*opened(described().transferSyntax(syntax)));
        for (const Row& row : rows) EXPECT_EQ(told(lines, row.tag, row.depth), row.told) << syntax;
        EXPECT_TRUE(told(lines, tags::PixelData).ends_with(" PixelData: 16 bytes"));
        EXPECT_EQ(lines.back().keyword, "DataSetTrailingPadding");
        EXPECT_EQ(lines.front().tag, (Tag{0x0002, 0x0000}));
    }
}

TEST(HeaderDescription, IsAlignedValidTextOfOneLineAnElement) {
    const auto file = opened(described());
    const std::string text = headerText(*file);
    EXPECT_TRUE(isValidUtf8(text));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), std::ssize(describeHeader(*file)));
    for (const char* line : {"\n(0010,0010) PN PatientName                       Лю\n",
                             "\n    (0010,0010) PN PatientName                       Δ\n"})
        EXPECT_NE(text.find(line), std::string::npos) << text;
}

TEST(HeaderDescription, LongValuesAreCutBetweenCharactersUnlessWanted) {
    DicomBuilder builder;
    std::string cyrillic;
    for (int i = 0; i < 3000; ++i) cyrillic += "ю";
    builder.text(tags::SpecificCharacterSet, "CS", "ISO_IR 192").text({0x0010, 0x4000}, "LT", "x" + cyrillic);
    const std::string value = told(describeHeader(*opened(builder)), {0x0010, 0x4000});
    EXPECT_LT(value.size(), 1100u);
    EXPECT_TRUE(isValidUtf8(value));
    EXPECT_TRUE(value.ends_with("…"));

    builder.binary({0x0009, 0x1001}, "OB", Bytes(100))
        .numbers({0x0028, 0x0009}, "AT", std::vector<std::int64_t>(1000, 0x1063))
        .numbers({0x0028, 0x3002}, "US", std::vector<std::int64_t>(40, 7));
    const auto file = opened(builder);
    EXPECT_NE(headerText(*file).find("…"), std::string::npos);
    const std::string whole = headerText(*file, LongValues::Whole);
    EXPECT_EQ(whole.find("…"), std::string::npos);
    EXPECT_NE(whole.find(cyrillic + "\n"), std::string::npos);
}

}  // namespace
}  // namespace cinedisc::test
