#include "platform/io/FileSizeLimit.h"

namespace cinedisc {

// Here a write that finds no room only fails.
struct FileSizeLimit::Before {};
FileSizeLimit::FileSizeLimit() = default;
FileSizeLimit::~FileSizeLimit() = default;

}  // namespace cinedisc
