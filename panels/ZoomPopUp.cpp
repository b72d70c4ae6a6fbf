#include "panels/ZoomPopUp.h"

#include "panels/PanelParts.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace cinedisc {

namespace {

/// In the order in which they are shown; an index stands for its magnification, not for a place.
constexpr ButtonRow choices[] = {
    {"cmdFit(0)", "Best Fit", Icon::None, "Fit the picture to the view"},
    {"cmdFit(2)", "50%", Icon::None, "Half size"},
    {"cmdFit(1)", "100%", Icon::None, "One screen pixel per image pixel"},
    {"cmdFit(3)", "150%", Icon::None, "One and a half times the size"},
    {"cmdFit(4)", "200%", Icon::None, "Double size"},
};

}  // namespace

ZoomPopUp::ZoomPopUp(QWidget& button, QWidget& surface) : PopUpPanel(button, surface) {
    setObjectName("Frame5");
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(buttonGap, buttonGap, buttonGap, buttonGap);
    column->setSpacing(1);
    for (const ButtonRow& choice : choices) column->addWidget(makeButton(choice, this));
}

}  // namespace cinedisc
