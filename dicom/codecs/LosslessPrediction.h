#pragma once

#include <cstddef>
#include <cstdint>

namespace cinedisc::dicom::codecs {

/// Adds predictions to differences (ITU-T T.81 table H.1), modulo 65536. A row's samples of `step` components
/// alternate; the first of each component is predicted from the row above, or as `origin` in a row without
/// one above.
struct LosslessPrediction {
    int predictor = 1;     ///< 1 .. 7
    std::size_t step = 1;  ///< 1 or 3
    unsigned origin = 0;
    int precision = 16;  ///< bits of a sample

    /// `above` is null in the first row and after a restart, where all are predicted from their left.
    template <typename Sample>
    void restore(const std::uint16_t* differences, const Sample* above, Sample* row, std::size_t count) const;
};

}  // namespace cinedisc::dicom::codecs
