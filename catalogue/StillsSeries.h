#pragma once

#include "catalogue/DetailPanels.h"
#include "viewer/StillsPosition.h"

#include <utility>

namespace cinedisc {

/// Tells in stills mode which image of which series is shown: File1's selection, its place and the series'
/// name.
class StillsSeries final : public StillsPosition {
  public:
    StillsSeries(FormControls& controls, DiscControls& disc, DetailPanels& details, const PlaceMover& place)
        : form_(controls), disc_(disc), details_(details), place_(place) {}

    bool isInForce() const override { return place_.position().StillsMode; }
    void show(Int16 index) override;
    /// Names the series that File1 lists, where the catalogue knows it. Errors end it quietly.
    void showName();

  private:
    void lookUpName();

    FormControls& form_;
    DiscControls& disc_;
    DetailPanels& details_;
    const PlaceMover& place_;
    std::pair<QString, QString> namedSeries_;  ///< folders of the patient and series looked up last ...
    QString name_;                             ///< ... and what was shown for them
};

}  // namespace cinedisc
