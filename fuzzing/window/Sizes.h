#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace cinedisc::fuzzing::window {

/// A file whose sizes are lies, or no lies but far beyond what anybody writes.
struct SizedFile {
    const char* what;
    std::function<std::vector<std::byte>()> make;
    bool isShown;  ///< rather than told about
};

const std::vector<SizedFile>& sizedFiles();

}  // namespace cinedisc::fuzzing::window
