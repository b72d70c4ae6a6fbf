#include "dicom/PrefetchedSource.h"

#include <algorithm>

namespace cinedisc::dicom {

std::size_t PrefetchedSource::readAt(std::uint64_t offset, std::span<std::byte> into) const {
    std::size_t done = 0;
    const std::uint64_t blockEnd = blockOffset_ + block_.size();
    if (offset >= blockOffset_ && offset < blockEnd) {
        done = static_cast<std::size_t>(std::min<std::uint64_t>(into.size(), blockEnd - offset));
        std::copy_n(block_.begin() + static_cast<std::ptrdiff_t>(offset - blockOffset_), done, into.begin());
    }
    if (done < into.size()) done += source_->readAt(offset + done, into.subspan(done));
    return done;
}

}  // namespace cinedisc::dicom
