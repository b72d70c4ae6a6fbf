#include "control/PictureExport.h"

#include "platform/RunTimeError.h"
#include "platform/io/FileSizeLimit.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace cinedisc {

PictureFormat formatFor(const QString& path, PictureFormat otherwise) {
    if (path.endsWith(".bmp", Qt::CaseInsensitive)) return PictureFormat::Bmp;
    if (path.endsWith(".jpg", Qt::CaseInsensitive) || path.endsWith(".jpeg", Qt::CaseInsensitive)) {
        return PictureFormat::Jpeg;
    }
    return otherwise;
}

void exportPicture(const QImage& picture, const QString& path, PictureFormat format) {
    const QFileInfo target(path);
    if (picture.isNull() || path.isEmpty()) throw RunTimeError::pathFileAccess();
    if (!target.absoluteDir().exists()) throw RunTimeError::pathNotFound();
    if (target.exists() && !target.isFile()) throw RunTimeError::pathFileAccess();

    const FileSizeLimit mayBeMet;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) throw RunTimeError::pathFileAccess();
    if (!encode(picture, format, file) || !file.commit()) throw RunTimeError::pathFileAccess();
}

}  // namespace cinedisc
