#pragma once

#include "catalogue/PlaceMover.h"

namespace cinedisc {

/// Decides between cine and stills: a first file of more than one frame is cine.
class ModeProbe {
  public:
    ModeProbe(FormControls& controls, ViewerControl& ezTest, PlaceMover& place)
        : form_(controls), ezTest_(ezTest), place_(place) {}

    /// Points File1 at the first series of the current patient, probes its first file and shows the matching
    /// panel. Errors go to the caller.
    void chkImage();
    /// Whether the file at `path` opens the window for stills; so does one that cannot be read.
    bool isStill(const QString& path);
    /// The folder of the first series of a patient's first study; a patient without one raises run-time
    /// error 91.
    static QString firstSeries(const Folder& patient);

  private:
    FormControls& form_;
    ViewerControl& ezTest_;
    PlaceMover& place_;
};

}  // namespace cinedisc
