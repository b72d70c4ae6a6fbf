#pragma once

#include "discmaker/DiscPlan.h"
#include "discmaker/ImageRecord.h"

#include <span>
#include <string>

namespace cinedisc::discmaker {

/// Patients by name, or as they come first among the records.
enum class PatientOrder { ByName, AsGiven };

/// Groups files by patient (ID and name; without an ID each study is a patient of its own), study and series
/// and sorts them: studies by date, series by number, files by instance number. What is missing sorts last;
/// what is equal stays in the order given. Files that lack an identifier are kept together by what else they
/// tell.
DiscPlan planDisc(std::span<const ImageRecord> records, const std::string& title, PatientOrder order);

}  // namespace cinedisc::discmaker
