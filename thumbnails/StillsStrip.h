#pragma once

#include "viewer/DiscPosition.h"
#include "viewer/FormControls.h"

#include <functional>

namespace cinedisc {

/// The strip of the main window in stills mode: the first image of consecutive series of the current patient.
/// It leaves File1 on the last series folder that it visited; a preview's Tag remembers its folder.
class StillsStrip {
  public:
    StillsStrip(FormControls& controls, const DiscPosition& position, Label& folderLabel)
        : form_(controls), position_(position), Label1_(folderLabel) {}

    /// Refills the strip for sb1's value; 5, 10, 15 ... keep the pictures that are there. Errors end it
    /// quietly.
    void scroll();
    /// Fills the strip from a series position, without looking at sb1.
    void fillFrom(int start);
    /// Shows the series of a patient with study folders from the first one on; returns how many previews were
    /// filled.
    Int16 fillPatient();

    /// Number of series folders of the current patient, filled or not.
    int seriesCount() const;

  private:
    enum class TagPut { BeforeFile, AfterFile };
    /// Shows a series folder's first file in preview `k`, if it holds any. Returns whether it does.
    bool showSeries(const QString& seriesFolder, Int16 k, TagPut tagPut);
    /// Walks the patient's series folders until `visit`, given each one's path, returns false.
    void walkSeries(const std::function<bool(const QString&)>& visit) const;

    FormControls& form_;
    const DiscPosition& position_;
    Label& Label1_;
};

}  // namespace cinedisc
