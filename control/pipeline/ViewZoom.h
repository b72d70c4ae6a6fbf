#pragma once

#include "control/pipeline/Placement.h"

#include <QPointF>
#include <QSize>

namespace cinedisc {

/// How large the picture is drawn and which part of it lies in the middle of the view. A value: copies keep a
/// state to go back to.
class ViewZoom {
  public:
    bool bestFit() const { return bestFit_; }
    /// Fitting starts from the middle again.
    void putBestFit(bool on);
    /// Percent of one device pixel per image pixel; returned as put, drawn within 1 % ... what a view can
    /// address.
    qint32 percent() const { return percent_; }
    void putPercent(qint32 percent) { percent_ = percent; }

    /// Where a picture of this size (square pixels, at 100 %) lies in a view; the view may be empty.
    Placement place(QSize squareSize, QSize view) const;

    /// Moves the picture by device pixels of the view. It cannot be lost: on both axes at least half of the
    /// picture or of the view, whichever is smaller, stays covered.
    void pan(QPointF by, QSize squareSize, QSize view);

    friend bool operator==(const ViewZoom&, const ViewZoom&) = default;

  private:
    QSize scaledSize(QSize squareSize, QSize view) const;

    bool bestFit_ = false;
    qint32 percent_ = 100;
    QPointF middle_{0.5, 0.5};  ///< of the picture, 0 ... 1, shown in the middle of the view
};

}  // namespace cinedisc
