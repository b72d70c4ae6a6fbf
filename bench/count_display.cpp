// count_display CASE TIMES: draws one frame TIMES times, CASE being smooth512, plain1024, smooth900 or
// reduced700. Run it under callgrind with two different TIMES: the difference is what a frame takes.
#include "bench/DisplayCase.h"

#include <cstdio>
#include <cstdlib>
#include <map>

using namespace cinedisc;

int main(int argc, char** argv) {
    struct Case {
        int size, bits, shown;
    };
    const std::map<std::string, Case> cases{{"smooth512", {512, 8, 1024}},
                                            {"plain1024", {1024, 12, 1024}},
                                            {"smooth900", {512, 8, 900}},
                                            {"reduced700", {1024, 12, 700}}};
    if (argc < 3 || !cases.contains(argv[1])) return EXIT_FAILURE;
    const Case& wanted = cases.at(argv[1]);
    bench::DisplayCase display(wanted.size, wanted.bits, wanted.shown);
    for (int i = std::atoi(argv[2]); i > 0; --i) display.draw();
    std::printf("%08x in the middle\n", display.picture.pixel(wanted.shown / 2, wanted.shown / 2));
    return EXIT_SUCCESS;
}
