// count_codecs CASE TIMES: decodes one frame TIMES times. Run it under callgrind with two different TIMES:
// the difference is what a frame takes.
#include "bench/Angiogram.h"
#include "dicom/codecs/FrameDecoder.h"
#include "tests/codecs/Encoders.h"

#include <cstdio>
#include <cstdlib>
#include <string>

using namespace cinedisc;

int main(int argc, char** argv) {
    if (argc < 3) return EXIT_FAILURE;
    const bool small = std::string(argv[1]) == "lossless8";
    const int size = small ? 512 : 1024, bits = small ? 8 : 12;
    const auto picture = bench::angiogram(size, bits, small ? 2 : 16);
    const auto stream = test::losslessEncoded({size, size, 1, bits, {picture.begin(), picture.end()}});

    dicom::PixelFormat format;
    format.rows = format.columns = size;
    format.bitsAllocated = small ? 8 : 16;
    format.bitsStored = bits;
    format.highBit = bits - 1;
    std::size_t pixels = 0;
    for (int i = std::atoi(argv[2]); i > 0; --i) {
        const auto frame =
            dicom::decodeFrame(std::as_bytes(std::span(stream)), format, dicom::Compression::Jpeg);
        if (!frame) return EXIT_FAILURE;
        pixels += frame.value().pixelCount();
    }
    std::printf("%zu bytes a frame, %zu pixels decoded\n", stream.size(), pixels);
    return EXIT_SUCCESS;
}
