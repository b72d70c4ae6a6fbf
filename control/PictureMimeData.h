#pragma once

#include <QImage>
#include <QMimeData>

#include <memory>

namespace cinedisc {

/// A picture on the clipboard, as a file of each of a few formats. Compressing a large one takes seconds: a
/// thread of the program's pool begins with it at once, so that it is mostly done when somebody asks.
class PictureMimeData : public QMimeData {
    Q_OBJECT

  public:
    explicit PictureMimeData(const QImage& picture);

    /// The best first.
    QStringList formats() const override;

  protected:
    QVariant retrieveData(const QString& mimeType, QMetaType type) const override;

  private:
    struct Files;
    std::shared_ptr<Files> files_;
};

}  // namespace cinedisc
