#include "tests/fidelity/Comparison.h"
#include "tests/fidelity/ComponentPicture.h"
#include "tests/fidelity/DcmtkEncoding.h"
#include "tests/support/DicomBuilder.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace cinedisc {
namespace {

/// The sample files; none where there are no samples.
QStringList samples(const QStringList& pattern = {"*.dcm"}) {
    const QString folder = qEnvironmentVariable("CINEDISC_SAMPLES");
    if (folder.isEmpty()) return {};
    QStringList paths;
    for (const auto& file : QDir(folder).entryInfoList(pattern, QDir::Files, QDir::Name))
        paths.append(file.filePath());
    return paths;
}

TEST(Fidelity, ShowsLosslessFilesAsTheStandardsFormulasDo) {
    for (const QString& path : samples()) {
        const auto compared = fidelity::compare(path);
        if (!compared.isLossless || compared.frames == 0) continue;
        EXPECT_EQ(compared.frames, compared.expectedFrames) << qPrintable(path);
        ASSERT_TRUE(compared.toPlain) << qPrintable(path);
        EXPECT_TRUE(*compared.toPlain == 0 || *compared.toPlain == 1)
            << qPrintable(path) << " differs by " << *compared.toPlain;
        if (compared.toDcmtk) {
            EXPECT_TRUE(*compared.toDcmtk == 0 || *compared.toDcmtk == 1)
                << qPrintable(path) << " differs from DCMTK's rendering by " << *compared.toDcmtk;
        }
    }
}

TEST(Fidelity, ShowsOnePictureWhateverItsSyntax) {
    const QStringList families[] = {
        {"MR_small_implicit.dcm", "MR_small_expb.dcm", "MR_small_RLE.dcm", "MR_small_jp2klossless.dcm",
         "MR_small_jpeg_ls_lossless.dcm", "MR_small_padded.dcm"},
        {"XA1_UNC.dcm", "XA1_JPH.dcm"},
        {"CT0012.fragmented_no_bot_jpeg_lossless.57.dcm", "CT0012.not_fragmented_no_bot_rle.dcm"},
        {"TestPattern_JPEG-LS-Lossless.dcm", "TestPattern_JPEG-Lossless_RGB.dcm"},
    };
    for (const auto& family : families) {
        const QStringList paths = samples(family);
        if (paths.size() < 2) continue;
        const auto first = fidelity::componentPicture(paths.front());
        for (const QString& path : paths.mid(1)) {
            const auto other = fidelity::componentPicture(path);
            EXPECT_EQ(fidelity::largestDifference(first.first, other.first), 0) << qPrintable(path);
            EXPECT_EQ(fidelity::largestDifference(first.last, other.last), 0) << qPrintable(path);
        }
    }
}

/// A grey picture of 12 of 16 bits with what none of the samples has.
class Covered {
  public:
    Covered() : file_(test::DicomBuilder::image(side, side, 1, 16, 12)) { file_.gradientPixels(); }

    Covered& shutter(const char* shapes) {
        file_.text(shutterShape, "CS", shapes);
        file_.text({0x0018, 0x1602}, "IS", "5").text({0x0018, 0x1604}, "IS", "40");
        file_.text({0x0018, 0x1606}, "IS", "8").text({0x0018, 0x1608}, "IS", "44");
        file_.text({0x0018, 0x1610}, "IS", "25\\22").text({0x0018, 0x1612}, "IS", "19");
        file_.text({0x0018, 0x1620}, "IS", "3\\20\\30\\45\\46\\45\\46\\9\\20\\21");
        file_.numbers({0x0018, 0x1622}, "US", {0x7000}).numbers({0x0018, 0x1623}, "US", {0x6002});
        return overlay(0x6002, {-2, 7});
    }
    Covered& overlay(std::uint16_t group, std::vector<std::int64_t> origin) {
        test::Bytes bits(side * side / 8);
        for (std::size_t i = 0; i < bits.size(); ++i) bits[i] = static_cast<std::byte>(i * 5);
        return plane(group, std::move(origin), 0).data(group, std::move(bits));
    }
    /// In a bit above the values.
    Covered& embedded() {
        test::Bytes cells(side * side * 2);
        for (std::size_t i = 0; i < cells.size(); i += 2) {
            cells[i] = static_cast<std::byte>(i / 2 % 251);
            cells[i + 1] =
                static_cast<std::byte>(i / 64 % 16 + (i % 14 == 0 ? 0x20 : 0) + (i % 6 ? 0x80 : 0));
        }
        file_.pixels(std::move(cells));
        return plane(0x6000, {1, 1}, 13);
    }
    const test::DicomBuilder& file() const { return file_; }

  private:
    static constexpr int side = 48;
    static constexpr dicom::Tag shutterShape{0x0018, 0x1600};
    Covered& plane(std::uint16_t group, std::vector<std::int64_t> origin, int bit) {
        file_.numbers({group, 0x0010}, "US", {side}).numbers({group, 0x0011}, "US", {side});
        file_.text({group, 0x0040}, "CS", "G").numbers({group, 0x0050}, "SS", origin);
        file_.numbers({group, 0x0100}, "US", {bit ? 16 : 1}).numbers({group, 0x0102}, "US", {bit});
        return *this;
    }
    Covered& data(std::uint16_t group, test::Bytes bits) {
        file_.binary({group, 0x3000}, "OW", std::move(bits));
        return *this;
    }

    test::DicomBuilder file_;
};

TEST(Fidelity, CoversPicturesAsTheStandardSays) {
    const QTemporaryDir folder;
    const auto differs = [&](const Covered& covered, E_TransferSyntax syntax) {
        const QString path = folder.filePath("covered.dcm");
        covered.file().writeTo(path.toStdString());
        fidelity::encode(path.toStdString(), syntax);
        const auto compared = fidelity::compare(path);
        EXPECT_EQ(compared.frames, 1) << qPrintable(compared.notice);
        return compared.toPlain.value_or(-1);
    };
    for (const char* shapes : {"RECTANGULAR", "CIRCULAR", "POLYGONAL", "BITMAP", "POLYGONAL\\BITMAP",
                               "RECTANGULAR\\CIRCULAR\\POLYGONAL\\BITMAP"})
        EXPECT_EQ(differs(Covered().shutter(shapes), EXS_LittleEndianExplicit), 0) << shapes;
    for (const auto syntax : {EXS_LittleEndianExplicit, EXS_BigEndianExplicit, EXS_RLELossless,
                              EXS_JPEGProcess14SV1, EXS_JPEGLSLossless}) {
        EXPECT_EQ(differs(Covered().embedded(), syntax), 0) << DcmXfer(syntax).getXferName();
        EXPECT_EQ(differs(Covered().embedded().shutter("CIRCULAR"), syntax), 0)
            << DcmXfer(syntax).getXferName();
    }
}

}  // namespace
}  // namespace cinedisc
