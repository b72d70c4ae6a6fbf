#pragma once

#include "catalogue/DiscControls.h"
#include "viewer/ViewerControls.h"

namespace cinedisc {

/// Decides between cine and stills: a first file of more than one frame is cine.
class ModeProbe {
  public:
    ModeProbe(ViewerControls& controls, DiscControls& disc) : form_(controls), disc_(disc) {}

    /// Points File1 at the first series of the current patient, probes its first file and shows the matching
    /// panel. Errors go to the caller.
    void chkImage();
    /// Probes the first file of the list and shows the matching panel.
    void probeFirstFile();

  private:
    ViewerControls& form_;
    DiscControls& disc_;
};

}  // namespace cinedisc
