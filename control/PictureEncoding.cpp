#include "control/PictureEncoding.h"

#include "control/JpegEncoding.h"

#include <QImageWriter>
#include <QList>

namespace cinedisc {

namespace {

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

bool encode(const QImage& picture, PictureFormat format, QIODevice& into) {
    // The toolkit's own JPEGs have a quarter of the colours only.
    if (format == PictureFormat::Jpeg) return encodeJpeg(picture, into);
    if (format == PictureFormat::Bmp) return QImageWriter(&into, "bmp").write(withGreyPalette(picture));
    // A sixth of the time that the usual compression takes, for files that are hardly larger.
    constexpr int fastCompression = 80;
    QImageWriter writer(&into, "png");
    writer.setQuality(fastCompression);
    return writer.write(picture);
}

}  // namespace cinedisc
