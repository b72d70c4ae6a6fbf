#pragma once

#include <filesystem>

namespace cinedisc::bench {

/// A disc of one patient whose runs are alike: simulated angiograms as JPEG Lossless, process 14 SV1, or
/// noisy pictures as lossless JPEG 2000 or lossy JPEG.
struct RunDesign {
    enum class Codec { JpegLossless, Jpeg2000, Jpeg };
    int size = 512;  ///< rows and columns
    int bits = 8;
    int files = 1;
    int frames = 60;           ///< of each file
    int differentFrames = 12;  ///< simulated; the run repeats them
    Codec codec = Codec::JpegLossless;
};

/// Makes the disc, unless it is there already. Raises what the disc maker raises.
void makeBenchDisc(const std::filesystem::path& folder, const RunDesign& design);

}  // namespace cinedisc::bench
