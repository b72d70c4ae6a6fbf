#pragma once

#include <string>
#include <vector>

namespace cinedisc {

/// The arguments behind the program's name, as `main` was given them: in UTF-8 on Windows, whatever its code
/// page, and byte for byte elsewhere.
std::vector<std::string> programArguments(int count, char** values);

/// Full path of the running program, encoded like the arguments; "" when the system does not tell.
std::string programPath();

}  // namespace cinedisc
