#include "control/pipeline/ScalePlan.h"

namespace cinedisc {

ScalePlan::ScalePlan(QSize sourceSize, QSize scaledSize, QRect wantedPart, Smoothing how)
    : source(sourceSize),
      scaled(scaledSize),
      wanted(wantedPart),
      smoothing(how),
      columns(source.width(), scaled.width(), wanted.left(), wanted.left() + wanted.width(), how),
      rows(source.height(), scaled.height(), wanted.top(), wanted.top() + wanted.height(), how) {}

bool ScalePlan::isFor(QSize otherSource, QSize otherScaled, QRect otherWanted,
                      Smoothing otherSmoothing) const {
    return source == otherSource && scaled == otherScaled && wanted == otherWanted &&
           smoothing == otherSmoothing;
}

}  // namespace cinedisc
