#pragma once

#include <QString>

namespace cinedisc {

/// A label as the logic sees it: one text, always shown as plain text.
class Label {
  public:
    virtual ~Label() = default;
    virtual QString Caption() const = 0;
    virtual void putCaption(const QString& text) = 0;
};

}  // namespace cinedisc
