#include "viewerwindow/PictureKeys.h"

#include "control/ezDICOMX.h"
#include "panels/StripPanel.h"
#include "panels/ViewerPanels.h"
#include "platform/widgets/EventGuard.h"
#include "viewerwindow/FullScreen.h"
#include "viewerwindow/KeysPage.h"
#include "viewerwindow/ViewerBehaviour.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QWheelEvent>

#include <algorithm>

namespace cinedisc {

namespace {

struct KeyRow {
    Qt::Key key;
    const char* command;
    const char* inStills;  ///< the command there; null where it is the same
};

constexpr KeyRow keyRows[] = {
    {Qt::Key_Left, "cmdPrev", nullptr},
    {Qt::Key_Right, "cmdNext", nullptr},
    {Qt::Key_Up, "cmdPrevImage", "cmdPreviousSeries"},
    {Qt::Key_PageUp, "cmdPrevImage", "cmdPreviousSeries"},
    {Qt::Key_Down, "cmdNextImage", "cmdNextSeries"},
    {Qt::Key_PageDown, "cmdNextImage", "cmdNextSeries"},
    {Qt::Key_R, "cmdReverse", nullptr},
    {Qt::Key_I, "cmdInvert", nullptr},
};

std::vector<std::pair<QString, QString>> keyWords() {
    const auto tr = [](const char* words) { return PictureKeys::tr(words); };
    return {{tr("Space"), tr("Play, stop")},
            {tr("R"), tr("Play backward")},
            {tr("+  -"), tr("Faster, slower")},
            {tr("Left  Right"), tr("Previous, next frame; the wheel too")},
            {tr("Home  End"), tr("First, last frame")},
            {tr("Up  Down"), tr("Previous, next file; Page Up, Page Down too")},
            {tr("I"), tr("Invert the grey scale")},
            {tr("F11"), tr("Full screen and back; a double click too")},
            {tr("Esc"), tr("Close this page, the header, the full screen")},
            {tr("F1"), tr("This page")}};
}

}  // namespace

PictureKeys::PictureKeys(QObject& window, Window parts)
    : QObject(&window), window_(std::move(parts)), page_(new KeysPage(keyWords(), *window_.panels.ezDicom)) {
    window.installEventFilter(this);
    window_.panels.ezDicom->installEventFilter(this);
}

void PictureKeys::toggleKeysPage() { page_->setVisible(page_->isHidden()); }

bool PictureKeys::eventFilter(QObject* watched, QEvent* event) {
    ezDICOMX* picture = window_.panels.ezDicom;
    bool isUsed = false;
    EventGuard::run([&] {
        if (watched != picture && event->type() == QEvent::KeyPress) {
            isUsed = press(*static_cast<QKeyEvent*>(event));
        } else if (event->type() == QEvent::KeyPress) {
            // Everything else is covered then.
            const int key = static_cast<QKeyEvent*>(event)->key();
            isUsed = window_.fullScreen.isOn() && (key == Qt::Key_Tab || key == Qt::Key_Backtab);
        } else if (watched == picture && event->type() == QEvent::Wheel) {
            roll(*static_cast<QWheelEvent*>(event));
            isUsed = true;
        } else if (watched == picture && event->type() == QEvent::MouseButtonDblClick &&
                   static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton &&
                   picture->MouseMode() != ViewerControl::MouseLabel) {
            window_.fullScreen.toggle();
            isUsed = true;
        }
    });
    return isUsed || QObject::eventFilter(watched, event);
}

bool PictureKeys::press(const QKeyEvent& event) {
    const int key = event.key();
    auto* focus = QApplication::focusWidget();
    const auto* picture = window_.panels.ezDicom;
    const auto& previews = window_.panels.strip->thumb;
    const bool isOverPicture = focus && picture->isAncestorOf(focus);
    const bool isAtPicture = focus == picture || std::ranges::find(previews, focus) != previews.end();
    const bool isPlain = (event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) == Qt::NoModifier;
    if (!isPlain) return false;
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        auto* button = qobject_cast<QAbstractButton*>(focus);
        if (button) button->click();
        return button != nullptr;
    }
    if (!isAtPicture && !isOverPicture) return false;
    if (key == Qt::Key_Escape) return escape();
    if (key == Qt::Key_F11) return window_.fullScreen.toggle(), true;
    if (key == Qt::Key_F1) return toggleKeysPage(), true;
    if (!isAtPicture) return false;

    ViewerBehaviour& behaviour = window_.behaviour;
    auto* speed = window_.panels.cinePanel->Slider1;
    if (key == Qt::Key_Space) return playOrStop(), true;
    if (key == Qt::Key_Home) return behaviour.frames.showFirst(), true;
    if (key == Qt::Key_End) return behaviour.frames.showLast(), true;
    if (key == Qt::Key_Plus || key == Qt::Key_Equal) return speed->setValue(speed->value() + 1), true;
    if (key == Qt::Key_Minus) return speed->setValue(speed->value() - 1), true;
    const auto* row = std::ranges::find(keyRows, key, &KeyRow::key);
    if (row == std::end(keyRows)) return false;
    window_.run(row->inStills && window_.isStills() ? row->inStills : row->command);
    return true;
}

bool PictureKeys::escape() {
    if (!page_->isHidden()) {
        page_->hide();
    } else if (window_.panels.ezDicom->ShowHeader()) {
        window_.run("cmdHeader");
    } else if (window_.fullScreen.isOn()) {
        window_.fullScreen.leave();
    } else {
        return false;
    }
    return true;
}

void PictureKeys::playOrStop() {
    // Where stills are paged, nothing could be seen to stop it.
    if (window_.isStills()) return;
    const auto& form = window_.behaviour.form;
    window_.run(form.Timer4.Enabled() ? "cmdStop" : form.Option10.Value() ? "cmdReverse" : "cmdPlay");
}

/// A wheel that gives parts of a step, or several at once, steps a frame for each whole one.
void PictureKeys::roll(const QWheelEvent& event) {
    rolled_ += event.angleDelta().y();
    constexpr int step = QWheelEvent::DefaultDeltasPerStep;
    for (; rolled_ >= step; rolled_ -= step) window_.run("cmdPrev");
    for (; rolled_ <= -step; rolled_ += step) window_.run("cmdNext");
}

}  // namespace cinedisc
