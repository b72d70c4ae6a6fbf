#pragma once

#include <filesystem>

namespace cinedisc::bench {

/// A disc of one patient whose runs are alike: simulated angiograms as JPEG Lossless, process 14 SV1.
struct RunDesign {
    int size = 512;  ///< rows and columns
    int bits = 8;
    int files = 1;
    int frames = 60;           ///< of each file
    int differentFrames = 12;  ///< simulated; the run repeats them
};

/// Makes the disc, unless it is there already. Raises what the disc maker raises.
void makeBenchDisc(const std::filesystem::path& folder, const RunDesign& design);

}  // namespace cinedisc::bench
