#pragma once

#include "discmaker/ImageRecord.h"

#include <cstddef>
#include <string>

namespace cinedisc::discmaker {

/// How many files of a series are cine runs and single images.
struct SeriesContents {
    std::size_t runs = 0, images = 0;
};

// The texts of the catalogue. Never empty, on one line, without white space at their ends.

/// "Doe, John Paul  (4711)".
std::string patientText(const ImageRecord& record);
/// "2024-05-22  Coronary angiography".
std::string studyText(const ImageRecord& record);
/// "Series 2: Right coronary artery (5 runs)".
std::string seriesText(const ImageRecord& record, SeriesContents contents);
/// "Run 3: RAO 30 CAUD 20, 60 frames"; `position` counts from 1.
std::string entryText(const ImageRecord& record, std::size_t position);

/// A person's name (PS3.5 section 6.2.1) as people write it: "Doe, Dr John Paul", other scripts behind a
/// stroke.
std::string displayName(const std::string& personName);
/// The name without regard to letter case, empty parts and composed letters, for sorting and comparing.
std::string sortName(const std::string& personName);
/// The C-arm's view: "RAO 30 CAUD 20", "AP CRAN 35", "LAO 90".
std::string viewName(double primaryAngle, double secondaryAngle);

}  // namespace cinedisc::discmaker
