#include "dicom/TransferSyntax.h"
#include "tests/fidelity/Comparison.h"

#include <QDir>
#include <QGuiApplication>
#include <QTextStream>

using namespace cinedisc;

namespace {

QString cell(const std::optional<int>& difference) {
    return difference ? QString::number(*difference) : QString();
}

}  // namespace

/// fidelity SAMPLES: a line for every sample file, its fields parted by tabulators: name, syntax, frames,
/// frames that are expected, decoder, differences to both references, notice.
int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    QTextStream out(stdout);
    const QDir folder(QString::fromLocal8Bit(argv[argc - 1]));
    for (const QString& name : folder.entryList({"*.dcm"}, QDir::Files)) {
        const auto compared = fidelity::compare(folder.filePath(name));
        const auto* known = dicom::findTransferSyntax(compared.syntaxUid.toStdString());
        out << name << '\t' << (known ? std::string(known->name).c_str() : "unknown") << '\t'
            << compared.frames << '\t' << compared.expectedFrames << '\t' << compared.decoder << '\t'
            << cell(compared.toPlain) << '\t' << cell(compared.toDcmtk) << '\t' << compared.notice << '\n';
    }
}
