#pragma once

#include "platform/Folder.h"

namespace cinedisc {

/// Where on the disc the main window is. Series, image and frame are not held here: they are File1.Path,
/// File1.ListIndex and the viewer's CurrentFrame.
struct DiscPosition {
    /// What the catalogue knows of the patient whose pictures can be reached.
    enum class Patient {
        None,      ///< no patient has been opened
        Unlisted,  ///< the catalogue does not know the folder: it is nobody's
        Listed,    ///< the patient's name is shown
    };

    Folder CurrentFolder;          ///< the current patient's
    Folder PatientsFolder;         ///< holds the folders of all patients
    bool HasStudyFolders = false;  ///< the patient folder holds study folders rather than series folders
    bool StillsMode = false;       ///< the images are single-frame stills; the strip shows a preview a series
    Patient patient = Patient::None;
    QString namedFolder;  ///< folder of the patient whose name is shown, "" when nobody's is
};

}  // namespace cinedisc
