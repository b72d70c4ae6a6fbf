#include "tests/fidelity/Comparison.h"
#include "tests/fidelity/ComponentPicture.h"

#include <QDir>
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

}  // namespace
}  // namespace cinedisc
