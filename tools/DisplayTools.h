#pragma once

#include "platform/Int16.h"
#include "platform/OptionButton.h"
#include "platform/Panel.h"
#include "viewer/ViewerControl.h"

namespace cinedisc {

/// The commands that change how the main view presents its picture. Each writes one or two members of the
/// view; none traps errors.
class DisplayTools {
  public:
    struct Controls {
        ViewerControl& ezDicom;
        Panel& Frame5;          ///< zoom choices
        Panel& Frame6;          ///< background choices
        OptionButton& Option1;  ///< no background
        OptionButton& Option2;  ///< black
        OptionButton& Option3;  ///< white
    };
    explicit DisplayTools(const Controls& controls) : form_(controls) {}

    void cmdZoom_Click() { form_.Frame5.putVisible(true); }
    /// 0 best fit, 1 100 %, 2 50 %, 3 150 %, 4 200 %; an index outside the array raises run-time error 340.
    void cmdFit_Click(Int16 index);
    void zoomTo(qint32 percent);
    void mnuBestFit_Click() { form_.ezDicom.putBestFit(true); }
    void cmdInvert_Click();
    void cmdSmooth_Click() { form_.ezDicom.putSmooth(!form_.ezDicom.Smooth()); }
    void cmdHeader_Click() { form_.ezDicom.putShowHeader(!form_.ezDicom.ShowHeader()); }
    void cmdWindow_Click() { form_.ezDicom.putMouseMode(ViewerControl::MouseWindow); }
    void cmdMagnify_Click() { form_.ezDicom.putMouseMode(ViewerControl::MouseMagnify); }
    void cmdPanning_Click() { form_.ezDicom.putMouseMode(ViewerControl::MousePan); }
    void cmdLabel_Click() { form_.ezDicom.putMouseMode(ViewerControl::MouseLabel); }
    void cmdOverlay_Click() { form_.Frame6.putVisible(true); }
    void Option1_Click();
    void Option2_Click();
    void Option3_Click();
    void mnuNone_Click() { form_.Option1.putValue(true); }
    void mnuBlack_Click() { form_.Option2.putValue(true); }
    void mnuWhite_Click() { form_.Option3.putValue(true); }
    void mnuCopy_Click();
    void mnuCopyHeader_Click();
    void Command3_Click() { form_.ezDicom.putOption256(true); }
    void setOption247() { form_.ezDicom.putOption247(true); }

    /// Second handlers of single tools, which no control of the windows is connected with.
    void invertAgain() { cmdInvert_Click(); }
    void smoothAgain() { cmdSmooth_Click(); }
    void headerAgain() { cmdHeader_Click(); }
    void magnifyAgain() { cmdMagnify_Click(); }
    void panAgain() { cmdPanning_Click(); }
    void labelAgain() { cmdLabel_Click(); }

    /// List-driven variants, which no list control of the windows feeds. Zoom: 0 best fit, then 50, 100, 150,
    /// 200 %.
    void zoomFromList(Int16 listIndex);
    void mouseModeFromList(Int16 listIndex) { form_.ezDicom.putMouseMode((listIndex + 1).value()); }
    void polarityFromList(Int16 listIndex) { form_.ezDicom.putPolarity(listIndex.value()); }

  private:
    void fillBackground(qint32 color);

    Controls form_;
};

}  // namespace cinedisc
