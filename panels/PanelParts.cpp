#include "panels/PanelParts.h"

#include "panels/GroupLine.h"

#include <QLabel>
#include <QPushButton>

namespace cinedisc {

namespace {

QPushButton* makeStepButton(const ButtonRow& row, QWidget* parent) {
    QPushButton* button = makeButton(row, parent);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return button;
}

}  // namespace

QWidget* groupLine(QWidget* parent) { return new GroupLine(parent); }

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

QBoxLayout* stepRow(const ButtonRow& back, QLabel& label, const ButtonRow& next, QWidget* parent) {
    label.setAlignment(Qt::AlignCenter);
    auto* row = new QHBoxLayout;
    row->setSpacing(buttonGap);
    row->addWidget(makeStepButton(back, parent));
    row->addWidget(&label, 1);
    row->addWidget(makeStepButton(next, parent));
    return row;
}

}  // namespace cinedisc
