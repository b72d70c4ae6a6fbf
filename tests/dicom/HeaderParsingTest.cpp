#include "dicom/DicomFile.h"
#include "dicom/MemoryByteSource.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace cinedisc::test {
namespace {

using namespace dicom;

constexpr Tag sequenceTag{0x0008, 0x1140}, privateTag{0x0009, 0x1001}, uidTag{0x0008, 0x1155};
constexpr auto absent = FilePart::Absent;
constexpr auto present = FilePart::Present;

/// A 16-bit picture with a sequence in front of its description.
DicomBuilder picture(LengthForm lengths = LengthForm::Undefined) {
    DicomItem inner, item;
    inner.text(uidTag, "UI", "1.2.3");
    item.text(uidTag, "UI", "1.2").sequence(sequenceTag, {inner}, lengths);
    DicomBuilder builder = DicomBuilder::image(4, 6, 1, 16, 12);
    builder.gradientPixels()
        .sequence(sequenceTag, {item, inner}, lengths)
        .text({0x0008, 0x0080}, "LO", "Some place");
    return builder;
}

void expectPicture(const Bytes& bytes) {
    const auto file = opened(bytes);
    EXPECT_EQ(file->header().string({0x0010, 0x0010}), "Sample^Person");
    const auto& items = file->header().items(sequenceTag);
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].string(uidTag), "1.2");
    ASSERT_EQ(items[0].items(sequenceTag).size(), 1u);
    EXPECT_EQ(items[0].items(sequenceTag)[0].string(uidTag), "1.2.3");
    const auto frame = file->decode(0);
    ASSERT_TRUE(frame.ok()) << frame.error().detail;
    const auto& samples = std::get<std::vector<std::uint16_t>>(frame.value().samples);
    EXPECT_EQ(std::vector(samples.begin(), samples.begin() + 8),
              (std::vector<std::uint16_t>{0, 1, 2, 3, 4, 5, 3, 4}));
}

TEST(HeaderParsing, FilesOfAllFormsAreReadAlike) {
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
    for (const FileForm& form : forms) {
        for (const LengthForm lengths : {LengthForm::Undefined, LengthForm::Explicit}) {
            SCOPED_TRACE(form.syntax + " " + std::to_string(static_cast<int>(form.encoding)));
            DicomBuilder builder = picture(lengths);
            builder.form = form;
            expectPicture(builder.build());
        }
    }
    const FileForm deflated{deflatedUid, Encoding::ExplicitLittle};
    DicomBuilder body = picture(), meta;
    body.form.preamble = body.form.metaHeader = absent;
    meta.form = deflated;
    expectPicture(meta.build() + wrappedDeflate(body.build()));
}

/// The bytes with the first that are like `old` replaced.
Bytes replaced(Bytes bytes, const Bytes& old, const Bytes& by) {
    const auto at = std::search(bytes.begin(), bytes.end(), old.begin(), old.end());
    if (at == bytes.end()) throw std::logic_error("nothing to replace");
    const auto rest = bytes.erase(at, at + static_cast<std::ptrdiff_t>(old.size()));
    bytes.insert(rest, by.begin(), by.end());
    return bytes;
}

/// A picture with other bytes in front of the patient's name.
Bytes withInserted(const Bytes& inserted) {
    const Bytes patient = numberBytes(0x00100010, 4);
    return replaced(picture().build(), patient, inserted + patient);
}

TEST(HeaderParsing, ElementsThatAreWrongCostOnlyThemselves) {
    const Bytes place = numberBytes(0x00800008, 4), uid = numberBytes(0x11550008, 4) + bytesOf("UI");
    for (const Bytes& letters :
         {bytesOf("??"), bytesOf("  "), bytesOf("xx"), bytesOf("ZZ"), bytesOf("--"), Bytes(2)})
        expectPicture(replaced(picture().build(), place + bytesOf("LO"), place + letters));

    DicomItem item;
    item.text(uidTag, "UI", "1.2");
    DicomBuilder odd = picture();
    odd.binary({0x0008, 0x0081}, "LO", bytesOf("odd")).sequence(privateTag, {item}, LengthForm::Explicit);
    expectPicture(odd.build());
    // A value that is longer than its item, which ends in front of the patient's group.
    const Bytes content = bytesOf("1.2") + bytesOf({0, 0x10});
    expectPicture(replaced(odd.build(), uid + bytesOf({4, 0}) + content, uid + bytesOf({255, 0}) + content));

    // An item that is longer than its sequence.
    const Bytes start = numberBytes(0xE000FFFE, 4);
    expectPicture(replaced(odd.build(), start + numberBytes(12, 4), start + numberBytes(4000, 4)));

    const Bytes stray = withInserted(numberBytes(0x00810008, 4) + numberBytes(6, 4) + bytesOf("Street"));
    expectPicture(stray);
    EXPECT_EQ(opened(stray)->header().string({0x0008, 0x0081}), "Street");
}

TEST(HeaderParsing, UnknownElementsThatHoldItemsAreReadAsImplicitSequences) {
    DicomItem item;
    item.text(uidTag, "UI", "1.2").text({0x0008, 0x1150}, "UI", "3.4");
    for (const LengthForm form : {LengthForm::Undefined, LengthForm::Explicit}) {
        const Bytes implicit =
            encoded(DicomItem().sequence(privateTag, {item}, form), Encoding::ImplicitLittle);
        const Bytes unknown = bytesOf({0x09, 0x00, 0x01, 0x10, 'U', 'N', 0, 0});
        const Bytes bytes = withInserted(unknown + Bytes(implicit.begin() + 4, implicit.end()));
        expectPicture(bytes);
        ASSERT_EQ(opened(bytes)->header().items(privateTag).size(), 1u);
        EXPECT_EQ(opened(bytes)->header().items(privateTag)[0].string(uidTag), "1.2");
    }
}

TEST(HeaderParsing, FilesWithoutPictureSayWhy) {
    using Kind = DecodeError::Kind;
    using Reason = DecodeError::Reason;
    DicomItem icon;
    icon.numbers(tags::Rows, "US", {2}).binary(tags::PixelData, "OB", Bytes(4));
    DicomBuilder report, iconOnly;
    report.text(tags::Modality, "CS", "SR");
    iconOnly.text(tags::Modality, "CS", "CR").sequence(tags::IconImageSequence, {icon});
    const auto compressedAs = [](const char* uid) {
        DicomBuilder builder = DicomBuilder::image(4, 4);
        return builder.transferSyntax(uid).encapsulated({bytesOf({1, 2, 3, 4})}, {}).build();
    };
    Bytes cutHeader = report.build();
    cutHeader.resize(cutHeader.size() - 3);
    struct Row {
        Bytes bytes;
        Kind kind;
        Reason reason;
        const char* detail = "";
    };
    const Row rows[] = {
        {report.build() + Bytes(300), Kind::NoPicture, Reason::None},
        {iconOnly.build(), Kind::NoPicture, Reason::IconOnly},
        {compressedAs("1.2.840.10008.1.2.4.102"), Kind::Unsupported, Reason::Compression, "H.264 video"},
        {compressedAs("1.2.840.10008.1.2.4.94"), Kind::Unsupported, Reason::Elsewhere},
        {compressedAs("1.2.3.4.5"), Kind::Unsupported, Reason::Compression, "1.2.3.4.5"},
        {cutHeader, Kind::CutOff, Reason::Header},
    };
    for (const Row& row : rows) {
        const auto file = opened(row.bytes);
        EXPECT_EQ(file->frameCount(), 0);
        ASSERT_TRUE(file->pictureError());
        EXPECT_EQ(file->pictureError()->kind, row.kind);
        EXPECT_EQ(file->pictureError()->reason, row.reason);
        EXPECT_EQ(file->pictureError()->detail, row.detail);
        EXPECT_FALSE(file->decode(0).ok());
    }
}

TEST(HeaderParsing, WhatIsNoFileOrNotDicomSaysSo) {
    for (const Bytes& bytes : {Bytes(), Bytes(10), Bytes(100'000), bytesOf("\x89PNG\r\n\x1a\n0123456789"),
                               bytesOf("<?xml version=\"1.0\"?><catalogue/>")}) {
        const auto file = DicomFile::open(std::make_shared<MemoryByteSource>(bytes));
        ASSERT_FALSE(file.ok());
        EXPECT_EQ(file.error().kind, DecodeError::Kind::NotDicom);
        EXPECT_EQ(file.error().reason == DecodeError::Reason::Empty, bytes.empty());
    }
    EXPECT_EQ(DicomFile::open("/nowhere/at/all.dcm").error().reason, DecodeError::Reason::Missing);
    EXPECT_EQ(DicomFile::open("/").error().reason, DecodeError::Reason::NotRegular);
}

TEST(DataSetNumbers, AreReadFromTextAndBinaryAndStopAtNonsense) {
    DicomBuilder builder;
    builder.text({0x0018, 0x1602}, "IS", " +12\\-3 \\x\\5")
        .text({0x0028, 0x1050}, "DS", "1,5\\2.5e2\\nan")
        .numbers({0x0028, 0x0106}, "SS", {-5, 7})
        .numbers({0x0028, 0x0009}, "AT", {0x0018, 0x1063})
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
    for (const std::uint16_t element : {0x0030, 0x0010, 0x0020, 0x0008})
        data.elements.push_back({{0x0028, element}, vr("US"), 0, 0, true, {}, {}});
    for (const Element& element : data.elements) EXPECT_EQ(data.find(element.tag), &element);
    EXPECT_EQ(data.find({0x0028, 0x0009}), nullptr);
}

}  // namespace
}  // namespace cinedisc::test
