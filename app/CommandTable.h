#pragma once

#include <span>

namespace cinedisc {

class Form1;

/// A command of the main window by the name of its button or menu item. Where a menu item repeats a button,
/// both rows name the same handler.
struct CommandRow {
    const char* name;
    void (*run)(Form1& form);
};

/// Every button and every menu command of the main window.
std::span<const CommandRow> commandTable();

}  // namespace cinedisc
