#include "dicom/TransferSyntax.h"
#include "tests/fidelity/Comparison.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QMap>
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

/// What a reader of the table should know about a sample file: lines of a file name, a tabulator, a remark.
QMap<QString, QString> remarksIn(const QString& path) {
    QFile file(path);
    QMap<QString, QString> remarks;
    if (!file.open(QFile::ReadOnly)) return remarks;
    for (const QString& line : QString::fromUtf8(file.readAll()).split('\n'))
        remarks[line.section('\t', 0, 0)] = line.section('\t', 1);
    return remarks;
}

QString row(const QString& name, const Comparison& compared, const QString& remark) {
    const auto* known = dicom::findTransferSyntax(compared.syntaxUid.toStdString());
    const QString syntax =
        known ? QString::fromUtf8(known->name.data(), static_cast<int>(known->name.size())) : "unknown";
    QStringList remarks;
    if (!compared.notice.isEmpty()) remarks << "Notice " + quoted(compared.notice);
    if (!remark.isEmpty()) remarks << remark;
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

/// fidelity SAMPLES REMARKS: writes the table to the standard output; fails when a picture differs and nobody
/// says why.
int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    QTextStream out(stdout), errors(stderr);
    const QDir folder(argc > 2 ? QString::fromLocal8Bit(argv[1]) : QString());
    QStringList names = argc > 2 ? folder.entryList({"*.dcm"}, QDir::Files) : QStringList();
    if (names.isEmpty()) {
        errors << "usage: fidelity FOLDER-OF-SAMPLES REMARKS\n";
        return 2;
    }
    std::sort(names.begin(), names.end());
    const auto remarks = remarksIn(QString::fromLocal8Bit(argv[2]));
    int unexplained = 0;
    out << introduction;
    for (const QString& name : std::as_const(names)) {
        const Comparison compared = fidelity::compare(folder.filePath(name));
        out << row(name, compared, remarks[name]) << '\n';
        const bool differs = isFar(compared.toPlain) || isFar(compared.toDcmtk) ||
                             (compared.frames > 0 && !compared.toPlain) ||
                             compared.frames != compared.expectedFrames;
        if (!differs || !remarks[name].isEmpty()) continue;
        errors << name << ": the difference is not explained\n";
        ++unexplained;
    }
    return unexplained ? 1 : 0;
}
