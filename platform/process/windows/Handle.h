#pragma once

#include <memory>
#include <type_traits>
#include <windows.h>

namespace cinedisc {

struct HandleCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

/// A handle that is closed with its scope; null when there is none.
using Handle = std::unique_ptr<std::remove_pointer_t<HANDLE>, HandleCloser>;

}  // namespace cinedisc
