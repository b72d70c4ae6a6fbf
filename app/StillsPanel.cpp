#include "app/StillsPanel.h"

#include "panels/PanelParts.h"
#include "viewer/WindowWords.h"

#include <QLabel>
#include <QVBoxLayout>

namespace cinedisc {

namespace {

constexpr const char* shortNameSample = "Anonymous^Patient^X";

QBoxLayout* stepColumn(const QString& heading, QBoxLayout* steps, QWidget* parent) {
    auto* column = new QVBoxLayout;
    column->setSpacing(buttonGap);
    column->addStretch();
    QLabel* text = remark(heading, parent);
    text->setAlignment(Qt::AlignCenter);
    column->addWidget(text);
    column->addLayout(steps);
    column->addStretch();
    return column;
}

}  // namespace

StillsPanel::StillsPanel(const ButtonTable& buttons, QWidget* parent) : QFrame(parent) {
    setObjectName("Frame8");
    Label5 = named(new ElidedLabel(windowWords::anyPatient(), shortNameSample, this), "Label5");
    Label6 = named(new ElidedLabel(windowWords::anySeries(), shortNameSample, this), "Label6");
    lblSeries = named(new ElidedLabel("", "Image :0000/0000", this), "lblSeries");
    lblSeries->setMinimumWidth(lblSeries->sizeHint().width());
    // In a wide window the buttons of a step stay near each other.
    constexpr int widestName = 380;
    Label5->setMaximumWidth(widestName);
    Label6->setMaximumWidth(widestName);
    Label1 = named(new ElidedLabel("", "", this), "Label1");
    Label1->setAlignment(Qt::AlignCenter);
    // Of a folder's path the end tells most.
    Label1->setElideMode(Qt::ElideLeft);
    asRemark(*Label1);

    const auto column = [&](const QString& heading, const StepButtons& names, QLabel& label) {
        return stepColumn(heading, stepRow(buttons, names, label, this), this);
    };
    auto* columns = new QHBoxLayout;
    columns->setSpacing(panelGap);
    columns->addStretch();
    columns->addLayout(column(tr("Patient"), {.back = "cmdPatBack", .next = "Command2"}, *Label5), 1);
    columns->addWidget(groupLine(this));
    columns->addLayout(column(tr("Series"), {.back = "cmdSerBack", .next = "cmdSerNext"}, *Label6), 1);
    columns->addWidget(groupLine(this));
    columns->addLayout(
        column(tr("Image"), {.back = "cmdPreviousSeries", .next = "cmdNextSeries"}, *lblSeries));
    columns->addStretch();
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addLayout(columns, 1);
    rows->addWidget(Label1);
}

}  // namespace cinedisc
