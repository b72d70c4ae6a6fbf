#pragma once

#include <QFrame>

namespace cinedisc {

/// A thin upright line between groups of buttons.
class GroupLine final : public QFrame {
    Q_OBJECT

  public:
    explicit GroupLine(QWidget* parent) : QFrame(parent) { setFixedWidth(1); }
};

}  // namespace cinedisc
