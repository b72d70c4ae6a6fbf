#pragma once

#include <QString>
#include <QStringList>

namespace cinedisc {

/// The toolkit's name for a picture as it lies in memory.
inline const QString pictureInMemory = "application/x-qt-image";

/// What a clipboard is offered beside files of pictures: bitmaps, where it knows them by itself. Elsewhere
/// that would stand for every kind of file that the toolkit can write, and whoever keeps the clipboard would
/// ask for all of them.
inline QStringList bitmapFormats() {
#ifdef Q_OS_WIN
    return {pictureInMemory};
#else
    return {};
#endif
}

}  // namespace cinedisc
