// slow_disc DISC: opens the first patient from a drive that gives 3.6 MB/s and takes 100 ms for a jump, plays
// the run once at 50 ms a frame and prints how long the window did not answer at worst, and how the run got
// on.
#include "app/Form1.h"
#include "app/Main.h"
#include "bench/CineRecorder.h"
#include "bench/FirstPaint.h"
#include "bench/WindowDriver.h"
#include "bench/slow/SlowDrive.h"
#include "panels/Theme.h"
#include "platform/widgets/GuardedApplication.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <set>

using namespace cinedisc;

int main(int argc, char** argv) {
    if (argc != 2) return EXIT_FAILURE;
    GuardedApplication application(argc, argv);
    applyColours(application);
    Main(QString::fromLocal8Bit(argv[1]));
    const bench::WindowDriver driver(*MainForm);
    bench::CineRecorder recorder(*MainForm, driver);

    // Beats whenever nothing else is to be done: a gap is a time in which no click would have been answered.
    QTimer heart;
    QElapsedTimer sinceBeat;
    double longestGap = 0;
    const auto beat = [&] {
        longestGap = std::max(longestGap, static_cast<double>(sinceBeat.nsecsElapsed()) / 1e6);
        sinceBeat.start();
    };
    QObject::connect(&heart, &QTimer::timeout, beat);
    heart.start(1);

    const double begun = recorder.now();
    driver.openPatient(0);
    const double opened = recorder.now();
    sinceBeat.start();
    recorder.playUntil([&] { return recorder.firstPictureAt() > 0; });
    std::printf("opening_ms=%.0f\nfirst_picture_ms=%.0f\n", opened - begun,
                recorder.firstPictureAt() - begun);

    const int frames = driver.frameCount();
    std::set<int> shown;
    const double playing = recorder.now();
    driver.click("cmdPlay");
    recorder.playUntil([&] {
        if (driver.showsPicture()) shown.insert(driver.currentFrame());
        return static_cast<int>(shown.size()) == frames || recorder.now() - playing > 120'000;
    });
    std::printf("frames_shown=%zu\nframes_missed=%d\nframes_per_second=%.1f\n", shown.size(),
                frames - static_cast<int>(shown.size()),
                1000 * static_cast<double>(shown.size()) / (recorder.now() - playing));
    std::printf("longest_without_answer_ms=%.1f\njumps=%d\n", longestGap, bench::SlowDrive::shared().jumps());
    std::fflush(stdout);
    bench::endMeasurement();
}
