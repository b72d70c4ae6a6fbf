#pragma once

#include "platform/Dialogs.h"
#include "platform/Label.h"
#include "platform/Panel.h"
#include "platform/TreeControl.h"
#include "viewer/NamedPatientView.h"
#include "viewer/ViewerControl.h"

#include <QString>

namespace cinedisc {

/// The controls that only the main window has, by their own names. The window owns them.
struct DiscControls {
    QString programFolder;
    TreeControl& TreeView1;
    Panel& FraTree;
    Panel& Frame8;                       ///< stills panel
    Panel& Frame9;                       ///< cine panel
    Label& Label1;                       ///< folder
    Label& Label5;                       ///< patient, in the stills panel
    Label& Label13;                      ///< patient, in the cine panel
    Label& Label6;                       ///< series, in the stills panel
    Label& Label15;                      ///< series, in the cine panel
    Label& lblSeries;                    ///< position in a stills series
    ViewerControl& ezTest;               ///< invisible probe
    NamedPatientView& namedPatientView;  ///< the main view
    Dialogs& dialogs;

    void showSeries(const QString& text) const;
    /// Puts the design texts of the series' name back.
    void showDesignSeries() const;
    /// Puts the design texts of all four names back.
    void showDesignNames() const;
};

}  // namespace cinedisc
