#include "dicom/CharacterSet.h"
#include "dicom/DataSetParser.h"
#include "dicom/ElementHeader.h"
#include "dicom/Tags.h"
#include "dicom/TextSplitting.h"
#include "dicom/Utf8.h"
#include "tests/dicom/Fixtures.h"

#include <QStringDecoder>
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <stdexcept>
#include <tuple>

namespace cinedisc::test {
namespace {

using namespace dicom;

constexpr Tag sequenceTag{0x0008, 0x1140}, privateTag{0x0009, 0x1001}, uidTag{0x0008, 0x1155};

struct Parsed {
    Parsed(const Bytes& bytes, dicom::Encoding encoding) {
        const MemoryByteSource source(bytes);
        ForwardBuffer buffer(source);
        error = DataSetParser(buffer).parse(data, encoding);
    }

    DataSet data;
    std::optional<DecodeError> error;
};

DicomItem randomItem(std::mt19937& random, int depth) {
    constexpr const char* kinds[] = {"LO", "UI", "US", "SS", "UL", "SL", "FL", "FD", "UV", "SV", "AT",
                                     "OB", "OW", "OL", "OF", "OD", "OV", "UN", "UT", "UC", "UR", "IS"};
    DicomItem item;
    for (auto count = random() % 7; count > 0; --count) {
        const auto element = static_cast<std::uint16_t>(0x1000 + random() % 0xEFFF);
        const Tag tag{static_cast<std::uint16_t>(9 + random() % 40 * 2), element};
        if (random() % 3 > 0) {
            Bytes value(random() % 6 * 8);
            for (std::byte& byte : value) byte = static_cast<std::byte>(random());
            item.binary(tag, kinds[random() % std::size(kinds)], value);
        } else if (depth > 0) {
            std::vector<DicomItem> items(random() % 3);
            for (DicomItem& each : items) each = randomItem(random, depth - 1);
            item.sequence(tag, items, random() % 2 ? LengthForm::Undefined : LengthForm::Explicit);
        }
    }
    return item;
}

/// The first elements as they were written or read.
std::string flat(const auto& item, std::size_t count) {
    std::ostringstream out;
    for (std::size_t i = 0; i < count; ++i) {
        const auto& [tag, value, items] =
            std::tie(item.elements[i].tag, item.elements[i].value, item.elements[i].items);
        out << std::hex << tag.group << ' ' << tag.element << ' ' << textOf(value) << '{';
        for (const auto& each : items) out << flat(each, each.elements.size()) << ';';
        out << '}';
    }
    return out.str();
}

constexpr auto absent = FilePart::Absent;
constexpr auto present = FilePart::Present;

/// Ways in which files are written, right ones and wrong ones.
std::vector<FileForm> allForms() {
    std::vector<FileForm> forms = {
        {deflatedUid, Encoding::Deflated},        {"", Encoding::ImplicitLittle},
        {"", Encoding::ExplicitLittle},           {"1.2.3.4", Encoding::ImplicitLittle},
        {implicitUid, Encoding::ExplicitLittle},  {explicitUid, Encoding::ImplicitLittle},
        {bigEndianUid, Encoding::ExplicitLittle}, {deflatedUid, Encoding::ExplicitLittle}};
    for (const std::uint32_t length : {0u, 7u, 100000u, 0xFFFFFFFFu})
        forms.push_back({explicitUid, Encoding::ExplicitLittle, present, present, length});
    for (const auto& [uid, encoding] : {std::pair(implicitUid, Encoding::ImplicitLittle),
                                        {explicitUid, Encoding::ExplicitLittle},
                                        {bigEndianUid, Encoding::ExplicitBig}})
        for (const FilePart preamble : {absent, present})
            for (const FilePart meta : {absent, present})
                forms.push_back({uid, encoding, preamble, meta, {}});
    return forms;
}

TEST(HeaderParsing, ReadsWhatWasWrittenInAnyFormUpToWhereItIsCut) {
    std::mt19937 random(4711);
    const auto forms = allForms();
    for (std::size_t i = 0; i < 100 * forms.size(); ++i) {
        DicomBuilder written;
        written.elements = randomItem(random, 4).text(tags::SOPClassUID, "UI", "1.2.3").elements;
        written.form = forms[i % forms.size()];
        SCOPED_TRACE(written.form.syntax + " " + std::to_string(static_cast<int>(written.form.encoding)));
        const bool isDeflated = written.form.encoding == Encoding::Deflated;
        Bytes bytes = written.build();
        const std::size_t least = DicomBuilder{{}, written.form}.build().size(), room = bytes.size() - least;
        const std::size_t cut = isDeflated || i % 2 ? room : random() % (room + 1);
        bytes.resize(least + cut);
        const auto file = DicomFile::open(std::make_shared<MemoryByteSource>(bytes));
        if (!file && cut < 14) continue;
        ASSERT_TRUE(file.ok());
        DataSet read = file.value()->header();
        std::erase_if(read.elements, [](const Element& each) { return each.tag.group == 2; });
        const bool isBroken = file.value()->pictureError()->kind != DecodeError::Kind::NoPicture;
        const std::size_t count = read.elements.size(), sure = count - (isBroken && count ? 1 : 0);
        ASSERT_EQ(flat(read, sure), flat(written, sure));
        for (std::size_t k = 0; k < sure && written.form.encoding != Encoding::ImplicitLittle; ++k)
            ASSERT_EQ(read.elements[k].valueRepresentation,
                      written.elements[k].vr[0] << 8 | written.elements[k].vr[1]);
        if (isBroken) continue;
        // A single zero byte may be padding.
        written.elements.resize(count);
        ASSERT_LE(bytes.size() - written.build().size(), isDeflated ? 0u : 1u);
        if (count && !isDeflated) {
            EXPECT_EQ(read.elements.back().offset + read.elements.back().length, bytes.size() / 2 * 2);
        }
    }
}

Bytes repeated(const Bytes& unit, std::size_t count) {
    Bytes bytes;
    bytes.reserve(unit.size() * count);
    for (; count > 0; --count) bytes.insert(bytes.end(), unit.begin(), unit.end());
    return bytes;
}

/// An element or an item, in implicit little endian; the tag's group in its lower half.
Bytes element(std::uint32_t tag, std::size_t length, const Bytes& value) {
    return numberBytes(tag, 4) + numberBytes(length, 4) + value;
}

TEST(ElementHeaders, AreUnderstoodThoughTheirLettersAreNone) {
    const auto headerOf = [](const char* letters, std::vector<int> behind, std::uint64_t room,
                             dicom::Encoding encoding = explicitLittle) {
        Bytes bytes = bytesOf({9, 0, 1, 0x10}) + bytesOf(std::string_view(letters, 2));
        for (const int byte : behind) bytes.push_back(static_cast<std::byte>(byte));
        const auto header = readElementHeader(bytes, encoding, room);
        return header ? std::tuple(header->bytes, int(header->length), int(header->encoding.explicitVr))
                      : std::tuple(0, 0, 0);
    };
    using Found = std::tuple<int, int, int>;  // header, length, whether items have representations
    EXPECT_EQ(headerOf("CS", {4, 1}, 99), Found(8, 0x104, 1));
    EXPECT_EQ(headerOf("CS", {4}, 99), Found(0, 0, 0));
    EXPECT_EQ(headerOf("OB", {0, 0, 5, 1, 0, 0}, 99), Found(12, 0x105, 1));
    EXPECT_EQ(headerOf("UN", {0, 0, 5, 0, 0, 0}, 99), Found(12, 5, 0));
    EXPECT_EQ(headerOf("OB", {0, 0, 5, 0, 0}, 99), Found(0, 0, 0));
    EXPECT_EQ(headerOf("ZZ", {0, 0, 5, 0, 0, 0}, 17), Found(12, 5, 0)) << "long, as new ones are";
    EXPECT_EQ(headerOf("ZZ", {0, 0, 5, 0, 0, 0}, 16), Found(8, 0, 1)) << "there is no room for that";
    EXPECT_EQ(headerOf("ZZ", {0, 0, 0, 0, 0, 0}, 99), Found(8, 0, 1));
    EXPECT_EQ(headerOf("ZZ", {6, 0, 5, 0, 0, 0}, 99), Found(8, 6, 1));
    EXPECT_EQ(headerOf("\0\0", {6, 0, 0, 0, 0, 0}, 99), Found(8, 6, 1));
    EXPECT_EQ(headerOf("\6\0", {0, 0, 0, 0, 0, 0}, 99), Found(8, 6, 0)) << "copied from an implicit file";
    EXPECT_EQ(headerOf("\6\0", {0, 0}, 99, implicitLittle), Found(8, 6, 0));
}

TEST(ElementHeaders, TellHowADataSetIsWritten) {
    constexpr dicom::Encoding explicitBig{ByteOrder::Big, true};
    for (const auto& [start, declared, found] :
         {std::tuple(bytesOf({8, 0, 5, 0, 'C', 'S', 4, 0}), implicitLittle, explicitLittle),
          {bytesOf({0, 8, 0, 5, 'C', 'S', 0, 4}), implicitLittle, explicitBig},
          {bytesOf({8, 0, 5, 0, 'C', 'S', 4, 0}), explicitBig, explicitLittle},
          {bytesOf({0, 0, 5, 0, 'U', 'L', 4, 0}), explicitBig, explicitBig},
          {bytesOf({8, 0, 5, 0, 4, 0, 0, 0}), explicitLittle, implicitLittle},
          {bytesOf({8, 0, 5, 0, 255, 255, 0, 0}), explicitLittle, implicitLittle},
          {bytesOf({8, 0, 5, 0, 0, 0, 1, 0}), explicitLittle, explicitLittle},
          {bytesOf({8, 0, 5, 0, 255, 255, 255, 255}), explicitLittle, implicitLittle},
          {bytesOf({0, 8, 0, 5, 4, 0, 0}), implicitLittle, implicitLittle}})
        EXPECT_EQ(sniffEncoding(start, declared), found) << testing::PrintToString(start);
    const auto looks = [](int group, int element, int length, std::uint64_t size) {
        return looksLikeDataSet(bytesOf({group, 0, element, 0, length, 0, 0, 0}), size);
    };
    EXPECT_TRUE(looks(8, 5, 4, 12));
    EXPECT_FALSE(looks(8, 5, 4, 11)) << "its end is beyond the file's";
    EXPECT_TRUE(looks(0x28, 5, 4, 12));
    EXPECT_FALSE(looks(0x2A, 5, 4, 12)) << "no group to begin with";
    EXPECT_FALSE(looks(9, 5, 4, 12)) << "a private one";
    EXPECT_TRUE(looks(8, 0, 4, 12)) << "the length of a group";
    EXPECT_FALSE(looks(8, 0, 6, 99));
    EXPECT_TRUE(looksLikeDataSet(bytesOf({8, 0, 5, 0, 255, 255, 255, 255}), 8)) << "an open sequence";
    EXPECT_FALSE(looksLikeDataSet(bytesOf({8, 0, 5, 0, 0, 0, 0}), 7));
}

TEST(DataSetParsing, BoundsTheNumberOfElementsItemsAndFragments) {
    using Kind = DecodeError::Kind;
    constexpr std::uint32_t privateElement = 0x10010009, open = 0xFFFFFFFF;
    const auto error = [](const Bytes& bytes, dicom::Encoding encoding = implicitLittle) {
        const auto found = Parsed(bytes, encoding).error;
        return found ? std::optional(found->kind) : std::nullopt;
    };
    const Bytes empty = element(privateElement, 0, {}), item = element(0xE000FFFE, 0, {});
    const Bytes fragments = bytesOf({9, 0, 1, 0x10, 'O', 'B', 0, 0, 255, 255, 255, 255});
    const Bytes end = element(0xE0DDFFFE, 0, {});
    EXPECT_EQ(error(repeated(empty, 500'000)), std::nullopt);
    EXPECT_EQ(error(repeated(empty, 500'001)), Kind::TooLarge);
    for (const bool isOpen : {false, true}) {
        const auto sequence = [&](std::size_t count) {
            const Bytes items = repeated(item, count) + (isOpen ? end : Bytes());
            return element(privateElement, isOpen ? open : items.size(), items);
        };
        EXPECT_EQ(error(sequence(499'999)), std::nullopt);
        EXPECT_EQ(error(sequence(500'000)), Kind::TooLarge);
    }
    EXPECT_EQ(error(fragments + repeated(item, 499'999) + end, explicitLittle), std::nullopt);
    EXPECT_FALSE(Parsed(fragments + end, explicitLittle).data.elements.at(0).held);
    // What is no item ends a sequence.
    EXPECT_EQ(error(element(privateElement, open, item + empty)), Kind::Broken);
    const Parsed closed(element(privateElement, 16, item + empty) + empty, implicitLittle);
    EXPECT_EQ(closed.data.elements.size(), 2u);
    EXPECT_EQ(closed.data.elements.at(0).items.size(), 1u);
    EXPECT_EQ(error(fragments + repeated(item, 500'000) + end, explicitLittle), Kind::Broken);
    EXPECT_EQ(error(fragments + element(0xE000FFFE, 9, Bytes(8)), explicitLittle), Kind::Broken);
}

TEST(DataSetParsing, BoundsTheBytesHeld) {
    const std::pair<Tag, std::size_t> limits[] = {{privateTag, 64 << 10},
                                                  {tags::LUTData, 256 << 10},
                                                  {tags::RedPaletteData, 256 << 10},
                                                  {{0x0028, 0x1223}, 256 << 10},
                                                  {{0x0028, 0x1224}, 64 << 10},
                                                  {{0x6000, 0x3000}, 256 << 10},
                                                  {{0x601E, 0x3000}, 256 << 10},
                                                  {tags::ExtendedOffsetTable, 16 << 20}};
    for (const auto& [tag, limit] : limits) {
        for (const std::size_t length : {limit, limit + 1}) {
            DicomItem item;
            item.binary(tag, "OW", Bytes(length));
            const Parsed parsed(encoded(item, Encoding::ExplicitLittle), explicitLittle);
            EXPECT_FALSE(parsed.error);
            EXPECT_EQ(parsed.data.elements.at(0).held, length == limit) << tag.element << " " << length;
        }
    }
    const Bytes longest = element(0x10010009, 64 << 10, Bytes(64 << 10));
    const Parsed all(repeated(longest, 1025), implicitLittle);
    EXPECT_TRUE(all.data.elements.at(1023).held) << "64 MiB";
    EXPECT_FALSE(all.data.elements.at(1024).held);
}

void expectPicture(const Bytes& bytes) {
    const auto file = opened(bytes);
    EXPECT_EQ(file->header().string(tags::PatientName), "Sample^Person");
    ASSERT_EQ(file->header().items(sequenceTag).size(), 2u);
    EXPECT_EQ(file->header().items(sequenceTag)[1].string(uidTag), "1.2.3");
    EXPECT_TRUE(file->decode(0).ok());
}

/// The bytes with the first that are like `old` replaced.
Bytes replaced(Bytes bytes, const Bytes& old, const Bytes& by) {
    const auto at = std::search(bytes.begin(), bytes.end(), old.begin(), old.end());
    if (at == bytes.end()) throw std::logic_error("nothing to replace");
    const auto rest = bytes.erase(at, at + static_cast<std::ptrdiff_t>(old.size()));
    bytes.insert(rest, by.begin(), by.end());
    return bytes;
}

TEST(HeaderParsing, ElementsThatAreWrongCostOnlyThemselves) {
    DicomBuilder odd = DicomBuilder::image(4, 6, 1, 16, 12).gradientPixels();
    put(odd,
        "ReferencedImageSequence[0].ReferencedSOPInstanceUID=1.2, "
        "ReferencedImageSequence[1].ReferencedSOPInstanceUID=1.2.3");
    const DicomItem item = DicomItem().text(uidTag, "UI", "1.2");
    odd.binary({0x0008, 0x0081}, "LO", bytesOf("odd")).sequence(privateTag, {item}, LengthForm::Explicit);
    const Bytes bytes = odd.build(), start = numberBytes(0xE000FFFE, 4);
    const Bytes uid = numberBytes(0x11550008, 4) + bytesOf("UI"), value = bytesOf("1.2") + bytesOf({0, 0x10});
    expectPicture(bytes);
    // A value that is longer than its item, which ends in front of the patient's group.
    expectPicture(replaced(bytes, uid + bytesOf({4, 0}) + value, uid + bytesOf({255, 0}) + value));
    // An item that is longer than its sequence.
    expectPicture(replaced(bytes, start + numberBytes(12, 4), start + numberBytes(4000, 4)));
    // Unknown elements that hold items are implicit sequences.
    constexpr Tag unknownTag{0x0009, 0x1002};
    for (const LengthForm form : {LengthForm::Undefined, LengthForm::Explicit}) {
        const Bytes implicit =
            encoded(DicomItem().sequence(unknownTag, {item}, form), Encoding::ImplicitLittle);
        const Bytes patient = numberBytes(0x00100010, 4), unknown = bytesOf({9, 0, 2, 0x10, 'U', 'N', 0, 0});
        const Bytes with =
            replaced(bytes, patient, unknown + Bytes(implicit.begin() + 4, implicit.end()) + patient);
        expectPicture(with);
        EXPECT_EQ(opened(with)->header().items(unknownTag).at(0).string(uidTag), "1.2");
    }
}

TEST(HeaderParsing, FilesWithoutPictureSayWhy) {
    using Kind = DecodeError::Kind;
    using Reason = DecodeError::Reason;
    DicomBuilder report, iconOnly;
    put(report, "Modality=SR");
    put(iconOnly, "IconImageSequence.Rows=2, IconImageSequence.OB:PixelData=1\\2\\3\\4");
    const auto compressedAs = [](const char* uid) {
        DicomBuilder builder = DicomBuilder::image(4, 4);
        return builder.transferSyntax(uid).encapsulated({bytesOf({1, 2, 3, 4})}, {}).build();
    };
    Bytes cutHeader = report.build();
    cutHeader.resize(cutHeader.size() - 3);
    const std::tuple<Bytes, Kind, Reason, const char*> rows[] = {
        {report.build() + Bytes(300), Kind::NoPicture, Reason::None, ""},
        {iconOnly.build(), Kind::NoPicture, Reason::IconOnly, ""},
        {compressedAs("1.2.840.10008.1.2.4.102"), Kind::Unsupported, Reason::Compression, "H.264 video"},
        {compressedAs("1.2.840.10008.1.2.4.94"), Kind::Unsupported, Reason::Elsewhere, ""},
        {compressedAs("1.2.3.4.5"), Kind::Unsupported, Reason::Compression, "1.2.3.4.5"},
        {cutHeader, Kind::CutOff, Reason::Header, ""},
    };
    for (const auto& [bytes, kind, reason, detail] : rows) {
        const auto file = opened(bytes);
        EXPECT_EQ(file->frameCount(), 0);
        const DecodeError error = file->pictureError().value();
        EXPECT_EQ(std::tuple(error.kind, error.reason, error.detail), std::tuple(kind, reason, detail));
        EXPECT_FALSE(file->decode(0).ok());
    }
    for (const Bytes& bytes : {Bytes(), Bytes(10), Bytes(100'000), bytesOf("\x89PNG\r\n\x1a\n0123456789"),
                               bytesOf("<?xml version=\"1.0\"?><catalogue/>")}) {
        const auto file = DicomFile::open(std::make_shared<MemoryByteSource>(bytes));
        ASSERT_FALSE(file.ok());
        EXPECT_EQ(file.error().kind, Kind::NotDicom);
        EXPECT_EQ(file.error().reason == Reason::Empty, bytes.empty());
    }
    EXPECT_EQ(DicomFile::open("/nowhere/at/all.dcm").error().reason, Reason::Missing);
    EXPECT_EQ(DicomFile::open("/").error().reason, Reason::NotRegular);
}

TEST(DataSetNumbers, AreReadFromTextAndBinaryAndStopAtNonsense) {
    DicomBuilder builder;
    put(builder,
        "ShutterLeftVerticalEdge= +12\\-3 \\x\\5, WindowCenter=1,5\\2.5e2\\nan, "
        "InstanceNumber=99999999999999999999");
    builder.numbers({0x0028, 0x0009}, "AT", {0x0018, 0x1063}).reals({0x0018, 0x9073}, "FD", {0.25});
    builder.reals({0x0018, 0x9075}, "FL", {0.75});
    // Whatever the order of elements is.
    std::ranges::reverse(builder.elements);
    const auto file = opened(builder);
    const DataSet& header = file->header();
    EXPECT_EQ(header.integers({0x0018, 0x1602}), (std::vector<std::int64_t>{12, -3}));
    EXPECT_EQ(header.decimals({0x0028, 0x1050}), (std::vector<double>{1.5, 250}));
    for (const char* kind : {"SS", "SL", "SV", "US", "UL", "UV", "OW", "OL", "OV", "OB"}) {
        const std::vector<std::int64_t> numbers{*kind == 'S' ? -5 : 5, 7};
        builder.numbers({0x0028, 0x0106}, kind, numbers);
        EXPECT_EQ(opened(builder)->header().integers({0x0028, 0x0106}), numbers) << kind;
    }
    EXPECT_EQ(header.integer({0x0028, 0x0009}), 0x00181063);
    EXPECT_EQ(header.decimal({0x0018, 0x9073}), 0.25);
    EXPECT_EQ(header.decimal({0x0018, 0x9075}), 0.75);
    EXPECT_GT(header.integer({0x0020, 0x0013}).value(), 1'000'000'000'000'000'000);
    EXPECT_FALSE(header.integer({0x0020, 0x9999}).has_value());
}

/// Values of (0008,0005) as they stand in a file.
CharacterSet characterSet(const std::string& terms) {
    std::vector<std::string> values;
    for (const auto part : splitValues(terms)) values.emplace_back(trimmed(part));
    return CharacterSet(values);
}

// The names are the examples of PS3.5 annexes H to K and of the Greek, Hebrew, Arabic and Thai repertoires.
TEST(CharacterSets, OfTheWholeWorldAreDecoded) {
    const std::tuple<const char*, std::string, std::string> rows[] = {
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
        {"\\ISO 2022 IR 87", "Yamada=\x1B$B;3ED\x1B(B^\x1B$BB@O:\x1B(B=\x1B$B$d$^$@",
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
    for (const auto& [terms, bytes, text] : rows) {
        const CharacterSet characters = characterSet(terms);
        EXPECT_EQ(characters.decode(bytes, CharacterSet::Resets::AtNameParts), text) << terms;
        for (std::size_t from = 0; from < 4; ++from)
            EXPECT_TRUE(isValidUtf8(characters.decode(nonsense.substr(from) + "\x1B$B$\x1B$)C\xA1")));
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
    for (const char32_t letter : {0x7F, 0x80, 0x7FF, 0x800, 0xABCD, 0xFFFF, 0x10000, 0x12345, 0x10FFFF}) {
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
            EXPECT_NE(('\n' + text).find(line + std::string("\n")), std::string::npos) << line << text;
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
    const std::string whole = headerText(*file, LongValues::Whole);
    EXPECT_EQ(whole.find("…"), std::string::npos);
    EXPECT_NE(whole.find(cyrillic + "\n"), std::string::npos);
}

}  // namespace
}  // namespace cinedisc::test
