#include "platform/io/FileSizeLimit.h"

#include <csignal>

namespace cinedisc {

struct FileSizeLimit::Before {
    struct sigaction action;
};

FileSizeLimit::FileSizeLimit() : before_(std::make_unique<Before>()) {
    struct sigaction ignored {};
    ignored.sa_handler = SIG_IGN;
    sigaction(SIGXFSZ, &ignored, &before_->action);
}

FileSizeLimit::~FileSizeLimit() { sigaction(SIGXFSZ, &before_->action, nullptr); }

}  // namespace cinedisc
