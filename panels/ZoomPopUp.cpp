#include "panels/ZoomPopUp.h"

#include "panels/PanelParts.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace cinedisc {

ZoomPopUp::ZoomPopUp(const ButtonTable& buttons, QWidget& button, QWidget& surface)
    : PopUpPanel(button, surface) {
    setObjectName("Frame5");
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(buttonGap, buttonGap, buttonGap, buttonGap);
    column->setSpacing(1);
    // By magnification: an index stands for its magnification, not for a place.
    for (const char* name : {"cmdFit(0)", "cmdFit(2)", "cmdFit(1)", "cmdFit(3)", "cmdFit(4)"})
        column->addWidget(buttons.make(name, this));
}

}  // namespace cinedisc
