#pragma once

#include "platform/widgets/Icon.h"

#include <QString>

#include <functional>

class QPushButton;
class QWidget;

namespace cinedisc {

/// A push button as a table states it. A button without a caption shows its icon.
struct ButtonRow {
    const char* name;
    const char* caption;
    Icon icon;
    const char* toolTip;
};

QPushButton* makeButton(const ButtonRow& row, QWidget* parent);

/// A click on any named push button under `root` runs `run` with the button's name, under EventGuard.
void routeButtons(QWidget& root, const std::function<void(const QString&)>& run);

/// Marks a button as the choice in force (a mouse tool, say).
void markActive(QPushButton& button, bool active);

}  // namespace cinedisc
