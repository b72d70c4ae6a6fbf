#pragma once

#include "app/Form1Layout.h"
#include "catalogue/DiscControls.h"
#include "platform/widgets/TreeAdapter.h"
#include "viewerwindow/ViewerWindowControls.h"

namespace cinedisc {

/// The main window's widgets as its behaviours see them.
class Form1Controls : public ViewerWindowControls {
  public:
    Form1Controls(QWidget& window, const Form1Layout& layout, const QString& programFolder);

    LabelAdapter Label1, Label5, Label6, Label13, Label15, lblSeries;
    PanelAdapter FraTree, Frame8, Frame9;
    TreeAdapter TreeView1;
    DiscControls disc;
};

}  // namespace cinedisc
