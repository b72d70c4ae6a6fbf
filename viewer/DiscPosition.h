#pragma once

#include "platform/Folder.h"

namespace cinedisc {

/// Where on the disc the main window is. Series, image and frame are not held here: they are File1.Path,
/// File1.ListIndex and the viewer's CurrentFrame.
struct DiscPosition {
    Folder CurrentFolder;          ///< the current patient's
    Folder PatientsFolder;         ///< holds the folders of all patients
    bool HasStudyFolders = false;  ///< the patient folder holds study folders rather than series folders
    bool StillsMode = false;       ///< the images are single-frame stills; the strip shows a preview a series
};

}  // namespace cinedisc
