#include "viewerwindow/PictureMenu.h"

#include "control/ezDICOMX.h"
#include "platform/widgets/EventGuard.h"

#include <QMenu>

#include <utility>

namespace cinedisc {

PictureMenu::PictureMenu(ezDICOMX& picture, std::function<void(const QString&)> run, Extras extras)
    : QObject(&picture), picture_(picture), run_(std::move(run)), extras_(std::move(extras)) {
    picture.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&picture, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) { open(at); });
}

void PictureMenu::open(const QPoint& at) {
    QMenu menu(&picture_);
    menu.setObjectName("PictureMenu");
    const auto add = [&](QMenu& to, const QString& words, const std::function<void()>& does) {
        QAction* action = to.addAction(words);
        connect(action, &QAction::triggered, this, EventGuard::guarded(does));
        return action;
    };
    // What the window's own menus have looks as it does there.
    const auto command = [&](QMenu& to, const QString& words, const char* name) {
        const auto* own = picture_.window()->findChild<QAction*>(name);
        QAction* action = add(to, words, [this, name] { run_(name); });
        action->setCheckable(own->isCheckable());
        action->setChecked(own->isChecked());
        action->setEnabled(own->isEnabled());
    };
    command(menu, tr("Play"), "mnuPlay");
    command(menu, tr("Play backward"), "mnuReverse");
    command(menu, tr("Stop"), "mnuStop");
    menu.addSeparator();
    command(menu, tr("Window"), "mnuWindow");
    command(menu, tr("Magnify"), "mnuMagnify");
    command(menu, tr("Panning"), "mnuPanning");
    command(menu, tr("Label"), "mnuLabel");
    menu.addSeparator();
    QMenu& zoom = *menu.addMenu(tr("Zoom"));
    command(zoom, tr("Best fit"), "mnuBestFit");
    for (const auto& [name, percent] :
         {std::pair("mnu50", 50), {"mnu100", 100}, {"mnu150", 150}, {"mnu200", 200}})
        command(zoom, QString("%1%").arg(percent), name);
    command(menu, tr("Invert"), "mnuInvert");
    command(menu, tr("Smooth"), "mnuSmooth");
    command(menu, tr("Header"), "mnuHeader");
    menu.addSeparator();
    command(menu, tr("Copy image"), "mnuCopy");
    command(menu, tr("Export image..."), "mnuExport");
    add(menu, tr("Export run as film..."), extras_.exportFilm)->setEnabled(picture_.FrameCount() > 0);
    menu.addSeparator();
    add(menu, tr("Full screen"), extras_.fullScreen);
    add(menu, tr("Keys"), extras_.keys);
    menu.exec(picture_.mapToGlobal(at));
}

}  // namespace cinedisc
