#include "discmaker/FileCopy.h"

#include "discmaker/DiscError.h"
#include "platform/io/FileStamp.h"
#include "platform/io/RandomAccessFile.h"

#include <QHash>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <functional>
#include <optional>
#include <system_error>
#include <vector>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t blockBytes = 1 << 20;

/// Reads a file from end to end and returns its digest, nothing when it cannot be read. The digest has to
/// find faults, not forgeries, and takes a tenth of the time of one that would.
std::optional<Digest> readThrough(const fs::path& path,
                                  const std::function<void(std::span<const std::byte>)>& take) {
    const auto file = RandomAccessFile::open(path.string());
    if (!file) return {};
    Digest digest = 0;
    std::vector<std::byte> block(std::min(blockBytes, file->size()));
    std::uint64_t offset = 0;
    while (offset < file->size()) {
        const auto count = file->readAt(offset, block);
        // The digest is one of whole blocks: what comes in other pieces the second time would seem to differ.
        if (count < std::min<std::uint64_t>(block.size(), file->size() - offset)) return {};
        digest = qHashBits(block.data(), count, digest);
        take(std::span(block).first(count));
        offset += count;
    }
    return digest;
}

[[noreturn]] void cannotWrite(const fs::path& path) {
    const auto reason = std::error_code(errno, std::generic_category()).message();
    throw DiscError("cannot write " + path.string() + ": " + reason);
}

}  // namespace

CopyOutcome copyFile(const fs::path& source, const fs::path& target) {
    const auto before = FileStamp::of(source.string());
    CopyOutcome outcome;
    std::optional<Digest> digest;
    {
        std::ofstream copy(target, std::ios::binary);
        if (!copy) cannotWrite(target);
        digest = readThrough(source, [&](std::span<const std::byte> bytes) {
            copy.write(reinterpret_cast<const char*>(bytes.data()),
                       static_cast<std::streamsize>(bytes.size()));
            if (!copy) cannotWrite(target);
        });
        copy.close();
        if (!copy) cannotWrite(target);
    }
    if (!digest) {
        outcome.fault = "the file cannot be read to its end";
    } else if (FileStamp::of(source.string()) != before) {
        outcome.fault = "the file changed while it was copied";
    }
    if (!outcome.fault.empty()) fs::remove(target);
    outcome.digest = digest.value_or(0);
    return outcome;
}

void requireSame(const fs::path& copy, Digest digest) {
    if (readThrough(copy, [](auto) {}) != digest)
        throw DiscError("the copy " + copy.string() + " differs from what was written");
}

bool haveSameBytes(const fs::path& one, const fs::path& other) {
    const auto first = RandomAccessFile::open(one.string()), second = RandomAccessFile::open(other.string());
    if (!first || !second || first->size() != second->size()) return false;
    std::vector<std::byte> block(blockBytes), sameBlock(blockBytes);
    std::size_t count = 0;
    for (std::uint64_t offset = 0; offset < first->size(); offset += count) {
        count = first->readAt(offset, block);
        if (count == 0 || second->readAt(offset, sameBlock) != count) return false;
        if (!std::equal(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(count), sameBlock.begin()))
            return false;
    }
    return true;
}

void writeText(const fs::path& path, const std::string& text) {
    std::ofstream stream(path, std::ios::binary);
    stream << text;
    stream.close();
    if (!stream) cannotWrite(path);
}

}  // namespace cinedisc::discmaker
