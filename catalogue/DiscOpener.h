#pragma once

#include "catalogue/Catalogue.h"
#include "catalogue/CatalogueLoader.h"
#include "catalogue/ModeProbe.h"
#include "thumbnails/StillsStrip.h"
#include "thumbnails/ThumbnailStrip.h"
#include "viewer/ImageLoader.h"

namespace cinedisc {

/// The open command (the disc that the program runs from) and the folder command (any folder of images).
/// Errors end either quietly, keeping what was done.
class DiscOpener {
  public:
    DiscOpener(ViewerControls& controls, DiscControls& disc, const Catalogue& catalogue,
               CatalogueLoader& catalogueLoader, ModeProbe& probe, ThumbnailStrip& strip, StillsStrip& stills,
               ImageLoader& loader)
        : form_(controls),
          disc_(disc),
          catalogue_(catalogue),
          catalogueLoader_(catalogueLoader),
          probe_(probe),
          strip_(strip),
          stills_(stills),
          loader_(loader) {}

    /// The Open button.
    void Open_Click();
    /// The folder command.
    void mnuOpen_Click();

  private:
    enum class Outcome { GoOn, NothingThere };
    Outcome probeDisc();
    void openFolder(const QString& folder);
    void openStillsFolder(const QString& folder);
    void backToFirstOpen();

    ViewerControls& form_;
    DiscControls& disc_;
    const Catalogue& catalogue_;
    CatalogueLoader& catalogueLoader_;
    ModeProbe& probe_;
    ThumbnailStrip& strip_;
    StillsStrip& stills_;
    ImageLoader& loader_;
};

}  // namespace cinedisc
