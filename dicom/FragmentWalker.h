#pragma once

#include "dicom/ByteSource.h"
#include "dicom/CodeStream.h"
#include "dicom/ElementHeader.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace cinedisc::dicom {

/// One fragment of encapsulated pixel data: the value of an item.
struct Fragment {
    std::uint64_t offset = 0;  ///< of its bytes in the file
    std::uint64_t length = 0;  ///< as far as the file goes
    bool isComplete = true;

    std::uint64_t end() const { return offset + length; }
};

/// Walks from item to item of encapsulated pixel data, forward only, reading the 8 bytes of each item's
/// header unless they were shown to it among other bytes. Empty fragments are passed over.
class FragmentWalker {
  public:
    enum class Ended { NotYet, AtDelimiter, AtEndOfFile, InGarbage, Unreadable };
    /// What helps the walker when a fragment is read: the next item's header, a padding byte, the next
    /// signature.
    static constexpr std::size_t usefulBytesBehind = itemHeader + 1 + codeStreamSignatureBytes;

    FragmentWalker(const ByteSource& source, std::uint64_t firstItem, std::uint64_t end)
        : source_(source), next_(firstItem), end_(end) {}

    /// The next fragment; nothing when there is none, then ended() says why. With `signature`, the first
    /// bytes of the fragment are read along and returned by lastSignature().
    enum class Signature { Leave, Read };
    std::optional<Fragment> next(Signature signature);
    std::span<const std::byte> lastSignature() const { return {signature_.data(), signatureLength_}; }

    /// Bytes of the file that need not be read again, until they are forgotten.
    void show(std::uint64_t offset, std::span<const std::byte> bytes);
    /// Keeps of the bytes shown what next() will want first.
    void forgetShown();
    /// Whether next() can return without reading.
    bool knowsNext() const;

    Ended ended() const { return ended_; }

  private:
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const;
    std::optional<std::uint64_t> enterItem();

    const ByteSource& source_;
    std::uint64_t next_;
    std::uint64_t end_;
    bool lastLengthWasOdd_ = false;
    std::uint64_t shownOffset_ = 0;
    std::span<const std::byte> shown_;
    std::vector<std::byte> kept_;
    std::array<std::byte, codeStreamSignatureBytes> signature_{};
    std::size_t signatureLength_ = 0;
    Ended ended_ = Ended::NotYet;
};

}  // namespace cinedisc::dicom
