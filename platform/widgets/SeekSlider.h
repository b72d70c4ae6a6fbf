#pragma once

#include <QSlider>

namespace cinedisc {

/// A level slider whose handle jumps to where it is clicked and can be dragged on from there.
class SeekSlider final : public QSlider {
    Q_OBJECT

  public:
    explicit SeekSlider(QWidget* parent = nullptr) : QSlider(Qt::Horizontal, parent) {}

  protected:
    void mousePressEvent(QMouseEvent* event) override;
};

}  // namespace cinedisc
