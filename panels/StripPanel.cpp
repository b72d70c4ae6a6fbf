#include "panels/StripPanel.h"

#include "control/ezDICOMX.h"
#include "panels/PanelParts.h"

#include <QHBoxLayout>

#include <algorithm>

namespace cinedisc {

StripPanel::StripPanel(QWidget* parent) : QWidget(parent) {
    auto* previews = new QVBoxLayout;
    previews->setSpacing(buttonGap);
    for (int i = 0; i < previewCount; ++i) {
        ezDICOMX*& preview = thumb[static_cast<std::size_t>(i)];
        preview = named(new ezDICOMX(ViewRole::Preview, this), QString("thumb(%1)").arg(i));
        preview->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
        previews->addWidget(preview);
    }
    sb1 = named(new QScrollBar(Qt::Vertical, this), "sb1");
    sb1->setRange(1, 32767);
    sb1->setPageStep(previewCount);
    sb1->setAccessibleName(tr("Image Scroll Bar"));

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(buttonGap);
    row->addLayout(previews);
    row->addWidget(sb1);
}

int StripPanel::widthFor(int height) const {
    constexpr int smallestEdge = 80;
    const int edge = (height - (previewCount - 1) * buttonGap) / previewCount;
    return std::max(edge, smallestEdge) + buttonGap + sb1->sizeHint().width();
}

}  // namespace cinedisc
