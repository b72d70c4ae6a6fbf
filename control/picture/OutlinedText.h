#pragma once

#include <QFont>
#include <QPainter>
#include <QPointF>
#include <QString>

namespace cinedisc {

/// How a line is made readable: light with a dark rim on any grey, or dark on white.
enum class TextInk { OutlinedLight, PlainDark };

/// The layers that a line is painted in, one over the other.
enum class TextLayer { Rim, Light, Dark };

/// How far the dark rim reaches beyond the letters.
double rimAround(const QFont& font);

/// One layer of a line in the painter's font. `baseline` is its left end. Never interpreted as markup.
void drawLayer(QPainter& painter, QPointF baseline, const QString& text, TextLayer layer);

/// One line with all its layers.
void drawInked(QPainter& painter, QPointF baseline, const QString& text, TextInk ink);
inline void drawOutlined(QPainter& painter, QPointF baseline, const QString& text) {
    drawInked(painter, baseline, text, TextInk::OutlinedLight);
}

}  // namespace cinedisc
