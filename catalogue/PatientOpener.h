#pragma once

#include "catalogue/DetailPanels.h"
#include "catalogue/ModeProbe.h"
#include "catalogue/StillsSeries.h"
#include "thumbnails/StillsStrip.h"
#include "thumbnails/ThumbnailStrip.h"
#include "viewer/ImageLoader.h"

namespace cinedisc {

/// Opens a patient at its first series: from the tree, or for the patient step.
class PatientOpener {
  public:
    PatientOpener(FormControls& controls, DiscControls& disc, PlaceMover& place, DetailPanels& details,
                  ModeProbe& probe, ThumbnailStrip& strip, StillsStrip& stills, StillsSeries& series,
                  ImageLoader& loader)
        : form_(controls),
          disc_(disc),
          place_(place),
          details_(details),
          probe_(probe),
          strip_(strip),
          stills_(stills),
          series_(series),
          loader_(loader) {}

    /// A click on a node of the tree: opens the patient of a patient node, nothing for any other.
    void TreeView1_NodeClick(int node);
    /// Opens the first series of CurrentFolder. Errors end it quietly.
    void LoadPat();
    /// The same without its trap, for handlers that have their own.
    void openCurrentPatient();

  private:
    void openRuns();
    void openStills();

    FormControls& form_;
    DiscControls& disc_;
    PlaceMover& place_;
    DetailPanels& details_;
    ModeProbe& probe_;
    ThumbnailStrip& strip_;
    StillsStrip& stills_;
    StillsSeries& series_;
    ImageLoader& loader_;
};

}  // namespace cinedisc
