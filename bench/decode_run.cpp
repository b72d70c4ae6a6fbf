// decode_run FILE: opens a file, reads and decodes all its frames in this one thread.
#include "dicom/DicomFile.h"

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    using namespace cinedisc;
    if (argc != 2) return EXIT_FAILURE;
    const auto file = dicom::DicomFile::open(argv[1]);
    if (!file) return EXIT_FAILURE;
    for (int i = 0; i < file.value()->frameCount(); ++i) {
        if (!file.value()->decode(i)) return EXIT_FAILURE;
    }
    std::printf("frames=%d\n", file.value()->frameCount());
    return EXIT_SUCCESS;
}
