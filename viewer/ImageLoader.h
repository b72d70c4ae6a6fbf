#pragma once

#include "viewer/FormControls.h"
#include "viewer/StillsPosition.h"

namespace cinedisc {

/// Brings a preview's file into the main view of the main window, with list, labels and cine.
class ImageLoader {
  public:
    ImageLoader(FormControls& controls, Label& folderLabel, StillsPosition& stills)
        : form_(controls), Label1_(folderLabel), stills_(stills) {}

    /// Loads the file of preview `index`; an empty preview changes nothing. Errors end it quietly.
    void LoadImage(Int16 index);

  private:
    void loadRun(const ViewerControl& preview);
    void loadStill(const ViewerControl& preview);

    FormControls& form_;
    Label& Label1_;
    StillsPosition& stills_;
};

}  // namespace cinedisc
