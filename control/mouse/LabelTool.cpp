#include "control/mouse/LabelTool.h"

#include <algorithm>
#include <utility>

namespace cinedisc {

LabelTool::LabelTool(ViewState& view, QWidget& widget)
    : view_(view), widget_(widget), editor_(new LabelEditor(widget)) {
    QObject::connect(editor_, &LabelEditor::handedOver, &widget, [this](const QString& text) { take(text); });
    QObject::connect(editor_, &LabelEditor::dropped, &widget, [this] { endTyping(); });
}

LabelTool::~LabelTool() { delete editor_; }

PictureLabel* LabelTool::selected() const {
    if (selected_ < 0 || selected_ >= static_cast<int>(labels().size())) return nullptr;
    return &labels()[static_cast<std::size_t>(selected_)];
}

QPointF LabelTool::toPicture(QPointF at) const {
    const QPointF share = view_.placement().toPicture(at * view_.pixelRatio);
    return {std::clamp(share.x(), 0.0, 1.0), std::clamp(share.y(), 0.0, 1.0)};
}

void LabelTool::press(QPointF at) {
    editor_->handOver();
    start_ = at;
    opens_ = false;
    if (!view_.picture.frame()) return;
    selected_ = view_.labels.at(view_.picture.currentFrame(), at, view_.pictureRect());
    opens_ = selected_ < 0;
    if (const auto* label = selected()) before_ = PictureLabels::place(*label, view_.pictureRect());
}

void LabelTool::move(QPointF at) {
    auto* label = selected();
    if (opens_ || !label) return;
    const QRectF picture = view_.pictureRect();
    const QPointF by((at.x() - start_.x()) / picture.width(), (at.y() - start_.y()) / picture.height());
    label->at = before_ + by;
    label->at = PictureLabels::place(*label, picture);
}

void LabelTool::release() {
    if (!std::exchange(opens_, false)) return;
    placed_ = toPicture(start_);
    replaces_ = false;
    editor_->open(start_, {}, PictureLabels::font(view_.pictureRect()));
}

void LabelTool::cancel() {
    if (auto* label = selected(); label && !opens_) label->at = before_;
    opens_ = false;
}

void LabelTool::doubleClick(QPointF at) {
    press(at);
    auto* label = selected();
    if (!label) return;
    replaces_ = label->isBeingTyped = true;
    const QRectF box = PictureLabels::box(*label, view_.pictureRect());
    editor_->open({box.left(), box.center().y()}, label->text, PictureLabels::font(view_.pictureRect()));
}

void LabelTool::endTyping() {
    for (auto& label : labels()) label.isBeingTyped = false;
    widget_.update();
}

void LabelTool::take(const QString& text) {
    auto* label = replaces_ ? selected() : nullptr;
    if (label && text.isEmpty()) {
        labels().erase(labels().begin() + selected_);
        selected_ = -1;
    } else if (label) {
        label->text = text;
    } else if (!text.isEmpty()) {
        labels().push_back({placed_, text});
        selected_ = static_cast<int>(labels().size()) - 1;
    }
    endTyping();
}

bool LabelTool::takesKey(int key) const {
    return selected() &&
           (key == Qt::Key_Delete || key == Qt::Key_Backspace || key == Qt::Key_Return || key == Qt::Key_F2);
}

void LabelTool::useKey(int key) {
    if (!selected()) return;
    if (key == Qt::Key_Delete || key == Qt::Key_Backspace) {
        labels().erase(labels().begin() + selected_);
        selected_ = -1;
    } else {
        doubleClick(PictureLabels::box(*selected(), view_.pictureRect()).center());
    }
}

void LabelTool::leaveFrame() {
    finish();
    selected_ = -1;
    opens_ = false;
}

void LabelTool::paint(QPainter& painter) {
    const auto* label = selected();
    if (!label || editor_->isVisible()) return;
    painter.setPen(QPen(QColor(255, 255, 255, 170), 1, Qt::DashLine));
    painter.drawRect(PictureLabels::box(*label, view_.pictureRect()).adjusted(-4, -2, 4, 2));
}

}  // namespace cinedisc
