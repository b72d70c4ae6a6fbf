#include "app/PictureRow.h"

#include "app/PanelParts.h"
#include "app/StripPanel.h"

#include <QSplitter>

namespace cinedisc {

PictureRow::PictureRow(QSplitter& treeAndPicture, StripPanel& strip, QWidget* parent)
    : QWidget(parent), treeAndPicture_(treeAndPicture), strip_(strip) {
    treeAndPicture_.setParent(this);
    strip_.setParent(this);
}

QSize PictureRow::minimumSizeHint() const {
    constexpr int smallestHeight = 300;
    return {treeAndPicture_.minimumSizeHint().width() + panelGap + strip_.widthFor(smallestHeight),
            smallestHeight};
}

void PictureRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    // In a high and narrow window the previews stay smaller than their places.
    constexpr int stripShare = 7;
    const int stripWidth = qMin(strip_.widthFor(height()), qMax(width() / stripShare, strip_.widthFor(0)));
    const int stripLeft = width() - stripWidth;
    strip_.setGeometry(stripLeft, 0, stripWidth, height());
    treeAndPicture_.setGeometry(0, 0, stripLeft - panelGap, height());
}

}  // namespace cinedisc
