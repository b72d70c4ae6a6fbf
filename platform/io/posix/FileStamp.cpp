#include "platform/io/FileStamp.h"

#include <sys/stat.h>

namespace cinedisc {

namespace {

std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

}  // namespace

FileStamp FileStamp::of(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return {};
    return {status.st_size, nanoseconds(status.st_mtim), nanoseconds(status.st_ctim), status.st_ino};
}

}  // namespace cinedisc
