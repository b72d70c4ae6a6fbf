#include "viewerwindow/PictureMenu.h"

#include "control/ezDICOMX.h"
#include "platform/widgets/EventGuard.h"

#include <QMenu>

#include <optional>
#include <utility>

namespace cinedisc {

PictureMenu::PictureMenu(ezDICOMX& picture, std::function<void(const QString&)> run, Extras extras)
    : QObject(&picture), picture_(picture), run_(std::move(run)), extras_(std::move(extras)) {
    picture.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&picture, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) { open(at); });
}

void PictureMenu::open(const QPoint& at) {
    const bool hasPicture = picture_.FrameCount() > 0;
    QMenu menu(&picture_);
    menu.setObjectName("PictureMenu");
    const auto add = [&](QMenu& to, const QString& words, const std::function<void()>& does,
                         std::optional<bool> isOn = std::nullopt) {
        QAction* action = to.addAction(words);
        action->setCheckable(isOn.has_value());
        action->setChecked(isOn.value_or(false));
        connect(action, &QAction::triggered, this, EventGuard::guarded(does));
        return action;
    };
    const auto command = [this](const char* name) { return [this, name] { run_(name); }; };
    const auto tool = [&](const QString& words, const char* name, int mode) {
        add(menu, words, command(name), picture_.MouseMode() == mode);
    };
    add(menu, tr("Play"), command("cmdPlay"));
    add(menu, tr("Play backward"), command("cmdReverse"));
    add(menu, tr("Stop"), command("cmdStop"));
    menu.addSeparator();
    tool(tr("Window"), "cmdWindow", ViewerControl::MouseWindow);
    tool(tr("Magnify"), "cmdMagnify", ViewerControl::MouseMagnify);
    tool(tr("Panning"), "cmdPanning", ViewerControl::MousePan);
    tool(tr("Label"), "cmdLabel", ViewerControl::MouseLabel);
    menu.addSeparator();
    QMenu& zoom = *menu.addMenu(tr("Zoom"));
    const bool fits = picture_.BestFit();
    add(zoom, tr("Best fit"), command("mnuBestFit"), fits);
    for (const auto& [name, percent] :
         {std::pair("mnu50", 50), {"mnu100", 100}, {"mnu150", 150}, {"mnu200", 200}})
        add(zoom, QString("%1%").arg(percent), command(name), !fits && picture_.ZoomPercent() == percent);
    add(menu, tr("Invert"), command("cmdInvert"), picture_.Polarity() < 0);
    add(menu, tr("Smooth"), command("cmdSmooth"), picture_.Smooth());
    add(menu, tr("Header"), command("cmdHeader"), picture_.ShowHeader());
    menu.addSeparator();
    add(menu, tr("Copy image"), command("mnuCopy"))->setEnabled(hasPicture);
    add(menu, tr("Export image..."), command("cmdExport"))->setEnabled(hasPicture);
    add(menu, tr("Export run as film..."), extras_.exportFilm)->setEnabled(hasPicture);
    menu.addSeparator();
    add(menu, tr("Full screen"), extras_.fullScreen);
    add(menu, tr("Keys"), extras_.keys);
    menu.exec(picture_.mapToGlobal(at));
}

}  // namespace cinedisc
