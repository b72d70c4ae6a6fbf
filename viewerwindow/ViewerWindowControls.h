#pragma once

#include "panels/ViewerPanels.h"
#include "platform/FileListBox.h"
#include "platform/widgets/LabelAdapter.h"
#include "platform/widgets/OptionAdapter.h"
#include "platform/widgets/PanelAdapter.h"
#include "platform/widgets/QtDialogs.h"
#include "platform/widgets/QtMessageLoop.h"
#include "platform/widgets/RangeAdapter.h"
#include "platform/widgets/TimerAdapter.h"
#include "tools/DisplayTools.h"
#include "tools/ExportCommand.h"
#include "tools/frmdicom.h"
#include "viewer/FormControls.h"
#include "viewerwindow/StripWheel.h"

namespace cinedisc {

/// The widgets that both viewer windows have, as the behaviours see them. A window owns one.
class ViewerWindowControls {
  public:
    ViewerWindowControls(QWidget& window, const ViewerPanels& panels);

    FileListBox File1;
    RangeAdapter sb1, Slider1, Slider2;
    OptionAdapter Option1, Option2, Option3, Option4, Option9, Option10, Option11;
    LabelAdapter lblImg, lblFra;
    TimerAdapter Timer1, Timer4;
    PanelAdapter Frame5, Frame6;
    QtDialogs dialogs;
    QtMessageLoop messages;
    frmdicomChooser formatChooser;
    StripWheel wheel;

    FormControls viewer;
    DisplayTools::Controls tools;
    ExportCommand::Format exportFormat;
};

}  // namespace cinedisc
