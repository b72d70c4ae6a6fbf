#pragma once

#include "catalogue/Catalogue.h"
#include "catalogue/CatalogueLoader.h"
#include "catalogue/ModeProbe.h"
#include "catalogue/PlaceMover.h"
#include "catalogue/StillsSeries.h"
#include "thumbnails/StillsStrip.h"
#include "thumbnails/ThumbnailStrip.h"
#include "viewer/ImageLoader.h"

namespace cinedisc {

/// The open command (the disc that the program runs from) and the folder command (any folder of images).
/// Errors end either quietly, keeping what was done.
class DiscOpener {
  public:
    DiscOpener(FormControls& controls, DiscControls& disc, PlaceMover& place, const Catalogue& catalogue,
               CatalogueLoader& catalogueLoader, ModeProbe& probe, ThumbnailStrip& strip, StillsStrip& stills,
               StillsSeries& series, ImageLoader& loader)
        : form_(controls),
          disc_(disc),
          place_(place),
          catalogue_(catalogue),
          catalogueLoader_(catalogueLoader),
          probe_(probe),
          strip_(strip),
          stills_(stills),
          series_(series),
          loader_(loader) {}

    /// The Open button.
    void Open_Click();
    /// The folder command.
    void mnuOpen_Click();

  private:
    enum class Outcome { GoOn, NothingThere };
    Outcome probeDisc();
    void walkStills(const Folder& patient);
    void openFolder(const Folder& folder);
    void openStillsFolder();

    FormControls& form_;
    DiscControls& disc_;
    PlaceMover& place_;
    const Catalogue& catalogue_;
    CatalogueLoader& catalogueLoader_;
    ModeProbe& probe_;
    ThumbnailStrip& strip_;
    StillsStrip& stills_;
    StillsSeries& series_;
    ImageLoader& loader_;
};

}  // namespace cinedisc
