#pragma once

#include "dicom/ByteSource.h"

#include <memory>
#include <vector>

namespace cinedisc::dicom {

/// A source of which one block is in memory already: what was read beyond a header is not read again with the
/// first frame.
class PrefetchedSource : public ByteSource {
  public:
    PrefetchedSource(std::shared_ptr<const ByteSource> source, std::uint64_t blockOffset,
                     std::vector<std::byte> block)
        : source_(std::move(source)), blockOffset_(blockOffset), block_(std::move(block)) {}

    std::uint64_t size() const override { return source_->size(); }
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const override;

  private:
    std::shared_ptr<const ByteSource> source_;
    std::uint64_t blockOffset_;
    std::vector<std::byte> block_;
};

}  // namespace cinedisc::dicom
