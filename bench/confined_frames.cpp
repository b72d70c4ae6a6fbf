// confined_frames [SECONDS]: what it costs that libraries decode in processes of their own. Frames are
// decoded in this process and in a confined one by turns, so that both see the same machine. Part by part:
// the least and the median time of a frame, and the difference of the medians in per cent.
#include "bench/Angiogram.h"
#include "dicom/codecs/LibraryProcesses.h"
#include "tests/codecs/Encoders.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace cinedisc;
using namespace dicom::codecs;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

struct Case {
    const char* name;
    int size, bits;
    double noise;
    LibraryCodec codec;
};

constexpr Case cases[] = {
    {"JPEG, 512 x 512, 8 bit", 512, 8, 2, LibraryCodec::Jpeg},
    {"JPEG, 1024 x 1024, 8 bit", 1024, 8, 2, LibraryCodec::Jpeg},
    {"JPEG, 512 x 512, 12 bit", 512, 12, 16, LibraryCodec::Jpeg},
    {"JPEG, 1024 x 1024, 12 bit", 1024, 12, 16, LibraryCodec::Jpeg},
    {"JPEG 2000, 512 x 512, 8 bit", 512, 8, 2, LibraryCodec::Jpeg2000},
    {"JPEG 2000, 1024 x 1024, 12 bit", 1024, 12, 16, LibraryCodec::Jpeg2000},
};

class Times {
  public:
    template <typename Work>
    void measure(const Work& work) {
        const auto start = Clock::now();
        const auto picture = work();
        taken_.push_back(Milliseconds(Clock::now() - start).count());
        if (!picture) std::abort();
    }
    double least() const { return *std::ranges::min_element(taken_); }
    double median() {
        const auto middle = taken_.begin() + static_cast<std::ptrdiff_t>(taken_.size() / 2);
        std::ranges::nth_element(taken_, middle);
        return *middle;
    }
    std::size_t count() const { return taken_.size(); }

  private:
    std::vector<double> taken_;
};

void compare(LibraryProcesses& processes, const Case& frame, double seconds) {
    const auto picture = bench::angiogram(frame.size, frame.bits, frame.noise);
    const test::Raster raster{frame.size, frame.size, 1, frame.bits, {picture.begin(), picture.end()}};
    const auto stream =
        frame.codec == LibraryCodec::Jpeg2000
            ? test::jpeg2000Encoded(raster, {.levels = 5})
            : test::dcmtkLossy(
                  raster, frame.bits == 8 ? test::LossyProcess::Baseline : test::LossyProcess::Sequential,
                  90);
    const LibraryTask task{frame.codec, test::formatOf(raster)};
    Times here, there;
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    while (Clock::now() < end) {
        here.measure([&] { return decodeInThisProcess(stream, task); });
        there.measure([&] { return processes.decode(stream, task); });
    }
    const double one = here.median(), other = there.median();
    std::printf("%-31s %6zu %8.3f %8.3f %8.3f %8.3f %+7.1f %% %+7.1f %%\n", frame.name, here.count(),
                here.least(), there.least(), one, other, 100 * (there.least() / here.least() - 1),
                100 * (other / one - 1));
}

}  // namespace

int main(int argc, char** argv) {
    auto start = Clock::now();
    auto confined = ConfinedProcesses::prepare(answerLibraryTask, argc, argv);
    const double prepared = Milliseconds(Clock::now() - start).count();
    if (!confined) return EXIT_FAILURE;
    Times started;
    for (int i = 0; i < 20; ++i) started.measure([&] { return confined->start(16 << 20) != nullptr; });
    std::printf("prepared in %.2f ms; a process starts and ends in %.2f ms, at least in %.2f\n", prepared,
                started.median(), started.least());
    Times asked;
    {
        const auto process = confined->start(16 << 20);
        for (int i = 0; i < 1000; ++i)
            asked.measure([&] {
                putTask(process->memory(), {}, {});  // nothing can be made of no bytes
                return process->ask(std::chrono::seconds(1)) == ConfinedProcess::Outcome::Done;
            });
    }
    std::printf("asked for nothing it is back in %.3f ms, at least in %.3f\n", asked.median(), asked.least());
    LibraryProcesses processes(std::move(confined));
    std::printf("%-31s %6s %17s %17s\n%-31s %6s %8s %8s %8s %8s\n", "", "", "least, ms", "median, ms", "",
                "frames", "here", "confined", "here", "confined");
    const double seconds = argc > 1 ? std::atof(argv[1]) : 5;
    for (const Case& frame : cases) compare(processes, frame, seconds);
    return EXIT_SUCCESS;
}
