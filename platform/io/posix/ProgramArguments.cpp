#include "platform/io/ProgramArguments.h"

#include <filesystem>
#include <system_error>

namespace cinedisc {

std::vector<std::string> programArguments(int count, char** values) {
    return std::vector<std::string>(values + 1, values + count);
}

std::string programPath() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

}  // namespace cinedisc
