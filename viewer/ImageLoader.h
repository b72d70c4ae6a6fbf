#pragma once

#include "viewer/StillsPosition.h"
#include "viewer/ViewerControls.h"

namespace cinedisc {

/// Brings a preview's file into the main view of the main window, with list, labels and cine.
class ImageLoader {
  public:
    ImageLoader(ViewerControls& controls, Label& folderLabel, StillsPosition& stills)
        : form_(controls), Label1_(folderLabel), stills_(stills) {}

    /// Loads the file of preview `index`; an empty preview changes nothing. Errors end it quietly.
    void LoadImage(Int16 index);

  private:
    void loadRun(const ViewerControl& preview);
    void loadStill(const ViewerControl& preview);

    ViewerControls& form_;
    Label& Label1_;
    StillsPosition& stills_;
};

}  // namespace cinedisc
