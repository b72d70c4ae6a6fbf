#include "panels/BackgroundPopUp.h"

#include "panels/PanelParts.h"

#include <QVBoxLayout>

namespace cinedisc {

BackgroundPopUp::BackgroundPopUp(QWidget& button, QWidget& surface) : PopUpPanel(button, surface) {
    setObjectName("Frame6");
    Option1 = named(new QRadioButton(tr("None"), this), "Option1");
    Option2 = named(new QRadioButton(tr("Black"), this), "Option2");
    Option3 = named(new QRadioButton(tr("White"), this), "Option3");
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(panelGap, panelGap, panelGap, panelGap);
    column->setSpacing(panelGap);
    for (QRadioButton* option : {Option1, Option2, Option3}) column->addWidget(option);
}

}  // namespace cinedisc
