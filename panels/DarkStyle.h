#pragma once

#include <QProxyStyle>

namespace cinedisc {

/// The toolkit's plain style with scroll bars whose handle stands out on a dark ground, and sliders whose
/// handle jumps to where they are clicked.
class DarkStyle final : public QProxyStyle {
    Q_OBJECT

  public:
    DarkStyle() : QProxyStyle("Fusion") {}
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
};

}  // namespace cinedisc
