#include "panels/ButtonTable.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>

namespace cinedisc {

QPushButton* ButtonTable::make(const char* name, QWidget* parent) const {
    const auto row = std::ranges::find(rows_, std::string_view(name), &ButtonRow::name);
    if (row == rows_.end()) throw std::logic_error(std::string("no button ") + name);
    return makeButton(*row, parent);
}

}  // namespace cinedisc
