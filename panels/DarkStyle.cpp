#include "panels/DarkStyle.h"

#include <QPainter>
#include <QStyleOptionSlider>

namespace cinedisc {

namespace {

struct ScrollBarColors {
    QColor handle;
    QColor arrow;
};

ScrollBarColors colorsFor(const QStyleOptionSlider& bar) {
    const QPalette& palette = bar.palette;
    if (!bar.state.testFlag(QStyle::State_Enabled) || bar.minimum == bar.maximum)
        return {palette.color(QPalette::Button), palette.color(QPalette::Disabled, QPalette::Text)};
    const QColor handle = palette.color(QPalette::Disabled, QPalette::Text);
    return {bar.state.testFlag(QStyle::State_MouseOver) ? handle.lighter(130) : handle,
            palette.color(QPalette::PlaceholderText)};
}

}  // namespace

void DarkStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || !bar) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    const ScrollBarColors colors = colorsFor(*bar);
    const auto part = [&](SubControl which) {
        return proxy()->subControlRect(CC_ScrollBar, bar, which, widget);
    };
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillRect(bar->rect, bar->palette.color(QPalette::Base));
    painter->setPen(Qt::NoPen);
    painter->setBrush(colors.handle);
    constexpr qreal rounding = 3;
    painter->drawRoundedRect(part(SC_ScrollBarSlider).marginsRemoved({2, 1, 2, 1}), rounding, rounding);
    QStyleOption arrow = *bar;
    arrow.palette.setColor(QPalette::ButtonText, colors.arrow);
    arrow.palette.setColor(QPalette::WindowText, colors.arrow);
    const bool upright = bar->orientation == Qt::Vertical;
    arrow.rect = part(SC_ScrollBarSubLine);
    proxy()->drawPrimitive(upright ? PE_IndicatorArrowUp : PE_IndicatorArrowLeft, &arrow, painter, widget);
    arrow.rect = part(SC_ScrollBarAddLine);
    proxy()->drawPrimitive(upright ? PE_IndicatorArrowDown : PE_IndicatorArrowRight, &arrow, painter, widget);
    painter->restore();
}

int DarkStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* returnData) const {
    if (hint == SH_Slider_AbsoluteSetButtons) return Qt::LeftButton;
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

}  // namespace cinedisc
