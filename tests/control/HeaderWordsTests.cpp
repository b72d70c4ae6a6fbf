#include "control/HeaderFacts.h"
#include "control/HeaderWords.h"
#include "control/Notice.h"
#include "tests/control/FakeDicomFile.h"

#include <gtest/gtest.h>

namespace cinedisc {
namespace {

TEST(PersonName, ReadsAsPeopleWriteIt) {
    struct Case {
        QString value;
        QStringList lines;
    };
    const Case cases[] = {
        {"DOE^JOHN", {"DOE, JOHN"}},
        {"DOE", {"DOE"}},
        {"Adams^John Robert Quincy^^Rev.^B.A. M.Div.", {"Adams, Rev. John Robert Quincy, B.A. M.Div."}},
        {"^JOHN", {"JOHN"}},
        {"", {}},
        {"^^^^", {}},
        {"Yamada^Tarou=山田^太郎=やまだ^たろう", {"Yamada, Tarou", "山田 太郎", "やまだ, たろう"}},
        {"Hong^Gildong=洪^吉洞=홍^길동", {"Hong, Gildong", "洪 吉洞", "홍 길동"}},
        {"=山田^太郎", {"山田 太郎"}},
        {"<b>DOE</b>^J\nX", {"<b>DOE</b>, J X"}},
    };
    for (const auto& c : cases) EXPECT_EQ(personNameLines(c.value), c.lines) << qPrintable(c.value);
}

TEST(ReadableDate, TurnsBothSpellingsOfADateAndKeepsTheRest) {
    EXPECT_EQ(readableDate("20240131"), "2024-01-31");
    EXPECT_EQ(readableDate("1993.08.22 "), "1993-08-22");
    EXPECT_EQ(readableDate("2024"), "2024");
    EXPECT_EQ(readableDate("unknown"), "unknown");
    EXPECT_EQ(readableDate(""), "");
}

TEST(HeaderFacts, NameThePatientTheSeriesTheRunAndTheProjection) {
    test::FakeDicomFile file;
    file.texts = {{{0x0010, 0x0010}, "DOE^JANE"}, {{0x0010, 0x0020}, "4711"}, {{0x0010, 0x0030}, "19500102"},
                  {{0x0008, 0x0020}, "20240131"}, {{0x0020, 0x0011}, "3"},    {{0x0008, 0x103E}, "LCA"},
                  {{0x0020, 0x0013}, "12"}};
    const auto element = [&](dicom::Tag tag, const std::string& value) {
        dicom::Element added;
        added.tag = tag;
        added.valueRepresentation = dicom::vr("DS");
        for (const char c : value) added.value.push_back(static_cast<std::byte>(c));
        added.length = added.value.size();
        file.headerData.elements.push_back(std::move(added));
    };
    element({0x0008, 0x0060}, "XA");
    element({0x0018, 0x1510}, "-30.4");
    element({0x0018, 0x1511}, "20 ");
    element({0x0028, 0x2110}, "01");
    element({0x0028, 0x2112}, "12.5");
    const auto facts = HeaderFacts::of(file);
    EXPECT_EQ(facts.patient, (QStringList{"DOE, JANE", "ID 4711", "Born 1950-01-02"}));
    EXPECT_EQ(facts.study,
              (QStringList{"2024-01-31", "Series 3 LCA", "Run 12", "RAO\u00A030\u00B0  CRAN\u00A020\u00B0"}));
    EXPECT_EQ(facts.lossy, "Lossy 12.5:1");

    for (dicom::Element& angle : file.headerData.elements) {
        if (angle.tag == dicom::Tag{0x0018, 0x1510}) angle.value = {std::byte{'0'}};
    }
    EXPECT_EQ(HeaderFacts::of(file).study.back(), "AP  CRAN\u00A020\u00B0");

    file.headerData.elements.front().value = {std::byte{'M'}, std::byte{'G'}};
    EXPECT_EQ(HeaderFacts::of(file).study.size(), 3) << "other angles than a catheter laboratory's";

    EXPECT_TRUE(HeaderFacts::of(test::FakeDicomFile()).patient.isEmpty());
}

TEST(Notice, SaysWhatCannotBeShownAndWhy) {
    dicom::DecodeError fault;
    fault.kind = dicom::DecodeError::Kind::NoPicture;
    EXPECT_EQ(Notice::of(fault, 1, true).words(), "This file cannot be shown. This file holds no picture.");
    fault.message = "compressed in a way this viewer cannot read (<b>X</b>)";
    EXPECT_EQ(Notice::of(fault, 7, false).words(),
              "Frame 7 cannot be shown. Compressed in a way this viewer cannot read (<b>X</b>).");
    EXPECT_EQ(cutOffWords(12, 60), "The file is cut off: 12 of 60 frames can be shown");
    EXPECT_EQ(cutOffWords(60, 60), "");
    EXPECT_EQ(cutOffWords(0, 60), "");
}

}  // namespace
}  // namespace cinedisc
