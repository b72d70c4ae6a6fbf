#pragma once

#include <QPainter>
#include <QPointF>
#include <QString>

namespace cinedisc {

/// One line of light text with a dark rim in the painter's font: readable on any grey. `baseline` is its left
/// end. Never interpreted as markup.
void drawOutlined(QPainter& painter, QPointF baseline, const QString& text);

}  // namespace cinedisc
