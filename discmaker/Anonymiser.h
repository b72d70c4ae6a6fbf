#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace cinedisc::discmaker {

/// Removes from files who the patients are, by the Basic Application Level Confidentiality Profile (PS3.15
/// annex E), alike for all files of one disc. Beyond the profile's table, all other dates, times and names of
/// persons get dummies, all other identifiers but those of the standard get new ones, and texts that repeat a
/// name, number or date of the patient are removed.
class Anonymiser {
  public:
    /// Raises DiscError where the names of data elements are not at hand.
    Anonymiser();

    /// Rewrites a file; `patient` counts the patients of the disc from 1. The encoding of the pixels stays.
    /// Returns why the file cannot be rewritten, "" when it is done. Raises DiscError when it cannot be
    /// written.
    std::string rewrite(const std::filesystem::path& path, std::size_t patient) const;

  private:
    std::string key_;  ///< of the disc's new identifiers; nobody keeps it
};

/// Whether names may be burned into a file's pictures: its header says so, or does not deny it in an
/// ultrasound picture or a secondary capture.
bool mayShowNames(const std::filesystem::path& path);

}  // namespace cinedisc::discmaker
