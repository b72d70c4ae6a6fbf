#include "discmaker/CatalogueText.h"
#include "discmaker/Utf8.h"

#include <gtest/gtest.h>

namespace cinedisc::discmaker {
namespace {

TEST(CatalogueText, WritesNamesAsPeopleDo) {
    const std::pair<const char*, const char*> cases[] = {
        {"DOE^JOHN", "DOE, JOHN"},
        {"DOE^JOHN^PAUL^Dr.^MD", "DOE, Dr. JOHN PAUL, MD"},
        {"DOE", "DOE"},
        {"^JOHN", "JOHN"},
        {" DOE ^ JOHN ^^^", "DOE, JOHN"},
        {"Yamada^Tarou=山田^太郎=やまだ^たろう", "Yamada, Tarou / 山田, 太郎 / やまだ, たろう"},
        {"=山田^太郎", "山田, 太郎"},
        {"^^^^", ""},
        {"A^B^C^D^E^F^G", "A, D B C, E"},
    };
    for (const auto& [name, shown] : cases) EXPECT_EQ(displayName(name), shown) << name;
}

TEST(CatalogueText, TellsTheView) {
    struct Case {
        double primary, secondary;
        const char* name;
    };
    const Case cases[] = {
        {-30, -20, "RAO 30 CAUD 20"}, {45.2, 0.3, "LAO 45"},       {0, 35, "AP CRAN 35"}, {0, 0, "AP"},
        {-0.4, -0.4, "AP"},           {90, -0.6, "LAO 90 CAUD 1"}, {0.5, 0.4, "LAO 1"}};
    for (const auto& example : cases) EXPECT_EQ(viewName(example.primary, example.secondary), example.name);
}

TEST(CatalogueText, StandsInForWhatIsMissing) {
    const ImageRecord nothing;
    EXPECT_EQ(patientText(nothing), "Unnamed patient  (no ID)");
    EXPECT_EQ(studyText(nothing), "Undated  Study");
    EXPECT_EQ(seriesText(nothing, {0, 0, 1}), "Series (1 document)");
    EXPECT_EQ(entryText(nothing, 4), "Document 4");

    ImageRecord some;
    some.studyDate = "2024.05.22";
    some.studyId = "17";
    some.modality = "XA";
    some.seriesNumber = 0;
    some.frames = 12;
    EXPECT_EQ(studyText(some), "2024-05-22  Study 17");
    EXPECT_EQ(seriesText(some, {2, 1, 0}), "Series 0: XA (2 runs, 1 image)");
    EXPECT_EQ(entryText(some, 1), "Run 1: 12 frames");
    some.primaryAngle = -30;
    EXPECT_EQ(entryText(some, 1), "Run 1: 12 frames") << "half a view is none";
    some.secondaryAngle = 20;
    EXPECT_EQ(entryText(some, 1), "Run 1: RAO 30 CRAN 20, 12 frames");
    some.frames = 2;
    EXPECT_EQ(entryText(some, 3), "Run 3: RAO 30 CRAN 20, 2 frames");
    some.frames = 1;
    EXPECT_EQ(entryText(some, 2), "Image 2: RAO 30 CRAN 20");
    some.studyId = "";
    for (const char* noDate : {"last May", "2024052", "202405222", "2024O522"}) {
        some.studyDate = noDate;
        EXPECT_EQ(studyText(some), noDate + std::string("  XA study"));
    }
    some.studyDescription = "Follow-up";
    EXPECT_EQ(studyText(some), "2024O522  Follow-up");
}

TEST(CatalogueText, BecomesOneLineThatXmlCanHold) {
    const std::pair<std::string, std::string> cases[] = {
        {"  a \t\r\n b ", "a b"},
        {std::string("a\0b\x1B$Bc\x7F", 8), "a b $Bc"},
        {"\xC3\x28 \xEF\xBF\xBE\xEF\xBF\xBF", "\xEF\xBF\xBD( \xEF\xBF\xBD\xEF\xBF\xBD"},
        {"𝄞 <&>\"", "𝄞 <&>\""},
        {std::string(257, 'x'), std::string(256, 'x')},
    };
    for (const auto& [raw, line] : cases) EXPECT_EQ(oneLine(raw), line);
}

}  // namespace
}  // namespace cinedisc::discmaker
