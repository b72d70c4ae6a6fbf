// The fuzzer's entry: one program for all targets, the environment names which.

#include "fuzzing/Targets.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

const cinedisc::fuzzing::Target* chosen = nullptr;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    const char* const name = std::getenv("CINEDISC_FUZZ_TARGET");
    for (const auto& target : cinedisc::fuzzing::targets)
        if (name && std::strcmp(name, target.name) == 0) chosen = &target;
    if (chosen) return 0;
    std::fprintf(stderr, "CINEDISC_FUZZ_TARGET names no target\n");
    std::exit(2);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    chosen->run(std::as_bytes(std::span(data, size)));
    return 0;
}
