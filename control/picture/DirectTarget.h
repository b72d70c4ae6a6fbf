#pragma once

#include "control/pipeline/PictureScaler.h"

#include <QPainter>
#include <QPointF>
#include <QRect>

#include <optional>

namespace cinedisc {

/// The pixels that a painter paints on, where rows may be written to them without the painter: a 32-bit
/// picture in memory, as the window's own usually is, with no transformation in between but a shift and the
/// screen's scaling. Valid while the painter is.
class DirectTarget {
  public:
    /// Empty when only the painter knows how to get there. `pixelRatio`: device pixels per logical pixel that
    /// the caller counts with.
    static std::optional<DirectTarget> of(const QPainter& painter, double pixelRatio);

    /// The device pixel that lies so many from the painter's origin, rounded as the painter does.
    QPoint pixelAt(QPoint fromOrigin) const { return (origin_ + fromOrigin).toPoint(); }
    /// The device pixels that may be written.
    const QRect& clip() const { return clip_; }
    /// With its first pixel at a device pixel within clip().
    PixelTarget at(QPoint pixel) const;

  private:
    DirectTarget() = default;

    std::uint8_t* bits_ = nullptr;
    std::ptrdiff_t bytesPerRow_ = 0;
    QPointF origin_;
    QRect clip_;
};

}  // namespace cinedisc
