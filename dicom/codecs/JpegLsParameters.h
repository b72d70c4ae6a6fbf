#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace cinedisc::dicom::codecs {

/// The preset coding parameters as a stream gives them; 0 stands for the default (ITU-T T.87 C.2.4.1.1).
struct JpegLsPreset {
    int largest = 0;
    std::array<int, 3> thresholds{};
    int reset = 0;

    /// Reads the payload of a marker segment; empty when it is too short. Segments of other kinds leave
    /// `before` as it was.
    static std::optional<JpegLsPreset> read(std::span<const std::uint8_t> payload,
                                            const JpegLsPreset& before);
};

/// What governs the coding of one scan (ITU-T T.87 A.2.1).
struct JpegLsParameters {
    int near = 0;     ///< largest error of a sample
    int largest = 0;  ///< sample value
    std::array<int, 3> thresholds{};
    int reset = 64;

    int step = 1;   ///< distance of reconstructed values
    int range = 0;  ///< number of quantised errors
    int errorBits = 0;
    int limit = 0;  ///< longest code

    /// Empty when the stream's wishes contradict each other.
    static std::optional<JpegLsParameters> make(int bits, int near, const JpegLsPreset& preset);
};

}  // namespace cinedisc::dicom::codecs
