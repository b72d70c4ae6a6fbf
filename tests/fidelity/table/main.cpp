#include "dicom/TransferSyntax.h"
#include "tests/fidelity/Comparison.h"
#include "tests/fidelity/ComponentPicture.h"
#include "tests/fidelity/table/MadeFiles.h"
#include "tests/fidelity/table/Remarks.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <utility>

using namespace cinedisc;
using fidelity::Comparison;

namespace {

constexpr int tolerance = 1;

const char introduction[] = R"(# Fidelity

Every sample file as the viewer component displays it at 100 % (first and last frame, through its own pipeline),
compared with two pictures that are computed without it. Differences are in grey levels of 255, the largest of any
pixel and colour. Made by `scripts/fidelity`.

- *Plain*: header values and pixels read by DCMTK (JPEG 2000: by OpenJPEG), the standard's formulas applied one
  pixel after the other, with rescale or modality LUT, window or VOI LUT, padding, shutter and overlays.
- *DCMTK*: DCMTK's own rendering of the same frame with the window that the rules of this viewer choose, and
  without the modality step for angiograms. It cuts greys off where the standard's formula is rounded here: hence
  differences of 1.

Shutters of all four shapes and overlays in unused bits of native and compressed cells, which hardly any sample has,
are compared with the plain picture on files that the tests make; there the difference is 0.

| File | Syntax | Frames | Reference decoder | Plain | DCMTK | Remark |
|---|---|---|---|---|---|---|
)";

QString cell(const std::optional<int>& difference) {
    if (!difference) return "–";
    return *difference < 0 ? "another size" : QString::number(*difference);
}

QString quoted(const QString& notice) { return '"' + notice.chopped(1) + '"'; }

QString row(const QString& name, const Comparison& compared) {
    const auto* known = dicom::findTransferSyntax(compared.syntaxUid.toStdString());
    const QString syntax =
        known ? QString::fromUtf8(known->name.data(), static_cast<int>(known->name.size())) : "unknown";
    QStringList remarks;
    if (!compared.notice.isEmpty()) remarks << "Notice " + quoted(compared.notice);
    if (const QString remark = fidelity::remarkOn(name); !remark.isEmpty()) remarks << remark;
    const QString decoder = compared.frames > 0 ? compared.decoder : "–";
    return QStringList{"| `" + name + '`',
                       syntax,
                       QString::number(compared.frames),
                       decoder,
                       cell(compared.toPlain),
                       cell(compared.toDcmtk),
                       remarks.join(". ") + " |"}
        .join(" | ");
}

bool isFar(const std::optional<int>& difference) {
    return difference && (*difference < 0 || *difference > tolerance);
}

}  // namespace

const char madeIntroduction[] = R"(
Files of kinds that no sample has, made by the same command. *Difference* is that to the same picture in a file
that says it plainly: uncompressed, its values within their range, or with a scan header as it should be. Pictures
that would take more work or memory than their bytes can justify, or more than the program may hold, are told of
before a decoder begins.

| File | What it is | Bytes | Shown | Difference |
|---|---|---|---|---|
)";

QString madeRow(const fidelity::MadeFile& made, const QDir& folder, bool& differs) {
    const QString name = QString::fromStdString(made.name), path = folder.filePath(name);
    made.make().writeTo(path.toStdString());
    QString notice, difference = "–";
    if (made.twin) {
        const QString twin = folder.filePath("plain_" + name);
        made.twin().writeTo(twin.toStdString());
        const auto picture = fidelity::componentPicture(path), expected = fidelity::componentPicture(twin);
        const int largest = fidelity::largestDifference(picture.first, expected.first);
        differs = picture.frames != expected.frames || largest < 0 || largest > tolerance;
        difference = QString::number(largest);
        notice = picture.notice;
    } else {
        notice = fidelity::noticeInPlaceOf(path);
    }
    const QString shown = notice.isEmpty() ? "the picture" : quoted(notice);
    const QString bytes = QString::number(QFileInfo(path).size());
    return QStringList{"| `" + name + '`', QString::fromStdString(made.what), bytes, shown, difference + " |"}
        .join(" | ");
}

/// fidelity SAMPLES [FOLDER]: writes the table to the standard output; fails when a picture differs and
/// nobody says why. The files it makes are left in FOLDER.
int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    QTextStream out(stdout), errors(stderr);
    const QDir folder(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString());
    QStringList names = argc > 1 ? folder.entryList({"*.dcm"}, QDir::Files) : QStringList();
    if (names.isEmpty()) {
        errors << "usage: fidelity FOLDER-OF-SAMPLES\n";
        return 2;
    }
    std::sort(names.begin(), names.end());
    int unexplained = 0;
    out << introduction;
    for (const QString& name : std::as_const(names)) {
        const Comparison compared = fidelity::compare(folder.filePath(name));
        out << row(name, compared) << '\n';
        const bool differs = isFar(compared.toPlain) || isFar(compared.toDcmtk) ||
                             (compared.frames > 0 && !compared.toPlain) ||
                             compared.frames != compared.expectedFrames;
        if (!differs || !fidelity::remarkOn(name).isEmpty()) continue;
        errors << name << ": the difference is not explained\n";
        ++unexplained;
    }
    out << madeIntroduction;
    const QTemporaryDir temporary;
    const QDir made(argc > 2 ? QString::fromLocal8Bit(argv[2]) : temporary.path());
    for (const auto& file : fidelity::madeFiles()) {
        bool differs = false;
        out << madeRow(file, made, differs) << '\n';
        if (!differs) continue;
        errors << QString::fromStdString(file.name) << ": is not shown as it should be\n";
        ++unexplained;
    }
    return unexplained ? 1 : 0;
}
