#include "panels/PictureRow.h"

#include "panels/PanelParts.h"
#include "panels/StripPanel.h"

namespace cinedisc {

PictureRow::PictureRow(QWidget& picture, StripPanel& strip, QWidget* parent)
    : QWidget(parent), picture_(picture), strip_(strip) {
    picture_.setParent(this);
    strip_.setParent(this);
}

QSize PictureRow::minimumSizeHint() const {
    constexpr int smallestHeight = 220;
    return {picture_.minimumSizeHint().width() + panelGap + strip_.widthFor(smallestHeight), smallestHeight};
}

void PictureRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const int beside = width() - panelGap - strip_.widthFor(height());
    const int above = height() - panelGap - strip_.heightFor(width());
    if (qMin(width(), above) > qMin(beside, height())) {
        strip_.arrange(Qt::Horizontal);
        strip_.setGeometry(0, above + panelGap, width(), height() - above - panelGap);
        picture_.setGeometry(0, 0, width(), above);
    } else {
        strip_.arrange(Qt::Vertical);
        strip_.setGeometry(beside + panelGap, 0, width() - beside - panelGap, height());
        picture_.setGeometry(0, 0, beside, height());
    }
}

}  // namespace cinedisc
