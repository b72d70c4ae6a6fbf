#include "platform/widgets/PatientTreeView.h"

#include "platform/widgets/PlainTextDelegate.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>

namespace cinedisc {

PatientTreeView::PatientTreeView(QWidget* parent) : QTreeView(parent) {
    setHeaderHidden(true);
    setEditTriggers(NoEditTriggers);
    // A tree of many thousand patients is measured by its first row.
    setUniformRowHeights(true);
    setTextElideMode(Qt::ElideRight);
    setExpandsOnDoubleClick(false);
    setItemDelegate(new PlainTextDelegate(this));
    connect(this, &QTreeView::clicked, this, &PatientTreeView::choose);
}

void PatientTreeView::setHint(const QString& words) {
    hint_ = words;
    setAccessibleDescription(words);
    viewport()->update();
}

void PatientTreeView::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (!model() || model()->rowCount() > 0) return;
    constexpr int margin = 16;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, hint_);
}

void PatientTreeView::choose(const QModelIndex& node) {
    if (!node.isValid()) return;
    setCurrentIndex(node);
    emit nodeChosen(node);
}

void PatientTreeView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        choose(currentIndex());
    else
        QTreeView::keyPressEvent(event);
}

bool PatientTreeView::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QTreeView::viewportEvent(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const QModelIndex node = indexAt(help->pos());
    const QRect row = visualRect(node);
    const bool elided = node.isValid() && sizeHintForIndex(node).width() > row.width();
    QToolTip::showText(help->globalPos(), elided ? plainToolTip(node.data().toString()) : QString(),
                       viewport(), row);
    return true;
}

}  // namespace cinedisc
