#pragma once

#include "platform/widgets/Icon.h"

#include <QString>

#include <functional>

class QPushButton;
class QWidget;

namespace cinedisc {

/// A push button as a table states it. A button without a caption shows its icon.
struct ButtonRow {
    const char* name = "";
    const char* caption = "";
    Icon icon = Icon::None;
    const char* toolTip = "";
};

QPushButton* makeButton(const ButtonRow& row, QWidget* parent);

/// Connects every named push button under `root` with the handler that `handlerOf` returns for its name. It
/// runs under EventGuard.
void routeButtons(QWidget& root, const std::function<std::function<void()>(const QString& name)>& handlerOf);

}  // namespace cinedisc
