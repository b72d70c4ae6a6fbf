#pragma once

#include <QProxyStyle>

namespace cinedisc {

/// The toolkit's plain style with scroll bars whose handle stands out on a dark ground, and sliders whose
/// handle jumps to where they are clicked; with icons of the program's own family, and a ring round what has
/// the keyboard.
class DarkStyle final : public QProxyStyle {
    Q_OBJECT

  public:
    DarkStyle() : QProxyStyle("Fusion") {}
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                       const QWidget* widget) const override;
};

}  // namespace cinedisc
