#include "platform/io/ProgramArguments.h"

#include "platform/io/windows/WidePath.h"

#include <windows.h>
// windows.h must come first
#include <memory>
#include <shellapi.h>

namespace cinedisc {

std::vector<std::string> programArguments(int, char**) {
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> values(
        CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
    std::vector<std::string> arguments;
    for (int i = 1; values && i < count; ++i) arguments.push_back(narrowed(values.get()[i]));
    return arguments;
}

std::string programPath() {
    constexpr std::size_t longest = 1 << 15;
    std::wstring path(longest, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    std::string told = narrowed(path);
    // Wine tells of a share without its beginning.
    if (told.starts_with("UNC\\")) told.replace(0, 3, "\\");
    return told;
}

}  // namespace cinedisc
