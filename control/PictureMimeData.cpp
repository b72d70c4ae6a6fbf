#include "control/PictureMimeData.h"

#include "control/PictureEncoding.h"
#include "platform/widgets/BitmapFormats.h"

#include <QBuffer>
#include <QThreadPool>

#include <exception>
#include <mutex>
#include <utility>

namespace cinedisc {

namespace {

const QString pngType = "image/png", bmpType = "image/bmp", jpegType = "image/jpeg";

}  // namespace

struct PictureMimeData::Files {
    /// Made once, by whichever thread comes first.
    class PictureFile {
      public:
        PictureFile(const QImage& picture, PictureFormat format) : picture_(picture), format_(format) {}

        /// Empty when it cannot be made, for lack of memory, say.
        QByteArray bytes() {
            try {
                std::call_once(made_, [this] {
                    QBuffer buffer;
                    buffer.open(QIODevice::WriteOnly);
                    if (encode(picture_, format_, buffer)) bytes_ = buffer.data();
                });
            } catch (const std::exception&) {
                return {};
            }
            return bytes_;
        }

      private:
        QImage picture_;
        PictureFormat format_;
        std::once_flag made_;
        QByteArray bytes_;
    };

    explicit Files(const QImage& whole)
        : picture(whole),
          png(whole, PictureFormat::Png),
          bmp(whole, PictureFormat::Bmp),
          jpeg(whole, PictureFormat::Jpeg) {}

    QImage picture;
    PictureFile png, bmp, jpeg;
};

PictureMimeData::PictureMimeData(const QImage& picture) : files_(std::make_shared<Files>(picture)) {
    QThreadPool::globalInstance()->start([files = files_] {
        files->png.bytes();
        files->jpeg.bytes();
    });
}

QStringList PictureMimeData::formats() const {
    return QStringList{pngType, bmpType, jpegType} + bitmapFormats();
}

QVariant PictureMimeData::retrieveData(const QString& mimeType, QMetaType type) const {
    if (mimeType == pngType) return files_->png.bytes();
    if (mimeType == bmpType) return files_->bmp.bytes();
    if (mimeType == jpegType) return files_->jpeg.bytes();
    if (mimeType == pictureInMemory) return files_->picture;
    return QMimeData::retrieveData(mimeType, type);
}

}  // namespace cinedisc
