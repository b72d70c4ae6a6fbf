#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace cinedisc::discmaker {

struct PlannedFile {
    std::string name;         ///< of the file, "IM00001.dcm"
    std::string text;         ///< in the catalogue
    std::size_t content = 0;  ///< number of the record that the plan was made from
};
struct PlannedSeries {
    std::string folder, text;
    std::vector<PlannedFile> files;
};
struct PlannedStudy {
    std::string folder, text;
    std::vector<PlannedSeries> series;
};
struct PlannedPatient {
    std::string folder, text;
    std::vector<PlannedStudy> studies;
};

/// The disc as it is to be: folders in the order in which they are listed, which is the catalogue's order
/// too. No level is ever empty, and no two patients have the same text.
struct DiscPlan {
    std::string title;
    std::vector<PlannedPatient> patients;
};

}  // namespace cinedisc::discmaker
