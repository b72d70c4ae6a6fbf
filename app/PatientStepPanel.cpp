#include "app/PatientStepPanel.h"

#include "panels/PanelParts.h"

#include <QVBoxLayout>

namespace cinedisc {

namespace {

constexpr ButtonRow studyBack = {"CmdStudyBack", "", Icon::Previous, "Previous Patient"};
constexpr ButtonRow studyNext = {"cmdStudyNext", "", Icon::Next, "Next Patient"};
constexpr ButtonRow seriesBack = {"cmdSeriesBack", "", Icon::Previous, "Previous Series"};
constexpr ButtonRow seriesNext = {"cmNext", "", Icon::Next, "Next Series"};

constexpr const char* nameSample = "Anonymous^Patient (ID-12345)";

}  // namespace

PatientStepPanel::PatientStepPanel(QWidget* parent) : QFrame(parent) {
    setObjectName("Frame1");
    Label13 = named(new ElidedLabel("Study Scroll Bar", nameSample, this), "Label13");
    Label15 = named(new ElidedLabel("Series Scroll Bar", nameSample, this), "Label15");
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(buttonGap);
    rows->addStretch();
    rows->addLayout(stepRow(studyBack, *Label13, studyNext, this));
    rows->addLayout(stepRow(seriesBack, *Label15, seriesNext, this));
    rows->addStretch();
}

}  // namespace cinedisc
