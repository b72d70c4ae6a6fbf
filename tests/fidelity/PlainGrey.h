#pragma once

#include "tests/fidelity/ReferenceFile.h"
#include "tests/fidelity/StoredSamples.h"

#include <optional>
#include <vector>

namespace cinedisc::fidelity {

/// From one stored value to the displayed level, 0 to 255, by the formulas of PS3.3 C.11.
class PlainGrey {
  public:
    PlainGrey(ReferenceFile& file, int frame, const StoredSamples& samples);

    double operator()(double stored) const;

  private:
    struct Table {
        double first = 0;
        double highest = 65535;
        std::vector<unsigned> entries;
        double at(double value) const;
    };

    static std::optional<Table> tableOf(const HeaderReader& header, const DcmTagKey& sequence, bool isSigned);
    bool isPadding(double stored) const;
    double modality(double stored) const;
    double windowed(double value) const;
    void windowWithoutHeader(ReferenceFile& file, const StoredSamples& samples);

    std::optional<Table> modalityTable_, voiTable_;
    std::optional<std::pair<double, double>> padding_;
    double slope_ = 1, intercept_ = 0;
    double center_ = 0, width_ = 0;
    std::string function_;
    bool inverse_ = false;
};

}  // namespace cinedisc::fidelity
