#include "viewerwindow/ViewerBehaviour.h"

#include <cmath>

namespace cinedisc {

ViewerBehaviour::ViewerBehaviour(const Parts& parts, FitPreview fitWhileScrolling)
    : form(parts.controls),
      wheel(parts.wheel),
      Option3(parts.tools.Option3),
      strip(form, fitWhileScrolling),
      tools(parts.tools),
      exporter(form.ezDicom, form.Timer4, parts.exportFormat, parts.dialogs) {}

void ViewerBehaviour::Form_Load() {
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

}  // namespace cinedisc
