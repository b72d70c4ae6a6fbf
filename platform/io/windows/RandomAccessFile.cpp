#include "platform/io/RandomAccessFile.h"

#include "platform/io/windows/WidePath.h"

#include <algorithm>
#include <array>
#include <windows.h>

namespace cinedisc {

namespace {

/// A single request for much more than this is refused on some network drives.
constexpr std::size_t largestRequest = 8u << 20;

HANDLE systemHandle(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

bool saysMissing(DWORD error) {
    constexpr std::array<DWORD, 5> missing{ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_INVALID_NAME,
                                           ERROR_BAD_PATHNAME, ERROR_DIRECTORY};
    return std::find(missing.begin(), missing.end(), error) != missing.end();
}

}  // namespace

std::unique_ptr<RandomAccessFile> RandomAccessFile::open(const std::string& path, OpenError* error) {
    const auto fail = [error](OpenError why) {
        if (error) *error = why;
        return nullptr;
    };
    const std::wstring wide = widePath(path);
    // A folder can be opened with these flags; it is refused by what it is, as a pipe or a device is. Whoever
    // wants to delete, rename or eject may.
    const HANDLE handle =
        CreateFileW(wide.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return fail(saysMissing(GetLastError()) ? OpenError::Missing : OpenError::NoAccess);
    BY_HANDLE_FILE_INFORMATION known{};
    if (GetFileType(handle) != FILE_TYPE_DISK || !GetFileInformationByHandle(handle, &known) ||
        (known.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
        CloseHandle(handle);
        return fail(OpenError::NotRegular);
    }
    if (error) *error = OpenError::None;
    return std::unique_ptr<RandomAccessFile>(new RandomAccessFile(
        reinterpret_cast<Handle>(handle), std::uint64_t{known.nFileSizeHigh} << 32 | known.nFileSizeLow));
}

RandomAccessFile::~RandomAccessFile() { CloseHandle(systemHandle(handle_)); }

std::size_t RandomAccessFile::readAt(std::uint64_t offset, std::span<std::byte> into) const {
    std::size_t done = 0;
    while (done < into.size()) {
        const std::uint64_t at = offset + done;
        // The offset goes with the request, so that threads do not move each other's position.
        OVERLAPPED place{};
        place.Offset = static_cast<DWORD>(at);
        place.OffsetHigh = static_cast<DWORD>(at >> 32);
        DWORD got = 0;
        const auto wanted = static_cast<DWORD>(std::min(into.size() - done, largestRequest));
        if (!ReadFile(systemHandle(handle_), into.data() + done, wanted, &got, &place) || got == 0) break;
        done += got;
    }
    return done;
}

}  // namespace cinedisc
