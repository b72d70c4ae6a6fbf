#pragma once

#include "dicom/DecodeError.h"
#include "dicom/codecs/EntropyData.h"
#include "dicom/codecs/LosslessHuffman.h"
#include "dicom/codecs/LosslessPrediction.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace cinedisc::dicom::codecs {

/// One scan of the lossless process: what its header says, and how it is decoded.
struct LosslessScan {
    std::size_t rows = 0;
    std::size_t rowLength = 0;    ///< samples in a row, of all components of the scan
    std::size_t restartRows = 0;  ///< rows between restart markers, 0 for none
    unsigned sampleBits = 0;      ///< samples wider than this are an error; 0 to let them pass
    LosslessPrediction prediction;
    std::array<const LosslessHuffman*, 4> tables{};  ///< one for each component of the scan

    /// Bytes that must follow the entropy-coded data, see LosslessBits.
    std::size_t padding() const { return rowLength * 4 + 16; }
    /// Decodes into `samples`, row after row; returns what is wrong with the data.
    template <typename Sample>
    std::optional<DecodeError> decode(const EntropyData& data, Sample* samples) const;
};

}  // namespace cinedisc::dicom::codecs
