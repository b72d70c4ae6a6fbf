#include "app/Form1Behaviour.h"

#include <cmath>

namespace cinedisc {

Form1Behaviour::Form1Behaviour(ViewerControls& controls, DiscControls& discControls,
                               const DisplayTools::Controls& toolControls,
                               const ExportCommand::Format& exportFormat, MouseWheelHook& wheelHook)
    : form(controls),
      disc(discControls),
      wheel(wheelHook),
      Option3(toolControls.Option3),
      tools(toolControls),
      exporter(form.ezDicom, form.Timer4, exportFormat, disc.dialogs) {}

void Form1Behaviour::Form_Load() {
    form.ezDicom.putStartupFlag(false);
    for (ViewerControl* preview : form.thumb) {
        preview->putStartupFlag(false);
        preview->putBestFit(true);
    }
    form.Slider1.putValue(int(std::lrint(form.Timer1.Interval() / 10.0)));
    wheel.MouseHook();
    form.Option4.putValue(true);
    form.Option9.putValue(true);
    Option3.putValue(true);
}

void Form1Behaviour::sb1_Change() {
    if (disc.position.StillsMode) {
        stills.scroll();
    } else {
        trapErrors([this] { strip.scrollFolder(); });
    }
}

}  // namespace cinedisc
