#pragma once

#include <QStyledItemDelegate>

namespace cinedisc {

/// Draws an item's text as one line of plain text, and of a text without end only as much as can be seen.
class PlainTextDelegate final : public QStyledItemDelegate {
    Q_OBJECT

  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QString displayText(const QVariant& value, const QLocale& locale) const override;
};

/// A text from a disc, fit for drawing: one line, at most a few hundred characters.
QString oneLine(const QString& text);

/// A text from a disc, fit for a tooltip, which would take it for markup otherwise.
QString plainToolTip(const QString& text);

}  // namespace cinedisc
