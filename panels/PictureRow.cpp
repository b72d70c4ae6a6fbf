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
    constexpr int smallestHeight = 300;
    return {picture_.minimumSizeHint().width() + panelGap + strip_.widthFor(smallestHeight), smallestHeight};
}

void PictureRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    // In a high and narrow window the previews stay smaller than their places.
    constexpr int stripShare = 7;
    const int stripWidth = qMin(strip_.widthFor(height()), qMax(width() / stripShare, strip_.widthFor(0)));
    const int stripLeft = width() - stripWidth;
    strip_.setGeometry(stripLeft, 0, stripWidth, height());
    picture_.setGeometry(0, 0, stripLeft - panelGap, height());
}

}  // namespace cinedisc
