#pragma once

#include "folderview/frmViewBehaviour.h"
#include "folderview/frmViewLayout.h"
#include "viewerwindow/ViewerWindowControls.h"

#include <QMainWindow>

namespace cinedisc {

/// The folder viewer: shows the files of one folder that the user picks, without a disc's catalogue. The
/// program has no command that opens it. Its form-level values can be read as properties.
class frmView : public QMainWindow {
    Q_OBJECT
    Q_PROPERTY(int ThumbFillCount READ ThumbFillCount)
    Q_PROPERTY(bool WheelPresent READ WheelPresent)

  public:
    /// Makes the window and runs its load handler; it is not shown yet. `dialogs` stand in for the window's
    /// own and outlive it.
    explicit frmView(Dialogs* dialogs = nullptr);

    int ThumbFillCount() const { return behaviour_.strip.ThumbFillCount().value(); }
    bool WheelPresent() const { return controls_.wheel.WheelPresent(); }

    frmViewBehaviour& behaviour() { return behaviour_; }

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    frmViewLayout layout_;
    ViewerWindowControls controls_;
    frmViewBehaviour behaviour_;
};

}  // namespace cinedisc
