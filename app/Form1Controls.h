#pragma once

#include "app/Form1Layout.h"
#include "catalogue/DiscControls.h"
#include "platform/FileListBox.h"
#include "platform/widgets/LabelAdapter.h"
#include "platform/widgets/OptionAdapter.h"
#include "platform/widgets/PanelAdapter.h"
#include "platform/widgets/QtDialogs.h"
#include "platform/widgets/QtMessageLoop.h"
#include "platform/widgets/RangeAdapter.h"
#include "platform/widgets/TimerAdapter.h"
#include "platform/widgets/TreeAdapter.h"
#include "tools/DisplayTools.h"
#include "viewer/ViewerControls.h"

namespace cinedisc {

/// The main window's widgets as its behaviours see them.
class Form1Controls {
  public:
    /// The viewer widgets of the layout are ViewerControls.
    Form1Controls(QWidget& window, const Form1Layout& layout, const QString& programFolder);

    FileListBox File1;
    RangeAdapter sb1, Slider1, Slider2;
    OptionAdapter Option1, Option2, Option3, Option4, Option9, Option10, Option11;
    LabelAdapter lblImg, lblFra, Label1, Label5, Label6, Label13, Label15, lblSeries;
    TimerAdapter Timer1, Timer4;
    PanelAdapter FraTree, Frame5, Frame6, Frame8, Frame9;
    TreeAdapter TreeView1;
    QtDialogs dialogs;
    QtMessageLoop messages;

    ViewerControls viewer;
    DiscControls disc;
    DisplayTools::Controls tools;
};

}  // namespace cinedisc
