#pragma once

#include <QLockFile>

#include <filesystem>

namespace cinedisc::discmaker {

/// The folder that becomes a disc. A new disc is made aside within it and takes the place of an older one at
/// the end, so that a catalogue never stands beside another disc's pictures. What else lies in the folder,
/// under other names, is left alone.
///
/// Everything raises DiscError or std::filesystem::filesystem_error.
class DiscFolder {
  public:
    /// Makes the folder if it is not there. One that holds anything but a disc of makedisc's is refused, and
    /// so is one that another DiscFolder is at, in whatever process.
    explicit DiscFolder(std::filesystem::path folder);
    /// Takes away what was made aside and not published.
    ~DiscFolder();
    DiscFolder(const DiscFolder&) = delete;
    DiscFolder& operator=(const DiscFolder&) = delete;

    const std::filesystem::path& path() const { return folder_; }
    /// Where the new disc is made: its catalogue and files, named as they are to be.
    const std::filesystem::path& staging() const { return staging_; }
    /// For files that are worked on; they do not come on the disc.
    const std::filesystem::path& work() const { return work_; }
    /// Puts the new disc in the place of the old one. When that fails, the old one is as it was.
    void publish();

  private:
    std::filesystem::path folder_;
    std::filesystem::path area_;
    std::filesystem::path outdated_;
    std::filesystem::path staging_, work_;
    QLockFile lock_;
    bool made_ = false;
};

}  // namespace cinedisc::discmaker
