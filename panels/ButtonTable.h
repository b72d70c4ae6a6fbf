#pragma once

#include "platform/widgets/NamedButton.h"

#include <vector>

namespace cinedisc {

/// The push buttons that a window's panels are made of, by name.
class ButtonTable {
  public:
    explicit ButtonTable(std::vector<ButtonRow> rows) : rows_(std::move(rows)) {}

    /// Makes a button. A name that the table does not have is a mistake in the program: it raises
    /// std::logic_error.
    QPushButton* make(const char* name, QWidget* parent) const;

  private:
    std::vector<ButtonRow> rows_;
};

}  // namespace cinedisc
