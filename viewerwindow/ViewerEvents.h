#pragma once

namespace cinedisc {

class ViewerBehaviour;
class ViewerPanels;

/// Connects the controls that both viewer windows have with their handlers: scroll bar, sliders, clocks,
/// options and previews. Every handler runs under EventGuard.
class ViewerEvents {
  public:
    /// Both belong to one window and live as long as it.
    static void connect(const ViewerPanels& panels, ViewerBehaviour& behaviour);
};

}  // namespace cinedisc
