#pragma once

#include "discmaker/DiscPlan.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace cinedisc::discmaker {

/// What lies beside the catalogue.
struct Enclosures {
    std::vector<std::filesystem::path> programs;   ///< files, and folders whose content is copied
    std::optional<std::filesystem::path> license;  ///< copied as `license.txt`
    bool autorun = false;                          ///< writes an `autorun.inf` that starts `cinedisc.exe`
};

/// The licence and the viewers for all platforms that lie with the makedisc in the folder `here`: in the
/// folder `programs` there, or as they are built.
Enclosures findEnclosures(const std::filesystem::path& here);

/// Copies them into the folder of a disc; what is not there raises DiscError.
void copyEnclosures(const Enclosures& enclosures, const std::filesystem::path& disc);

/// The text of README.TXT: what the disc is and how its viewer is started, without a word about the patients.
/// `hasOthers`: there is a folder of files that hold no picture.
std::string readMe(const DiscPlan& plan, const Enclosures& enclosures, bool hasOthers);

}  // namespace cinedisc::discmaker
