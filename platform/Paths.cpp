#include "platform/Paths.h"

#include "platform/NaturalOrder.h"
#include "platform/io/ProgramArguments.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace cinedisc {

QString joinPath(const QString& folder, const QString& name) {
    // The root of a drive is the one folder whose path ends with a separator.
    return folder.endsWith(QDir::separator()) ? folder + name : folder + QDir::separator() + name;
}

QString findIgnoringCase(const QString& folder, const QStringList& names) {
    QString path = folder;
    for (const QString& name : names) {
        // That a name is there does not tell how it is spelt: some systems do not mind letter case.
        QStringList candidates =
            QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System, QDir::Unsorted);
        candidates.removeIf([&](const QString& c) { return c.compare(name, Qt::CaseInsensitive) != 0; });
        const auto first = std::min_element(candidates.cbegin(), candidates.cend(), naturalLess);
        path = joinPath(path, first == candidates.cend() || candidates.contains(name) ? name : *first);
    }
    return path;
}

QString folderPath(const QString& path) { return QDir::toNativeSeparators(QDir::cleanPath(path)); }

bool isBelow(const QString& path, const QString& folder) {
    return !folder.isEmpty() && folderPath(path).startsWith(joinPath(folderPath(folder), {}));
}

QString withoutLongForm(const QString& path) {
    const QString longForm = R"(\\?\)", share = R"(UNC\)";
    const QString usual = path.startsWith(longForm) ? path.mid(longForm.size()) : path;
    return usual.startsWith(share) ? R"(\\)" + usual.mid(share.size()) : usual;
}

QString programFolder() {
    // A launcher that starts the program by other means tells where it lies itself.
    QString path = qEnvironmentVariable("CINEDISC_PROGRAM");
    if (path.isEmpty()) path = QCoreApplication::applicationFilePath();
    if (path.isEmpty()) path = withoutLongForm(QString::fromStdString(programPath()));
    const QFileInfo running(path);
    const QString called = QCoreApplication::arguments().value(0);
    if (called.contains(u'/')) {
        const QFileInfo asCalled(called);
        if (asCalled.exists() && asCalled.canonicalFilePath() == running.canonicalFilePath()) {
            return folderPath(asCalled.absolutePath());
        }
    }
    return folderPath(running.absolutePath());
}

}  // namespace cinedisc
