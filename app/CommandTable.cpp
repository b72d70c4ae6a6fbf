#include "app/CommandTable.h"

#include "app/Form1.h"
#include "platform/widgets/EndProgram.h"

namespace cinedisc {

namespace {

/// A handler of one of the behaviours, called without arguments.
template <auto Behaviour, auto Handler>
void run(Form1Behaviour& form) {
    (form.*Behaviour.*Handler)();
}

void end(Form1&) { endProgram(); }
void about(Form1& form) { form.showLicence(); }

using B = Form1Behaviour;

constexpr auto openDisc = run<&B::opener, &DiscOpener::Open_Click>;
constexpr auto openFolder = run<&B::opener, &DiscOpener::mnuOpen_Click>;
constexpr auto nextSeries = run<&B::seriesStepper, &SeriesStepper::cmdSerNext_Click>;
constexpr auto previousSeries = run<&B::seriesStepper, &SeriesStepper::cmdSerBack_Click>;
constexpr auto nextPatient = run<&B::patientStepper, &PatientStepper::Command2_Click>;
constexpr auto previousPatient = run<&B::patientStepper, &PatientStepper::cmdPatBack_Click>;

constexpr CommandRow<Form1Behaviour> discRows[] = {
    {"Open", openDisc},
    {"mnuOpenCD", openDisc},
    {"mnuOpen", openFolder},
    {"cmdNextSeries", run<&B::stillStepper, &StillStepper::cmdNextSeries_Click>},
    {"cmdPreviousSeries", run<&B::stillStepper, &StillStepper::cmdPreviousSeries_Click>},
    {"cmdSerNext", nextSeries},
    {"cmNext", nextSeries},
    {"cmdSerBack", previousSeries},
    {"cmdSeriesBack", previousSeries},
    {"Command2", nextPatient},
    {"cmdStudyNext", nextPatient},
    {"cmdPatBack", previousPatient},
    {"CmdStudyBack", previousPatient},
};

constexpr CommandRow<Form1> windowRows[] = {{"cmdExit", end}, {"mnuExit", end}, {"mnuAbout", about}};

}  // namespace

std::span<const CommandRow<Form1Behaviour>> discCommands() { return discRows; }

std::span<const CommandRow<Form1>> windowCommands() { return windowRows; }

}  // namespace cinedisc
