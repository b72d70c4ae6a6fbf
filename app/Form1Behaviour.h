#pragma once

#include "catalogue/Catalogue.h"
#include "catalogue/CatalogueLoader.h"
#include "catalogue/DetailPanels.h"
#include "catalogue/DiscControls.h"
#include "catalogue/DiscOpener.h"
#include "catalogue/ModeProbe.h"
#include "catalogue/PatientOpener.h"
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
    Form1Behaviour(ViewerControls& controls, DiscControls& discControls,
                   const DisplayTools::Controls& toolControls, const ExportCommand::Format& exportFormat,
                   MouseWheelHook& wheelHook);

    /// Errors end it quietly.
    void sb1_Change() override;
    void thumb_Click(Int16 index) override { loader.LoadImage(index); }

    DiscControls& disc;

    Catalogue catalogue{disc.programFolder};
    StillsStrip stills{form, disc.position, disc.Label1};
    ImageLoader loader{form, disc.position, disc.Label1, disc.lblSeries};
    ModeProbe probe{form, disc};
    DetailPanels details{disc, catalogue};
    CatalogueLoader catalogueLoader{disc, catalogue};
    DiscOpener opener{form, disc, catalogue, catalogueLoader, probe, strip, stills, loader};
    PatientOpener patients{form, disc, details, probe, strip, stills, loader};
    SeriesStepper seriesStepper{form, disc, details, strip, loader};
    StillStepper stillStepper{form, loader};
    PatientStepper patientStepper{disc, details, patients};
};

}  // namespace cinedisc
