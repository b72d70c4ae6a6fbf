#pragma once

#include "catalogue/Catalogue.h"
#include "catalogue/CatalogueLoader.h"
#include "catalogue/DetailPanels.h"
#include "catalogue/DiscControls.h"
#include "catalogue/DiscOpener.h"
#include "catalogue/ModeProbe.h"
#include "catalogue/PatientOpener.h"
#include "catalogue/PlaceMover.h"
#include "catalogue/StillsSeries.h"
#include "navigation/PatientStepper.h"
#include "navigation/SeriesStepper.h"
#include "navigation/StillStepper.h"
#include "thumbnails/StillsStrip.h"
#include "viewer/ImageLoader.h"
#include "viewerwindow/ViewerBehaviour.h"

namespace cinedisc {

/// The behaviours of the main window over its controls, whatever these are made of. The window owns it and
/// routes its events here.
class Form1Behaviour final : public ViewerBehaviour {
  public:
    Form1Behaviour(FormControls& controls, DiscControls& discControls,
                   const DisplayTools::Controls& toolControls, const ExportCommand::Format& exportFormat,
                   MouseWheelHook& wheelHook);

    /// Errors end it quietly.
    void sb1_Change() override;
    void thumb_Click(Int16 index) override { loader.LoadImage(index); }

    DiscControls& disc;

    Catalogue catalogue{disc.programFolder};
    PlaceMover place{form, disc};
    DetailPanels details{disc, catalogue, place};
    StillsSeries stillsSeries{form, disc, details, place};
    StillsStrip stills{form, place.position(), disc.Label1};
    ImageLoader loader{form, disc.Label1, stillsSeries};
    ModeProbe probe{form, disc.ezTest, place};
    CatalogueLoader catalogueLoader{disc, catalogue};
    DiscOpener opener{form,  disc,  place,  catalogue,    catalogueLoader,
                      probe, strip, stills, stillsSeries, loader};
    PatientOpener patients{form, disc, place, details, probe, strip, stills, stillsSeries, loader};
    SeriesStepper seriesStepper{form, place, details, strip, stillsSeries, loader};
    StillStepper stillStepper{form, stillsSeries};
    PatientStepper patientStepper{place, details, patients};
};

}  // namespace cinedisc
