#pragma once

#include "catalogue/DetailPanels.h"
#include "catalogue/PatientOpener.h"
#include "catalogue/PlaceMover.h"
#include "navigation/Direction.h"

namespace cinedisc {

/// Steps the patients of the disc by the titles of their folders, wrapping. Errors end a step quietly.
class PatientStepper {
  public:
    PatientStepper(PlaceMover& place, DetailPanels& details, PatientOpener& opener)
        : place_(place), details_(details), opener_(opener) {}

    void Command2_Click() { step(Direction::Next); }
    void cmdPatBack_Click() { step(Direction::Previous); }

  private:
    void step(Direction direction);
    void showNames(const Folder& patient);

    PlaceMover& place_;
    DetailPanels& details_;
    PatientOpener& opener_;
};

}  // namespace cinedisc
