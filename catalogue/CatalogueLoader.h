#pragma once

#include "catalogue/Catalogue.h"
#include "catalogue/DiscControls.h"
#include "platform/Int16.h"

namespace cinedisc {

/// Fills the patient tree from the catalogue, once a run. A gap in the catalogue raises run-time error 91;
/// what was added before it stays.
class CatalogueLoader {
  public:
    CatalogueLoader(DiscControls& disc, const Catalogue& catalogue) : disc_(disc), catalogue_(catalogue) {}

    void LoadCatalogue();
    /// Adds a patient's whole subtree.
    void Patient(const CatalogueNode& patient);
    /// The name of the folder of patient `number`, counted from 0: the tag of its node.
    static QString tagOf(Int16 number) { return ("Patient" + UDirect(number)).trimmed(); }
    /// The number in decimal, padded on the left with "0" to three characters.
    static QString UDirect(Int16 number);

    /// Number that the next patient node gets.
    Int16 PatientCounter() const { return PatientCounter_; }

  private:
    DiscControls& disc_;
    const Catalogue& catalogue_;
    Int16 PatientCounter_ = 0;
};

}  // namespace cinedisc
