#pragma once

#include <memory>

namespace cinedisc {

/// While it lives, a write beyond the largest file that the process may make fails as any other write does.
/// Otherwise it would end the process. For one thread at a time.
class FileSizeLimit {
  public:
    FileSizeLimit();
    ~FileSizeLimit();
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    struct Before;
    std::unique_ptr<Before> before_;
};

}  // namespace cinedisc
