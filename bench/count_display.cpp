// count_display CASE TIMES: draws one frame TIMES times, CASE being smooth512, plain1024, smooth900 or
// reduced700; or view512, a whole view of 1024 x 1024 that shows TIMES frames for the first time. Run it
// under callgrind with two different TIMES: the difference is what a frame takes.
#include "bench/DisplayCase.h"
#include "control/ezDICOMX.h"
#include "tests/control/FakeDicomFile.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <map>

using namespace cinedisc;

namespace {

void showFrames(int count) {
    test::FakeLibrary library;
    const bench::DisplayCase display(512, 8, 512);
    const auto run = test::greyRun(512, 512, 2000);
    run->picture = [&](int) { return display.frame; };
    library.files["/run"] = run;
    ezDICOMX view(ViewRole::Main, nullptr, library.library);
    view.resize(1024, 1024);
    view.putFileName("/run");
    view.putBestFit(true);
    view.show();
    QApplication::processEvents();
    for (int frame = 2; frame < count + 2; ++frame) {
        view.putCurrentFrame(frame);
        view.repaint();
    }
}

}  // namespace

int main(int argc, char** argv) {
    struct Case {
        int size, bits, shown;
    };
    const std::map<std::string, Case> cases{{"smooth512", {512, 8, 1024}},
                                            {"plain1024", {1024, 12, 1024}},
                                            {"smooth900", {512, 8, 900}},
                                            {"reduced700", {1024, 12, 700}}};
    if (argc < 3) return EXIT_FAILURE;
    const int times = std::atoi(argv[2]);
    if (argv[1] == std::string("view512")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        const QApplication application(argc, argv);
        showFrames(times);
        return EXIT_SUCCESS;
    }
    if (!cases.contains(argv[1])) return EXIT_FAILURE;
    const Case& wanted = cases.at(argv[1]);
    bench::DisplayCase display(wanted.size, wanted.bits, wanted.shown);
    for (int i = times; i > 0; --i) display.draw();
    std::printf("%08x in the middle\n", display.picture.pixel(wanted.shown / 2, wanted.shown / 2));
    return EXIT_SUCCESS;
}
