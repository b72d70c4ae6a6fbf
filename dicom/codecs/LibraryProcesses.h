#pragma once

#include "dicom/codecs/LibraryTask.h"
#include "platform/process/ConfinedProcess.h"

#include <memory>
#include <mutex>
#include <vector>

namespace cinedisc::dicom::codecs {

/// The confined processes that libraries work in: as many as threads decode at a time, each started when it
/// is first needed and kept for the next frame. May be used by several threads at a time.
class LibraryProcesses {
  public:
    /// A frame may take `patience`, and as long again for every four megapixels.
    explicit LibraryProcesses(std::shared_ptr<ConfinedProcesses> source,
                              std::chrono::milliseconds patience = std::chrono::seconds(10))
        : source_(std::move(source)), patience_(patience) {}

    /// Decodes in one of them. Whether the system allows them shows with the first: without it, everything is
    /// decoded in this process, with it nothing is, whatever happens to the others. A process that ends,
    /// takes too long or returns nonsense is given up for a new one; the error's reason is Decoder.
    Result<LibraryPicture> decode(std::span<const std::uint8_t> stream, const LibraryTask& task);

  private:
    std::unique_ptr<ConfinedProcess> takeIdle(std::size_t memorySize);
    std::unique_ptr<ConfinedProcess> start(std::size_t memorySize);
    void giveBack(std::unique_ptr<ConfinedProcess> process);

    std::shared_ptr<ConfinedProcesses> source_;
    std::chrono::milliseconds patience_;
    std::once_flag tried_;
    bool areAllowed_ = false;
    std::mutex mutex_;
    std::vector<std::unique_ptr<ConfinedProcess>> idle_;
};

}  // namespace cinedisc::dicom::codecs
