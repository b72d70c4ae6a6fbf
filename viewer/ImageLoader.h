#pragma once

#include "viewer/DiscPosition.h"
#include "viewer/ViewerControls.h"

namespace cinedisc {

/// Brings a preview's file into the main view of the main window, with list, labels and cine.
class ImageLoader {
  public:
    ImageLoader(ViewerControls& controls, const DiscPosition& position, Label& folderLabel,
                Label& seriesLabel)
        : form_(controls), position_(position), Label1_(folderLabel), lblSeries_(seriesLabel) {}

    /// Loads the file of preview `index`; an empty preview changes nothing. Errors end it quietly.
    void LoadImage(Int16 index);
    /// Shows the position in a stills series: "Image :3/12".
    void showStillPosition() const;

  private:
    void loadRun(const ViewerControl& preview);
    void loadStill(const ViewerControl& preview);

    ViewerControls& form_;
    const DiscPosition& position_;
    Label& Label1_;
    Label& lblSeries_;
};

}  // namespace cinedisc
