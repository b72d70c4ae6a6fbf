#include "app/StillsPanel.h"

#include "panels/PanelParts.h"

#include <QLabel>
#include <QVBoxLayout>

namespace cinedisc {

namespace {

constexpr const char* shortNameSample = "Anonymous^Patient^X";

struct StepGroup {
    const char* heading;
    ButtonRow back;
    ButtonRow next;
};

constexpr StepGroup patient = {"Patient",
                               {"cmdPatBack", "", Icon::Previous, "Previous Patient"},
                               {"Command2", "", Icon::Next, "Next Patient"}};
constexpr StepGroup series = {"Series",
                              {"cmdSerBack", "", Icon::Previous, "Previous Series"},
                              {"cmdSerNext", "", Icon::Next, "Next Series"}};
// These step files; their tooltips say "Frame" all the same.
constexpr StepGroup image = {"Image",
                             {"cmdPreviousSeries", "", Icon::PreviousImage, "Previous Frame"},
                             {"cmdNextSeries", "", Icon::NextImage, "Next Frame"}};

QBoxLayout* stepColumn(const StepGroup& group, QLabel& label, QWidget* parent) {
    auto* column = new QVBoxLayout;
    column->setSpacing(buttonGap);
    column->addStretch();
    QLabel* heading = remark(group.heading, parent);
    heading->setAlignment(Qt::AlignCenter);
    column->addWidget(heading);
    column->addLayout(stepRow(group.back, label, group.next, parent));
    column->addStretch();
    return column;
}

}  // namespace

StillsPanel::StillsPanel(QWidget* parent) : QFrame(parent) {
    setObjectName("Frame8");
    Label5 = named(new ElidedLabel("Study Scroll Bar", shortNameSample, this), "Label5");
    Label6 = named(new ElidedLabel("Series Scroll Bar", shortNameSample, this), "Label6");
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

    auto* columns = new QHBoxLayout;
    columns->setSpacing(panelGap);
    columns->addStretch();
    columns->addLayout(stepColumn(patient, *Label5, this), 1);
    columns->addWidget(groupLine(this));
    columns->addLayout(stepColumn(series, *Label6, this), 1);
    columns->addWidget(groupLine(this));
    columns->addLayout(stepColumn(image, *lblSeries, this));
    columns->addStretch();
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addLayout(columns, 1);
    rows->addWidget(Label1);
}

}  // namespace cinedisc
