#pragma once

#include "discmaker/DiscWriter.h"

#include <filesystem>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace cinedisc::discmaker {

/// What the person at the command line asked for.
struct MakeRequest {
    bool demo = false;
    std::string title;
    std::filesystem::path disc;
    std::vector<std::filesystem::path> named;  ///< files and folders, none for the demo
    Enclosures enclosures;
};
/// What is to be shown instead: the help or the version.
struct Answer {
    std::string text;
};
/// Something that is no request, and what is wrong with it.
struct UsageError {
    std::string message;
};

/// Reads the arguments behind the program's name.
std::variant<MakeRequest, Answer, UsageError> parseCommandLine(std::span<const std::string> arguments);

/// Does what the arguments ask. Answers the exit status: 0 done, 1 no disc was written, 2 the arguments are
/// wrong, 3 the disc was written without some files that seem to be DICOM but cannot be read.
int runCommandLine(std::span<const std::string> arguments);

}  // namespace cinedisc::discmaker
