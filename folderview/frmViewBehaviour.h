#pragma once

#include "viewerwindow/ViewerBehaviour.h"

namespace cinedisc {

/// The behaviours of the folder viewer. The window owns it and routes its events here.
class frmViewBehaviour final : public ViewerBehaviour {
  public:
    explicit frmViewBehaviour(const Parts& parts)
        : ViewerBehaviour(parts, FitPreview::AsItIs), dialogs_(parts.dialogs) {}

    /// Asks for a folder and fills the strip with its files; the main view keeps what it shows. A folder
    /// without files changes nothing. Errors end it quietly.
    void cmdOpen_Click();
    /// Does not trap errors.
    void sb1_Change() override { strip.scrollFolder(); }
    /// Opens the preview's file in the main view and plays it. Does not trap errors.
    void thumb_Click(Int16 index) override;

  private:
    Dialogs& dialogs_;
};

}  // namespace cinedisc
