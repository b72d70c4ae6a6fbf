#include "bench/Angiogram.h"
#include "bench/DcmtkFrame.h"
#include "dicom/codecs/FrameDecoder.h"
#include "tests/codecs/Encoders.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <vector>

namespace {

using namespace cinedisc;
using Syntax = bench::DcmtkFrame::Syntax;

struct Case {
    int size, bits;
    double noise;
    Syntax syntax;
    int predictor = 1;

    std::size_t pixels() const { return static_cast<std::size_t>(size) * static_cast<std::size_t>(size); }
    std::size_t bytes() const { return pixels() * (bits > 8 ? 2 : 1); }
    dicom::Compression compression() const {
        return syntax == Syntax::Rle ? dicom::Compression::Rle : dicom::Compression::Jpeg;
    }
    dicom::PixelFormat format() const {
        dicom::PixelFormat format;
        format.rows = format.columns = size;
        format.bitsAllocated = bits > 8 ? 16 : 8;
        format.bitsStored = bits;
        format.highBit = bits - 1;
        return format;
    }
    std::vector<std::uint8_t> stream() const {
        const auto picture = bench::angiogram(size, bits, noise);
        const test::Raster source{size, size, 1, bits, {picture.begin(), picture.end()}};
        switch (syntax) {
            case Syntax::Lossless:
                return test::losslessEncoded(source, {predictor});
            case Syntax::Baseline:
                return test::dcmtkLossy(source, test::LossyProcess::Baseline, 90);
            default:
                break;
        }
        return test::rleEncoded(source);
    }
};

void ours(benchmark::State& state, const Case& frame) {
    const auto stream = frame.stream();
    const auto format = frame.format();
    for (auto _ : state) {
        auto decoded = dicom::decodeFrame(std::as_bytes(std::span(stream)), format, frame.compression());
        if (!decoded) state.SkipWithError("not decoded");
        benchmark::DoNotOptimize(decoded);
    }
    state.counters["bits/pixel"] =
        8.0 * static_cast<double>(stream.size()) / static_cast<double>(frame.pixels());
}

void dcmtks(benchmark::State& state, const Case& frame) {
    bench::DcmtkFrame decoder(frame.stream(), frame.size, frame.bits, frame.syntax);
    std::vector<std::byte> pixels(frame.bytes());
    for (auto _ : state) {
        if (!decoder.decode(pixels)) state.SkipWithError("not decoded");
        benchmark::DoNotOptimize(pixels);
    }
}

#define COMPARE(name, ...)                                                           \
    BENCHMARK_CAPTURE(ours, name, Case{__VA_ARGS__})->Unit(benchmark::kMicrosecond); \
    BENCHMARK_CAPTURE(dcmtks, name, Case{__VA_ARGS__})->Unit(benchmark::kMicrosecond)

COMPARE(lossless_512_8bit, 512, 8, 2, Syntax::Lossless);
COMPARE(lossless_512_8bit_noisy, 512, 8, 5, Syntax::Lossless);
COMPARE(lossless_1024_12bit, 1024, 12, 16, Syntax::Lossless);
COMPARE(lossless_1024_12bit_noisy, 1024, 12, 50, Syntax::Lossless);
COMPARE(lossless_512_8bit_predictor6, 512, 8, 2, Syntax::Lossless, 6);
COMPARE(lossless_512_8bit_predictor7, 512, 8, 2, Syntax::Lossless, 7);
COMPARE(lossless_1024_12bit_predictor6, 1024, 12, 16, Syntax::Lossless, 6);
COMPARE(lossless_1024_12bit_predictor4, 1024, 12, 16, Syntax::Lossless, 4);
COMPARE(rle_512_8bit, 512, 8, 2, Syntax::Rle);
COMPARE(rle_1024_12bit, 1024, 12, 16, Syntax::Rle);
COMPARE(baseline_512_8bit, 512, 8, 2, Syntax::Baseline);

}  // namespace

BENCHMARK_MAIN();
