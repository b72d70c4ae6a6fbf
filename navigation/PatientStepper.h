#pragma once

#include "catalogue/DetailPanels.h"
#include "catalogue/DiscControls.h"
#include "catalogue/PatientOpener.h"
#include "navigation/Direction.h"

namespace cinedisc {

/// Steps the patients of the disc by the titles of their folders, wrapping. Errors end a step quietly.
class PatientStepper {
  public:
    PatientStepper(DiscControls& disc, DetailPanels& details, PatientOpener& opener)
        : disc_(disc), details_(details), opener_(opener) {}

    void Command2_Click() { step(Direction::Next); }
    void cmdPatBack_Click() { step(Direction::Previous); }

  private:
    void step(Direction direction);

    DiscControls& disc_;
    DetailPanels& details_;
    PatientOpener& opener_;
};

}  // namespace cinedisc
