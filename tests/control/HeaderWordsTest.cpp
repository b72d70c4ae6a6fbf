#include "control/HeaderFacts.h"
#include "control/Notice.h"
#include "control/words/HeaderWords.h"
#include "control/words/ViewWords.h"
#include "dicom/MemoryByteSource.h"
#include "dicom/Tags.h"
#include "tests/control/FakeDicomFile.h"
#include "tests/support/DicomBuilder.h"

#include <gtest/gtest.h>

#include <set>

namespace cinedisc {
namespace {

TEST(PersonName, ReadsAsPeopleWriteIt) {
    const std::pair<QString, QStringList> cases[] = {
        {"DOE", {"DOE"}},
        {"Adams^John Robert Quincy^^Rev.^B.A. M.Div.", {"Adams, Rev. John Robert Quincy, B.A. M.Div."}},
        {"^JOHN", {"JOHN"}},
        {"", {}},
        {"^^^^", {}},
        {"Yamada^Tarou=山田^太郎=やまだ^たろう", {"Yamada, Tarou", "山田 太郎", "やまだ, たろう"}},
        {"=山田^太郎", {"山田 太郎"}},
        {"A=B=C=D=E", {"A", "B", "C"}},
        {"<b>DOE</b>^J\nX", {"<b>DOE</b>, J X"}},
    };
    for (const auto& [value, lines] : cases) EXPECT_EQ(personNameLines(value), lines) << qPrintable(value);
}

TEST(ReadableDateAndTime, AreTurnedFromBothSpellings) {
    const std::pair<QString, QString> dates[] = {{"20240131", "2024-01-31"},
                                                 {"1993.08.22 ", "1993-08-22"},
                                                 {"2024", "2024"},
                                                 {"unknown", "unknown"},
                                                 {"", ""}};
    for (const auto& [value, shown] : dates) EXPECT_EQ(readableDate(value), shown);
    const std::pair<QString, QString> times[] = {{"140509", "14:05:09"},
                                                 {"14:05:09", "14:05:09"},
                                                 {"235960.123456 ", "23:59:60"},
                                                 {"1405", "14:05"},
                                                 {"07", "07 h"},
                                                 {"240000", ""},
                                                 {"1460", ""},
                                                 {"noon", ""}};
    for (const auto& [value, shown] : times) EXPECT_EQ(readableTime(value), shown) << qPrintable(value);
}

TEST(HeaderFacts, TellWhatTheFileSays) {
    test::FakeDicomFile file;
    EXPECT_TRUE(HeaderFacts::of(file).patient.isEmpty());
    // One change after the other, the frames it is looked at with, and what is told then.
    const std::tuple<dicom::Tag, const char*, int, const char*> cases[] = {
        {{0x0008, 0x0020}, "20240131", 1, "2024-01-31"},
        {{0x0020, 0x0011}, "3", 1, "2024-01-31|Series 3"},
        {{0x0020, 0x0013}, "12", 1, "2024-01-31|Series 3|Image 12"},
        {{0x0018, 0x1065}, "0\\100\\60", 1, "2024-01-31|Series 3|Image 12"},
        {{0x0008, 0x103E}, "LCA", 3, "2024-01-31|Series 3 LCA|Run 12  12.5 frames/s"},
        {{0x0018, 0x1063}, "33.333", 3, "2024-01-31|Series 3 LCA|Run 12  30 frames/s"},
        {{0x0018, 0x0040}, "7.468", 3, "2024-01-31|Series 3 LCA|Run 12  7.47 frames/s"},
        {{0x0008, 0x2144}, "99999", 3, "2024-01-31|Series 3 LCA|Run 12  7.47 frames/s"},
        {{0x0008, 0x2144}, "25", 3, "2024-01-31|Series 3 LCA|Run 12  25 frames/s"},
        {{0x0020, 0x0011}, "", 3, "2024-01-31|LCA|Run 12  25 frames/s"},
        {{0x0020, 0x0013}, "", 3, "2024-01-31|LCA|25 frames/s"},
        {{0x0008, 0x0030}, "080910", 1, "2024-01-31 08:09:10|LCA"},
        {{0x0008, 0x0031}, "0811", 1, "2024-01-31 08:11|LCA"},
        {{0x0008, 0x0033}, "0812", 1, "2024-01-31 08:12|LCA"},
        {{0x0008, 0x0023}, "20240201", 1, "2024-01-31|2024-02-01 08:12|LCA"},
        {{0x0008, 0x0032}, "0813", 1, "2024-01-31 08:13|LCA"},
        {{0x0008, 0x0022}, "20240131", 1, "2024-01-31 08:13|LCA"},
        {{0x0008, 0x002A}, "20240201000159.5+0100", 1, "2024-01-31|2024-02-01 00:01:59|LCA"},
        {{0x0008, 0x002A}, "20240201", 1, "2024-01-31 08:13|LCA"},
        {{0x0008, 0x0020}, "", 1, "2024-01-31 08:13|LCA"},
        {{0x0008, 0x0060}, "XA", 1, "2024-01-31 08:13|LCA"},
        {{0x0018, 0x1510}, "-30.4", 1, "2024-01-31 08:13|LCA"},
        {{0x0018, 0x1511}, "20 ", 1, "2024-01-31 08:13|LCA|RAO\u00A030\u00B0  CRAN\u00A020\u00B0"},
        {{0x0018, 0x1510}, "0", 1, "2024-01-31 08:13|LCA|AP  CRAN\u00A020\u00B0"},
        // Other angles than a catheter laboratory's.
        {{0x0008, 0x0060}, "MG", 1, "2024-01-31 08:13|LCA"},
    };
    for (const auto& [tag, value, frames, study] : cases) {
        test::put(file, tag, value);
        file.announced = frames;
        EXPECT_EQ(HeaderFacts::of(file).study.join('|').toStdString(), study);
    }
    for (const auto& [tag, value] : {std::pair{dicom::Tag{0x0010, 0x0010}, "DOE^JANE"},
                                     {{0x0010, 0x0020}, "4711"},
                                     {{0x0010, 0x0030}, "19500102"},
                                     {{0x0028, 0x2110}, "01"},
                                     {{0x0028, 0x2112}, "12.5"},
                                     {{0x0008, 0x0060}, "XA"},
                                     {{0x0020, 0x0013}, "4"}})
        test::put(file, tag, value);
    EXPECT_EQ(HeaderFacts::of(file).patient, (QStringList{"DOE, JANE", "ID 4711", "Born 1950-01-02"}));
    EXPECT_EQ(HeaderFacts::of(file).lossy, "Lossy 12.5:1");
    // What tells a preview from its neighbours.
    file.announced = 60;
    EXPECT_EQ(HeaderFacts::brief(file, 58).join('|'), "Run 4  25 frames/s|AP  CRAN\u00A020\u00B0|58 frames");
}

TEST(HeaderFacts, WarnOfAFileThatIsAProgramAsWell) {
    for (const auto& [start, warns] : {std::pair("MZ", true),
                                       {"\x7F\x45LF", true},
                                       {"#!", true},
                                       {"\xCA\xFE\xBA\xBE", true},
                                       {"II*", false},
                                       {"M", false}}) {
        test::DicomBuilder builder;
        builder.text(dicom::tags::SOPClassUID, "UI", "1.2");
        auto bytes = builder.build();
        std::ranges::transform(std::string_view(start), bytes.begin(), [](char c) { return std::byte(c); });
        const auto file = dicom::DicomFile::open(std::make_shared<dicom::MemoryByteSource>(bytes));
        EXPECT_NE(HeaderFacts::of(*file.value()).warning.isEmpty(), warns) << start;
    }
}

TEST(Notice, SaysWhatCannotBeShownAndWhy) {
    using Kind = dicom::DecodeError::Kind;
    using Reason = dicom::DecodeError::Reason;
    dicom::DecodeError fault{Kind::NoPicture};
    EXPECT_EQ(Notice::of(fault, 1, true).words(), "This file cannot be shown. This file holds no picture.");
    fault = {Kind::Unsupported, Reason::Compression, "<b>\n</b>"};
    EXPECT_EQ(Notice::of(fault, 7, false).words(),
              "Frame 7 cannot be shown. The picture is compressed in a way this viewer cannot read "
              "(<b> </b>).");
    fault = {Kind::CutOff, Reason::Frames, {}, {}, 0, 30, 12, 60};
    EXPECT_EQ(Notice::of(fault, 1, true).reason, viewWords::cutOff(12, 60) + ".");
    std::set<QString> reasons;
    for (int reason = 0; reason <= static_cast<int>(Reason::Unknown); ++reason)
        reasons.insert(Notice::of({Kind::Broken, static_cast<Reason>(reason)}, 1, true).reason);
    EXPECT_EQ(reasons.size(), 1 + static_cast<std::size_t>(Reason::Unknown));
    EXPECT_EQ(viewWords::cutOff(12, 60), "The file is cut off: 12 of 60 frames can be shown");
    EXPECT_EQ(viewWords::cutOff(60, 60), "");
    EXPECT_EQ(viewWords::cutOff(0, 60), "");
}

}  // namespace
}  // namespace cinedisc
