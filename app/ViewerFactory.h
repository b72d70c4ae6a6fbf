#pragma once

#include <QWidget>

#include <functional>

namespace cinedisc {

/// What a viewer component in the window is for.
enum class ViewerRole { MainView, Preview, Probe };

/// Makes the viewer components of a window; the window's layout names and places them.
using ViewerFactory = std::function<QWidget*(QWidget* parent, ViewerRole role)>;

}  // namespace cinedisc
