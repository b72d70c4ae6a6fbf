#include "dicom/codecs/LosslessPrediction.h"

#include <array>

namespace cinedisc::dicom::codecs {
namespace {

/// A sample from its difference and neighbours, arranged so that as little as possible waits for the one to
/// the left.
template <int Predictor>
unsigned restored(int difference, unsigned left, int above, int diagonal) {
    const auto plusLeft = [left](int number) { return left + static_cast<unsigned>(number); };
    const auto half = [](unsigned number) { return static_cast<unsigned>(static_cast<int>(number) >> 1); };
    switch (Predictor) {
        case 1:
            return plusLeft(difference);
        case 2:
            return static_cast<unsigned>(above + difference);
        case 3:
            return static_cast<unsigned>(diagonal + difference);
        case 4:
            return plusLeft(above - diagonal + difference);
        case 5:
            return plusLeft(((above - diagonal) >> 1) + difference);
        case 6:
            return half(plusLeft(2 * (above + difference) - diagonal));
        default:
            return half(plusLeft(above + 2 * difference));
    }
}

/// Arithmetic is modulo 65536. Samples of less than 15 bits never get there, and need not wait for it; the
/// sixth predictor of those of 15 lies up to 49150 from a sample.
enum class Arithmetic { Modulo, Plain };

/// The neighbours are kept in variables: reading back what was just written is what takes longest.
template <int Predictor, std::size_t Step, Arithmetic Kind, typename Sample>
void restoreFrom(const std::uint16_t* differences, const Sample* above, Sample* row, std::size_t count) {
    std::array<unsigned, Step> left;
    std::array<int, Step> diagonal;
    for (std::size_t c = 0; c < Step; ++c) {
        left[c] = row[c];
        diagonal[c] = above[c];
    }
    for (std::size_t i = Step; i < count; i += Step) {
        for (std::size_t c = 0; c < Step; ++c) {
            const int up = above[i + c];
            const int difference = static_cast<std::int16_t>(differences[i + c]);
            left[c] = restored<Predictor>(difference, left[c], up, diagonal[c]);
            if (Kind == Arithmetic::Modulo) left[c] = static_cast<Sample>(left[c]);
            row[i + c] = static_cast<Sample>(left[c]);
            diagonal[c] = up;
        }
    }
}

template <std::size_t Step, Arithmetic Kind, typename Sample>
void restoreRow(int predictor, const std::uint16_t* differences, const Sample* above, Sample* row,
                std::size_t count) {
    switch (predictor) {
        case 1:
            return restoreFrom<1, Step, Kind>(differences, above, row, count);
        case 2:
            return restoreFrom<2, Step, Kind>(differences, above, row, count);
        case 3:
            return restoreFrom<3, Step, Kind>(differences, above, row, count);
        case 4:
            return restoreFrom<4, Step, Kind>(differences, above, row, count);
        case 5:
            return restoreFrom<5, Step, Kind>(differences, above, row, count);
        case 6:
            return restoreFrom<6, Step, Kind>(differences, above, row, count);
        default:
            return restoreFrom<7, Step, Kind>(differences, above, row, count);
    }
}

}  // namespace

template <typename Sample>
void LosslessPrediction::restore(const std::uint16_t* differences, const Sample* above, Sample* row,
                                 std::size_t count) const {
    for (std::size_t i = 0; i < step; ++i)
        row[i] = static_cast<Sample>(differences[i] + (above ? above[i] : origin));
    const int used = above ? predictor : 1;
    const Sample* const neighbours = above ? above : row;  // the first predictor does not look at them
    if (step != 1)
        restoreRow<3, Arithmetic::Modulo>(used, differences, neighbours, row, count);
    else if (precision >= 15)
        restoreRow<1, Arithmetic::Modulo>(used, differences, neighbours, row, count);
    else
        restoreRow<1, Arithmetic::Plain>(used, differences, neighbours, row, count);
}

template void LosslessPrediction::restore(const std::uint16_t*, const std::uint8_t*, std::uint8_t*,
                                          std::size_t) const;
template void LosslessPrediction::restore(const std::uint16_t*, const std::uint16_t*, std::uint16_t*,
                                          std::size_t) const;

}  // namespace cinedisc::dicom::codecs
