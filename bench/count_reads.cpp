// count_reads: what is read of a file until its first picture, and for a later one, in bytes and reads; one
// "key=value" a line. `over` is what is read beyond header, offset table, the frame and the item heads
// passed.
#include "bench/Angiogram.h"
#include "dicom/DicomFile.h"
#include "dicom/Tags.h"
#include "discmaker/LosslessFile.h"
#include "tests/dicom/Fixtures.h"

#include <cstdio>
#include <cstdlib>

namespace {

using namespace cinedisc;
using test::Bytes;
using test::DicomBuilder;
using test::OffsetTable;

constexpr int size = 512, frames = 100, laterFrame = 60;
constexpr std::uint64_t itemHead = 8;

struct Run {
    const char* name;
    DicomBuilder file;
    std::uint64_t tableBytes;  ///< with its item's head
    std::uint64_t frameBytes;  ///< likewise
    std::uint64_t passed;      ///< item heads on the way to the later frame
};

Run rawRun() {
    Run run{"raw", DicomBuilder::image(size, size, frames), 0, size * size, 0};
    run.file.gradientPixels();
    return run;
}

Run encapsulatedRun(const char* name, OffsetTable table) {
    const auto picture = bench::angiogram(size, 8, 2);
    auto stream = discmaker::LosslessFile::encoded({size, size, 8}, picture);
    if (stream.size() % 2 != 0) stream.push_back(0);
    const auto bytes = std::as_bytes(std::span(stream));
    Run run{name, DicomBuilder::image(size, size, frames), itemHead, itemHead + stream.size(), 0};
    run.file.transferSyntax("1.2.840.10008.1.2.4.70");
    run.file.encapsulatedFrames(std::vector<Bytes>(frames, Bytes(bytes.begin(), bytes.end())), table);
    if (table == OffsetTable::Filled)
        run.tableBytes += 4 * frames;
    else
        run.passed = itemHead * laterFrame;
    return run;
}

bool count(const Run& run) {
    auto source = std::make_shared<test::CountingSource>(run.file.build());
    const auto file = dicom::DicomFile::open(source);
    if (!file || !file.value()->decode(0)) return false;
    const std::uint64_t header = file.value()->header().find(dicom::tags::PixelData)->offset;
    std::printf("%s_first_over=%lld\n", run.name,
                static_cast<long long>(source->bytes - header - run.tableBytes - run.frameBytes));
    std::printf("%s_first_reads=%llu\n%s_forward=%d\n", run.name,
                static_cast<unsigned long long>(source->reads), run.name, source->wentForwardOnly);
    source->forget();
    if (!file.value()->decode(laterFrame)) return false;
    std::printf("%s_later_over=%lld\n", run.name,
                static_cast<long long>(source->bytes - run.frameBytes - run.passed));
    return true;
}

}  // namespace

int main() {
    const bool counted = count(rawRun()) && count(encapsulatedRun("filled_table", OffsetTable::Filled)) &&
                         count(encapsulatedRun("empty_table", OffsetTable::Empty));
    return counted ? EXIT_SUCCESS : EXIT_FAILURE;
}
