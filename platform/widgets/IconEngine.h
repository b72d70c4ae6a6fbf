#pragma once

#include "platform/widgets/IconTable.h"

#include <QIconEngine>

namespace cinedisc {

/// Draws an icon whenever the toolkit wants it, so that it is sharp at any size.
class IconEngine final : public QIconEngine {
  public:
    explicit IconEngine(Icon icon) : icon_(icon) {}
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override { return new IconEngine(icon_); }

  private:
    Icon icon_;
};

}  // namespace cinedisc
