#include "viewerwindow/KeysPage.h"

#include <QEvent>
#include <QGridLayout>

namespace cinedisc {

KeysPage::KeysPage(const std::vector<std::pair<QString, QString>>& keys, QWidget& picture)
    : QFrame(&picture) {
    setObjectName("KeysPage");
    setAccessibleName(tr("Keys"));
    setAutoFillBackground(true);
    auto* grid = new QGridLayout(this);
    constexpr int margin = 16;
    grid->setContentsMargins(margin, margin, margin, margin);
    grid->setHorizontalSpacing(margin);
    for (const auto& [key, does] : keys) {
        const int row = grid->rowCount();
        grid->addWidget(new QLabel(key, this), row, 0);
        grid->addWidget(new QLabel(does, this), row, 1);
    }
    hide();
    picture.installEventFilter(this);
}

void KeysPage::showEvent(QShowEvent* event) {
    QFrame::showEvent(event);
    place();
    raise();
}

bool KeysPage::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && isVisible()) place();
    return QFrame::eventFilter(watched, event);
}

void KeysPage::place() {
    adjustSize();
    const QSize room = parentWidget()->size();
    resize(size().boundedTo(room));
    move((room.width() - width()) / 2, (room.height() - height()) / 2);
}

}  // namespace cinedisc
