#pragma once

#include "control/picture/LoadedPicture.h"
#include "control/pipeline/DisplayTables.h"
#include "control/pipeline/PictureScaler.h"
#include "control/pipeline/Placement.h"
#include "control/pipeline/ScalePlan.h"

#include <QImage>
#include <QPainter>
#include <QRect>

#include <optional>

namespace cinedisc {

/// Draws a loaded picture as it is displayed: window, polarity, shutter, overlays, scaling.
class PictureRenderer {
  public:
    explicit PictureRenderer(const LoadedPicture& picture) : picture_(picture) {}

    /// Its size at 100 % with square pixels, empty when there is no picture.
    QSize squareSize() const;
    /// Paints the visible part of the picture, the view's corner at the painter's origin, and tells which
    /// device pixels of the view it covers: none when there is nothing to draw. `pixelRatio`: device pixels
    /// per logical pixel.
    ///
    /// What is new goes straight to the window where that can be; what is painted once more is kept from then
    /// on, as something over it moves.
    QRect paint(QPainter& painter, double pixelRatio, const Placement& placement, Smoothing smoothing);
    /// The same for a preview: previews move along the strip, so that its picture is kept with the file.
    QRect paintPreview(QPainter& painter, double pixelRatio, const Placement& placement, Smoothing smoothing);
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

    Polarity polarity() const { return picture_.polarity < 0 ? Polarity::Inverted : Polarity::Normal; }
    const DisplayRule& rule(const dicom::Frame& frame);
    const ScalePlan& planFor(const Placement& placement, const QRect& part, Smoothing smoothing);
    QSize sourceSize() const;
    void drawInto(const PixelTarget& target, const dicom::Frame& frame, const ScalePlan& plan);
    void drawInto(QImage& into, const dicom::Frame& frame, const ScalePlan& plan);
    bool paintDirectly(const QPainter& painter, double pixelRatio, const dicom::Frame& frame,
                       const Placement& placement, Smoothing smoothing);
    void keep(const dicom::Frame& frame, const Placement& placement, Smoothing smoothing);
    QImage smallPicture(const dicom::Frame& frame, const Placement& placement, Smoothing smoothing);

    const LoadedPicture& picture_;
    DisplayTables tables_;
    std::uint64_t tablesFile_ = 0;
    PictureScaler scaler_;
    std::optional<ScalePlan> plan_;  ///< of the visible part
    Shown painted_;                  ///< last
    Shown kept_;
    QImage image_;  ///< what kept_ says
};

}  // namespace cinedisc
