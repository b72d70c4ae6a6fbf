#include "dicom/DataSetParser.h"
#include "dicom/DicomFile.h"
#include "dicom/MemoryByteSource.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"
#include "tests/support/DicomWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <zlib.h>

namespace cinedisc::test {
namespace {

using namespace dicom;

constexpr Tag sequenceTag{0x0008, 0x1140}, privateTag{0x0009, 0x1001}, uidTag{0x0008, 0x1155};

constexpr const char* implicitUid = "1.2.840.10008.1.2";
constexpr const char* explicitUid = "1.2.840.10008.1.2.1";
constexpr const char* bigEndianUid = "1.2.840.10008.1.2.2";
constexpr const char* deflatedUid = "1.2.840.10008.1.2.1.99";

/// A 16-bit picture with a sequence in front of its description.
DicomBuilder picture(LengthForm form = LengthForm::Undefined) {
    DicomItem inner, item;
    inner.text(uidTag, "UI", "1.2.3");
    item.text(uidTag, "UI", "1.2").sequence(sequenceTag, {inner}, form);
    DicomBuilder builder = DicomBuilder::image(4, 6, 1, 16, 12);
    builder.gradientPixels().sequence(sequenceTag, {item, inner}, form);
    return builder;
}

void expectPicture(const Bytes& bytes) {
    const auto file = opened(bytes);
    EXPECT_EQ(file->header().integer(tags::Rows), 4);
    EXPECT_EQ(file->header().string({0x0010, 0x0010}), "Sample^Person");
    const auto frame = file->decode(0);
    ASSERT_TRUE(frame.ok()) << frame.error().message;
    const auto& samples = std::get<std::vector<std::uint16_t>>(frame.value().samples);
    EXPECT_EQ(std::vector(samples.begin(), samples.begin() + 8),
              (std::vector<std::uint16_t>{0, 1, 2, 3, 4, 5, 3, 4}));
}

void expectSequence(const DataSet& header) {
    ASSERT_EQ(header.items(sequenceTag).size(), 2u);
    const DataSet& item = header.items(sequenceTag)[0];
    EXPECT_EQ(item.string(uidTag), "1.2");
    ASSERT_EQ(item.items(sequenceTag).size(), 1u);
    EXPECT_EQ(item.items(sequenceTag)[0].string(uidTag), "1.2.3");
}

struct FileForm {
    const char* name;
    const char* uid;  ///< named in the meta header
    Encoding encoding;
    FilePart preamble = FilePart::Present, meta = FilePart::Present;
    LengthForm lengths = LengthForm::Undefined;
};

std::ostream& operator<<(std::ostream& out, const FileForm& form) { return out << form.name; }

class FileForms : public testing::TestWithParam<FileForm> {};

TEST_P(FileForms, AreReadAlike) {
    const FileForm& form = GetParam();
    DicomBuilder builder = picture(form.lengths);
    builder.transferSyntax(form.uid).encoding(form.encoding).preamble(form.preamble).metaHeader(form.meta);
    const Bytes bytes = builder.build();
    expectPicture(bytes);
    expectSequence(opened(bytes)->header());
}

constexpr auto absent = FilePart::Absent;
constexpr auto present = FilePart::Present;

INSTANTIATE_TEST_SUITE_P(
    All, FileForms,
    testing::Values(FileForm{"implicitLittle", implicitUid, Encoding::ImplicitLittle},
                    FileForm{"implicitKnownLengths", implicitUid, Encoding::ImplicitLittle, present, present,
                             LengthForm::Explicit},
                    FileForm{"implicitBare", implicitUid, Encoding::ImplicitLittle, absent, absent},
                    FileForm{"implicitWithoutMeta", implicitUid, Encoding::ImplicitLittle, present, absent},
                    FileForm{"explicitLittle", explicitUid, Encoding::ExplicitLittle},
                    FileForm{"explicitKnownLengths", explicitUid, Encoding::ExplicitLittle, present, present,
                             LengthForm::Explicit},
                    FileForm{"explicitBare", explicitUid, Encoding::ExplicitLittle, absent, absent},
                    FileForm{"explicitWithoutPreamble", explicitUid, Encoding::ExplicitLittle, absent,
                             present},
                    FileForm{"bigEndian", bigEndianUid, Encoding::ExplicitBig},
                    FileForm{"bigEndianBare", bigEndianUid, Encoding::ExplicitBig, absent, absent},
                    FileForm{"deflated", deflatedUid, Encoding::Deflated},
                    FileForm{"noSyntaxNamed", "", Encoding::ImplicitLittle},
                    FileForm{"noSyntaxNamedExplicit", "", Encoding::ExplicitLittle},
                    FileForm{"unknownSyntaxNamed", "1.2.3.4", Encoding::ImplicitLittle},
                    FileForm{"saysImplicitIsExplicit", implicitUid, Encoding::ExplicitLittle},
                    FileForm{"saysExplicitIsImplicit", explicitUid, Encoding::ImplicitLittle},
                    FileForm{"saysBigIsLittle", bigEndianUid, Encoding::ExplicitLittle},
                    FileForm{"saysDeflatedIsNot", deflatedUid, Encoding::ExplicitLittle}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(HeaderParsing, DeflatedStreamsMayBeWrappedAndCompressed) {
    DicomBuilder body = picture();
    body.preamble(absent).metaHeader(absent);
    const Bytes plain = body.build();
    Bytes wrapped(plain.size() + 1024);
    uLongf length = static_cast<uLongf>(wrapped.size());
    ASSERT_EQ(compress(reinterpret_cast<Bytef*>(wrapped.data()), &length,
                       reinterpret_cast<const Bytef*>(plain.data()), static_cast<uLong>(plain.size())),
              Z_OK);
    wrapped.resize(length);
    Bytes file = DicomBuilder().transferSyntax(deflatedUid).encoding(Encoding::ExplicitLittle).build();
    file.insert(file.end(), wrapped.begin(), wrapped.end());
    expectPicture(file);
}

/// The bytes with others in front of the patient's name.
Bytes withInserted(Bytes bytes, const Bytes& inserted) {
    const Bytes patient = bytesOf({0x10, 0x00, 0x10, 0x00});
    const auto at = std::search(bytes.begin(), bytes.end(), patient.begin(), patient.end());
    bytes.insert(at, inserted.begin(), inserted.end());
    return bytes;
}

/// The bytes with the two letters of an element's representation replaced.
Bytes withLetters(Bytes bytes, Tag tag, std::byte first, std::byte second) {
    const Bytes header = bytesOf({tag.group & 0xFF, tag.group >> 8, tag.element & 0xFF, tag.element >> 8});
    const auto at = std::search(bytes.begin(), bytes.end(), header.begin(), header.end());
    at[4] = first;
    at[5] = second;
    return bytes;
}

TEST(HeaderParsing, LettersThatAreNoRepresentationCostOnlyTheirElement) {
    DicomBuilder builder = picture();
    builder.text({0x0008, 0x0080}, "LO", "Some place");
    for (const char* letters : {"??", "  ", "xx", "ZZ", "--"})
        expectPicture(
            withLetters(builder.build(), {0x0008, 0x0080}, std::byte(letters[0]), std::byte(letters[1])));
    expectPicture(withLetters(builder.build(), {0x0008, 0x0080}, std::byte{0}, std::byte{0}));
}

TEST(HeaderParsing, AnImplicitElementAmongExplicitOnesIsUnderstood) {
    Bytes stray = bytesOf({0x08, 0x00, 0x81, 0x00, 6, 0, 0, 0});
    const Bytes value = bytesOf(std::string("Street"));
    stray.insert(stray.end(), value.begin(), value.end());
    const Bytes bytes = withInserted(picture().build(), stray);
    expectPicture(bytes);
    EXPECT_EQ(opened(bytes)->header().string({0x0008, 0x0081}), "Street");
}

TEST(HeaderParsing, UnknownElementsThatHoldItemsAreReadAsImplicitSequences) {
    DicomItem item;
    item.text(uidTag, "UI", "1.2").text({0x0008, 0x1150}, "UI", "3.4");
    for (const LengthForm form : {LengthForm::Undefined, LengthForm::Explicit}) {
        DicomItem holder;
        holder.sequence(sequenceTag, {item}, form);
        DicomWriter implicit(Encoding::ImplicitLittle);
        implicit.write(holder);
        Bytes content = implicit.take();
        const Bytes length(content.begin() + 4, content.begin() + 8);
        content.erase(content.begin(), content.begin() + 8);
        Bytes unknown = bytesOf({0x09, 0x00, 0x01, 0x10, 'U', 'N', 0, 0});
        unknown.insert(unknown.end(), length.begin(), length.end());
        unknown.insert(unknown.end(), content.begin(), content.end());
        const Bytes bytes = withInserted(picture().build(), unknown);
        expectPicture(bytes);
        ASSERT_EQ(opened(bytes)->header().items(privateTag).size(), 1u);
        EXPECT_EQ(opened(bytes)->header().items(privateTag)[0].string(uidTag), "1.2");
    }
}

TEST(HeaderParsing, WrongLengthsOfTheMetaHeaderDoNotMatter) {
    for (const std::uint32_t length : {0u, 7u, 100000u, 0xFFFFFFFFu}) {
        DicomBuilder builder = picture();
        builder.metaLength(length);
        expectPicture(builder.build());
    }
}

TEST(HeaderParsing, OddLengthsAndValuesTooLongForTheirItemAreSurvived) {
    DicomItem item;
    item.text(uidTag, "UI", "1.2");
    DicomBuilder builder = picture();
    builder.binary({0x0008, 0x0080}, "LO", bytesOf(std::string("odd")))
        .sequence(privateTag, {item}, LengthForm::Explicit);
    Bytes bytes = builder.build();
    expectPicture(bytes);
    const Bytes inItem = bytesOf({0x08, 0x00, 0x55, 0x11, 'U', 'I', 4, 0, '1', '.', '2', 0, 0x10});
    const auto at = std::search(bytes.begin(), bytes.end(), inItem.begin(), inItem.end());
    ASSERT_NE(at, bytes.end());
    at[6] = std::byte{0xFF};
    expectPicture(bytes);
}

/// Items that hold a sequence that holds an item, and so on.
Bytes nested(int depth, LengthForm form) {
    constexpr std::uint64_t item = 0xE000FFFE, sequence = 0x11400008, undefined = 0xFFFFFFFF;
    DicomWriter writer(Encoding::ImplicitLittle);
    for (int level = 0; level < depth; ++level) {
        const auto left = static_cast<std::uint64_t>(depth - level) * 16;
        const bool known = form == LengthForm::Explicit;
        for (const std::uint64_t number :
             {item, known ? left - 8 : undefined, sequence, known ? left - 16 : undefined})
            writer.writeNumber(number, 4);
    }
    return writer.take();
}

TEST(HeaderParsing, BottomlessNestingEndsInANoticeOrIsSkipped) {
    DicomBuilder known = picture();
    known.binary(privateTag, "UN", nested(100'000, LengthForm::Explicit));
    expectPicture(known.build());

    Bytes tail = bytesOf({0x08, 0x00, 0x40, 0x11, 'S', 'Q', 0, 0, 0xFF, 0xFF, 0xFF, 0xFF});
    const Bytes levels = nested(100'000, LengthForm::Undefined);
    tail.insert(tail.end(), levels.begin(), levels.end());
    const auto file = opened(withInserted(picture().build(), tail));
    EXPECT_EQ(file->frameCount(), 0);
    EXPECT_TRUE(file->pictureError().has_value());
}

TEST(HeaderParsing, KeepsWithinItsBoundsAndUsesThemUp) {
    const auto parsed = [](const Bytes& bytes, DataSet& into) {
        const MemoryByteSource source(bytes);
        ForwardBuffer buffer(source);
        return DataSetParser(buffer).parse(into, implicitLittle);
    };
    const auto elements = [](int count, std::uint32_t length) {
        DicomWriter writer(Encoding::ImplicitLittle);
        for (int i = 0; i < count; ++i) {
            writer.writeNumber(0x00090009, 4);
            writer.writeNumber(length, 4);
            for (std::uint32_t at = 0; at < length; at += 8)
                writer.writeNumber(1, static_cast<int>(std::min(8u, length - at)));
        }
        return writer.take();
    };
    DataSet many, tooMany, large, held, levels;
    EXPECT_FALSE(parsed(elements(500'000, 0), many));
    EXPECT_EQ(parsed(elements(500'001, 0), tooMany).value().kind, DecodeError::Kind::TooLarge);
    EXPECT_FALSE(parsed(elements(1, (64 << 10) + 2), large));
    EXPECT_FALSE(large.elements.front().held);
    EXPECT_FALSE(parsed(elements(1025, 64 << 10), held));
    EXPECT_TRUE(held.elements[1023].held) << "64 MiB";
    EXPECT_FALSE(held.elements[1024].held);

    Bytes chain = nested(100, LengthForm::Explicit);
    DicomWriter writer(Encoding::ImplicitLittle);
    writer.writeNumber(0x11400008, 4);
    writer.writeNumber(chain.size(), 4);
    Bytes bytes = writer.take();
    bytes.insert(bytes.end(), chain.begin(), chain.end());
    EXPECT_FALSE(parsed(bytes, levels));
    int depth = 0;
    for (const DataSet* level = &levels; !level->elements.front().items.empty(); ++depth)
        level = &level->elements.front().items.front();
    EXPECT_EQ(depth, 64);
}

struct Notice {
    const char* name;
    Bytes bytes;
    DecodeError::Kind kind;
    std::string words;
};

TEST(HeaderParsing, FilesWithoutPictureSayWhy) {
    using Kind = DecodeError::Kind;
    DicomItem icon;
    icon.numbers(tags::Rows, "US", {2}).binary(tags::PixelData, "OB", Bytes(4));
    DicomBuilder report, iconOnly, video, jpip, unknown;
    report.text(tags::Modality, "CS", "SR");
    report.trailing(Bytes(300));
    iconOnly.text(tags::Modality, "CS", "CR").sequence(tags::IconImageSequence, {icon});
    for (auto [builder, uid] : {std::pair(&video, "1.2.840.10008.1.2.4.102"),
                                {&jpip, "1.2.840.10008.1.2.4.94"},
                                {&unknown, "1.2.3.4.5"}}) {
        *builder = DicomBuilder::image(4, 4);
        builder->transferSyntax(uid).encapsulated({bytesOf({1, 2, 3, 4})}, {});
    }
    Bytes cutHeader = report.build();
    cutHeader.resize(cutHeader.size() - 303);
    const Notice notices[] = {
        {"report", report.build(), Kind::NoPicture, "This file holds no picture"},
        {"icon", iconOnly.build(), Kind::NoPicture, "This file holds no picture, only an icon"},
        {"video", video.build(), Kind::Unsupported,
         "compressed in a way this viewer cannot read (H.264 video)"},
        {"jpip", jpip.build(), Kind::Unsupported, "not in this file"},
        {"unknown", unknown.build(), Kind::Unsupported,
         "compressed in a way this viewer cannot read (1.2.3.4.5)"},
        {"cut", cutHeader, Kind::CutOff, "cut off within its header"},
    };
    for (const Notice& each : notices) {
        const auto file = opened(each.bytes);
        EXPECT_EQ(file->frameCount(), 0) << each.name;
        ASSERT_TRUE(file->pictureError()) << each.name;
        EXPECT_EQ(file->pictureError()->kind, each.kind) << each.name;
        EXPECT_NE(file->pictureError()->message.find(each.words), std::string::npos)
            << each.name << ": " << file->pictureError()->message;
        EXPECT_FALSE(file->decode(0).ok()) << each.name;
    }
}

TEST(HeaderParsing, OtherFilesAreNotDicom) {
    for (const Bytes& bytes :
         {Bytes(), Bytes(10), Bytes(100'000), bytesOf(std::string("\x89PNG\r\n\x1a\n0123456789")),
          bytesOf(std::string("<?xml version=\"1.0\"?><catalogue/>"))}) {
        const auto file = DicomFile::open(std::make_shared<MemoryByteSource>(bytes));
        ASSERT_FALSE(file.ok());
        EXPECT_EQ(file.error().kind, DecodeError::Kind::NotDicom);
        EXPECT_EQ(file.error().message, bytes.empty() ? "The file is empty" : "This is not a DICOM file");
    }
}

TEST(HeaderParsing, PathsThatCannotBeReadSayWhy) {
    const auto missing = DicomFile::open("/nowhere/at/all.dcm");
    ASSERT_FALSE(missing.ok());
    EXPECT_EQ(missing.error().message, "The file is missing");
    const auto folder = DicomFile::open("/");
    ASSERT_FALSE(folder.ok());
    EXPECT_EQ(folder.error().kind, DecodeError::Kind::CannotRead);
}

TEST(DataSetNumbers, AreReadFromTextAndBinaryAndStopAtNonsense) {
    DicomBuilder builder;
    builder.text({0x0018, 0x1602}, "IS", " +12\\-3 \\x\\5")
        .text({0x0028, 0x1050}, "DS", "1,5\\2.5e2\\nan")
        .numbers({0x0028, 0x0106}, "SS", {-5, 7})
        .numbers({0x0028, 0x0009}, "AT", {0x00181063})
        .reals({0x0018, 0x9073}, "FD", {0.25})
        .text({0x0020, 0x0013}, "IS", "99999999999999999999");
    const auto file = opened(builder);
    const DataSet& header = file->header();
    EXPECT_EQ(header.integers({0x0018, 0x1602}), (std::vector<std::int64_t>{12, -3}));
    EXPECT_EQ(header.decimals({0x0028, 0x1050}), (std::vector<double>{1.5, 250}));
    EXPECT_EQ(header.integers({0x0028, 0x0106}), (std::vector<std::int64_t>{-5, 7}));
    EXPECT_EQ(header.integer({0x0028, 0x0009}), 0x00181063);
    EXPECT_EQ(header.decimal({0x0018, 0x9073}), 0.25);
    EXPECT_GT(header.integer({0x0020, 0x0013}).value(), 1'000'000'000'000'000'000);
    EXPECT_FALSE(header.integer({0x0020, 0x9999}).has_value());
}

TEST(DataSetNumbers, ElementsOutOfOrderAreFound) {
    DataSet data;
    for (const std::uint16_t element : {0x0030, 0x0010, 0x0020, 0x0008}) {
        data.elements.emplace_back();
        data.elements.back().tag = {0x0028, element};
    }
    for (const std::uint16_t element : {0x0030, 0x0010, 0x0020, 0x0008})
        EXPECT_NE(data.find({0x0028, element}), nullptr);
    EXPECT_EQ(data.find({0x0028, 0x0009}), nullptr);
}

}  // namespace
}  // namespace cinedisc::test
