#pragma once

#include "control/mouse/LabelEditor.h"
#include "control/mouse/MouseTool.h"
#include "control/picture/ViewState.h"

#include <QPointer>

namespace cinedisc {

/// Texts on the picture. A click on the picture opens a line to type in; a label is moved by a drag, opened
/// again by a double click, removed by Delete or by an empty text.
class LabelTool : public MouseTool {
  public:
    LabelTool(ViewState& view, QWidget& widget);
    ~LabelTool() override;

    void press(QPointF at) override;
    void move(QPointF at) override;
    void release() override;
    void cancel() override;
    void doubleClick(QPointF at) override;
    bool takesKey(int key) const override;
    void useKey(int key) override;
    void finish() override { editor_->handOver(); }
    void leaveFrame() override;
    bool outlivesFile() const override { return false; }
    void paint(QPainter& painter) override;
    QCursor cursor() const override { return Qt::IBeamCursor; }

  private:
    std::vector<PictureLabel>& labels() const { return view_.labels.ofFrame(view_.picture.currentFrame()); }
    PictureLabel* selected() const;
    QPointF toPicture(QPointF at) const;
    void take(const QString& text);
    void endTyping();

    ViewState& view_;
    QWidget& widget_;
    QPointer<LabelEditor> editor_;
    int selected_ = -1;
    QPointF start_;
    QPointF before_;         ///< where the dragged label was
    bool opens_ = false;     ///< the press was on the picture itself
    QPointF placed_;         ///< where the text being typed goes
    bool replaces_ = false;  ///< the text being typed is the selected label's
};

}  // namespace cinedisc
