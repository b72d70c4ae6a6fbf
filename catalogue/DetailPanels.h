#pragma once

#include "catalogue/Catalogue.h"
#include "catalogue/PlaceMover.h"
#include "platform/Int16.h"

namespace cinedisc {

/// Shows the names of the open patient and series, found in the catalogue by position. A node without
/// children (a comment, say) takes no position. A catalogue that is missing or cannot be read changes
/// nothing.
class DetailPanels {
  public:
    DetailPanels(DiscControls& disc, const Catalogue& catalogue, PlaceMover& place)
        : disc_(disc), catalogue_(catalogue), place_(place) {}

    /// Shows the name of patient `patientNumber`, counted from 0, whose folder lies at `folder`; a patient
    /// that the catalogue does not hold changes nothing.
    void PatDisplay(Int16 patientNumber, const QString& folder);
    /// Shows the name of a series of the patient whose name is shown. Study and series count from 0; a
    /// position past the end leaves the name as it is, a patient that the catalogue does not hold raises
    /// run-time error 91.
    void SerDisplay(Int16 studyNumber, Int16 seriesNumber);

  private:
    DiscControls& disc_;
    const Catalogue& catalogue_;
    PlaceMover& place_;
};

}  // namespace cinedisc
