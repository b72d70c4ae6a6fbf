#pragma once

#include "thumbnails/ThumbnailStrip.h"
#include "tools/DisplayTools.h"
#include "tools/ExportCommand.h"
#include "viewer/CinePlayer.h"
#include "viewer/FormControls.h"
#include "viewer/FrameStepper.h"
#include "viewer/MouseWheelHook.h"

namespace cinedisc {

/// The behaviours that both viewer windows have, over their controls, whatever these are made of. A window
/// owns its own kind of it and routes its events here.
class ViewerBehaviour {
  public:
    /// What the behaviours work on. The window owns it.
    struct Parts {
        FormControls& controls;
        const DisplayTools::Controls& tools;
        const ExportCommand::Format& exportFormat;
        MouseWheelHook& wheel;
        Dialogs& dialogs;
    };
    ViewerBehaviour(const Parts& parts, FitPreview fitWhileScrolling);
    virtual ~ViewerBehaviour() = default;

    /// The window's load handler.
    void Form_Load();
    void Form_Unload() { wheel.MouseUnhook(); }
    /// The strip follows its scroll bar.
    virtual void sb1_Change() = 0;
    /// A preview was clicked.
    virtual void thumb_Click(Int16 index) = 0;

    FormControls& form;
    MouseWheelHook& wheel;
    OptionButton& Option3;

    ThumbnailStrip strip;
    CinePlayer cine{form};
    FrameStepper frames{form};
    DisplayTools tools;
    ExportCommand exporter;
};

}  // namespace cinedisc
