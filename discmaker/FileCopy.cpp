#include "discmaker/FileCopy.h"

#include "discmaker/DiscError.h"
#include "platform/io/FileStamp.h"
#include "platform/io/RandomAccessFile.h"

#include <QCryptographicHash>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <functional>
#include <system_error>
#include <vector>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t blockBytes = 1 << 20;

/// Reads a file from end to end and returns its digest, "" when it cannot be read.
std::string readThrough(const fs::path& path, const std::function<void(std::span<const std::byte>)>& take) {
    const auto file = RandomAccessFile::open(path.string());
    if (!file) return {};
    QCryptographicHash hash(QCryptographicHash::Blake2b_256);
    std::vector<std::byte> block(std::min(blockBytes, file->size()));
    std::uint64_t offset = 0;
    while (offset < file->size()) {
        const auto count = file->readAt(offset, block);
        if (count == 0) return {};
        hash.addData(
            QByteArrayView(reinterpret_cast<const char*>(block.data()), static_cast<qsizetype>(count)));
        take(std::span(block).first(count));
        offset += count;
    }
    return hash.result().toStdString();
}

[[noreturn]] void cannotWrite(const fs::path& path) {
    const auto reason = std::error_code(errno, std::generic_category()).message();
    throw DiscError("cannot write " + path.string() + ": " + reason);
}

}  // namespace

CopyOutcome copyFile(const fs::path& source, const fs::path& target) {
    const auto before = FileStamp::of(source.string());
    CopyOutcome outcome;
    {
        std::ofstream copy(target, std::ios::binary);
        if (!copy) cannotWrite(target);
        outcome.digest = readThrough(source, [&](std::span<const std::byte> bytes) {
            copy.write(reinterpret_cast<const char*>(bytes.data()),
                       static_cast<std::streamsize>(bytes.size()));
            if (!copy) cannotWrite(target);
        });
        copy.close();
        if (!copy) cannotWrite(target);
    }
    if (outcome.digest.empty()) {
        outcome.fault = "the file cannot be read to its end";
    } else if (FileStamp::of(source.string()) != before) {
        outcome.fault = "the file changed while it was copied";
    }
    if (!outcome.fault.empty()) fs::remove(target);
    return outcome;
}

void requireSame(const fs::path& copy, const std::string& digest) {
    if (readThrough(copy, [](auto) {}) != digest)
        throw DiscError("the copy " + copy.string() + " differs from what was written");
}

void writeText(const fs::path& path, const std::string& text) {
    std::ofstream stream(path, std::ios::binary);
    stream << text;
    stream.close();
    if (!stream) cannotWrite(path);
}

}  // namespace cinedisc::discmaker
