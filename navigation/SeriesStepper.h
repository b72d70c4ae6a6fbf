#pragma once

#include "catalogue/DetailPanels.h"
#include "catalogue/PlaceMover.h"
#include "catalogue/StillsSeries.h"
#include "navigation/Direction.h"
#include "thumbnails/ThumbnailStrip.h"
#include "viewer/ImageLoader.h"

namespace cinedisc {

/// Steps the series of the current patient, across its studies, wrapping. The current series is the folder
/// that equals File1.Path. Errors end a step quietly.
class SeriesStepper {
  public:
    SeriesStepper(FormControls& controls, PlaceMover& place, DetailPanels& details, ThumbnailStrip& strip,
                  StillsSeries& stills, ImageLoader& loader)
        : form_(controls),
          place_(place),
          details_(details),
          strip_(strip),
          stills_(stills),
          loader_(loader) {}

    void cmdSerNext_Click() { step(Direction::Next); }
    void cmdSerBack_Click() { step(Direction::Previous); }

  private:
    struct Target {
        Int16 study = 0;
        Int16 series = 0;
        FolderItem folder;
    };

    void step(Direction direction);
    Target targetAmongSeries(Direction direction) const;
    Target targetAmongStudies(Direction direction) const;
    void openRuns();
    void openStills();

    FormControls& form_;
    PlaceMover& place_;
    DetailPanels& details_;
    ThumbnailStrip& strip_;
    StillsSeries& stills_;
    ImageLoader& loader_;
};

}  // namespace cinedisc
