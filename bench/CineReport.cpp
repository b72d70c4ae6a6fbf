#include "bench/CineReport.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>
#include <sys/resource.h>

namespace cinedisc::bench {

namespace {

using Tick = CineRecorder::Tick;

bool shows(const Tick& tick) { return tick.drawn && tick.isPicture; }

void reportRate(const char* key, const Tick* begin, const Tick* end, double begun) {
    if (begin == end) return;
    const auto drawn = std::count_if(begin, end, shows);
    std::printf("%s=%.1f\n", key, 1000.0 * static_cast<double>(drawn) / ((end - 1)->atMilliseconds - begun));
}

}  // namespace

void reportPlaying(const std::vector<Tick>& ticks, double begun, std::size_t firstPass) {
    const Tick* const first = ticks.data();
    const Tick* const second = first + std::min(firstPass, ticks.size());
    const Tick* const end = first + ticks.size();
    std::printf("first_pass_coarse=%td\n", std::count_if(first, second, [](auto& t) { return t.isCoarse; }));
    reportRate("first_pass_per_second", first, second, begun);
    reportRate("later_per_second", second, end, (second - 1)->atMilliseconds);
    std::vector<double> times;
    for (const Tick& tick : ticks) times.push_back(tick.milliseconds);
    std::ranges::sort(times);
    std::printf("ticks=%zu\n", ticks.size());
    std::printf("not_drawn=%td\n", std::count_if(first, end, [](const Tick& tick) { return !shows(tick); }));
    double own = 0;
    for (const Tick& tick : ticks) own += tick.ownMilliseconds;
    std::printf("tick_own_mean_ms=%.3f\n", own / static_cast<double>(ticks.size()));
    std::printf("tick_median_ms=%.3f\n", times[times.size() / 2]);
    std::printf("tick_p99_ms=%.3f\n", times[times.size() * 99 / 100]);
    std::printf("tick_slowest_ms=%.3f\n", times.back());
}

void reportWrongPictures(const WindowDriver& driver, const CineRecorder& recorder) {
    std::map<int, std::uint32_t> right;
    int wrong = 0;
    for (const Tick& tick : recorder.ticks()) {
        if (!shows(tick)) continue;
        auto& sample = right[tick.frame];
        if (sample == 0) {
            driver.view().setProperty("CurrentFrame", tick.frame);
            recorder.playUntil([&] { return driver.showsPicture() && !showsCoarse(driver.view()); });
            driver.view().repaint();
            sample = recorder.sampleOfWindow();
        }
        wrong += !tick.isCoarse && tick.sample != sample;
    }
    std::set<std::uint32_t> different;
    for (const auto& [frame, sample] : right) different.insert(sample);
    // Samples that are all alike would find nothing wrong.
    if (right.size() > 1 && different.size() < 2) qFatal("the frames cannot be told apart");
    std::printf("wrong_pictures=%d\ndifferent_pictures=%zu\n", wrong, different.size());
}

std::vector<std::size_t> fileChanges(const std::vector<Tick>& ticks) {
    std::vector<std::size_t> changes;
    for (std::size_t i = 1; i < ticks.size(); ++i) {
        if (ticks[i].file != ticks[i - 1].file) changes.push_back(i);
    }
    return changes;
}

void reportNeighbours(const std::vector<Tick>& ticks) {
    const auto report = [&](const char* key, double Tick::*time) {
        std::vector<double> ratios, times;
        for (const std::size_t change : fileChanges(ticks)) {
            if (change < 10) continue;
            double slowest = 0;
            for (std::size_t i = change - 10; i < change; ++i) slowest = std::max(slowest, ticks[i].*time);
            ratios.push_back(ticks[change].*time / slowest);
            times.push_back(ticks[change].*time);
        }
        if (ratios.empty()) return;
        std::ranges::sort(ratios);
        std::ranges::sort(times);
        std::printf("%s_ratio_median=%.3f\n%s_ratio_worst=%.3f\n", key, ratios[ratios.size() / 2], key,
                    ratios.back());
        std::printf("%s_median_ms=%.3f\n%s_slowest_ms=%.3f\n", key, times[times.size() / 2], key,
                    times.back());
    };
    report("change", &Tick::milliseconds);
    report("change_own", &Tick::ownMilliseconds);
}

void reportMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("peak_mib=%.1f\n", static_cast<double>(usage.ru_maxrss) / 1024);
    std::fflush(stdout);
}

}  // namespace cinedisc::bench
