#pragma once

#include <QString>
#include <QStringList>

namespace cinedisc {

/// Folder, the platform's separator, name: the one way in which full paths are built, so that they can be
/// compared as strings.
QString joinPath(const QString& folder, const QString& name);

/// `names` below `folder`, each found whatever its letter case and spelt as it stands on the disc. A name
/// that is not there stays as given, and so do those after it.
QString findIgnoringCase(const QString& folder, const QStringList& names);

/// A folder's path as the rest of the program writes it: native separators, and none at its end but a
/// root's.
QString folderPath(const QString& path);

/// Whether the file or folder at `path` lies below `folder`, in whatever depth. Compares the paths only;
/// nothing lies below "".
bool isBelow(const QString& path, const QString& folder);

/// A program's own path as people write it. Started as `\\?\UNC\server\share\...` it is told so by the
/// system, or `UNC\server\share\...`; the toolkit does not know these forms.
QString withoutLongForm(const QString& path);

/// The folder of the running executable, or of the launcher that started it. A link to either counts where
/// the link lies.
QString programFolder();

}  // namespace cinedisc
