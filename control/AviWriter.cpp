#include "control/AviWriter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <initializer_list>

namespace cinedisc {

namespace {

constexpr quint32 scale = 1000;
constexpr quint32 mostBytes = 1U << 30;
constexpr quint32 indexEntryBytes = 16, chunkHeaderBytes = 8, fourLetters = 4;
constexpr quint32 hasIndex = 0x10, isKeyFrame = 0x10;
constexpr const char* frameChunk = "00dc";  // compressed video of stream 0

void append(QByteArray& to, std::initializer_list<quint32> numbers) {
    for (const quint32 number : numbers) {
        for (int shift = 0; shift < 32; shift += 8) to.append(static_cast<char>(number >> shift));
    }
}

QByteArray chunk(const char* name, const QByteArray& content) {
    QByteArray result(name, fourLetters);
    append(result, {static_cast<quint32>(content.size())});
    return result + content;
}

QByteArray list(const char* name, const QByteArray& content) {
    return chunk("LIST", QByteArray(name, fourLetters) + content);
}

quint32 evenUp(quint32 size) { return size + size % 2; }

}  // namespace

AviWriter::AviWriter(QIODevice& into, QSize size, double framesPerSecond)
    : into_(into),
      size_(size),
      rate_(static_cast<quint32>(std::max(1.0, std::round(framesPerSecond * scale)))) {}

/// As long before the first frame as behind the last: it is written over.
QByteArray AviWriter::header() const {
    const auto frames = static_cast<quint32>(chunks_.size());
    const auto width = static_cast<quint32>(size_.width()), height = static_cast<quint32>(size_.height());
    const quint32 buffer = evenUp(largest_) + chunkHeaderBytes;
    const auto microseconds = static_cast<quint32>(std::lround(1e6 * scale / rate_));

    QByteArray film;
    append(film, {microseconds, 0, 0, hasIndex, frames, 0, 1, buffer, width, height, 0, 0, 0, 0});
    QByteArray stream("vidsMJPG");
    append(stream, {0, 0, 0, scale, rate_, 0, frames, buffer, ~0U, 0, 0, width | height << 16});
    QByteArray format;
    append(format, {40, width, height, 1 | 24 << 16});
    format += "MJPG";
    append(format, {width * height * 3, 0, 0, 0, 0});

    const QByteArray lists =
        list("hdrl", chunk("avih", film) + list("strl", chunk("strh", stream) + chunk("strf", format)));
    const quint32 indexBytes = chunkHeaderBytes + frames * indexEntryBytes;
    const quint32 frameBytes = chunks_.isEmpty() ? 0 : end_ - chunks_.front().offset;
    QByteArray result("RIFF");
    append(result, {static_cast<quint32>(fourLetters + lists.size() + chunkHeaderBytes + fourLetters) +
                    frameBytes + indexBytes});
    result += "AVI " + lists + "LIST";
    append(result, {fourLetters + frameBytes});
    return result + "movi";
}

bool AviWriter::write(const QByteArray& bytes) { return into_.write(bytes) == bytes.size(); }

bool AviWriter::add(const QByteArray& jpeg) {
    if (end_ == 0) {
        const QByteArray first = header();
        if (!write(first)) return false;
        end_ = static_cast<quint32>(first.size());
    }
    const auto size = static_cast<quint32>(std::min<qsizetype>(jpeg.size(), mostBytes));
    const quint32 more = chunkHeaderBytes + evenUp(size) + indexEntryBytes;
    if (mostBytes - end_ < more + chunks_.size() * indexEntryBytes) return false;
    QByteArray bytes = chunk(frameChunk, jpeg);
    if (size % 2 != 0) bytes.append('\0');
    if (!write(bytes)) return false;
    chunks_.append({end_, size});
    end_ += static_cast<quint32>(bytes.size());
    largest_ = std::max(largest_, size);
    return true;
}

bool AviWriter::finish() {
    if (chunks_.isEmpty()) return false;
    // Offsets count from the letters "movi", which stand right before the first frame.
    const quint32 start = chunks_.front().offset - fourLetters;
    QByteArray index;
    for (const Chunk& frame : chunks_) {
        index += frameChunk;
        append(index, {isKeyFrame, frame.offset - start, frame.size});
    }
    return write(chunk("idx1", index)) && into_.seek(0) && write(header());
}

}  // namespace cinedisc
