#pragma once

#include <QLatin1String>
#include <QString>

#include <span>

namespace cinedisc {

/// A command by the name of its button or menu item. Where a menu item repeats a button, both rows name the
/// same handler.
template <typename Target>
struct CommandRow {
    const char* name;
    void (*run)(Target& target);
};

/// Runs the command of that name; returns whether the table has it.
template <typename Target>
bool runCommand(std::span<const CommandRow<Target>> table, const QString& name, Target& target) {
    for (const CommandRow<Target>& row : table) {
        if (name != QLatin1String(row.name)) continue;
        row.run(target);
        return true;
    }
    return false;
}

}  // namespace cinedisc
