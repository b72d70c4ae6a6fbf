#pragma once

#include "platform/Dialogs.h"
#include "platform/Label.h"
#include "platform/Panel.h"
#include "platform/TreeControl.h"
#include "viewer/DiscPosition.h"
#include "viewer/ViewerControl.h"

#include <QString>

namespace cinedisc {

/// The controls that only the main window has, by their own names, and where it is on the disc. The window
/// owns them.
struct DiscControls {
    QString programFolder;
    TreeControl& TreeView1;
    Panel& FraTree;
    Panel& Frame8;          ///< stills panel
    Panel& Frame9;          ///< cine panel
    Label& Label1;          ///< folder
    Label& Label5;          ///< patient, in the stills panel
    Label& Label13;         ///< patient, in the cine panel
    Label& Label6;          ///< series, in the stills panel
    Label& Label15;         ///< series, in the cine panel
    Label& lblSeries;       ///< position in a stills series
    ViewerControl& ezTest;  ///< invisible probe
    Dialogs& dialogs;
    DiscPosition position{};

    void showPatient(const QString& text) const;
    void showSeries(const QString& text) const;
    /// Puts the design texts back: nobody's picture is shown.
    void resetNames() const;
};

}  // namespace cinedisc
