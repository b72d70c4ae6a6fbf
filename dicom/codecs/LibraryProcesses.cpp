#include "dicom/codecs/LibraryProcesses.h"

#include "dicom/codecs/CodecError.h"

#include <algorithm>
#include <bit>

namespace cinedisc::dicom::codecs {

namespace {

/// Shared memory of a process: at first, which is enough for a cine's frames, and the most that is kept.
constexpr std::size_t usualMemory = std::size_t{16} << 20, mostKept = std::size_t{64} << 20;

}  // namespace

Result<LibraryPicture> LibraryProcesses::decode(std::span<const std::uint8_t> stream,
                                                const LibraryTask& task) {
    std::call_once(tried_, [this] {
        auto first = start(usualMemory);
        areAllowed_ = first != nullptr;
        if (first) giveBack(std::move(first));
    });
    if (!areAllowed_) return decodeInThisProcess(stream, task);

    constexpr std::int64_t pixels = std::int64_t{4} << 20;
    const auto most = patience_ * (1 + std::int64_t{task.format.rows} * task.format.columns / pixels);
    const std::size_t memorySize = memoryForTask(stream.size(), task);
    auto process = takeIdle(memorySize);
    for (int tries = process ? 2 : 1; tries > 0; --tries) {
        if (!process) process = start(memorySize);
        if (!process) return tooLarge();
        putTask(process->memory(), stream, task);
        const auto outcome = process->ask(most);
        if (outcome == ConfinedProcess::Outcome::TookTooLong) break;
        if (outcome == ConfinedProcess::Outcome::Done) {
            if (auto picture = takePicture(process->memory(), stream.size(), task)) {
                giveBack(std::move(process));
                return std::move(*picture);
            }
        }
        process.reset();
    }
    return DecodeError{DecodeError::Kind::Broken, DecodeError::Reason::Decoder};
}

std::unique_ptr<ConfinedProcess> LibraryProcesses::takeIdle(std::size_t memorySize) {
    const std::lock_guard lock(mutex_);
    const auto found = std::ranges::find_if(
        idle_, [&](const auto& process) { return process->memory().size() >= memorySize; });
    if (found == idle_.end()) return nullptr;
    auto process = std::move(*found);
    idle_.erase(found);
    return process;
}

std::unique_ptr<ConfinedProcess> LibraryProcesses::start(std::size_t memorySize) {
    return source_->start(std::max(usualMemory, std::bit_ceil(memorySize)));
}

void LibraryProcesses::giveBack(std::unique_ptr<ConfinedProcess> process) {
    if (process->memory().size() > mostKept) return;
    const std::lock_guard lock(mutex_);
    idle_.push_back(std::move(process));
}

}  // namespace cinedisc::dicom::codecs
