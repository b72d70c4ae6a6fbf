#include "app/PatientStepPanel.h"

#include "panels/PanelParts.h"
#include "viewer/WindowWords.h"

#include <QVBoxLayout>

namespace cinedisc {

namespace {

constexpr const char* nameSample = "Anonymous^Patient (ID-12345)";

}  // namespace

PatientStepPanel::PatientStepPanel(const ButtonTable& buttons, QWidget* parent) : QFrame(parent) {
    setObjectName("Frame1");
    Label13 = named(new ElidedLabel(windowWords::anyPatient(), nameSample, this), "Label13");
    Label15 = named(new ElidedLabel(windowWords::anySeries(), nameSample, this), "Label15");
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(buttonGap);
    rows->addStretch();
    rows->addLayout(stepRow(buttons, {.back = "CmdStudyBack", .next = "cmdStudyNext"}, *Label13, this));
    rows->addLayout(stepRow(buttons, {.back = "cmdSeriesBack", .next = "cmNext"}, *Label15, this));
    rows->addStretch();
}

}  // namespace cinedisc
