#include "dicom/SegmentedPalette.h"
#include "dicom/Tags.h"
#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <array>
#include <iomanip>
#include <random>
#include <regex>
#include <sstream>
#include <tuple>

namespace cinedisc::test {
namespace {

using namespace dicom;

/// The elements, put into an item of a sequence.
std::string in(const std::string& path, const std::string& puts) {
    return std::regex_replace(puts, std::regex("(^|, )(?=\\w)"), "$1" + path + ".");
}

/// An object whose modality step counts; the base of all others is an angiogram.
std::string slice(const std::string& slope, const std::string& intercept) {
    return "Modality=CT, SOPClassUID=1.2.840.10008.5.1.4.1.1.2, RescaleSlope=" + slope +
           ", RescaleIntercept=" + intercept;
}

std::string voi(const std::string& descriptor, const std::string& data) {
    return in("VOILUTSequence", "LUTDescriptor=" + descriptor + ", LUTData=" + data);
}

/// Three tables, of which the first two are the same.
std::string palette(const std::string& descriptor, const std::string& red, const std::string& blue,
                    const std::string& segmented = "") {
    std::string puts = "PhotometricInterpretation=PALETTE COLOR";
    for (const std::string colour : {"Red", "Green", "Blue"})
        puts += ", " + colour + "PaletteColorLookupTableDescriptor=" + descriptor + ", " + segmented +
                colour + "PaletteColorLookupTableData=" + (colour == "Blue" ? blue : red);
    return puts;
}

/// All that a file says about the way in which a frame is shown.
std::string told(const DicomFile& file, int frame = 0) {
    std::ostringstream out;
    const auto tell = [&out](const char* name, auto... numbers) {
        out << std::setprecision(9) << name;
        ((out << ' ' << numbers), ...);
        out << "; ";
    };
    const auto tellTable = [&](const char* name, const LookupTable& table) {
        out << name << ' ' << table.firstMapped << ' ' << table.bits;
        for (const auto entry : table.entries) out << ' ' << entry;
        out << "; ";
    };
    const GreyTransform grey = file.greyTransform(frame);
    if (grey.rescale) tell("rescale", grey.rescale->slope, grey.rescale->intercept);
    if (grey.modalityLut) tellTable("modality", *grey.modalityLut);
    for (const auto& [center, width, function] : grey.windows)
        tell(std::array{"window", "exact", "sigmoid"}[static_cast<std::size_t>(function)], center, width);
    for (const LookupTable& table : grey.voiLuts) tellTable("voi", table);
    if (grey.inverse) tell("inverse");
    if (grey.padding) tell("padding", grey.padding->first, grey.padding->second);
    const auto [edges, circle, corners, bitmap, shade] = file.shutter(frame);
    if (edges) tell("edges", edges->left, edges->right, edges->upper, edges->lower);
    if (circle) tell("circle", circle->row, circle->column, circle->radius);
    if (!corners.empty()) tell("polygon", corners.size(), corners[1].first, corners[1].second);
    if (bitmap) tell("bitmap", *bitmap);
    if (shade) tell("shade", *shade);
    if (file.hasGreyRulesByFrame()) tell("by frame");
    if (file.hasShuttersByFrame()) tell("shutters by frame");
    if (file.pixelAspect() != 1) tell("aspect", file.pixelAspect());
    if (const auto& colours = file.palette()) {
        tellTable("red", colours->red);
        EXPECT_EQ(colours->green.entries, colours->red.entries);
        tellTable("blue", colours->blue);
    }
    return out.str();
}

struct Told {
    std::string puts, told;
    int frame = 0;
};

/// Of an angiogram of 12 bits with other elements put into its header.
void expectTold(const std::vector<Told>& rows) {
    for (const Told& row : rows) {
        DicomBuilder image = DicomBuilder::image(256, 128, 1, 16, 12).pixels(Bytes(2 * 256 * 128));
        put(image, row.puts);
        EXPECT_EQ(told(*opened(image), row.frame), row.told) << row.puts.substr(0, 900);
    }
}

TEST(Presentation, GreyRulesAreReadAndImpossibleOnesLeftOut) {
    const std::string windows = "WindowCenter=40\\300\\7\\8\\9, WindowWidth=400\\0.5\\1\\0, VOILUTFunction=";
    const std::string step = "RescaleSlope=2, RescaleIntercept=-1024, SOPClassUID=1.2.840.10008.5.1.4.1.1.";
    const std::string table = ", " + in("ModalityLUTSequence", "LUTDescriptor=2\\5\\16, LUTData=1\\65535");
    const std::string padding =
        "PixelPaddingValue=0xF830, SS:PixelPaddingRangeLimit=-2100, BitsAllocated=32, ";
    expectTold({
        {windows, "window 40 400; window 7 1; "},
        {windows + "LINEAR_EXACT", "exact 40 400; exact 300 0.5; exact 7 1; "},
        {windows + "SIGMOID", "sigmoid 40 400; sigmoid 300 0.5; sigmoid 7 1; "},
        {"PresentationLUTShape=INVERSE", "inverse; "},
        {padding + "BitsStored=16", "padding 63436 63536; "},
        {padding + "BitsStored=16, PixelRepresentation=1", "padding -2100 -2000; "},
        {padding + "BitsStored=17", "padding -2100 63536; "},
        {padding + "BitsStored=17, PixelRepresentation=1", "padding -2100 63536; "},
        {"PixelPaddingValue=7", "padding 7 7; "},
        {"PixelPaddingRangeLimit=7", ""},
        {step + "12.1, Modality=XA", ""},
        {step + "12.2, Modality=RF", ""},
        {step + "12.1.1, Modality=", ""},
        {step + "7, Modality=XA", ""},
        {step + "7, Modality=RF" + table, ""},
        {step + "13.1.1, Modality=XA", "rescale 2 -1024; "},
        {step + "2, Modality=CT", "rescale 2 -1024; "},
        {step + "2, Modality=CT" + table, "modality 5 16 1 65535; "},
        {step + "2, Modality=CT, ModalityLUTSequence.LUTData=1", "rescale 2 -1024; "},
        {slice("1", "-1"), "rescale 1 -1; "},
        {slice("3", ""), "rescale 3 0; "},
        {slice("", "5"), "rescale 1 5; "},
        {slice("1", "0"), ""},
        {slice("0", "5"), ""},
    });
}

TEST(Presentation, LookUpTablesOfManyMakesAreUnderstood) {
    std::vector<Told> rows{
        {voi("4\\0\\8", "0x0201\\0xFA03"), "voi 0 8 1 2 3 250; "},
        {voi("3\\0\\8", "0x0201\\0x00FA"), "voi 0 8 1 2 250; "},
        {voi("2\\0\\8", "1\\200"), "voi 0 8 1 200; "},
        {voi("1\\0\\8", "258"), "voi 0 9 258; "},
        {voi("2\\0\\8", "1\\4095"), "voi 0 12 1 4095; "},
        {voi("2\\0\\16", "1\\200"), "voi 0 8 1 200; "},
        {voi("2\\0\\16", "1\\8191"), "voi 0 13 1 8191; "},
        {voi("2\\0\\16", "1\\8192"), "voi 0 16 1 8192; "},
        {voi("2\\0\\17", "1\\32768"), "voi 0 16 1 32768; "},
        {voi("2\\0\\99", "1\\16383"), "voi 0 14 1 16383; "},
        {voi("8\\0\\16", "65281\\65534"), "voi 0 16 65281 65534; "},
        {voi("0\\0\\16", "65281\\65534"), "voi 0 16 65281 65534; "},
        {voi("4\\0\\16", ""), ""},
        {voi("4\\0", "1\\2\\3\\250"), ""},
        {"VOILUTSequence.LUTDescriptor=4\\0\\8", ""},
        {"VOILUTSequence.LUTData=4\\0\\8", ""},
    };
    // The first mapped value is signed when it is said to be or lies beyond an input with negative values;
    // behind a table nothing is negative.
    const std::string same = "LUTDescriptor=2\\0xFC00\\12, LUTData=0\\4095", sign = ", PixelRepresentation=1";
    const std::string unstated = ", " + in("VOILUTSequence", "US:" + same);
    const std::string stated = ", " + in("VOILUTSequence", "SS:" + same);
    const std::string positive = "64512 12 0 4095; ", negative = "-1024 12 0 4095; ";
    rows.insert(rows.end(),
                {{slice("2", "0") + unstated, "rescale 2 0; voi " + positive},
                 {slice("2", "0") + stated, "rescale 2 0; voi " + negative},
                 {slice("1", "-1024") + unstated, "rescale 1 -1024; voi " + negative},
                 {slice("-1", "4095") + unstated, "rescale -1 4095; voi " + positive},
                 {slice("-1", "4094") + unstated, "rescale -1 4094; voi " + negative},
                 // As high as 64512, and one below.
                 {slice("20", "23572") + sign + unstated, "rescale 20 23572; voi " + positive},
                 {slice("20", "23571") + sign + unstated, "rescale 20 23571; voi " + negative},
                 {slice("1", "0") + sign + unstated + ", " + in("ModalityLUTSequence", "US:" + same),
                  "modality " + negative + "voi " + positive},
                 {slice("1", "0") + stated + ", " + in("ModalityLUTSequence", "US:" + same),
                  "modality " + positive + "voi " + negative}});
    expectTold(rows);
}

TEST(Presentation, PalettesArePlainOrSegmentedOfAllThreeColours) {
    const std::string words = palette("2\\0xFFFB\\8", "0\\2\\3\\255", "0\\2\\4\\6", "Segmented");
    const std::string bright = palette("2\\5\\16", "0\\65535", "0\\2048");
    std::vector<Told> rows{
        // All colours together decide on the bits.
        {bright, "red 5 16 0 65535; blue 5 16 0 2048; "},
        {palette("2\\5\\8", "0xFF00", "0xC801"), "red 5 8 0 255; blue 5 8 1 200; "},
        {words, "red 65531 8 3 255; blue 65531 8 4 6; "},
        {words + ", PixelRepresentation=1", "red -5 8 3 255; blue -5 8 4 6; "},
        {words + ", RedPaletteColorLookupTableData=", "red 65531 8 3 255; blue 65531 8 4 6; "},
        {palette("2\\5\\8", "0x0200\\0xFF03", "0x0200\\0x0604", "Segmented"),
         "red 5 8 3 255; blue 5 8 4 6; "},
        {palette("2\\5\\16", "9", ""), ""}};
    for (const char* colour : {"Red", "Green", "Blue"})
        for (const char* part : {"Descriptor", "Data"})
            rows.push_back(
                {std::regex_replace(bright, std::regex(colour + std::string("P\\w+") + part), "PatientID"),
                 ""});
    expectTold(rows);
}

TEST(Presentation, SegmentsOfPalettesAreExpanded) {
    using Entries = std::vector<std::uint16_t>;
    const std::tuple<Bytes, std::size_t, Entries> rows[] = {
        // Discrete 10 20, linear to 60 in four steps, and once more the discrete segment.
        {bytesOf({0, 2, 10, 20, 1, 4, 60, 2, 1, 0, 0, 0, 0}), 99, {10, 20, 30, 40, 50, 60, 10, 20}},
        {bytesOf({0, 1, 10, 1, 2, 15, 1, 2, 10}), 99, {10, 13, 15, 12, 10}},
        {bytesOf({0, 1, 10, 1, 4, 11}), 99, {10, 10, 11, 11, 11}},
        // Downwards, and no further than is asked for.
        {bytesOf({0, 1, 100, 1, 100, 0}), 3, {100, 99, 98}},
        {bytesOf({0, 3, 1, 2, 3, 0, 1, 4}), 3, {1, 2, 3}},
        // Segments that refer to themselves or to nothing, break off or are unknown end the table.
        {bytesOf({2, 255, 0, 0, 0, 0}), 99, {}},
        {bytesOf({2, 1, 99, 0, 0, 0, 0, 1, 7}), 99, {7}},
        {bytesOf({0, 1, 7, 2, 1, 0, 0, 0}), 99, {7}},
        {bytesOf({1, 2, 9}), 99, {}},
        {bytesOf({0, 1, 7, 3, 1, 9}), 99, {7}},
        {bytesOf({0, 9, 1, 2}), 99, {1, 2}}};
    for (const auto& [segments, most, entries] : rows) EXPECT_EQ(expandSegments(segments, 1, most), entries);
    const Bytes words = bytesOf({0, 0, 1, 0, 0, 0, 1, 0, 2, 0, 0xFF, 0xFF, 2, 0, 2, 0, 0, 0, 0, 0});
    EXPECT_EQ(expandSegments(words, 2, 99), (Entries{0, 0x8000, 0xFFFF, 0, 0x8000, 0xFFFF}));
}

TEST(Presentation, ShuttersOfAllShapesAreReadAndIncompleteOnesLeftOut) {
    const std::string all =
        "ShutterShape=RECTANGULAR\\CIRCULAR\\POLYGONAL\\BITMAP, ShutterLeftVerticalEdge=2, "
        "ShutterRightVerticalEdge=99999999999, ShutterUpperHorizontalEdge=7, ShutterLowerHorizontalEdge=7, "
        "CenterOfCircularShutter=-3\\4, RadiusOfCircularShutter=1, ShutterPresentationValue=300, "
        "VerticesOfThePolygonalShutter=1\\1\\1\\9\\9\\9\\5, ShutterOverlayGroup=0x6002, ";
    const std::string edges = "edges 2 1000000 7 7; ", circle = "circle -3 4 1; ",
                      polygon = "polygon 3 1 9; ", bitmap = "bitmap 24578; ", shade = "shade 300; ";
    const std::string round = circle + polygon + bitmap + shade, angular = polygon + bitmap + shade;
    std::string many = "VerticesOfThePolygonalShutter=1";
    for (int i = 0; i < 4097; ++i) many += "\\2\\1";
    expectTold({{all, edges + round},
                {all + "ShutterShape=NONE", shade},
                {all + "ShutterLeftVerticalEdge=?", round},
                {all + "ShutterRightVerticalEdge=1", round},
                {all + "ShutterRightVerticalEdge=2", "edges 2 2 7 7; " + round},
                {all + "ShutterUpperHorizontalEdge=8", round},
                {all + "ShutterLowerHorizontalEdge=", round},
                {all + "CenterOfCircularShutter=3", edges + angular},
                {all + "RadiusOfCircularShutter=0", edges + angular},
                {all + "VerticesOfThePolygonalShutter=1\\1\\9\\9\\5", edges + circle + bitmap + shade},
                {all + many, edges + circle + "polygon 4096 1 2; " + bitmap + shade},
                {all + "ShutterOverlayGroup=0x6020", edges + circle + polygon + shade},
                {all + "SS:ShutterPresentationValue=-1", edges + circle + polygon + bitmap + "shade 0; "}});
}

TEST(Presentation, EnhancedObjectsHaveTheirRulesFrameByFrame) {
    const auto group = [](const std::string& of, const char* center, const std::string& last,
                          const std::string& more) {
        const std::string window = std::string("WindowWidth=100, WindowCenter=") + center;
        return in(of, in("FrameVOILUTSequence", window + ", " + voi("2\\0\\16", "0\\" + last)) + more);
    };
    const std::string circle =
        ", " + in("FrameDisplayShutterSequence",
                  "ShutterShape=CIRCULAR, CenterOfCircularShutter=1\\1, RadiusOfCircularShutter=");
    const std::string slope = ", PixelValueTransformationSequence.RescaleSlope=";
    const std::string frames = "PerFrameFunctionalGroupsSequence";
    const std::string shared =
        slice("1", "0") + ", " +
        group("SharedFunctionalGroupsSequence", "1", "32768", slope + "5" + circle + "6");
    // Where a frame's group names neither window nor table, the header's are taken.
    const std::string both = group(frames + "[0]", "10", "36864", slope + "2" + circle + "9") + ", " +
                             group(frames + "[1]", "20", "40960", "") + ", " + frames +
                             "[2].FrameVOILUTSequence.WindowCenter=, WindowCenter=9, WindowWidth=9, " +
                             voi("2\\0\\16", "0\\61440") + ", " + shared;
    const std::string last = "rescale 5 0; window 1 100; voi 0 16 0 32768; circle 1 1 6; ";
    const std::string first = "rescale 2 0; window 10 100; voi 0 16 0 36864; ";
    const std::string changes = "by frame; shutters by frame; ";
    expectTold({{shared, last},
                {both, first + "circle 1 1 9; " + changes},
                {both, "rescale 5 0; window 20 100; voi 0 16 0 40960; circle 1 1 6; " + changes, 1},
                {both, "rescale 5 0; window 9 9; voi 0 16 0 61440; circle 1 1 6; " + changes, 2},
                {both, last + changes, 3},
                {both, last + changes, -1},
                {both + ", ShutterShape=NONE", first + "by frame; "}});
}

TEST(Presentation, PixelAspectsComeFromTheRatioOrTheSpacing) {
    std::vector<Told> rows{
        {"PixelAspectRatio=4\\3, ImagerPixelSpacing=2\\1", "aspect 0.75; "},
        {"PixelSpacing=8\\1, ImagerPixelSpacing=2\\1", "aspect 0.5; "},
        {"SharedFunctionalGroupsSequence.PixelMeasuresSequence.PixelSpacing=1\\4", "aspect 4; "},
        {"SharedFunctionalGroupsSequence.FramePixelDataPropertiesSequence.ImagerPixelSpacing=1\\4",
         "aspect 4; "}};
    for (const std::string name :
         {"PixelAspectRatio=", "ImagerPixelSpacing=", "PixelSpacing=", "NominalScannedPixelSpacing="}) {
        // A picture of 256 rows would be wider by a pixel; others less than that, or more than is possible.
        for (const auto& [value, aspect] :
             {std::pair("0.2\\0.3", "1.5"), {"1\\10", "10"}, {"10\\1", "0.1"}, {"256\\257", "1.00390625"}})
            rows.push_back({name + value, "aspect " + std::string(aspect) + "; "});
        for (const char* value : {"512\\513", "1\\10.1", "10.1\\1", "0\\1", "1\\0", "0.2"})
            rows.push_back({name + value, ""});
    }
    expectTold(rows);
}

DicomBuilder withOverlay(DicomBuilder image, int rows, int columns, const Bytes& data,
                         std::uint16_t group = 0x6000) {
    const auto tag = [group](std::uint16_t element) { return Tag{group, element}; };
    image.numbers(tag(0x0010), "US", {rows}).numbers(tag(0x0011), "US", {columns});
    image.text(tag(0x0040), "CS", "G").numbers(tag(0x0050), "SS", {-3, 9});
    if (!data.empty()) image.binary(tag(0x3000), "OW", data);
    return image;
}

/// The overlays of a file: group and place, then the bits of each frame and those before and behind.
std::string overlaysOf(const DicomBuilder& builder) {
    const auto file = opened(builder);
    std::ostringstream out;
    for (const Overlay& overlay : file->overlays()) {
        out << std::hex << overlay.group << ' ' << std::dec << overlay.originRow << ' '
            << overlay.originColumn << ' ' << overlay.label;
        for (int frame = -1; frame <= builder.frames; ++frame) {
            out << '|';
            for (const std::uint8_t bit : file->overlayBits(overlay, frame)) out << int(bit);
        }
        out << "; ";
    }
    return out.str();
}

TEST(Overlays, HaveBitsOfTheirOwnOrTakeThemFromThePixels) {
    const DicomBuilder run = DicomBuilder::image(1, 4, 3).gradientPixels();
    DicomBuilder many = run;
    std::string expected;
    for (const int group : {0x5FFE, 0x6000, 0x6010, 0x601E, 0x6020})
        many = withOverlay(many, 3, 3, bytesOf({0b11010101, 1}), static_cast<std::uint16_t>(group));
    many.text({0x601E, 0x1500}, "LO", "Label").numbers({0x6010, 0x0050}, "SS", {4});
    const std::string bits = "|101010111", everywhere = "|" + bits + bits + bits + bits + "; ";
    EXPECT_EQ(overlaysOf(many),
              "6000 -3 9 " + everywhere + "6010 1 1 " + everywhere + "601e -3 9 Label" + everywhere);

    // Impossible ones; the last is as large as its two bytes.
    for (const auto& [rows, columns] : {std::pair(0, 4), {65535, 65535}, {17, 1}, {16, 1}})
        EXPECT_EQ(overlaysOf(withOverlay(run, rows, columns, bytesOf({0, 0}))).empty(), rows != 16);

    // Pixels in the bits from 1 to 12; those of the first and fourth pixel have bit 13, too. A plane may be
    // of another size than the picture.
    const auto embedded = [](int bit, int rows = 1, int columns = 4) {
        DicomBuilder builder = withOverlay(DicomBuilder::image(1, 4, 2, 16, 12), rows, columns, {});
        builder.numbers({0x6000, 0x0102}, "US", {bit}).numbers(tags::HighBit, "US", {12});
        return builder.pixels(bytesOf({3, 0x20, 2, 0, 3, 0x40, 4, 0x60, 0, 0, 0, 0x20, 1, 0, 0, 0x80}));
    };
    for (const auto& [builder, shown] : {std::pair(embedded(13), "||1001|0100|"),
                                         {embedded(0), "||1010|0010|"},
                                         {embedded(15), "||0000|0001|"},
                                         {embedded(13, 2, 3), "||100000|010000|"},
                                         {embedded(13, 1, 6), "||100100|010000|"}})
        EXPECT_EQ(overlaysOf(builder), std::string("6000 -3 9 ") + shown + "; ");
    // A plane without data whose bit belongs to the pixels, or to none, is only a remnant.
    for (const int bit : {1, 12, 16, 40}) EXPECT_EQ(overlaysOf(embedded(bit)), "") << bit;
    EXPECT_EQ(overlaysOf(withOverlay(run, 1, 4, {})), "");
}

TEST(Overlays, OfAnySizeAreReadFrameByFrameInAnyByteOrder) {
    std::mt19937 random(5);
    for (const int rows : {1, 3, 301, 8, 301}) {
        // Planes of an odd number of bytes, so that every other one begins within a word; large ones are not
        // held.
        const int columns = rows == 301 ? 1000 : 1 + int(random() % 30), planes = 8, pixels = rows * columns;
        const int first = 1 + int(random() % 4), stated = 1 + int(random() % 9);
        const Bytes data = pixelsOfFrame(rows, std::size_t(pixels * planes + 15) / 16 * 2);
        auto builder = withOverlay(DicomBuilder::image(4, 4, planes).gradientPixels(), rows, columns, data);
        builder.text({0x6000, 0x0015}, "IS", std::to_string(stated)).numbers({0x6000, 0x0051}, "US", {first});
        const char* syntax = random() % 2 ? explicitUid : bigEndianUid;
        const auto source = std::make_shared<CountingSource>(builder.transferSyntax(syntax).build());
        const auto file = DicomFile::open(source).value();
        for (int frame = 0; frame < planes; ++frame) {
            const int plane = frame + 1 - first;
            std::vector<std::uint8_t> bits;
            for (int i = plane * pixels; plane >= 0 && plane < stated && i < (plane + 1) * pixels; ++i)
                bits.push_back(
                    std::to_integer<std::uint8_t>(data[std::size_t(i / 8)] >> i % 8 & std::byte{1}));
            source->forget();
            EXPECT_TRUE(file->overlayBits(file->overlays().at(0), frame) == bits) << rows << ' ' << frame;
            EXPECT_LE(source->bytes, std::uint64_t(pixels / 8 + 2));
        }
    }
}

}  // namespace
}  // namespace cinedisc::test
