#include "dicom/Inflating.h"

#include <algorithm>
#include <zlib.h>

namespace cinedisc::dicom {

namespace {

constexpr std::size_t blockSize = 64 * 1024;
constexpr int rawStream = -MAX_WBITS, wrappedStream = MAX_WBITS;

/// One run of zlib's inflater, which is told whether a wrapper surrounds the stream.
class Inflater {
  public:
    explicit Inflater(int windowBits) { isReady_ = inflateInit2(&stream_, windowBits) == Z_OK; }
    ~Inflater() {
        if (isReady_) inflateEnd(&stream_);
    }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    /// Whether `out` stayed within `most`.
    bool run(const ByteSource& source, std::uint64_t offset, std::uint64_t most,
             std::vector<std::byte>& out) {
        std::vector<std::byte> in(blockSize), inflated(4 * blockSize);
        while (isReady_) {
            const std::size_t got = source.readAt(offset, in);
            offset += got;
            stream_.next_in = reinterpret_cast<Bytef*>(in.data());
            stream_.avail_in = static_cast<uInt>(got);
            if (got == 0) return true;
            int status = Z_OK;
            do {
                stream_.next_out = reinterpret_cast<Bytef*>(inflated.data());
                stream_.avail_out = static_cast<uInt>(inflated.size());
                status = ::inflate(&stream_, Z_NO_FLUSH);
                const std::size_t count = inflated.size() - stream_.avail_out;
                if (out.size() + count > most) return false;
                out.insert(out.end(), inflated.begin(),
                           inflated.begin() + static_cast<std::ptrdiff_t>(count));
            } while (status == Z_OK && stream_.avail_out == 0);
            if (status != Z_OK && status != Z_BUF_ERROR) return true;
        }
        return true;
    }

  private:
    z_stream stream_{};
    bool isReady_ = false;
};

}  // namespace

Result<std::vector<std::byte>> inflateFrom(const ByteSource& source, std::uint64_t offset,
                                           std::uint64_t most) {
    std::vector<std::byte> out;
    for (const int windowBits : {rawStream, wrappedStream}) {
        out.clear();
        if (!Inflater(windowBits).run(source, offset, most, out))
            return DecodeError{DecodeError::Kind::TooLarge, DecodeError::Reason::Unpacking, {}, {}, offset};
        if (!out.empty()) return out;
    }
    return DecodeError{DecodeError::Kind::Broken, DecodeError::Reason::Unpacking, {}, {}, offset};
}

}  // namespace cinedisc::dicom
