#pragma once

#include "platform/Label.h"

#include <QLabel>

namespace cinedisc {

/// A label on a QLabel that somebody else owns. The text may come from a disc, so it is never taken for
/// markup.
class LabelAdapter final : public Label {
  public:
    explicit LabelAdapter(QLabel& label);
    QString Caption() const override;
    void putCaption(const QString& text) override;

  private:
    QLabel& label_;
};

}  // namespace cinedisc
