#pragma once

#include "catalogue/Catalogue.h"
#include "catalogue/DiscControls.h"
#include "platform/Int16.h"

namespace cinedisc {

/// Shows the names of the open patient and series, found in the catalogue by position. A missing catalogue
/// changes nothing; one that is not well-formed raises run-time error 91.
class DetailPanels {
  public:
    DetailPanels(DiscControls& disc, const Catalogue& catalogue) : disc_(disc), catalogue_(catalogue) {}

    enum class Patient { Shown, NotInCatalogue };
    /// Shows the name of patient `patientNumber`, counted from 0; a patient that the catalogue does not hold
    /// changes nothing.
    Patient PatDisplay(Int16 patientNumber);
    /// Shows the name of a series of the patient whose name is shown. Study and series count from 0; a
    /// position past the end leaves the name as it is, a patient that the catalogue does not hold raises
    /// run-time error 91.
    void SerDisplay(Int16 studyNumber, Int16 seriesNumber);

  private:
    DiscControls& disc_;
    const Catalogue& catalogue_;
};

}  // namespace cinedisc
