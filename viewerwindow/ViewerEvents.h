#pragma once

namespace cinedisc {

class ViewerBehaviour;
class ViewerPanels;

/// Connects the controls that both viewer windows have with their handlers: scroll bar, sliders, clocks,
/// options and previews. Every handler runs under EventGuard. Both belong to one window and live as long as
/// it.
void connectEvents(const ViewerPanels& panels, ViewerBehaviour& behaviour);

}  // namespace cinedisc
