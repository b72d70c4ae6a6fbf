#include "control/PictureExport.h"

#include "platform/RunTimeError.h"

#include <QDir>
#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>

#include <algorithm>

namespace cinedisc {

namespace {

constexpr int jpegQuality = 97;
constexpr int longestJpegSide = 65500;  // of the library that writes it

/// 8-bit greys as a palette of the same greys: every program reads them as they are.
QImage withGreyPalette(const QImage& picture) {
    if (picture.format() != QImage::Format_Grayscale8) return picture.convertToFormat(QImage::Format_RGB32);
    QImage result(picture.bits(), picture.width(), picture.height(), picture.bytesPerLine(),
                  QImage::Format_Indexed8);
    QList<QRgb> greys;
    for (int grey = 0; grey < 256; ++grey) greys.append(qRgb(grey, grey, grey));
    result.setColorTable(greys);
    return result;
}

}  // namespace

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
    const int side = std::max(picture.width(), picture.height());
    if (format == PictureFormat::Jpeg && side > longestJpegSide) throw RunTimeError::pathFileAccess();
    if (!target.absoluteDir().exists()) throw RunTimeError::pathNotFound();
    if (target.exists() && !target.isFile()) throw RunTimeError::pathFileAccess();

    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) throw RunTimeError::pathFileAccess();
    QImageWriter writer(&file, format == PictureFormat::Bmp ? "bmp" : "jpeg");
    if (format == PictureFormat::Jpeg) writer.setQuality(jpegQuality);
    const bool written = writer.write(format == PictureFormat::Bmp ? withGreyPalette(picture) : picture);
    if (!written || !file.commit()) throw RunTimeError::pathFileAccess();
}

}  // namespace cinedisc
