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
#include "thumbnails/ThumbnailStrip.h"
#include "tools/DisplayTools.h"
#include "tools/ExportCommand.h"
#include "viewer/CinePlayer.h"
#include "viewer/FrameStepper.h"
#include "viewer/ImageLoader.h"
#include "viewer/MouseWheelHook.h"
#include "viewer/ViewerControls.h"

namespace cinedisc {

/// The behaviours of the main window over its controls, whatever these are made of. The window owns it and
/// routes its events here.
class Form1Behaviour {
  public:
    Form1Behaviour(ViewerControls& controls, DiscControls& discControls,
                   const DisplayTools::Controls& toolControls, const ExportCommand::Format& exportFormat,
                   MouseWheelHook& wheelHook);

    /// The window's load handler.
    void Form_Load();
    void Form_Unload() { wheel.MouseUnhook(); }
    /// The strip follows its scroll bar. Errors end it quietly.
    void sb1_Change();

    ViewerControls& form;
    DiscControls& disc;
    MouseWheelHook& wheel;
    OptionButton& Option3;

    Catalogue catalogue{disc.programFolder};
    ThumbnailStrip strip{form, FitPreview::AfterLoad};
    StillsStrip stills{form, disc.position, disc.Label1};
    ImageLoader loader{form, disc.position, disc.Label1, disc.lblSeries};
    CinePlayer cine{form};
    FrameStepper frames{form};
    ModeProbe probe{form, disc};
    DetailPanels details{disc, catalogue};
    CatalogueLoader catalogueLoader{disc, catalogue};
    DiscOpener opener{form, disc, catalogue, catalogueLoader, probe, strip, stills, loader};
    PatientOpener patients{form, disc, details, probe, strip, stills, loader};
    SeriesStepper seriesStepper{form, disc, details, strip, loader};
    StillStepper stillStepper{form, loader};
    PatientStepper patientStepper{disc, details, patients};
    DisplayTools tools;
    ExportCommand exporter;
};

}  // namespace cinedisc
