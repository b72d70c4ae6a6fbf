#include "dicom/codecs/LibraryTask.h"

#include "dicom/codecs/BaselineJpegDecoder.h"
#include "dicom/codecs/Cells.h"
#include "dicom/codecs/CodecError.h"
#include "dicom/codecs/ExtendedJpegDecoder.h"
#include "dicom/codecs/Jpeg2000Decoder.h"
#include "dicom/codecs/PixelCell.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <type_traits>

namespace cinedisc::dicom::codecs {

namespace {

using Bytes = std::span<const std::uint8_t>;

/// At the beginning of the shared memory. The stream follows, then the picture's cells.
struct Question {
    LibraryTask task;
    std::uint64_t streamSize = 0;
};

/// Takes the question's place.
struct Reply {
    enum class Content : std::uint32_t { Picture = 1, Error };
    Content content = Content::Error;
    DecodeError::Kind kind = DecodeError::Kind::Broken;
    char detail[100] = {};
    int components = 1, precision = 8, halvings = 0;
    int isSigned = 0;  ///< a bool must not be read from bytes that may be anything
    Exactness exactness = Exactness::Other;
    ColourSpace colour = ColourSpace::Rgb;
};

static_assert(std::is_trivially_copyable_v<Question> && std::is_trivially_copyable_v<Reply>);

constexpr std::size_t streamAt = 256;
static_assert(sizeof(Question) <= streamAt && sizeof(Reply) <= streamAt);

std::size_t cellsAt(std::size_t streamSize) {
    constexpr std::size_t line = 64;
    return (streamAt + streamSize + line - 1) / line * line;
}

template <typename Content>
Content takeFrom(std::span<const std::byte> memory) {
    Content content;
    std::memcpy(&content, memory.data(), sizeof content);
    return content;
}

template <typename Content>
void putInto(std::span<std::byte> memory, const Content& content) {
    std::memcpy(memory.data(), &content, sizeof content);
}

std::size_t cellCount(const PixelFormat& format, int components) {
    return static_cast<std::size_t>(format.rows) * static_cast<std::size_t>(format.columns) *
           static_cast<std::size_t>(components);
}

/// What is known of a JPEG stream's picture before it is decoded, all but the cells.
CodedPicture pictureLike(const JpegHeader& header, const PixelFormat& format) {
    CodedPicture picture;
    picture.components = header.componentCount;
    picture.precision = header.precision == 8 ? 8 : 12;
    picture.exactness = Exactness::Other;
    // The library for 8 bits turns colours into red, green and blue itself.
    if (picture.precision == 12) picture.colour = jpegColourSpace(header, format.photometric);
    return picture;
}

std::size_t jpegBytes(const JpegHeader& header, const PixelFormat& format) {
    return cellCount(format, header.componentCount) * (header.precision == 8 ? 1 : 2);
}

std::optional<DecodeError> decodeJpeg(Bytes stream, const JpegHeader& header, const PixelFormat& format,
                                      std::span<std::byte> room) {
    const std::size_t count = cellCount(format, header.componentCount);
    if (header.precision == 8)
        return decodeBaselineJpeg(stream, header, format,
                                  {reinterpret_cast<std::uint8_t*>(room.data()), count});
    return decodeExtendedJpeg(stream, header, {reinterpret_cast<std::uint16_t*>(room.data()), count});
}

Result<CodedPicture> decodeJpeg(Bytes stream, const PixelFormat& format) {
    const Result<JpegHeader> header = readJpegHeader(stream);
    if (!header) return header.error();
    CodedPicture picture = pictureLike(header.value(), format);
    picture.cells = makeCells(picture.precision, false, cellCount(format, picture.components));
    const auto room =
        std::visit([](auto& cells) { return std::as_writable_bytes(std::span(cells)); }, picture.cells);
    if (const auto error = decodeJpeg(stream, header.value(), format, room)) return *error;
    return picture;
}

Result<LibraryPicture> decode(Bytes stream, const LibraryTask& task) {
    if (task.codec == LibraryCodec::CoarseJpeg2000) {
        auto coarse = decodeCoarseJpeg2000(stream, task.format, task.leastSide);
        if (!coarse) return broken("no coarse picture");
        return LibraryPicture{std::move(coarse->picture), coarse->halvings};
    }
    auto picture = task.codec == LibraryCodec::Jpeg ? decodeJpeg(stream, task.format)
                                                    : decodeJpeg2000(stream, task.format);
    if (!picture) return picture.error();
    return LibraryPicture{std::move(picture.value())};
}

/// Decodes into the room, and returns what is told of the picture there: that has no cells of its own.
Result<LibraryPicture> decodeInto(std::span<std::byte> room, Bytes stream, const LibraryTask& task) {
    if (task.codec == LibraryCodec::Jpeg) {
        const Result<JpegHeader> header = readJpegHeader(stream);
        if (!header) return header.error();
        if (jpegBytes(header.value(), task.format) > room.size()) return tooLarge();
        if (const auto error = decodeJpeg(stream, header.value(), task.format, room)) return *error;
        return LibraryPicture{pictureLike(header.value(), task.format)};
    }
    auto decoded = decode(stream, task);
    if (!decoded) return decoded;
    const bool fits = std::visit(
        [&](const auto& cells) {
            const auto bytes = std::as_bytes(std::span(cells));
            if (bytes.size() <= room.size()) std::ranges::copy(bytes, room.begin());
            return bytes.size() <= room.size();
        },
        decoded.value().picture.cells);
    if (!fits) return tooLarge();
    return decoded;
}

template <typename Decode>
Result<LibraryPicture> withoutExceptions(const Decode& decodeIt) {
    try {
        return decodeIt();
    } catch (const std::bad_alloc&) {
        return tooLarge();
    } catch (const std::exception&) {
        return broken("they could not be decoded");
    }
}

Reply errorReply(const DecodeError& error) {
    Reply reply;
    reply.kind = error.kind;
    error.detail.copy(reply.detail, sizeof reply.detail - 1);
    return reply;
}

std::optional<DecodeError> errorIn(const Reply& reply) {
    if (reply.kind == DecodeError::Kind::CutOff) return cutOff();
    if (reply.kind == DecodeError::Kind::TooLarge) return tooLarge();
    std::string detail(reply.detail, strnlen(reply.detail, sizeof reply.detail));
    std::ranges::replace_if(
        detail, [](char c) { return c < ' ' || c > '~'; }, ' ');
    if (reply.kind == DecodeError::Kind::Unsupported) return unsupported(detail);
    if (reply.kind == DecodeError::Kind::Broken) return broken(detail);
    return std::nullopt;
}

bool isPossible(const Reply& reply, const LibraryTask& task) {
    constexpr int mostHalvings = 16;
    const bool isCoarse = task.codec == LibraryCodec::CoarseJpeg2000;
    const bool isPrecise = task.codec == LibraryCodec::Jpeg ? reply.precision == 8 || reply.precision == 12
                                                            : reply.precision >= 1 && reply.precision < 32;
    return isPrecise && (reply.components == 1 || reply.components == 3) &&
           reply.halvings >= (isCoarse ? 1 : 0) && reply.halvings <= (isCoarse ? mostHalvings : 0) &&
           reply.exactness >= Exactness::Same && reply.exactness <= Exactness::Other &&
           reply.colour >= ColourSpace::Rgb && reply.colour <= ColourSpace::YbrPartial;
}

/// Copies the cells; false when the memory does not hold them all, or bits above their precision.
bool takeCells(std::span<const std::byte> from, std::size_t count, int precision, Frame::Samples& cells) {
    return std::visit(
        [&](auto& samples) {
            using Sample = typename std::decay_t<decltype(samples)>::value_type;
            if (count > from.size() / sizeof(Sample)) return false;
            const auto* const first = reinterpret_cast<const Sample*>(from.data());
            samples.assign(first, first + count);
            if constexpr (std::is_integral_v<Sample>) {
                using Pattern = std::make_unsigned_t<Sample>;
                if (precision >= static_cast<int>(sizeof(Sample) * 8)) return true;
                const std::span patterns(reinterpret_cast<const Pattern*>(samples.data()), samples.size());
                return orOf(patterns) >> precision == 0;
            }
            return true;
        },
        cells);
}

}  // namespace

Result<LibraryPicture> decodeInThisProcess(Bytes stream, const LibraryTask& task) {
    return withoutExceptions([&] { return decode(stream, task); });
}

std::size_t memoryForTask(std::size_t streamSize, const LibraryTask& task) {
    const std::size_t mostCellBytes = task.codec == LibraryCodec::Jpeg ? 2 : 4;
    return cellsAt(streamSize) +
           std::min<std::size_t>(cellCount(task.format, 3) * mostCellBytes, maximumDecodingBytes);
}

void putTask(std::span<std::byte> memory, Bytes stream, const LibraryTask& task) {
    putInto(memory, Question{task, stream.size()});
    std::memcpy(memory.data() + streamAt, stream.data(), stream.size());
}

void answerLibraryTask(std::span<std::byte> memory) {
    const auto question = takeFrom<Question>(memory);
    const auto size = static_cast<std::size_t>(question.streamSize);
    const Bytes stream{reinterpret_cast<const std::uint8_t*>(memory.data()) + streamAt, size};
    const auto done =
        withoutExceptions([&] { return decodeInto(memory.subspan(cellsAt(size)), stream, question.task); });
    if (!done) return putInto(memory, errorReply(done.error()));
    const CodedPicture& picture = done.value().picture;
    Reply reply;
    reply.content = Reply::Content::Picture;
    reply.components = picture.components;
    reply.precision = picture.precision;
    reply.halvings = done.value().halvings;
    reply.isSigned = picture.isSigned;
    reply.exactness = picture.exactness;
    reply.colour = picture.colour;
    putInto(memory, reply);
}

std::optional<Result<LibraryPicture>> takePicture(std::span<const std::byte> memory, std::size_t streamSize,
                                                  const LibraryTask& task) {
    const auto reply = takeFrom<Reply>(memory);
    if (reply.content == Reply::Content::Error) {
        if (const auto error = errorIn(reply)) return *error;
        return std::nullopt;
    }
    if (reply.content != Reply::Content::Picture || !isPossible(reply, task)) return std::nullopt;
    LibraryPicture taken;
    taken.halvings = reply.halvings;
    CodedPicture& picture = taken.picture;
    picture.components = reply.components;
    picture.precision = reply.precision;
    picture.isSigned = reply.isSigned != 0;
    picture.exactness = reply.exactness;
    picture.colour = reply.colour;
    const bool isSigned = task.codec != LibraryCodec::Jpeg && task.format.isSigned && picture.components == 1;
    picture.cells = makeCells(picture.precision, isSigned, 0);
    const std::size_t count = cellCount(halved(task.format, taken.halvings), picture.components);
    if (!takeCells(memory.subspan(cellsAt(streamSize)), count, picture.precision, picture.cells))
        return std::nullopt;
    return taken;
}

}  // namespace cinedisc::dicom::codecs
