#include "dicom/codecs/LosslessPrediction.h"

namespace cinedisc::dicom::codecs {
namespace {

template <int Predictor>
int predicted(int left, int above, int diagonal) {
    switch (Predictor) {
        case 1:
            return left;
        case 2:
            return above;
        case 3:
            return diagonal;
        case 4:
            return left + above - diagonal;
        case 5:
            return left + ((above - diagonal) >> 1);
        case 6:
            return above + ((left - diagonal) >> 1);
        default:
            return (left + above) >> 1;
    }
}

template <int Predictor, typename Sample>
void restoreFrom(const std::uint16_t* differences, const Sample* above, Sample* row, std::size_t count,
                 std::size_t step) {
    for (std::size_t i = step; i < count; ++i)
        row[i] = static_cast<Sample>(differences[i] +
                                     predicted<Predictor>(row[i - step], above[i], above[i - step]));
}

}  // namespace

template <typename Sample>
void LosslessPrediction::restore(const std::uint16_t* differences, const Sample* above, Sample* row,
                                 std::size_t count) const {
    for (std::size_t i = 0; i < step; ++i)
        row[i] = static_cast<Sample>(differences[i] + (above ? above[i] : origin));
    switch (above ? predictor : 1) {
        case 1:
            return restoreFrom<1>(differences, row, row, count, step);
        case 2:
            return restoreFrom<2>(differences, above, row, count, step);
        case 3:
            return restoreFrom<3>(differences, above, row, count, step);
        case 4:
            return restoreFrom<4>(differences, above, row, count, step);
        case 5:
            return restoreFrom<5>(differences, above, row, count, step);
        case 6:
            return restoreFrom<6>(differences, above, row, count, step);
        default:
            return restoreFrom<7>(differences, above, row, count, step);
    }
}

template void LosslessPrediction::restore(const std::uint16_t*, const std::uint8_t*, std::uint8_t*,
                                          std::size_t) const;
template void LosslessPrediction::restore(const std::uint16_t*, const std::uint16_t*, std::uint16_t*,
                                          std::size_t) const;

}  // namespace cinedisc::dicom::codecs
