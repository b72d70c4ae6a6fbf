#pragma once

#include "dicom/codecs/CodedPicture.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace cinedisc::dicom::codecs {

enum class LibraryCodec { Jpeg, Jpeg2000, CoarseJpeg2000 };

/// What a library is to do with a code stream.
struct LibraryTask {
    LibraryCodec codec = LibraryCodec::Jpeg;
    PixelFormat format;
    int leastSide = 0;  ///< of a coarse picture, pixels
};

struct LibraryPicture {
    CodedPicture picture;
    int halvings = 0;  ///< of a coarse picture's sides
};

/// Never throws.
Result<LibraryPicture> decodeInThisProcess(std::span<const std::uint8_t> stream, const LibraryTask& task);

/// How large the memory is to be in which a task and its picture are handed over, in bytes.
std::size_t memoryForTask(std::size_t streamSize, const LibraryTask& task);

/// Puts a task where a confined process finds it. The memory is as large as memoryForTask says, or larger.
void putTask(std::span<std::byte> memory, std::span<const std::uint8_t> stream, const LibraryTask& task);

/// The work of a confined process: does the task and puts the picture, or what is wrong, in its place.
void answerLibraryTask(std::span<std::byte> memory);

/// Copies what a confined process made of a task. It may be under somebody else's control by then, so its
/// picture has the size and the kind of samples that the task asks for, whatever they show. Empty when there
/// is no such picture.
std::optional<Result<LibraryPicture>> takePicture(std::span<const std::byte> memory, std::size_t streamSize,
                                                  const LibraryTask& task);

}  // namespace cinedisc::dicom::codecs
