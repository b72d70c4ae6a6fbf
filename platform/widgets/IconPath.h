#pragma once

#include <QPainterPath>

namespace cinedisc {

/// Reads a drawing: "M x y" starts a line there, "L x y" draws it on, "C x1 y1 x2 y2 x y" curves it on, "Z"
/// closes it, "O x y r" is a circle. Everything is separated by blanks.
QPainterPath iconPath(const char* drawing);

}  // namespace cinedisc
