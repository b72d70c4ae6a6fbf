// fuzz_seeds CORPUS FILE...: small inputs for all targets, from what encoders make and from DICOM files and
// catalogues.

#include "dicom/DicomFile.h"
#include "dicom/Tags.h"
#include "fuzzing/CodedInput.h"
#include "tests/codecs/Encoders.h"
#include "tests/support/DicomBuilder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

using namespace cinedisc;
using dicom::Compression;
using Coded = std::vector<std::uint8_t>;

constexpr std::size_t longest = 1 << 16;  // of what the fuzzer makes

class Corpus {
  public:
    explicit Corpus(std::filesystem::path folder) : folder_(std::move(folder)) {}

    void add(const char* target, fuzzing::Bytes bytes) {
        std::filesystem::create_directories(folder_ / target);
        std::ofstream file(folder_ / target / ("seed" + std::to_string(++count_)), std::ios::binary);
        bytes = bytes.first(std::min(bytes.size(), longest));
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    void add(const char* target, const std::string& text) { add(target, std::as_bytes(std::span(text))); }
    void addFrame(const char* target, fuzzing::Bytes stream, const dicom::PixelFormat& format) {
        fuzzing::CodedInput input;
        input.format = format;
        input.stream = stream;
        add(target, input.written());
    }
    void addFile(fuzzing::Bytes bytes) {
        for (const char* target : {"header", "frames", "presentation"}) add(target, bytes);
    }

  private:
    std::filesystem::path folder_;
    int count_ = 0;
};

/// A file of the given frames with something of all that is drawn.
void addFile(Corpus& corpus, const test::Raster& raster, const std::string& syntax, const Coded& stream) {
    const auto bits = raster.bits > 8 ? 16 : 8;
    auto file = test::DicomBuilder::image(raster.rows, raster.columns, 3, bits, raster.bits);
    if (raster.components == 3) file.numbers({0x0028, 0x0002}, "US", {3}).text({0x0028, 0x0004}, "CS", "RGB");
    file.text({0x0018, 0x1600}, "CS", "CIRCULAR\\RECTANGULAR\\POLYGONAL")
        .text({0x0018, 0x1610}, "IS", "9\\8");
    file.text({0x0018, 0x1612}, "IS", "7").text({0x0018, 0x1620}, "IS", "1\\1\\9\\15\\14\\2");
    for (const std::uint16_t edge : {0x1602, 0x1604, 0x1606, 0x1608})
        file.text({0x0018, edge}, "IS", edge & 4 ? "15" : "2");
    file.numbers({0x6000, 0x0010}, "US", {8}).numbers({0x6000, 0x0011}, "US", {8});
    file.text({0x6000, 0x0040}, "CS", "G").numbers({0x6000, 0x0050}, "SS", {3, -2});
    file.numbers({0x6000, 0x0100}, "US", {1}).numbers({0x6000, 0x0102}, "US", {0});
    file.binary({0x6000, 0x3000}, "OW", test::Bytes(8, std::byte{0x5A}));
    test::DicomItem table;
    table.numbers({0x0028, 0x3002}, "US", {4, 1, 12}).numbers({0x0028, 0x3006}, "US", {0, 9, 99, 4000});
    file.sequence({0x0028, bits > 8 ? std::uint16_t{0x3010} : std::uint16_t{0x3000}}, {table});
    file.text({0x0028, 0x1050}, "DS", "90").text({0x0028, 0x1051}, "DS", "70");
    file.text({0x0010, 0x0010}, "PN", "DEMO^ONE").text({0x0008, 0x0005}, "CS", "ISO 2022 IR 87");
    if (!syntax.empty()) file.transferSyntax(syntax);
    const auto bytes = std::as_bytes(std::span(stream));
    if (stream.empty())
        file.gradientPixels();
    else
        file.encapsulatedFrames(std::vector<test::Bytes>(3, {bytes.begin(), bytes.end()}),
                                test::OffsetTable::Filled);
    corpus.addFile(file.build());
}

void addPalette(Corpus& corpus) {
    auto file = test::DicomBuilder::image(16, 16, 1);
    file.text({0x0028, 0x0004}, "CS", "PALETTE COLOR");
    for (const std::uint16_t color : {1, 2, 3}) {
        const auto element = [&](int of) { return static_cast<std::uint16_t>(of + color); };
        file.numbers({0x0028, element(0x1100)}, "US", {9, 1, 16});
        // Discrete, linear and indirect segments.
        file.numbers({0x0028, element(0x1220)}, "US", {0, 2, 7, 900, 1, 4, 60000, 2, 1, 0, 0});
    }
    corpus.addFile(file.gradientPixels().build());
}

void addMade(Corpus& corpus) {
    const std::string uid = "1.2.840.10008.1.2.";
    for (const int components : {1, 3})
        for (const int bits : {8, 12}) {
            if (components == 3 && bits == 12) continue;
            const auto raster = test::raster(16, 18, components, bits);
            const auto add = [&](const char* target, const std::string& syntax, const Coded& stream) {
                corpus.addFrame(target, std::as_bytes(std::span(stream)), test::formatOf(raster));
                addFile(corpus, raster, uid + syntax, stream);
            };
            add("rle", "5", test::rleEncoded(raster));
            for (const int predictor : {1, 4, 7})
                add("lossless", "4.70", test::losslessEncoded(raster, {predictor, 0, predictor != 4}));
            for (const auto order : {test::LsInterleave::None, test::LsInterleave::Line})
                add("jpegls", "4.80", test::jpegLsEncoded(raster, order == test::LsInterleave::Line, order));
            using enum test::LossyProcess;
            for (const auto process : {Baseline, Sequential, Progressive})
                if (process != Baseline || bits == 8)
                    add("jpeg", "4.51", test::dcmtkLossy(raster, process, 80));
            for (const bool boxed : {false, true}) {
                test::Jpeg2000Making making;
                making.reversible = making.inFileFormat = boxed;
                making.tileSize = boxed ? 0 : 12;
                add("jpeg2000", "4.90", test::jpeg2000Encoded(raster, making));
            }
        }
    for (const char* syntax : {"", "1.2.840.10008.1.2", "1.2.840.10008.1.2.2", "1.2.840.10008.1.2.1.99"})
        for (const int bits : {8, 12}) addFile(corpus, test::raster(16, 18, 1, bits), syntax, {});
    addPalette(corpus);
    const Coded cells(16 * 18 * 4, 0x5A);
    for (const int bits : {1, 8, 12, 32})
        corpus.addFrame("native", std::as_bytes(std::span(cells)), test::greyFormat(16, 18, bits));
    for (const auto photometric : {dicom::Photometric::Rgb, dicom::Photometric::YbrFull422})
        corpus.addFrame("native", std::as_bytes(std::span(cells)), test::colourFormat(16, 18, photometric));
    for (const char* terms :
         {"ISO_IR 100", "ISO_IR 192", "GB18030", "ISO_IR 13", "\\ISO 2022 IR 87\\ISO 2022 IR 159",
          "\\ISO 2022 IR 149", "\\ISO 2022 IR 58", "ISO 2022 IR 126\\ISO 2022 IR 144"})
        corpus.add("text", terms + std::string("\nA^B=\x1B$B;3ED\x1B(B^\x1B$(DB\xE4=\x1B$)C\xB1\xE8\\"));
}

const char* targetOf(dicom::Compression compression) {
    switch (compression) {
        case Compression::None:
            return "native";
        case Compression::Rle:
            return "rle";
        case Compression::JpegLs:
            return "jpegls";
        case Compression::Jpeg2000:
            return "jpeg2000";
        default:
            return "jpeg";
    }
}

void addFrom(Corpus& corpus, const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    if (path.extension() == ".xml") return corpus.add("catalogue", bytes);
    if (path.filename() == "DICOMDIR") return corpus.add("directory", bytes);
    if (bytes.size() <= longest) corpus.addFile(std::as_bytes(std::span(bytes)));
    const auto file = dicom::DicomFile::open(path.string());
    if (!file) return;
    const auto& header = file.value()->header();
    corpus.add("text", header.string(dicom::tags::SpecificCharacterSet) + "\n" +
                           header.string(dicom::tags::PatientName));
    if (file.value()->frameCount() == 0) return;
    const auto frame = file.value()->readFrame(0);
    if (!frame || frame.value().bytes().size() > longest) return;
    const auto& format = file.value()->pixelFormat();
    const auto compression = file.value()->compression();
    corpus.addFrame(targetOf(compression), frame.value().bytes(), format);
    if (compression == Compression::Jpeg) corpus.addFrame("lossless", frame.value().bytes(), format);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    Corpus corpus(argv[1]);
    addMade(corpus);
    for (int i = 2; i < argc; ++i) addFrom(corpus, argv[i]);
}
