#include "panels/DarkStyle.h"

#include "platform/widgets/Icon.h"

#include <QPainter>
#include <QStyleOptionSlider>

#include <utility>

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

void ringFocus(const QStyleOption& option, QPainter& painter) {
    if (!option.state.testFlag(QStyle::State_HasFocus)) return;
    painter.save();
    painter.setPen(option.palette.color(QPalette::BrightText));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
    painter.restore();
}

}  // namespace

void DarkStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || !bar) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        if (control == CC_ComboBox || control == CC_ToolButton) ringFocus(*option, *painter);
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
    // Not the base style's arrows: it keeps a picture of each for every palette, and one made for a drawing
    // is never used again.
    painter->setBrush(colors.arrow);
    const auto drawArrow = [&](SubControl which, int turned) {
        painter->save();
        painter->translate(QRectF(part(which)).center());
        painter->rotate(turned - (bar->orientation == Qt::Vertical ? 0 : 90));
        painter->drawPolygon(QPolygonF{{-3.5, 2}, {3.5, 2}, {0, -2}});
        painter->restore();
    };
    drawArrow(SC_ScrollBarSubLine, 0);
    drawArrow(SC_ScrollBarAddLine, 180);
    painter->restore();
    ringFocus(*bar, *painter);
}

QIcon DarkStyle::standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const {
    constexpr std::pair<StandardPixmap, Icon> own[] = {
        {SP_ArrowBack, Icon::Previous},
        {SP_ArrowForward, Icon::Next},
        {SP_FileDialogBack, Icon::Previous},
        {SP_FileDialogToParent, Icon::Parent},
        {SP_FileDialogNewFolder, Icon::Folder},
        {SP_FileDialogListView, Icon::List},
        {SP_FileDialogDetailedView, Icon::Details},
        {SP_MessageBoxQuestion, Icon::Question},
        {SP_MessageBoxWarning, Icon::Warning},
        {SP_MessageBoxCritical, Icon::Warning},
    };
    for (const auto& [standard, icon] : own)
        if (standard == which) return drawnIcon(icon);
    return QProxyStyle::standardIcon(which, option, widget);
}

int DarkStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* returnData) const {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    if (hint == SH_Slider_AbsoluteSetButtons) return Qt::LeftButton;
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

}  // namespace cinedisc
