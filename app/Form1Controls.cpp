#include "app/Form1Controls.h"

#include "app/PatientStepPanel.h"
#include "app/StillsPanel.h"
#include "app/TreePanel.h"
#include "control/ezDICOMX.h"
#include "platform/widgets/Icon.h"

namespace cinedisc {

Form1Controls::Form1Controls(QWidget& window, const Form1Layout& layout, const QString& programFolder)
    : ViewerWindowControls(window, layout),
      Label1(*layout.Frame8->Label1),
      Label5(*layout.Frame8->Label5),
      Label6(*layout.Frame8->Label6),
      Label13(*layout.Frame1->Label13),
      Label15(*layout.Frame1->Label15),
      lblSeries(*layout.Frame8->lblSeries),
      FraTree(*layout.FraTree),
      Frame8(*layout.Frame8),
      Frame9(*layout.cinePanel),
      TreeView1(*layout.FraTree->TreeView1, *layout.FraTree->remark, {drawnIcon(Icon::Patient)}),
      disc{.programFolder = programFolder,
           .TreeView1 = TreeView1,
           .FraTree = FraTree,
           .Frame8 = Frame8,
           .Frame9 = Frame9,
           .Label1 = Label1,
           .Label5 = Label5,
           .Label13 = Label13,
           .Label6 = Label6,
           .Label15 = Label15,
           .lblSeries = lblSeries,
           .ezTest = *layout.ezTest,
           .namedPatientView = *layout.ezDicom,
           .dialogs = dialogs} {
    dialogs.setDiscFolder(programFolder);
}

}  // namespace cinedisc
