#include "app/CommandTable.h"

#include "app/Form1Behaviour.h"
#include "platform/Paths.h"
#include "platform/widgets/TextViewer.h"
#include "viewerwindow/ViewerCommands.h"

namespace cinedisc {

namespace {

using B = Form1Behaviour;
using Handler = void (*)(B&);

constexpr Handler openDisc = handle<&B::opener, &DiscOpener::Open_Click>;
constexpr Handler nextSeries = handle<&B::seriesStepper, &SeriesStepper::cmdSerNext_Click>;
constexpr Handler previousSeries = handle<&B::seriesStepper, &SeriesStepper::cmdSerBack_Click>;
constexpr Handler nextPatient = handle<&B::patientStepper, &PatientStepper::Command2_Click>;
constexpr Handler previousPatient = handle<&B::patientStepper, &PatientStepper::cmdPatBack_Click>;

/// Opens the licence text beside the program in the desktop's text viewer.
void about(B& form) { openTextViewer(findIgnoringCase(form.disc.programFolder, {"license.txt"}).trimmed()); }

constexpr CommandRow<B> discRows[] = {
    {nullptr, {}, fileMenu},
    {handle<&B::opener, &DiscOpener::mnuOpen_Click>, {}, {"mnuOpen", "&Open", "mnuFile"}},
    {openDisc, {"Open", "", Icon::Disc, "Open Disc"}, {"mnuOpenCD", "OpenCD", "mnuFile"}},

    {handle<&B::tools, &DisplayTools::cmdPanning_Click>,
     {"cmdPanning", "Panning", Icon::None, "Panning: drag to move the picture"}},
    {handle<&B::cine, &CinePlayer::cmdReverse_Click>, {"cmdReverse", "", Icon::Reverse, "Play backward"}},
    {handle<&B::cine, &CinePlayer::cmdPlay_Click>, {"cmdPlay", "", Icon::Play, "Play forward"}},

    // The cine panel's steps.
    {previousPatient, {"CmdStudyBack", "", Icon::Previous, "Previous Patient"}},
    {nextPatient, {"cmdStudyNext", "", Icon::Next, "Next Patient"}},
    {previousSeries, {"cmdSeriesBack", "", Icon::Previous, "Previous Series"}},
    {nextSeries, {"cmNext", "", Icon::Next, "Next Series"}},

    // The stills panel's steps. Those of files say "Frame" all the same.
    {previousPatient, {"cmdPatBack", "", Icon::Previous, "Previous Patient"}},
    {nextPatient, {"Command2", "", Icon::Next, "Next Patient"}},
    {previousSeries, {"cmdSerBack", "", Icon::Previous, "Previous Series"}},
    {nextSeries, {"cmdSerNext", "", Icon::Next, "Next Series"}},
    {handle<&B::stillStepper, &StillStepper::cmdPreviousSeries_Click>,
     {"cmdPreviousSeries", "", Icon::PreviousImage, "Previous Frame"}},
    {handle<&B::stillStepper, &StillStepper::cmdNextSeries_Click>,
     {"cmdNextSeries", "", Icon::NextImage, "Next Frame"}},
};

constexpr CommandRow<B> windowRows[] = {
    {end, {"cmdExit", "Exit", Icon::None, "End the program"}},
    {about, {}, {"mnuAbout", "&About", "mnuHelp"}},
};

}  // namespace

std::span<const CommandRow<B>> discCommands() { return discRows; }

std::span<const CommandRow<B>> windowCommands() { return windowRows; }

CommandFaces form1Faces() { return CommandFaces::of(discCommands(), viewerCommands(), windowCommands()); }

}  // namespace cinedisc
