#include "tests/dicom/Fixtures.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <span>
#include <stdexcept>

namespace cinedisc::test {

using namespace dicom;

std::shared_ptr<const DicomFile> opened(const Bytes& bytes) {
    auto file = DicomFile::open(std::make_shared<MemoryByteSource>(bytes));
    if (!file) throw std::runtime_error(file.error().detail);
    return file.value();
}

std::shared_ptr<const DicomFile> opened(const DicomBuilder& builder) { return opened(builder.build()); }

Bytes rleFrame(const Bytes& pixels) {
    constexpr std::size_t longestRun = 128;
    Bytes stream = bytesOf({1, 0, 0, 0, 64}) + Bytes(59);
    for (std::size_t at = 0; at < pixels.size(); at += longestRun) {
        const std::size_t run = std::min(longestRun, pixels.size() - at);
        stream.push_back(static_cast<std::byte>(run - 1));
        stream.insert(stream.end(), &pixels[at], &pixels[at] + run);
    }
    if (stream.size() % 2) stream.push_back(std::byte{0x80});
    return stream;
}

Bytes pixelsOfFrame(int frame, std::size_t count) {
    Bytes pixels(count);
    for (std::size_t i = 0; i < count; ++i)
        pixels[i] = static_cast<std::byte>((i * 7 + static_cast<std::size_t>(frame) * 31) % 251);
    return pixels;
}

DicomBuilder rleRun(int rows, int columns, int frames, OffsetTable table, int fragmentsPerFrame) {
    DicomBuilder builder = DicomBuilder::image(rows, columns, frames);
    builder.transferSyntax(rleSyntax);
    std::vector<Bytes> streams;
    for (int frame = 0; frame < frames; ++frame)
        streams.push_back(rleFrame(pixelsOfFrame(frame, static_cast<std::size_t>(rows * columns))));
    builder.encapsulatedFrames(streams, table, fragmentsPerFrame);
    return builder;
}

Bytes samplesOf(const Frame& frame) {
    const auto* samples = std::get_if<std::vector<std::uint8_t>>(&frame.samples);
    if (!samples) return {};
    const auto bytes = std::as_bytes(std::span(*samples));
    return {bytes.begin(), bytes.end()};
}

std::vector<std::filesystem::path> samplePaths() {
    std::vector<std::filesystem::path> paths;
    const char* folder = std::getenv("CINEDISC_SAMPLES");
    if (!folder || !std::filesystem::is_directory(folder)) return paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().extension() == ".dcm") paths.push_back(entry.path());
    return paths;
}

Bytes fakeJpeg(std::size_t size, int mark) {
    Bytes stream = bytesOf({0xFF, 0xD8, 0xFF, 0xE0, 0x00, 0x10});
    stream.resize(std::max<std::size_t>(size, 8), static_cast<std::byte>(mark));
    return stream;
}

}  // namespace cinedisc::test
