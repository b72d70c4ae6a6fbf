#include "panels/PanelParts.h"

#include "panels/GroupLine.h"

#include <QLabel>
#include <QPushButton>

namespace cinedisc {

QWidget* groupLine(QWidget* parent) {
    auto* line = new GroupLine(parent);
    // A layout that a window has already shows what it is given later, and has no room for it until then.
    line->show();
    return line;
}

void asRemark(QLabel& label) {
    constexpr qreal smaller = 0.9;
    QFont font = label.font();
    font.setPointSizeF(font.pointSizeF() * smaller);
    label.setFont(font);
    label.setForegroundRole(QPalette::PlaceholderText);
    label.setTextFormat(Qt::PlainText);
}

QLabel* remark(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    asRemark(*label);
    return label;
}

QBoxLayout* stepRow(const ButtonTable& buttons, const StepButtons& names, QLabel& label, QWidget* parent) {
    const auto stepButton = [&](const char* name) {
        QPushButton* button = buttons.make(name, parent);
        button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        return button;
    };
    label.setAlignment(Qt::AlignCenter);
    auto* row = new QHBoxLayout;
    row->setSpacing(buttonGap);
    row->addWidget(stepButton(names.back));
    row->addWidget(&label, 1);
    row->addWidget(stepButton(names.next));
    return row;
}

}  // namespace cinedisc
