#include "discmaker/CatalogueText.h"
#include "discmaker/Utf8.h"

#include <gtest/gtest.h>

namespace cinedisc::discmaker {
namespace {

TEST(CatalogueText, WritesNamesAsPeopleDo) {
    const std::pair<const char*, const char*> cases[] = {
        {"DOE^JOHN^PAUL^Dr.^MD", "DOE, Dr. JOHN PAUL, MD"},
        {" DOE ^ JOHN ^^^", "DOE, JOHN"},
        {"Yamada^Tarou=山田^太郎=やまだ^たろう", "Yamada, Tarou / 山田, 太郎 / やまだ, たろう"},
        {"=山田^太郎", "山田, 太郎"},
        {"A^B^C^D^E^F^G", "A, D B C, E"},
    };
    for (const auto& [name, shown] : cases) EXPECT_EQ(displayName(name), shown) << name;
}

TEST(CatalogueText, StandsInForWhatIsMissing) {
    ImageRecord record;
    EXPECT_EQ(patientText(record), "Unnamed patient  (no ID)");
    EXPECT_EQ(studyText(record), "Undated  Study");
    EXPECT_EQ(seriesText(record, {0, 1}), "Series (1 image)");
    record.studyId = "17", record.modality = "XA", record.seriesNumber = 0, record.frames = 2;
    record.studyDate = "2024.05.22";
    EXPECT_EQ(studyText(record), "2024-05-22  Study 17");
    EXPECT_EQ(seriesText(record, {2, 1}), "Series 0: XA (2 runs, 1 image)");
    EXPECT_EQ(entryText(record, 1), "Run 1: 2 frames");
    record.primaryAngle = -30;
    EXPECT_EQ(entryText(record, 1), "Run 1: 2 frames") << "half a view is none";
    const std::tuple<double, double, const char*> views[] = {
        {-30, -20, "RAO 30 CAUD 20"}, {45.2, 0.3, "LAO 45"},       {0, 35, "AP CRAN 35"},
        {-0.4, -0.4, "AP"},           {90, -0.6, "LAO 90 CAUD 1"}, {0.5, 0.4, "LAO 1"}};
    for (const auto& [primary, secondary, name] : views) {
        record.primaryAngle = primary, record.secondaryAngle = secondary;
        EXPECT_EQ(entryText(record, 3), std::string("Run 3: ") + name + ", 2 frames");
    }
    record.frames = 1;
    EXPECT_EQ(entryText(record, 2), "Image 2: LAO 1");
    record.studyId = "";
    for (const char* noDate : {"last May", "2024052", "202405222", "2024O522"}) {
        record.studyDate = noDate;
        EXPECT_EQ(studyText(record), noDate + std::string("  XA study"));
    }
    record.studyDescription = "Follow-up";
    EXPECT_EQ(studyText(record), "2024O522  Follow-up");
}

TEST(CatalogueText, BecomesOneLineThatXmlCanHold) {
    const std::pair<std::string, std::string> cases[] = {
        {"  a \t\r\n b ", "a b"},
        {std::string("a\0b\x1B$Bc\x7F", 8), "a b $Bc"},
        {"\xC3\x28 \xEF\xBF\xBE\xEF\xBF\xBF", "\xEF\xBF\xBD( \xEF\xBF\xBD\xEF\xBF\xBD"},
        {std::string(257, 'x'), std::string(256, 'x')},
    };
    for (const auto& [raw, line] : cases) EXPECT_EQ(oneLine(raw), line);
}

}  // namespace
}  // namespace cinedisc::discmaker
