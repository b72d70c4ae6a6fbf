#pragma once

#include "panels/ButtonTable.h"

#include <QBoxLayout>
#include <QWidget>

class QLabel;

namespace cinedisc {

/// Spaces of the window, in device-independent pixels.
constexpr int buttonGap = 4;
constexpr int panelGap = 8;

template <typename Widget>
Widget* named(Widget* widget, const QString& name) {
    widget->setObjectName(name);
    return widget;
}

/// A thin upright line between groups of buttons.
QWidget* groupLine(QWidget* parent);

/// Sets a text smaller and quieter than the others: it explains, it is not what one looks for.
void asRemark(QLabel& label);

/// A remark without a name.
QLabel* remark(const QString& text, QWidget* parent);

/// The step buttons on both sides of a label, by name.
struct StepButtons {
    const char* back;
    const char* next;
};

/// [<] label [>]: a row of two step buttons with the label centred between them.
QBoxLayout* stepRow(const ButtonTable& buttons, const StepButtons& names, QLabel& label, QWidget* parent);

}  // namespace cinedisc
