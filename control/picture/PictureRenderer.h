#pragma once

#include "control/picture/LoadedPicture.h"
#include "control/pipeline/DisplayTables.h"
#include "control/pipeline/PictureScaler.h"
#include "control/pipeline/Placement.h"
#include "control/pipeline/ScalePlan.h"

#include <QImage>
#include <QRect>

#include <optional>

namespace cinedisc {

/// Draws a loaded picture as it is displayed: window, polarity, shutter, overlays, scaling. What was drawn
/// last is kept, and given again while nothing has changed.
class PictureRenderer {
  public:
    explicit PictureRenderer(const LoadedPicture& picture) : picture_(picture) {}

    /// Its size at 100 % with square pixels, empty when there is no picture.
    QSize squareSize() const;
    /// The visible part of the picture in 32-bit device pixels, its corner at placement.visible(); null when
    /// there is nothing to draw.
    const QImage& visiblePart(const Placement& placement, Smoothing smoothing);
    /// Any part of a placement, as far as the picture reaches; not kept.
    QImage part(const Placement& placement, const QRect& wanted, Smoothing smoothing);
    /// The whole picture at its own size with square pixels, 8-bit grey or 32-bit colour; null when there is
    /// none, or no memory for it.
    QImage wholePicture();

  private:
    struct Shown {
        std::uint64_t frame = 0;
        std::uint64_t rule = 0;
        QRect picture;
        QRect visible;
        Smoothing smoothing = Smoothing::Smooth;
        bool operator==(const Shown&) const = default;
    };

    const DisplayRule& rule(const dicom::Frame& frame);
    void drawInto(QImage& into, const dicom::Frame& frame, const ScalePlan& plan);

    const LoadedPicture& picture_;
    DisplayTables tables_;
    std::uint64_t tablesFile_ = 0;
    PictureScaler scaler_;
    std::optional<ScalePlan> plan_;  ///< of the visible part
    Shown shown_;
    QImage image_;  ///< what shown_ says
};

}  // namespace cinedisc
