#pragma once

#include "platform/widgets/NamedButton.h"

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

/// [<] label [>]: a row of two step buttons with the label centred between them.
QBoxLayout* stepRow(const ButtonRow& back, QLabel& label, const ButtonRow& next, QWidget* parent);

}  // namespace cinedisc
