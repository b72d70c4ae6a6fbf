#include "discmaker/CommandLine.h"
#include "platform/io/ProgramArguments.h"

#include <filesystem>

int main(int count, char** values) {
    const auto program = std::filesystem::path(cinedisc::programPath());
    return cinedisc::discmaker::runCommandLine(cinedisc::programArguments(count, values),
                                               program.parent_path());
}
