#include "app/Form1Behaviour.h"

namespace cinedisc {

Form1Behaviour::Form1Behaviour(FormControls& controls, DiscControls& discControls,
                               const DisplayTools::Controls& toolControls,
                               const ExportCommand::Format& exportFormat, MouseWheelHook& wheelHook)
    : ViewerBehaviour({controls, toolControls, exportFormat, wheelHook, discControls.dialogs},
                      FitPreview::AfterLoad),
      disc(discControls) {
    form.stills = &stillsSeries;
}

void Form1Behaviour::sb1_Change() {
    if (place.position().StillsMode) {
        stills.scroll();
    } else {
        trapErrors([this] { strip.scrollFolder(); });
    }
}

}  // namespace cinedisc
