#include "platform/io/RandomAccessFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cinedisc {

std::unique_ptr<RandomAccessFile> RandomAccessFile::open(const std::string& path, OpenError* error) {
    const auto fail = [error](OpenError why) {
        if (error) *error = why;
        return nullptr;
    };
    // O_NONBLOCK: opening a pipe that nobody writes to must not wait.
    const int handle = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (handle < 0)
        return fail(errno == ENOENT || errno == ENOTDIR ? OpenError::Missing : OpenError::NoAccess);
    struct stat status {};
    if (::fstat(handle, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(handle);
        return fail(OpenError::NotRegular);
    }
    if (error) *error = OpenError::None;
    return std::unique_ptr<RandomAccessFile>(
        new RandomAccessFile(handle, static_cast<std::uint64_t>(status.st_size)));
}

RandomAccessFile::~RandomAccessFile() { ::close(static_cast<int>(handle_)); }

std::size_t RandomAccessFile::readAt(std::uint64_t offset, std::span<std::byte> into) const {
    const int handle = static_cast<int>(handle_);
    std::size_t done = 0;
    while (done < into.size()) {
        const auto got =
            ::pread(handle, into.data() + done, into.size() - done, static_cast<off_t>(offset + done));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

}  // namespace cinedisc
