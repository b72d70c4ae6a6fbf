#pragma once

#include "control/pipeline/AxisTable.h"

#include <QRect>
#include <QSize>

namespace cinedisc {

/// A scaling worked out: a picture of `source` pixels becomes `scaled`, and of that the part `wanted` is
/// drawn.
struct ScalePlan {
    ScalePlan(QSize source, QSize scaled, QRect wanted, Smoothing smoothing);
    bool isFor(QSize otherSource, QSize otherScaled, QRect otherWanted, Smoothing otherSmoothing) const;

    QSize source, scaled;
    QRect wanted;
    Smoothing smoothing;
    AxisTable columns, rows;
};

}  // namespace cinedisc
