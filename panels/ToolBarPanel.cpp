#include "panels/ToolBarPanel.h"

#include "panels/PanelParts.h"

#include <QFrame>
#include <QHBoxLayout>

#include <array>

namespace cinedisc {

ToolBarPanel::ToolBarPanel(const ButtonTable& buttons, const ToolBarDesign& design, QWidget* parent)
    : QWidget(parent) {
    setObjectName(design.name);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(buttonGap);
    addGroup(buttons, std::array{design.open, "cmdExport"});
    addGroup(buttons, std::array{"cmdWindow", "cmdMagnify", "cmdLabel", "cmdPanning"});
    addGroup(buttons, std::array{"cmdZoom", "cmdInvert", "cmdSmooth", "cmdHeader", "cmdOverlay"});
    if (!design.lastGroup.empty()) addGroup(buttons, design.lastGroup);
    addGroup(buttons, std::array{design.exit});
    cmdZoom = findChild<QPushButton*>("cmdZoom");
    cmdOverlay = findChild<QPushButton*>("cmdOverlay");
    arrange(std::vector<int>(groups_.size()));
}

QWidget* ToolBarPanel::addGroup(const ButtonTable& buttons, std::span<const char* const> names) {
    auto* group = new QWidget(this);
    auto* row = new QHBoxLayout(group);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(buttonGap);
    for (const char* name : names) row->addWidget(buttons.make(name, group));
    return groups_.emplace_back(group);
}

void ToolBarPanel::arrangeFor(int width) {
    constexpr int lineWidth = 2 * buttonGap + 1;
    std::vector<int> rowOf;
    int row = 0, used = 0;
    for (const QWidget* group : groups_) {
        const int wanted = group->minimumSizeHint().width();
        if (used > 0 && used + lineWidth + 2 * buttonGap + wanted > width) {
            ++row;
            used = 0;
        }
        used += wanted + (used > 0 ? lineWidth + 2 * buttonGap : 0);
        rowOf.push_back(row);
    }
    if (rowOf != rowOf_) arrange(rowOf);
}

void ToolBarPanel::arrange(const std::vector<int>& rowOf) {
    rowOf_ = rowOf;
    qDeleteAll(lines_);
    lines_.clear();
    qDeleteAll(rows_);
    rows_.clear();
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        const bool isFirst = i == 0 || rowOf[i] != rowOf[i - 1];
        const bool isLast = i + 1 == groups_.size();
        if (isFirst) {
            rows_.push_back(new QHBoxLayout);
            rows_.back()->setSpacing(buttonGap);
            static_cast<QBoxLayout*>(layout())->addLayout(rows_.back());
        }
        QBoxLayout& place = *rows_.back();
        if (isLast) {
            // Away from all others, lest it be hit by mistake.
            place.addStretch();
        } else if (!isFirst) {
            place.addSpacing(buttonGap);
            place.addWidget(lines_.emplace_back(groupLine(this)));
            place.addSpacing(buttonGap);
        }
        place.addWidget(groups_[i]);
        if (!isLast && rowOf[i + 1] != rowOf[i]) place.addStretch();
    }
}

}  // namespace cinedisc
