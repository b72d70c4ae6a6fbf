// bench_disc DIR SIZE BITS FILES FRAMES DIFFERENT [jpeg2000|jpeg]: writes a disc of runs that are alike,
// unless it is there already.
#include "bench/BenchDisc.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

int main(int argc, char** argv) {
    using namespace cinedisc::bench;
    if (argc < 7) return EXIT_FAILURE;
    RunDesign design;
    int* const numbers[] = {&design.size, &design.bits, &design.files, &design.frames,
                            &design.differentFrames};
    for (int i = 0; i < 5; ++i) *numbers[i] = std::atoi(argv[2 + i]);
    if (argc > 7 && std::string_view(argv[7]) == "jpeg2000") design.codec = RunDesign::Codec::Jpeg2000;
    if (argc > 7 && std::string_view(argv[7]) == "jpeg") design.codec = RunDesign::Codec::Jpeg;
    try {
        makeBenchDisc(argv[1], design);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
