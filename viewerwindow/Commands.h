#pragma once

#include "panels/ButtonTable.h"
#include "platform/widgets/EndProgram.h"
#include "platform/widgets/Menus.h"

#include <functional>
#include <map>
#include <span>
#include <vector>

namespace cinedisc {

/// A command: what it runs, with the push button and the menu item that run it; it may lack either. A second
/// button has a row of its own. A menu is a row that runs nothing.
template <typename Form>
struct CommandRow {
    void (*run)(Form& form);
    ButtonRow button{};
    MenuRow item{};
};

/// A handler of one of a form's behaviours, called without arguments.
template <auto Behaviour, auto Handler, typename Form>
void handle(Form& form) {
    (form.*Behaviour.*Handler)();
}

template <typename Form>
void end(Form&) {
    endProgram();
}

/// The buttons and menu items of a window's command tables, in the order of the tables.
struct CommandFaces {
    std::vector<ButtonRow> buttons;
    std::vector<MenuRow> items;

    template <typename... Forms>
    static CommandFaces of(std::span<const CommandRow<Forms>>... tables) {
        CommandFaces faces;
        (faces.add(tables), ...);
        return faces;
    }

  private:
    template <typename Form>
    void add(std::span<const CommandRow<Form>> table) {
        for (const CommandRow<Form>& row : table) {
            if (*row.button.name) buttons.push_back(row.button);
            if (*row.item.name) items.push_back(row.item);
        }
    }
};

/// What the commands of a window run, by the names of their buttons and menu items.
class CommandHandlers {
  public:
    /// Adds the commands of a table, which run on `form`.
    template <typename Form>
    void add(std::span<const CommandRow<Form>> table, Form& form) {
        for (const CommandRow<Form>& row : table) {
            for (const char* name : {row.button.name, row.item.name})
                if (row.run && *name) handlers_[name] = [&form, run = row.run] { run(form); };
        }
    }
    /// The handler of a command. A name that no table has is a mistake in the program: it raises
    /// std::logic_error, so that a window with such a button does not even open.
    const std::function<void()>& operator()(const QString& name) const;

  private:
    std::map<QString, std::function<void()>> handlers_;
};

}  // namespace cinedisc
