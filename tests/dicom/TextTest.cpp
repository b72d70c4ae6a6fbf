#include "dicom/CharacterSet.h"
#include "dicom/DicomFile.h"
#include "dicom/Tags.h"
#include "dicom/TextSplitting.h"
#include "dicom/Utf8.h"
#include "tests/dicom/Fixtures.h"

#include <QStringDecoder>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace cinedisc::test {
namespace {

using namespace dicom;

/// Values of (0008,0005) as they stand in a file.
CharacterSet characterSet(const std::string& terms) {
    std::vector<std::string> values;
    for (const auto part : splitValues(terms)) values.emplace_back(trimmed(part));
    return CharacterSet(values);
}

struct Row {
    const char* terms;
    std::string bytes;
    std::string text;
};

// The names are the examples of PS3.5 annexes H to K and of the Greek, Hebrew, Arabic and Thai repertoires.
TEST(CharacterSets, OfTheWholeWorldAreDecoded) {
    const Row rows[] = {
        {"", "J\xC3\xA9r\xC3\xB4me", "Jérôme"},
        {"", "J\xE9r\xF4me", "Jérôme"},
        {"ISO_IR 100", "J\xE9r\xF4me \x80", "Jérôme €"},
        {"ISO_IR 101", "\xB1\xE6", "ąć"},
        {"ISO_IR 109", "\xE6", "ĉ"},
        {"ISO_IR 110", "\xE0", "ā"},
        {"ISO_IR 148", "\xFD", "ı"},
        {"ISO_IR 203", "\xA4", "€"},
        {"ISO_IR 144", "\xBB\xEE\xDA", "Люк"},
        {"ISO_IR 127", "\xE2\xC8", "قب"},
        {"ISO_IR 126", "\xC4\xE9\xEF", "Διο"},
        {"ISO_IR 138", "\xF9\xF8", "שר"},
        {"ISO_IR 166", "\xB9\xD2\xC2", "นาย"},
        {"ISO_IR 192", "Wang^\xE7\x8E\x8B", "Wang^王"},
        {"GB18030", "Wang^XiaoDong=\xCD\xF5^\xD0\xA1\xB6\xAB=", "Wang^XiaoDong=王^小东="},
        {"GBK", "\xCD\xF5^\xD0\xA1\xB6\xAB", "王^小东"},
        {"\\ISO 2022 IR 58", "Zhang=\x1B$)A\xD5\xC5^\x1B$)A\xD0\xA1\xB6\xAB=", "Zhang=张^小东="},
        {"\\ISO 2022 IR 87", "Yamada=\x1B$B;3ED\x1B(B^\x1B$BB@O:\x1B(B=\x1B$B$d$^$@\x1B(B",
         "Yamada=山田^太郎=やまだ"},
        {"ISO 2022 IR 13\\ISO 2022 IR 87", "\xD4\xCF\xC0\xDE^\xC0\xDB\xB3=\x1B$B;3ED\x1B(J^\x1B$BB@O:\x1B(J",
         "ﾔﾏﾀﾞ^ﾀﾛｳ=山田^太郎"},
        {"\\ISO 2022 IR 149", "Hong=\x1B$)C\xFB\xF3^\x1B$)C\xD1\xCE\xD4\xD7", "Hong=洪^吉洞"},
        {"\\ISO 2022 IR 159", "\x1B$(D0!\x1B(B.", "丂."},
        {"ISO 2022 IR 100\\ISO 2022 IR 144", "\xE9 \x1B-L\xBB\xEE \x1B-A\xE9", "é Лю é"},
        {"\\ISO 2022 IR 126\\ISO 2022 IR 144", "\x1B-F\xC4^\xC4", "Δ^Ä"},
        {"\\ISO 2022 IR 87", "\x1B$B;3 ED\x7F\x1B(B", "山 田\x7F"},
        {"\\ISO 2022 IR 13", "\x1B)I\xA0\xA1\xDF\xE0", "\uFFFD\uFF61\uFF9F\uFFFD"},
        // Unknown ones, and some that only look like UTF-8.
        {"no such set", "\xC3\xA9", "é"},
        {"no such set", "\xE9\x8D", "é\uFFFD"},
        {"ISO_IR 100", "\xC3\xA9", "Ã©"},
        {"ISO_IR 192", "\xE9", "\uFFFD"},
        {"UTF-8", "\xC3\xA9", "é"},
    };
    std::string nonsense;
    for (int i = 255; i >= 0; --i) nonsense += static_cast<char>(i);
    for (const Row& row : rows) {
        const CharacterSet characters = characterSet(row.terms);
        EXPECT_EQ(characters.decode(row.bytes, CharacterSet::Resets::AtNameParts), row.text) << row.terms;
        for (std::size_t from = 0; from < 4; ++from)
            EXPECT_TRUE(isValidUtf8(characters.decode(nonsense.substr(from) + "\x1B$B$\x1B$)C\xA1")))
                << row.terms;
    }
    for (const char* term : {"ISO-IR 144", "ISO_IR_144", "iso_ir144", "ISO 2022 IR 144", "IR 144"})
        EXPECT_EQ(characterSet(term).decode("\xBB\xEE"), "Лю") << term;
    // Outside names extensions hold until the value ends.
    const CharacterSet characters = characterSet("\\ISO 2022 IR 144");
    EXPECT_EQ(characters.decode("\x1B-L\xBB=\xEE\\\xEE"), "Л=ю\\î");
    EXPECT_EQ(characters.decode("\x1B-L\xBB\n\xEE"), "Л\nî");
}

TEST(Utf8, IsWhatAnotherDecoderTakesForIt) {
    const std::string edges =
        "\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xED\xEF\xF0\xF1\xF4\xF5\xFF";
    std::mt19937 random(8);
    for (int i = 0; i < 100'000; ++i) {
        std::string text;
        while (text.size() < i % 5u) text += edges[random() % edges.size()];
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        (void)QString(decoder(QByteArrayView(text)));
        EXPECT_EQ(isValidUtf8(text), !decoder.hasError()) << testing::PrintToString(text);
    }
    for (const char32_t letter : {U'\x7F', U'\x80', U'\x7FF', U'\x800', U'\xFFFF', U'\x10000', U'\x10FFFF'}) {
        std::string text;
        appendUtf8(text, letter);
        EXPECT_EQ(text, QString::fromUcs4(&letter, 1).toStdString());
    }
}

TEST(ElementTexts, AreUtf8WhateverTheElement) {
    DicomBuilder builder;
    put(builder,
        "SpecificCharacterSet=GB18030, PatientName=\xCD\xF5^A , SeriesNumber= 12 , "
        "PatientComments=\x81\x5C \x81\x7C ");
    const auto file = opened(builder);
    EXPECT_EQ(file->text(tags::PatientName), "王^A");
    EXPECT_EQ(file->text({0x0010, 0x4000}), "乗 亅") << "the second byte may be a backslash's code";
    EXPECT_EQ(file->text(tags::SeriesNumber), "12");
    EXPECT_EQ(file->text(tags::PatientID), "");
}

TEST(HeaderDescription, NamesAndShowsEveryKindOfElementOnALine) {
    DicomBuilder builder = DicomBuilder::image(4, 4);
    put(builder.gradientPixels(),
        "SpecificCharacterSet=ISO_IR 144, PatientName=\xBB\xEE, PatientComments=two\r\nlines, "
        "ReferencedImageSequence[1].SpecificCharacterSet=ISO_IR 126, "
        "ReferencedImageSequence[1].PatientName=\xC4");
    builder.text({0x0009, 0x0010}, "LO", "OUR OWN")
        .binary({0x0009, 0x1001}, "UN", bytesOf({1, 2, 255}))
        .binary({0x0009, 0x1002}, "UN", bytesOf(std::string("readable")))
        .binary({0x0042, 0x0011}, "OB", Bytes(100))
        .numbers({0x0028, 0x0009}, "AT", {0x0018, 0x1063})
        .reals({0x0018, 0x9073}, "FD", {0.1, 2})
        .binary({0xFFFC, 0xFFFC}, "OB", Bytes(4));
    for (const char* syntax : {explicitUid, implicitUid, bigEndianUid}) {
        const auto file = opened(builder.transferSyntax(syntax));
        const std::string text = headerText(*file);
        for (const char* line : {"(0010,0010) PN PatientName                       Лю",
                                 "    (0010,0010) PN PatientName                       Δ",
                                 "(0010,4000) LT PatientComments                   two  lines",
                                 "(0008,1140) SQ ReferencedImageSequence           2 items",
                                 "  (FFFE,E000)    Item                              1",
                                 "  (FFFE,E000)    Item                              2",
                                 "(0009,0010) LO PrivateCreator                    OUR OWN",
                                 "(0009,1001) UN Private                           01 02 FF",
                                 "(0009,1002) UN Private                           readable",
                                 "(0028,0009) AT FrameIncrementPointer             (0018,1063)",
                                 "(0018,9073) FD AcquisitionDuration               0.1\\2",
                                 "(0028,0010) US Rows                              4",
                                 "(0042,0011) OB EncapsulatedDocument              00 00 00 00 00 00 00 00 "
                                 "00 00 00 00 00 00 00 00 … (100 bytes)",
                                 " PixelData                         16 bytes"})
            EXPECT_NE(('\n' + text).find(line + std::string("\n")), std::string::npos) << line << '\n'
                                                                                       << text;
        EXPECT_TRUE(isValidUtf8(text));
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), std::ssize(describeHeader(*file)));
        EXPECT_EQ(describeHeader(*file).back().keyword, "DataSetTrailingPadding");
        EXPECT_EQ(describeHeader(*file).front().tag, (Tag{0x0002, 0x0000}));
    }
}

TEST(HeaderDescription, LongValuesAreCutBetweenCharactersUnlessWanted) {
    DicomBuilder builder;
    std::string cyrillic;
    for (int i = 0; i < 3000; ++i) cyrillic += "ю";
    builder.text(tags::SpecificCharacterSet, "CS", "ISO_IR 192").text({0x0010, 0x4000}, "LT", "x" + cyrillic);
    const std::string value = describeHeader(*opened(builder)).back().value;
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
