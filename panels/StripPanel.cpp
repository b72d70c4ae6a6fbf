#include "panels/StripPanel.h"

#include "control/ezDICOMX.h"
#include "panels/PanelParts.h"

#include <QHBoxLayout>

#include <algorithm>

namespace cinedisc {

namespace {

constexpr int smallestEdge = 80;

}  // namespace

StripPanel::StripPanel(QWidget* parent) : QWidget(parent), previews_(new QVBoxLayout) {
    previews_->setSpacing(buttonGap);
    for (int i = 0; i < previewCount; ++i) {
        ezDICOMX*& preview = thumb[static_cast<std::size_t>(i)];
        preview = named(new ezDICOMX(ViewRole::Preview, this), QString("thumb(%1)").arg(i));
        preview->setAccessibleName(tr("Preview %1").arg(i + 1));
        preview->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
        previews_->addWidget(preview);
    }
    sb1 = named(new QScrollBar(Qt::Vertical, this), "sb1");
    sb1->setRange(1, 32767);
    sb1->setPageStep(previewCount);
    sb1->setFocusPolicy(Qt::TabFocus);
    sb1->setAccessibleName(tr("Image Scroll Bar"));

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(buttonGap);
    row->addLayout(previews_);
    row->addWidget(sb1);
}

int StripPanel::widthFor(int height) const {
    const int edge = (height - (previewCount - 1) * buttonGap) / previewCount;
    return std::max(edge, smallestEdge) + buttonGap + sb1->sizeHint().width();
}

int StripPanel::heightFor(int width) const {
    const int room = width - buttonGap - sb1->sizeHint().width();
    return std::max((room - (previewCount - 1) * buttonGap) / previewCount, smallestEdge);
}

void StripPanel::arrange(Qt::Orientation orientation) {
    previews_->setDirection(orientation == Qt::Vertical ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

}  // namespace cinedisc
