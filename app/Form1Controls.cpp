#include "app/Form1Controls.h"

#include "app/BackgroundPopUp.h"
#include "app/CinePanel.h"
#include "app/PatientStepPanel.h"
#include "app/StillsPanel.h"
#include "app/StripPanel.h"
#include "app/ToolBarPanel.h"
#include "app/TreePanel.h"
#include "app/ZoomPopUp.h"
#include "platform/widgets/Picture.h"

#include <QScrollBar>
#include <QSlider>

namespace cinedisc {

namespace {

ViewerControl& viewerIn(QWidget* widget) { return dynamic_cast<ViewerControl&>(*widget); }

Previews previewsIn(const StripPanel& strip) {
    std::array<ViewerControl*, Previews::count> views{};
    for (std::size_t i = 0; i < views.size(); ++i) views[i] = &viewerIn(strip.thumb[i]);
    return Previews(views);
}

}  // namespace

Form1Controls::Form1Controls(QWidget& window, const Form1Layout& layout, const QString& programFolder)
    : File1(&window),
      sb1(*layout.strip->sb1, MaxPull::RaisesChange),
      Slider1(*layout.Frame9->Slider1, MaxPull::Silent),
      Slider2(*layout.Frame9->Slider2, MaxPull::Silent),
      Option1(*layout.Frame6->Option1),
      Option2(*layout.Frame6->Option2),
      Option3(*layout.Frame6->Option3),
      Option4(*layout.Frame9->Option4),
      Option9(*layout.Frame9->Option9),
      Option10(*layout.Frame9->Option10),
      Option11(*layout.Frame9->Option11),
      lblImg(*layout.Frame9->lblImg),
      lblFra(*layout.Frame9->lblFra),
      Label1(*layout.toolBar->Label1),
      Label5(*layout.Frame8->Label5),
      Label6(*layout.Frame8->Label6),
      Label13(*layout.Frame9->Frame1->Label13),
      Label15(*layout.Frame9->Frame1->Label15),
      lblSeries(*layout.Frame8->lblSeries),
      Timer1(*layout.Timer1),
      Timer4(*layout.Timer4),
      FraTree(*layout.FraTree),
      Frame5(*layout.Frame5),
      Frame6(*layout.Frame6),
      Frame8(*layout.Frame8),
      Frame9(*layout.Frame9),
      TreeView1(*layout.FraTree->TreeView1, {pictureIcon(Picture::Patient)}),
      dialogs(&window),
      viewer{viewerIn(layout.ezDicom),
             previewsIn(*layout.strip),
             File1,
             sb1,
             Slider1,
             Slider2,
             Option4,
             Option11,
             Option9,
             Option10,
             lblImg,
             lblFra,
             Timer1,
             Timer4,
             messages},
      disc{programFolder, TreeView1, FraTree, Frame8,  Frame9,    Label1,
           Label5,        Label13,   Label6,  Label15, lblSeries, viewerIn(layout.ezTest),
           dialogs},
      tools{viewer.ezDicom, Frame5, Frame6, Option1, Option2, Option3} {
    File1.setObjectName("File1");
}

}  // namespace cinedisc
