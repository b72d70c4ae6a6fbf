#pragma once

#include "control/picture/ViewState.h"

#include <QImage>

namespace cinedisc {

/// The picture at its own size as it is displayed, labels included, for copies and exports: 8-bit grey or
/// 32-bit colour. Null when there is none.
QImage displayedPicture(ViewState& view);

}  // namespace cinedisc
