#pragma once

#include "platform/widgets/PictureTable.h"

#include <QIconEngine>

namespace cinedisc {

/// Draws a picture whenever the toolkit wants it, so that it is sharp at any size.
class PictureEngine final : public QIconEngine {
  public:
    explicit PictureEngine(const PictureDrawing& drawing) : drawing_(drawing) {}
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override { return new PictureEngine(drawing_); }

  private:
    const PictureDrawing& drawing_;
};

}  // namespace cinedisc
