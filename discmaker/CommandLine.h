#pragma once

#include "discmaker/DiscMaker.h"

#include <filesystem>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace cinedisc::discmaker {

/// What the person at the command line asked for.
struct MakeRequest {
    bool demo = false;
    DiscRequest disc;  ///< without named files for the demo
};
/// What is to be shown instead: the help or the version.
struct Answer {
    std::string text;
};
/// Something that is no request, and what is wrong with it.
struct UsageError {
    std::string message;
};

/// Reads the arguments behind the program's name. `beside`: the folder that makedisc lies in.
std::variant<MakeRequest, Answer, UsageError> parseCommandLine(std::span<const std::string> arguments,
                                                               const std::filesystem::path& beside);

/// Does what the arguments ask. Returns the exit status: 0 done, 1 no disc was written, 2 the arguments are
/// wrong, 3 the disc was written, but files are damaged, missing or left out that seem to be DICOM.
int runCommandLine(std::span<const std::string> arguments, const std::filesystem::path& beside);

}  // namespace cinedisc::discmaker
