#include "fuzzing/window/Sizes.h"

#include "dicom/Tags.h"
#include "tests/support/DicomBuilder.h"

#include <algorithm>

namespace cinedisc::fuzzing::window {

namespace {

namespace tags = dicom::tags;
using dicom::Tag;
using test::Bytes;
using test::bytesOf;
using test::DicomBuilder;
using test::DicomItem;
using test::LengthForm;
using test::numberBytes;
using test::operator+;

constexpr const char *implicitSyntax = "1.2.840.10008.1.2", *deflatedSyntax = "1.2.840.10008.1.2.1.99",
                     *rle = "1.2.840.10008.1.2.5", *baseline = "1.2.840.10008.1.2.4.50",
                     *lossless = "1.2.840.10008.1.2.4.70", *jpegLs = "1.2.840.10008.1.2.4.80",
                     *jpeg2000 = "1.2.840.10008.1.2.4.90";
constexpr Tag privateTag{0x0009, 0x1001}, longText{0x0018, 0x9004}, referenced{0x0008, 0x1140};

DicomBuilder small() { return DicomBuilder::image(32, 32).gradientPixels(); }

/// A picture that fills its pixels, whatever they are.
DicomBuilder filled(int rows, int columns, int frames, int bits) {
    auto file = DicomBuilder::image(rows, columns, frames, bits, bits);
    const auto count = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns) *
                       static_cast<std::size_t>(frames) * static_cast<std::size_t>(bits) / 8;
    return file.pixels(Bytes(count, std::byte{0x35}));
}

DicomBuilder coded(int rows, int columns, const char* syntax, const Bytes& stream) {
    return DicomBuilder::image(rows, columns)
        .transferSyntax(syntax)
        .encapsulatedFrames({stream}, test::OffsetTable::Empty);
}

/// Everything up to the length of the pixels, which is what is given.
Bytes endingWithLength(DicomBuilder file, std::uint32_t length) {
    Bytes bytes = file.pixels(Bytes(4)).build();
    bytes.resize(bytes.size() - 8);
    return bytes + numberBytes(length, 4) + Bytes(4096);
}

/// An element of implicit encoding in front of all others, with the length that it states and another one.
Bytes beginningWith(Tag tag, std::uint32_t stated, const Bytes& value) {
    auto file = small();
    file.transferSyntax(implicitSyntax);
    file.binary({0x0008, 0x0001}, "UN", bytesOf("marker"));
    Bytes bytes = file.build();
    const Bytes marker = bytesOf({8, 0, 1, 0, 6, 0, 0, 0});
    const auto place = std::search(bytes.begin(), bytes.end(), marker.begin(), marker.end());
    const Bytes element =
        numberBytes(tag.group, 2) + numberBytes(tag.element, 2) + numberBytes(stated, 4) + value;
    bytes.insert(place, element.begin(), element.end());
    return bytes;
}

/// Sequences within sequences; only the innermost item is empty.
Bytes nested(int depth, LengthForm form) {
    Bytes inner;
    for (int level = 0; level < depth; ++level) {
        const bool isOpen = form == LengthForm::Undefined;
        Bytes header;
        const auto length = [&](std::size_t value) { return numberBytes(isOpen ? 0xFFFFFFFF : value, 4); };
        header = bytesOf({9, 0, 1, 0x10}) + length(inner.size() + 8) + bytesOf({0xFE, 0xFF, 0, 0xE0}) +
                 length(inner.size());
        inner.insert(inner.begin(), header.begin(), header.end());
    }
    return inner;
}

DicomBuilder withOverlays(int rows, int columns, int planes, bool inPixels) {
    auto file = filled(rows, columns, 1, 16);
    file.numbers(tags::BitsStored, "US", {8}).numbers(tags::HighBit, "US", {7});
    for (int plane = 0; plane < planes; ++plane) {
        const auto group = static_cast<std::uint16_t>(0x6000 + 2 * plane);
        file.numbers({group, 0x0010}, "US", {rows}).numbers({group, 0x0011}, "US", {columns});
        file.text({group, 0x0040}, "CS", "G").numbers({group, 0x0050}, "SS", {1, 1});
        file.numbers({group, 0x0100}, "US", {inPixels ? 16 : 1})
            .numbers({group, 0x0102}, "US", {inPixels ? 15 : 0});
        if (!inPixels)
            file.binary({group, 0x3000}, "OW",
                        Bytes(static_cast<std::size_t>(rows * (columns / 8)), std::byte{0xA5}));
    }
    return file;
}

DicomBuilder withElements(std::size_t count) {
    std::vector<DicomItem::Element> more;
    for (std::size_t i = 0; i < count; ++i) {
        const auto group = static_cast<std::uint16_t>(0x0009 + 2 * (i >> 15));
        const Tag tag{group, static_cast<std::uint16_t>(0x1000 + (i & 0x7FFF))};
        more.push_back({tag, "LO", bytesOf("value "), {}, LengthForm::Explicit});
    }
    auto file = small();
    file.elements.insert(file.elements.begin() + 1, more.begin(), more.end());
    return file;
}

std::string repeated(std::string_view unit, std::size_t length) {
    std::string text;
    while (text.size() < length) text += unit;
    return text;
}

/// A text element that most texts on the view are made of, of that many bytes.
DicomBuilder withTexts(std::string_view unit, std::size_t length, const char* syntax) {
    DicomBuilder file = small();
    const std::string text = repeated(unit, length);
    for (const auto& [tag, vr] : {std::pair{tags::PatientName, "PN"},
                                  {tags::PatientID, "LO"},
                                  {tags::StudyDate, "DA"},
                                  {tags::StudyTime, "TM"},
                                  {tags::SeriesDescription, "LO"},
                                  {tags::Modality, "CS"},
                                  {tags::PositionerPrimaryAngle, "DS"},
                                  {tags::FrameTimeVector, "DS"},
                                  {tags::WindowCenter, "DS"},
                                  {tags::WindowWidth, "DS"},
                                  {tags::PixelSpacing, "DS"},
                                  {tags::VerticesOfThePolygonalShutter, "IS"}})
        file.text(tag, vr, text);
    file.text(tags::ShutterShape, "CS", "POLYGONAL");
    return file.transferSyntax(syntax);
}

/// The beginning of a JPEG stream, with the marker of its process.
Bytes jpegStart(int startOfFrame, int rows, int columns) {
    return bytesOf({0xFF,
                    0xD8,
                    0xFF,
                    startOfFrame,
                    0,
                    11,
                    8,
                    rows >> 8,
                    rows & 255,
                    columns >> 8,
                    columns & 255,
                    1,
                    1,
                    0x11,
                    0,
                    0xFF,
                    0xDA,
                    0,
                    8,
                    1,
                    1,
                    0,
                    0,
                    63,
                    0}) +
           Bytes(64);
}

Bytes waveletStart(std::uint32_t side, std::uint32_t tile) {
    Bytes bytes = bytesOf({0xFF, 0x4F, 0xFF, 0x51, 0, 41, 0, 0});
    const auto big = [&](std::uint32_t value) {
        for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<std::byte>(value >> shift));
    };
    for (const auto value : {side, side, 0u, 0u, tile, tile, 0u, 0u}) big(value);
    return bytes +
           bytesOf({0,    1, 7, 1,    1,    0xFF, 0x52, 0, 12, 0, 0, 0, 1, 0, 5, 4, 4, 0,    0,   0xFF,
                    0x5C, 0, 4, 0x40, 0x40, 0xFF, 0x90, 0, 10, 0, 0, 0, 0, 0, 0, 0, 1, 0xFF, 0x93}) +
           Bytes(64);
}

}  // namespace

const std::vector<SizedFile>& sizedFiles() {
    static const std::vector<SizedFile> all = [] {
        std::vector<SizedFile> files;
        const auto shown = [&](const char* what, std::function<DicomBuilder()> make) {
            files.push_back({what, [make] { return make().build(); }, true});
        };
        const auto told = [&](const char* what, std::function<Bytes()> make) {
            files.push_back({what, std::move(make), false});
        };

        for (const char* syntax : {"1.2.840.10008.1.2.1", rle, baseline, lossless, jpegLs, jpeg2000})
            told("65,535 x 65,535 pixels", [=] {
                auto file = DicomBuilder::image(65535, 65535, 1, 16, 16);
                if (syntax == std::string_view("1.2.840.10008.1.2.1"))
                    return file.pixels(Bytes(4096)).build();
                return file.transferSyntax(syntax)
                    .encapsulatedFrames({Bytes(4096)}, test::OffsetTable::Empty)
                    .build();
            });
        told("65,535 x 65,535 bits",
             [] { return DicomBuilder::image(65535, 65535, 1, 1, 1).pixels(Bytes(4096)).build(); });
        for (const int process : {0xC0, 0xC2, 0xC3, 0xF7})
            told("a code stream of 65,500 x 65,500",
                 [=] { return coded(65500, 65500, baseline, jpegStart(process, 65500, 65500)).build(); });
        for (const int process : {0xC0, 0xC2, 0xC3, 0xF7})
            told("16,000 x 16,000 in a stream of nothing",
                 [=] { return coded(16000, 16000, baseline, jpegStart(process, 16000, 16000)).build(); });
        told("a wavelet of 2^31 pixels a side",
             [] { return coded(512, 512, jpeg2000, waveletStart(0x7FFFFFFF, 0x7FFFFFFF)).build(); });
        told("a wavelet in tiles of one pixel",
             [] { return coded(16000, 16000, jpeg2000, waveletStart(16000, 1)).build(); });
        for (const char* frames : {"2147483647", "2147483648", "4294967296", "99999999999999999999"}) {
            shown("2^31 frames", [=] {
                auto file = small();
                file.text(tags::NumberOfFrames, "IS", frames);
                return file;
            });
            told("2^31 frames of fragments", [=] {
                auto file = coded(32, 32, rle, Bytes(64));
                file.text(tags::NumberOfFrames, "IS", frames);
                return file.build();
            });
        }
        shown("100,000 frames", [] { return filled(1, 8, 100000, 8); });
        for (const std::uint32_t length : {0xFFFFFFFEu, 0xFFFFFFFDu, 0x80000000u, 0x7FFFFFFFu})
            for (const int rows : {32, 16000})
                files.push_back({"pixels of 4 GB",
                                 [=] { return endingWithLength(DicomBuilder::image(rows, rows), length); },
                                 rows == 32});
        for (const std::uint32_t length : {0xFFFFFFFEu, 0x80000000u, 0x7FFFFFFFu})
            for (const Tag tag :
                 {Tag{8, 0}, tags::PatientName, referenced, privateTag, tags::ExtendedOffsetTable})
                told("a value of 4 GB", [=] { return beginningWith(tag, length, Bytes(64)); });
        for (const std::size_t count : {10000, 499999, 600000}) {
            const auto make = [=](const char* frames) {
                return [=] {
                    auto file = DicomBuilder::image(32, 32);
                    file.text(tags::NumberOfFrames, "IS", frames);
                    file.transferSyntax(rle);
                    return file.encapsulated(std::vector<Bytes>(count), {}).build();
                };
            };
            for (const char* frames : {"1", "10000", "2147483647"})
                told("fragments of nothing", make(frames));
        }
        for (const auto form : {LengthForm::Undefined, LengthForm::Explicit})
            for (const int depth : {10000, 100000})
                files.push_back({"nesting 10,000 deep",
                                 [=] {
                                     return beginningWith({9, 0x0FFF}, 0, nested(depth, form));
                                 },
                                 form == LengthForm::Explicit});
        for (const char* syntax : {implicitSyntax, deflatedSyntax})
            for (const std::string_view unit :
                 {"Name^", "9", "\\", "1\\-2\\", "=", "\x1b$B;3", "\r\n", "\xD8\xA7\xCC\x81"})
                for (const std::size_t length : {64u << 10, 1u << 20})
                    if (syntax == implicitSyntax || length <= 65534)
                        shown("names of 1 MB", [=] { return withTexts(unit, length, syntax); });
        shown("half a million elements", [] { return withElements(499000); });
        told("more than half a million elements", [] { return withElements(600000).build(); });
        shown("a header of 60 MB", [] {
            auto file = small();
            for (int i = 0; i < 900; ++i)
                file.text({0x0019, static_cast<std::uint16_t>(0x1000 + i)}, "UT", repeated("words ", 65000));
            return file;
        });
        shown("60,000 groups of a frame", [] {
            auto file = filled(1, 8, 60000, 8);
            DicomItem group, value;
            value.text(tags::WindowCenter, "DS", "20").text(tags::WindowWidth, "DS", "40");
            group.sequence(tags::FrameVOILUTSequence, {value});
            file.sequence(tags::PerFrameFunctionalGroups, std::vector<DicomItem>(60000, group));
            return file;
        });
        shown("overlays in the pixels of 8,192 x 8,192", [] { return withOverlays(8192, 8192, 16, true); });
        shown("overlays of 4,096 x 4,096", [] { return withOverlays(4096, 4096, 16, false); });
        shown("an overlay of 65,535 x 65,535", [] {
            auto file = withOverlays(32, 32, 1, false);
            file.numbers({0x6000, 0x0010}, "US", {65535}).numbers({0x6000, 0x0011}, "US", {65535});
            return file;
        });
        shown("a polygon of 10,000 corners over 4,096 x 4,096", [] {
            auto file = filled(4096, 4096, 1, 8);
            std::string corners;
            for (int i = 0; i < 6000; ++i)
                corners += (i ? "\\" : "") + std::to_string(i % 2 ? 1 : 4096) + "\\" +
                           std::to_string(i * 7919 % 4096);
            file.text(tags::ShutterShape, "CS", "POLYGONAL")
                .text(tags::VerticesOfThePolygonalShutter, "IS", corners);
            return file.transferSyntax(implicitSyntax);
        });
        shown("a row of 65,535 pixels", [] { return filled(1, 65535, 1, 8); });
        shown("a column of 65,535 pixels", [] { return filled(65535, 1, 1, 8); });
        shown("one pixel", [] { return filled(1, 1, 1, 16); });
        shown("12,000 x 12,000 pixels", [] { return filled(12000, 12000, 1, 8); });
        told("16,000 x 16,000 pixels", [] { return filled(16000, 16000, 1, 8).build(); });
        return files;
    }();
    return all;
}

}  // namespace cinedisc::fuzzing::window
