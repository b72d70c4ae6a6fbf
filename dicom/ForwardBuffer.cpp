#include "dicom/ForwardBuffer.h"

#include <algorithm>

namespace cinedisc::dicom {

namespace {

constexpr std::uint64_t smallestRead = 4096;
constexpr std::uint64_t largestGuess = 16 * 1024;
constexpr std::uint64_t largestRead = 64 * 1024;
/// Before the header has told the size of a frame: frames are seldom smaller than this part of a file.
constexpr std::uint64_t guessedFramesInFile = 32;

}  // namespace

std::uint64_t ForwardBuffer::nextReadSize() const {
    if (bytesRead_ == 0) return smallestRead;
    const std::uint64_t guess = std::clamp(size_ / guessedFramesInFile, smallestRead, largestGuess);
    const std::uint64_t growing = std::max(guess, bytesRead_);
    const std::uint64_t most = frameBytes_ > 0 ? smallestRead + frameBytes_ : std::max(guess, growing / 2);
    return std::min({growing, most, largestRead});
}

std::size_t ForwardBuffer::available() const {
    const std::uint64_t blockEnd = blockOffset_ + block_.size();
    return position_ < blockEnd ? static_cast<std::size_t>(blockEnd - position_) : 0;
}

std::span<const std::byte> ForwardBuffer::peek(std::size_t count) {
    const std::size_t have = available();
    if (have < count && position_ + have < size_) {
        block_.erase(block_.begin(), block_.end() - static_cast<std::ptrdiff_t>(have));
        blockOffset_ = position_;
        const std::uint64_t wanted =
            std::min(std::max<std::uint64_t>(count - have, nextReadSize()), size_ - position_ - have);
        block_.resize(have + static_cast<std::size_t>(wanted));
        const std::size_t got = source_.readAt(position_ + have, std::span(block_).subspan(have));
        block_.resize(have + got);
        bytesRead_ += got;
        if (got < wanted) size_ = position_ + have + got;
    }
    const auto offset =
        static_cast<std::size_t>(std::min<std::uint64_t>(position_ - blockOffset_, block_.size()));
    return std::span(block_).subspan(offset, std::min(count, available()));
}

void ForwardBuffer::advance(std::uint64_t count) { position_ += std::min(count, remaining()); }

std::vector<std::byte> ForwardBuffer::takeRest() {
    block_.erase(block_.begin(), block_.end() - static_cast<std::ptrdiff_t>(available()));
    blockOffset_ = position_;
    return std::move(block_);
}

}  // namespace cinedisc::dicom
