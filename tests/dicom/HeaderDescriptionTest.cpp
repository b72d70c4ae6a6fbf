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

const HeaderLine* lineOf(const std::vector<HeaderLine>& lines, Tag tag, int depth = 0) {
    const auto at = std::find_if(lines.begin(), lines.end(), [&](const HeaderLine& line) {
        return line.tag == tag && line.depth == depth;
    });
    return at == lines.end() ? nullptr : &*at;
}

TEST(HeaderDescription, NamesAndShowsEveryKindOfElement) {
    struct Row {
        Tag tag;
        int depth;
        const char* vr;
        const char* keyword;
        const char* value;
    };
    for (const char* syntax : {"1.2.840.10008.1.2.1", "1.2.840.10008.1.2", "1.2.840.10008.1.2.2"}) {
        DicomBuilder builder = described();
        builder.transferSyntax(syntax);
        const auto lines = describeHeader(*opened(builder));
        for (const Row& row : {Row{{0x0010, 0x0010}, 0, "PN", "PatientName", "Лю"},
                               Row{{0x0010, 0x0010}, 2, "PN", "PatientName", "Δ"},
                               Row{{0x0010, 0x4000}, 0, "LT", "PatientComments", "two  lines"},
                               Row{{0x0008, 0x1140}, 0, "SQ", "ReferencedImageSequence", "2 items"},
                               Row{tags::Item, 1, "", "Item", "1"},
                               Row{{0x0009, 0x0010}, 0, "LO", "PrivateCreator", "OUR OWN"},
                               Row{{0x0009, 0x1001}, 0, "UN", "Private", "01 02 FF"},
                               Row{{0x0009, 0x1002}, 0, "UN", "Private", "readable"},
                               Row{{0x0028, 0x0009}, 0, "AT", "FrameIncrementPointer", "(0018,1063)"},
                               Row{{0x0018, 0x9073}, 0, "FD", "AcquisitionDuration", "0.1"},
                               Row{{0x0028, 0x0010}, 0, "US", "Rows", "4"},
                               Row{{0x0042, 0x0011},
                                   0,
                                   "OB",
                                   "EncapsulatedDocument",
                                   "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 … (100 bytes)"}}) {
            const HeaderLine* line = lineOf(lines, row.tag, row.depth);
            ASSERT_NE(line, nullptr) << row.keyword;
            EXPECT_EQ(line->vr, row.vr) << row.keyword << " " << syntax;
            EXPECT_EQ(line->keyword, row.keyword);
            EXPECT_EQ(line->value, row.value) << row.keyword << " " << syntax;
        }
        EXPECT_EQ(lineOf(lines, tags::PixelData)->value, "16 bytes");
        EXPECT_EQ(lines.back().keyword, "DataSetTrailingPadding");
        EXPECT_EQ(lines.front().tag, (Tag{0x0002, 0x0000}));
    }
}

TEST(HeaderDescription, IsAlignedValidTextOfOneLineAnElement) {
    const auto file = opened(described());
    const std::string text = headerText(*file);
    EXPECT_TRUE(isValidUtf8(text));
    EXPECT_EQ(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')),
              describeHeader(*file).size());
    EXPECT_NE(text.find("\n(0010,0010) PN PatientName                       Лю\n"), std::string::npos)
        << text;
    EXPECT_NE(text.find("\n    (0010,0010) PN PatientName                       Δ\n"), std::string::npos)
        << text;
}

TEST(HeaderDescription, LongValuesAreCutBetweenCharactersUnlessWanted) {
    DicomBuilder builder;
    std::string cyrillic;
    for (int i = 0; i < 3000; ++i) cyrillic += "ю";
    builder.text(tags::SpecificCharacterSet, "CS", "ISO_IR 192").text({0x0010, 0x4000}, "LT", "x" + cyrillic);
    const auto lines = describeHeader(*opened(builder));
    const std::string& value = lineOf(lines, {0x0010, 0x4000})->value;
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
