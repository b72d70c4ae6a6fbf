#include "platform/io/FileStamp.h"

#include "platform/io/windows/WidePath.h"

#include <windows.h>

namespace cinedisc {

namespace {

std::int64_t nanoseconds(const LARGE_INTEGER& time) { return time.QuadPart * 100; }

}  // namespace

FileStamp FileStamp::of(const std::string& path) {
    const HANDLE file = CreateFileW(widePath(path).c_str(), FILE_READ_ATTRIBUTES,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) return {};
    FileStamp stamp;
    BY_HANDLE_FILE_INFORMATION known{};
    FILE_BASIC_INFO times{};
    if (GetFileInformationByHandle(file, &known) &&
        GetFileInformationByHandleEx(file, FileBasicInfo, &times, sizeof(times))) {
        const auto joined = [](DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; };
        stamp = {static_cast<std::int64_t>(joined(known.nFileSizeHigh, known.nFileSizeLow)),
                 nanoseconds(times.LastWriteTime), nanoseconds(times.ChangeTime),
                 joined(known.nFileIndexHigh, known.nFileIndexLow)};
    }
    CloseHandle(file);
    return stamp;
}

}  // namespace cinedisc
