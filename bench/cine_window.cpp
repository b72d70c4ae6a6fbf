// cine_window WHAT DISC [NUMBER]: plays the disc's first run in the program's own main window, its view
// 1024 by 1024, and prints what was seen, one "key=value" a line. WHAT is one of
//   play      speed 10 (1 ms): frames a second of the first pass and of the following ones, for NUMBER
//   seconds pace      the same at 8 ms fifteen   the same at 66 ms neighbour continuous through all files:
//   the tick that changes the file, for NUMBER changes answers   how many ticks label, wheel and click wait
//   while it plays at 1 ms, tried NUMBER times still     from the click on the patient to its first picture,
//   and to the exact one ticks     NUMBER ticks at 1 ms and no measuring: for counting instructions
#include "app/Confinement.h"
#include "app/Form1.h"
#include "app/Main.h"
#include "bench/CineRecorder.h"
#include "bench/CineReport.h"
#include "bench/FirstPaint.h"
#include "bench/ProgramStart.h"
#include "bench/WindowDriver.h"
#include "panels/Theme.h"
#include "platform/widgets/GuardedApplication.h"

#include <QAbstractSlider>
#include <QRadioButton>

#include <cstdio>
#include <cstdlib>
#include <string>

using namespace cinedisc;

namespace {

void play(const bench::WindowDriver& driver, bench::CineRecorder& recorder, int interval, double seconds) {
    if (interval == 1)
        driver.find<QAbstractSlider>("Slider1")->setValue(10);
    else
        driver.find<QTimer>("Timer4")->setInterval(interval);
    const auto frames = static_cast<std::size_t>(driver.frameCount());
    const double begun = recorder.now();
    driver.click("cmdPlay");
    recorder.playUntil([&] {
        const std::size_t ticks = recorder.ticks().size();
        return ticks >= frames - 1 && recorder.now() - begun > 1000 * seconds;
    });
    driver.click("cmdStop");
    bench::reportPlaying(recorder.ticks(), begun, frames - 1);
    bench::reportWrongPictures(driver, recorder);
}

void playThroughNeighbours(const bench::WindowDriver& driver, const bench::CineRecorder& recorder,
                           int changes) {
    driver.find<QAbstractSlider>("Slider1")->setValue(10);
    driver.find<QRadioButton>("Option11")->click();
    driver.click("cmdPlay");
    recorder.playUntil(
        [&] { return bench::fileChanges(recorder.ticks()).size() > static_cast<std::size_t>(changes); });
    driver.click("cmdStop");
    bench::reportNeighbours(recorder.ticks());
}

void showStill(const bench::WindowDriver& driver, const bench::CineRecorder& recorder, double begun,
               double ownBegun) {
    recorder.playUntil([&] { return driver.showsPicture() && recorder.firstPictureAt() > 0; });
    std::printf("first_picture_ms=%.1f\n", recorder.firstPictureAt() - begun);
    std::printf("first_picture_own_ms=%.1f\n", recorder.firstPictureOwn() - ownBegun);
    double painted = recorder.firstPictureAt();
    recorder.playUntil([&] {
        painted = recorder.now();
        return !bench::showsCoarse(driver.view());
    });
    std::printf("exact_picture_ms=%.1f\n", painted - begun);
}

void playTicks(const bench::WindowDriver& driver, const bench::CineRecorder& recorder, std::size_t ticks) {
    driver.find<QAbstractSlider>("Slider1")->setValue(10);
    driver.click("cmdPlay");
    recorder.playUntil([&] { return recorder.ticks().size() >= ticks; });
}

}  // namespace

int main(int argc, char** argv) {
    // As the program does, unless it is compared with doing without.
    if (!std::getenv("CINE_WINDOW_IN_PROCESS")) confineLibraries(argc, argv);
    if (argc < 3) return EXIT_FAILURE;
    GuardedApplication application(argc, argv);
    applyColours(application);
    bench::startProgram(QString::fromLocal8Bit(argv[2]));
    const bench::WindowDriver driver(*MainForm);
    driver.resizeView({1024, 1024});
    const std::string what = argv[1];
    bench::CineRecorder recorder(*MainForm, driver);
    const double begun = recorder.now(), ownBegun = bench::ownMilliseconds();
    driver.openPatient(0);
    if (what == "still") showStill(driver, recorder, begun, ownBegun);
    recorder.playUntil([&] { return driver.showsPicture() && recorder.hasPainted(); });

    const double number = argc > 3 ? std::atof(argv[3]) : 5;
    if (what == "play") play(driver, recorder, 1, number);
    if (what == "pace") play(driver, recorder, 8, number);
    if (what == "fifteen") play(driver, recorder, 66, number);
    if (what == "neighbour") playThroughNeighbours(driver, recorder, static_cast<int>(number));
    if (what == "answers") bench::reportAnswers(driver, recorder, static_cast<int>(number));
    if (what == "ticks") playTicks(driver, recorder, static_cast<std::size_t>(number));
    bench::reportMemory();
    bench::endMeasurement();
}
