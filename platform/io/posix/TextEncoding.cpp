#include "platform/io/TextEncoding.h"

#include <cerrno>
#include <iconv.h>

namespace cinedisc {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// An open conversion of the C library, closed with its scope.
class Conversion {
  public:
    explicit Conversion(const char* from) : handle_(iconv_open("UTF-8", from)) {}
    ~Conversion() {
        if (isOpen()) iconv_close(handle_);
    }
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    bool isOpen() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    std::string run(std::string_view bytes) {
        std::string out;
        char* in = const_cast<char*>(bytes.data());  // the interface predates const
        std::size_t left = bytes.size();
        while (left > 0) {
            char chunk[256];
            char* to = chunk;
            std::size_t room = sizeof(chunk);
            const bool isDone = iconv(handle_, &in, &left, &to, &room) != static_cast<std::size_t>(-1);
            const int why = errno;
            out.append(chunk, static_cast<std::size_t>(to - chunk));
            if (isDone || why == E2BIG) continue;
            out += replacement;
            ++in;
            --left;
            iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        }
        char rest[16];
        char* to = rest;
        std::size_t room = sizeof(rest);
        iconv(handle_, nullptr, nullptr, &to, &room);
        return out.append(rest, static_cast<std::size_t>(to - rest));
    }

  private:
    iconv_t handle_;
};

}  // namespace

std::optional<std::string> decodeText(std::string_view bytes, const char* encoding) {
    Conversion conversion(encoding);
    if (!conversion.isOpen()) return std::nullopt;
    return conversion.run(bytes);
}

}  // namespace cinedisc
