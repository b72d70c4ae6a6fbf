#include "platform/widgets/PatientTreeView.h"

#include "platform/widgets/PlainTextDelegate.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
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
