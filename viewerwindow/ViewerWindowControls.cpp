#include "viewerwindow/ViewerWindowControls.h"

#include "control/ezDICOMX.h"
#include "panels/BackgroundPopUp.h"
#include "panels/StripPanel.h"
#include "panels/ZoomPopUp.h"

namespace cinedisc {

namespace {

Previews previewsIn(const StripPanel& strip) {
    std::array<ViewerControl*, Previews::count> views{};
    std::ranges::copy(strip.thumb, views.begin());
    return Previews(views);
}

QList<QWidget*> wheelWidgets(const StripPanel& strip) {
    QList<QWidget*> widgets(strip.thumb.begin(), strip.thumb.end());
    widgets << strip.sb1;
    return widgets;
}

}  // namespace

ViewerWindowControls::ViewerWindowControls(QWidget& window, const ViewerPanels& panels)
    : File1(&window),
      sb1(*panels.strip->sb1, MaxPull::RaisesChange),
      Slider1(*panels.cinePanel->Slider1, MaxPull::Silent),
      Slider2(*panels.cinePanel->Slider2, MaxPull::Silent),
      Option1(*panels.Frame6->Option1),
      Option2(*panels.Frame6->Option2),
      Option3(*panels.Frame6->Option3),
      Option4(*panels.cinePanel->Option4),
      Option9(*panels.cinePanel->Option9),
      Option10(*panels.cinePanel->Option10),
      Option11(*panels.cinePanel->Option11),
      lblImg(*panels.cinePanel->lblImg),
      lblFra(*panels.cinePanel->lblFra),
      Timer1(*panels.Timer1),
      Timer4(*panels.Timer4),
      Frame5(*panels.Frame5),
      Frame6(*panels.Frame6),
      dialogs(&window),
      formatChooser(&window),
      wheel(wheelWidgets(*panels.strip)),
      viewer{.ezDicom = *panels.ezDicom,
             .thumb = previewsIn(*panels.strip),
             .File1 = File1,
             .sb1 = sb1,
             .Slider1 = Slider1,
             .Slider2 = Slider2,
             .Option4 = Option4,
             .Option11 = Option11,
             .Option9 = Option9,
             .Option10 = Option10,
             .lblImg = lblImg,
             .lblFra = lblFra,
             .Timer1 = Timer1,
             .Timer4 = Timer4,
             .messages = messages},
      tools{.ezDicom = *panels.ezDicom,
            .Frame5 = Frame5,
            .Frame6 = Frame6,
            .Option1 = Option1,
            .Option2 = Option2,
            .Option3 = Option3},
      exportFormat{formatChooser,
                   [view = panels.ezDicom](const QString& format) { view->putExportFormat(format); }} {
    File1.setObjectName("File1");
}

}  // namespace cinedisc
