#include "control/ezDICOMX.h"
#include "tests/fidelity/Comparison.h"
#include "tests/support/DicomBuilder.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <random>

namespace cinedisc {
namespace {

TEST(Fidelity, ShowsLosslessFilesAsTheStandardsFormulasDo) {
    const QString folder = qEnvironmentVariable("CINEDISC_SAMPLES");
    if (folder.isEmpty()) GTEST_SKIP() << "no samples here";
    for (const auto& file : QDir(folder).entryInfoList({"*.dcm"}, QDir::Files, QDir::Name)) {
        SCOPED_TRACE(qPrintable(file.fileName()));
        const auto compared = fidelity::compare(file.filePath());
        if (!compared.isLossless || compared.frames == 0) continue;
        EXPECT_EQ(compared.frames, compared.expectedFrames);
        EXPECT_TRUE(compared.toPlain == 0 || compared.toPlain == 1) << compared.toPlain.value_or(-2);
        const int toDcmtk = compared.toDcmtk.value_or(0);
        EXPECT_TRUE(toDcmtk == 0 || toDcmtk == 1) << "differs from DCMTK's rendering by " << toDcmtk;
    }
}

/// Writes files of which all that decides about their pixels is as chance has it.
class RandomFile {
  public:
    explicit RandomFile(unsigned seed) : random_(seed) {
        addPixels();
        if (kind_ == Kind::Grey || kind_ == Kind::Float) addGreyRules();
        if (kind_ == Kind::Palette) addPalette();
        if (any(2) == 0) addShutter();
        for (const std::uint16_t group : {0x6000, 0x6002, 0x6004}) {
            if (any(2) == 0) addOverlay(group);
        }
    }
    void writeTo(const QString& path) { file_.writeTo(path.toStdString()); }
    /// Greys half way between two are rounded before they are inverted, or after.
    int mostDifference() const { return isInverse_ ? 1 : 0; }

  private:
    enum class Kind { Grey, Palette, Colour, Float };
    static constexpr int side = 48;

    int any(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    std::string decimal(double from, double to) {
        return std::to_string(std::uniform_real_distribution(from, to)(random_));
    }
    std::string list(std::initializer_list<int> values) {
        std::string text;
        for (const int value : values) text += (text.empty() ? "" : "\\") + std::to_string(value);
        return text;
    }
    test::Bytes noise(int size) {
        test::Bytes bytes(static_cast<std::size_t>(size));
        for (auto& byte : bytes) byte = static_cast<std::byte>(random_());
        return bytes;
    }
    std::vector<std::int64_t> table(int count, int bits) {
        std::vector<std::int64_t> entries(static_cast<std::size_t>(count));
        for (auto& entry : entries) entry = any(1 << bits);
        return entries;
    }

    void addPixels() {
        kind_ =
            std::array{Kind::Grey, Kind::Grey, Kind::Grey, Kind::Palette, Kind::Colour, Kind::Float}[any(6)];
        allocated_ = kind_ == Kind::Float ? 32 : kind_ == Kind::Colour ? 8 : 8 << any(2);
        stored_ = kind_ == Kind::Colour ? 8 : 1 + any(allocated_);
        isSigned_ = kind_ == Kind::Grey && any(3) == 0;
        const int frames = kind_ == Kind::Float ? 1 : 3;
        file_ = test::DicomBuilder::image(side, side, frames, allocated_, stored_);
        file_.numbers({0x0028, 0x0103}, "US", {isSigned_});
        // Of projections the modality step is left out.
        if (any(4))
            file_.text({0x0008, 0x0060}, "CS", "CT")
                .text({0x0008, 0x0016}, "UI", "1.2.840.10008.5.1.4.1.1.2");
        if (kind_ == Kind::Colour) {
            file_.numbers({0x0028, 0x0002}, "US", {3}).numbers({0x0028, 0x0006}, "US", {any(2)});
            file_.text({0x0028, 0x0004}, "CS", "RGB");
        }
        const int samples = side * side * frames * (kind_ == Kind::Colour ? 3 : 1);
        if (kind_ != Kind::Float) {
            file_.pixels(noise(samples * allocated_ / 8), allocated_ > 8 ? "OW" : "OB");
            return;
        }
        std::vector<double> values(static_cast<std::size_t>(samples));
        for (auto& value : values) value = std::uniform_real_distribution(-9.0, 9.0)(random_);
        file_.reals({0x7FE0, 0x0008}, "OF", values);
        for (const std::uint16_t element : {0x0101, 0x0102, 0x0103}) file_.remove({0x0028, element});
    }
    void addGreyRules() {
        const auto lut = [&](dicom::Tag sequence, int first, int bits) {
            const int entries = 2 + any(300);
            test::DicomItem item;
            item.numbers({0x0028, 0x3002}, "US", {entries, first, bits});
            item.numbers({0x0028, 0x3006}, "US", table(entries, bits));
            file_.sequence(sequence, {item});
        };
        isInverse_ = any(3) == 0;
        if (isInverse_) file_.text({0x0028, 0x0004}, "CS", "MONOCHROME1");
        const double span = kind_ == Kind::Float ? 9 : std::exp2(stored_);
        const bool hasWindow = any(3) > 0;
        if (hasWindow) {
            const double narrowest = kind_ == Kind::Float ? 1 : std::min(8.0, span);
            file_.text({0x0028, 0x1050}, "DS", decimal(-span, 2 * span));
            file_.text({0x0028, 0x1051}, "DS", any(5) ? decimal(narrowest, span * 2) : "1");
            file_.text({0x0028, 0x1056}, "CS", std::array{"LINEAR", "LINEAR_EXACT", "SIGMOID"}[any(3)]);
        }
        if (kind_ == Kind::Float) return;
        if (any(3) == 0) lut({0x0028, 0x3010}, any(200), 8 + any(9));
        // Without a window, the least and the greatest value of the first frame give it.
        if (any(4) == 0 && hasWindow)
            lut({0x0028, 0x3000}, any(100), 12);
        else if (any(2))
            file_.text({0x0028, 0x1052}, "DS", decimal(-500, 500))
                .text({0x0028, 0x1053}, "DS", decimal(-2, 4));
        if (stored_ < 4 || any(3)) return;
        const int padding = any(1 << (stored_ - 1)), limit = any(1 << (stored_ - 1));
        file_.numbers({0x0028, 0x0120}, "US", {padding});
        if (any(2)) file_.numbers({0x0028, 0x0121}, "US", {limit});
    }
    void addPalette() {
        file_.text({0x0028, 0x0004}, "CS", "PALETTE COLOR");
        for (const std::uint16_t color : {1, 2, 3}) {
            const int entries = 2 + any(300);
            const auto element = [&](int of) { return static_cast<std::uint16_t>(of + color); };
            file_.numbers({0x0028, element(0x1100)}, "US", {entries, any(20), 16});
            file_.numbers({0x0028, element(0x1200)}, "US", table(entries, 16));
        }
    }
    /// All shapes hold the middle of the picture.
    void addShutter() {
        std::string shapes;
        for (const char* shape : {"RECTANGULAR", "CIRCULAR", "POLYGONAL", "BITMAP"})
            if (any(2)) shapes += (shapes.empty() ? "" : "\\") + std::string(shape);
        file_.text({0x0018, 0x1600}, "CS", shapes.empty() ? "RECTANGULAR" : shapes);
        for (const std::uint16_t edge : {0x1602, 0x1606})
            file_.text({0x0018, edge}, "IS", list({any(30) - 9}));
        for (const std::uint16_t edge : {0x1604, 0x1608})
            file_.text({0x0018, edge}, "IS", list({26 + any(30)}));
        file_.text({0x0018, 0x1610}, "IS", list({15 + any(18), 15 + any(18)}));
        file_.text({0x0018, 0x1612}, "IS", list({14 + any(20)}));
        const int notch = 22 - any(20);
        file_.text({0x0018, 0x1620}, "IS",
                   list({1 + any(9), 20, 30 + any(9), 45, 46, 45, 46, any(9), 26 + any(9), notch}));
        file_.numbers({0x0018, 0x1622}, "US", {any(65536)}).numbers({0x0018, 0x1623}, "US", {0x6002});
    }
    void addOverlay(std::uint16_t group) {
        const bool isEmbedded = group == 0x6000 && kind_ == Kind::Grey && allocated_ == 16 && stored_ < 16;
        const int rows = isEmbedded ? side : 4 * (1 + any(15)),
                  columns = isEmbedded ? side : 4 * (1 + any(15));
        const int ofFrames = !isEmbedded && any(3) == 0 ? 2 : 1;
        file_.numbers({group, 0x0010}, "US", {rows}).numbers({group, 0x0011}, "US", {columns});
        file_.text({group, 0x0040}, "CS", "G");
        file_.numbers({group, 0x0050}, "SS", {isEmbedded ? 1 : any(60) - 9, isEmbedded ? 1 : any(60) - 9});
        file_.numbers({group, 0x0100}, "US", {isEmbedded ? 16 : 1});
        file_.numbers({group, 0x0102}, "US", {isEmbedded ? stored_ + any(16 - stored_) : 0});
        if (isEmbedded) return;
        if (ofFrames > 1) {
            file_.text({group, 0x0015}, "IS", "2");
            file_.numbers({group, 0x0051}, "US", {1 + any(3)});
        }
        file_.binary({group, 0x3000}, "OW", noise(rows * columns / 8 * ofFrames));
    }

    std::mt19937 random_;
    test::DicomBuilder file_;
    Kind kind_ = Kind::Grey;
    int allocated_ = 8, stored_ = 8;
    bool isSigned_ = false, isInverse_ = false;
};

TEST(Fidelity, ShowsAnyFileAsTheStandardsFormulasDo) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("any.dcm");
    for (unsigned seed = 1; seed <= 300; ++seed) {
        RandomFile file(seed);
        file.writeTo(path);
        const auto compared = fidelity::compare(path);
        ASSERT_GT(compared.frames, 0) << "seed " << seed << ": " << qPrintable(compared.notice);
        const int difference = compared.toPlain.value_or(-1);
        EXPECT_TRUE(difference >= 0 && difference <= file.mostDifference())
            << "seed " << seed << " differs by " << difference;
    }
}

TEST(RealFiles, AreShownWhateverTheirNameAsFarAsTheyGoOrTheReasonIsSaid) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("Ärzte 冠動脈 <b>.dcm");
    auto run = test::DicomBuilder::image(130, 150, 10);
    run.gradientPixels().writeTo(path.toStdU16String());
    QFile file(path);
    ASSERT_TRUE(file.resize(file.size() - 130 * 150 * 4 - 10));
    ezDICOMX view;
    view.resize(150, 130);
    view.putFileName(path);
    ASSERT_EQ(view.FrameCount(), 5) << qPrintable(view.accessibleDescription());
    view.putCurrentFrame(5);
    EXPECT_EQ(qRed(view.grab().toImage().pixel(10, 20)), 28 + 60 + 10);
    EXPECT_EQ(view.accessibleDescription(), "The file is cut off: 5 of 10 frames can be shown");
    for (const QString& none :
         {folder.path(), QString("/dev/zero"), QString("relative.dcm"), QString("\n")}) {
        ASSERT_NO_THROW(view.putFileName(none));
        EXPECT_EQ(view.FrameCount(), 0) << qPrintable(none);
        EXPECT_FALSE(view.accessibleDescription().isEmpty()) << qPrintable(none);
    }
}

}  // namespace
}  // namespace cinedisc
