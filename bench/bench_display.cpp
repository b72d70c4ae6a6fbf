#include "bench/DisplayCase.h"

#include <QGuiApplication>
#include <QPainter>

#include <benchmark/benchmark.h>

namespace {

using namespace cinedisc;
using bench::DisplayCase;

struct Case {
    int size, bits, shown;
    QSize asSize() const { return {size, size}; }
};

void ours(benchmark::State& state, const Case& from) {
    DisplayCase display(from.size, from.bits, from.shown);
    for (auto _ : state) {
        display.draw();
        benchmark::DoNotOptimize(display.picture.constBits());
    }
}

/// The window by a table, as 8-bit greys or 32-bit pixels: what every drawing by QPainter begins with.
template <typename Pixel>
void window(const DisplayCase& display, const std::vector<Pixel>& table, QImage& into) {
    std::visit(
        [&](const auto& samples) {
            const auto* source = samples.data();
            for (int y = 0, width = into.width(); y < into.height(); ++y, source += width) {
                auto* __restrict row = reinterpret_cast<Pixel*>(into.scanLine(y));
                const Pixel* levels = table.data();
#pragma GCC unroll 8
                for (int x = 0; x < width; ++x) row[x] = levels[static_cast<std::uint16_t>(source[x])];
            }
        },
        display.frame.samples);
}

std::size_t entries(const DisplayCase& display) { return display.frame.samples.index() == 0 ? 256 : 65536; }

std::vector<std::uint8_t> narrowTable(const DisplayCase& display) {
    const std::uint8_t* table = display.display.table->entries();
    return {table, table + entries(display)};
}

std::vector<QRgb> wideTable(const DisplayCase& display) {
    std::vector<QRgb> table;
    for (const int grey : narrowTable(display)) table.push_back(qRgb(grey, grey, grey));
    return table;
}

void paint(QImage& picture, const QImage& frame) {
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(picture.rect(), frame);
}

void painterWith(benchmark::State& state, const Case& from, QImage::Format format) {
    DisplayCase display(from.size, from.bits, from.shown);
    QImage frame(from.asSize(), format);
    if (format == QImage::Format_Indexed8) {
        frame.setColorCount(256);
        for (int i = 0; i < 256; ++i) frame.setColor(i, qRgb(i, i, i));
    }
    const auto narrow = narrowTable(display);
    const auto wide = wideTable(display);
    for (auto _ : state) {
        format == QImage::Format_RGB32 ? window(display, wide, frame) : window(display, narrow, frame);
        paint(display.picture, frame);
        benchmark::DoNotOptimize(display.picture.constBits());
    }
}

void painterGrey8(benchmark::State& state, const Case& from) {
    painterWith(state, from, QImage::Format_Grayscale8);
}
void painterIndexed8(benchmark::State& state, const Case& from) {
    painterWith(state, from, QImage::Format_Indexed8);
}
void painterRgb32(benchmark::State& state, const Case& from) {
    painterWith(state, from, QImage::Format_RGB32);
}

/// The window as the colour table of the stored samples: no pass of its own.
void painterColorTable(benchmark::State& state, const Case& from) {
    DisplayCase display(from.size, from.bits, from.shown);
    const auto& samples = std::get<std::vector<std::uint8_t>>(display.frame.samples);
    for (auto _ : state) {
        QImage frame(samples.data(), from.size, from.size, from.size, QImage::Format_Indexed8);
        frame.setColorCount(256);
        for (int i = 0; i < 256; ++i) {
            const int grey = display.display.table->entries()[i];
            frame.setColor(i, qRgb(grey, grey, grey));
        }
        paint(display.picture, frame);
        benchmark::DoNotOptimize(display.picture.constBits());
    }
}

void imageScaled(benchmark::State& state, const Case& from) {
    DisplayCase display(from.size, from.bits, from.shown);
    QImage frame(from.asSize(), QImage::Format_RGB32);
    const auto wide = wideTable(display);
    for (auto _ : state) {
        window(display, wide, frame);
        paint(display.picture,
              frame.scaled(display.picture.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        benchmark::DoNotOptimize(display.picture.constBits());
    }
}

// QPainter scales in several threads: the time of all of them counts.
#define ROW(what, name, ...) \
    BENCHMARK_CAPTURE(what, name, Case{__VA_ARGS__})->Unit(benchmark::kMicrosecond)->MeasureProcessCPUTime()

#define COMPARE(name, ...)                   \
    ROW(ours, name, __VA_ARGS__);            \
    ROW(painterGrey8, name, __VA_ARGS__);    \
    ROW(painterIndexed8, name, __VA_ARGS__); \
    ROW(painterRgb32, name, __VA_ARGS__)

COMPARE(smooth_512_8bit_to_1024, 512, 8, 1024);
ROW(painterColorTable, smooth_512_8bit_to_1024, 512, 8, 1024);
ROW(imageScaled, smooth_512_8bit_to_1024, 512, 8, 1024);
COMPARE(plain_1024_12bit, 1024, 12, 1024);
COMPARE(smooth_512_8bit_to_900, 512, 8, 900);
COMPARE(reduced_1024_12bit_to_700, 1024, 12, 700);
ROW(imageScaled, reduced_1024_12bit_to_700, 1024, 12, 700);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
