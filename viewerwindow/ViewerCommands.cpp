#include "viewerwindow/ViewerCommands.h"

#include "viewerwindow/ViewerBehaviour.h"

namespace cinedisc {

namespace {

/// A handler of one of the behaviours, called without arguments.
template <auto Behaviour, auto Handler>
void run(ViewerBehaviour& form) {
    (form.*Behaviour.*Handler)();
}

template <int Index>
void fit(ViewerBehaviour& form) {
    form.tools.cmdFit_Click(Index);
}

template <int Percent>
void zoom(ViewerBehaviour& form) {
    form.tools.zoomTo(Percent);
}

using B = ViewerBehaviour;

constexpr auto exportPicture = run<&B::exporter, &ExportCommand::cmdExport_Click>;
constexpr auto invert = run<&B::tools, &DisplayTools::cmdInvert_Click>;
constexpr auto smooth = run<&B::tools, &DisplayTools::cmdSmooth_Click>;
constexpr auto header = run<&B::tools, &DisplayTools::cmdHeader_Click>;
constexpr auto window = run<&B::tools, &DisplayTools::cmdWindow_Click>;
constexpr auto magnify = run<&B::tools, &DisplayTools::cmdMagnify_Click>;
constexpr auto pan = run<&B::tools, &DisplayTools::cmdPanning_Click>;
constexpr auto label = run<&B::tools, &DisplayTools::cmdLabel_Click>;
constexpr auto play = run<&B::cine, &CinePlayer::cmdPlay_Click>;
constexpr auto reverse = run<&B::cine, &CinePlayer::cmdReverse_Click>;
constexpr auto stop = run<&B::cine, &CinePlayer::cmdStop_Click>;
constexpr auto nextFrame = run<&B::frames, &FrameStepper::cmdNext_Click>;
constexpr auto previousFrame = run<&B::frames, &FrameStepper::cmdPrev_Click>;
constexpr auto nextImage = run<&B::frames, &FrameStepper::cmdNextImage_Click>;
constexpr auto previousImage = run<&B::frames, &FrameStepper::cmdPrevImage_Click>;

constexpr CommandRow<B> rows[] = {
    {"cmdExport", exportPicture},
    {"mnuExport", exportPicture},

    {"mnuCopy", run<&B::tools, &DisplayTools::mnuCopy_Click>},
    {"mnuCopyHeader", run<&B::tools, &DisplayTools::mnuCopyHeader_Click>},
    {"cmdWindow", window},
    {"mnuWindow", window},
    {"cmdPanning", pan},
    {"mnuPanning", pan},
    {"cmdMagnify", magnify},
    {"mnuMagnify", magnify},
    {"cmdLabel", label},
    {"mnuLabel", label},
    {"cmdSmooth", smooth},
    {"mnuSmooth", smooth},
    {"cmdInvert", invert},
    {"mnuInvert", invert},
    {"cmdHeader", header},
    {"mnuHeader", header},
    {"Command3", run<&B::tools, &DisplayTools::Command3_Click>},

    {"cmdZoom", run<&B::tools, &DisplayTools::cmdZoom_Click>},
    {"cmdFit(0)", fit<0>},
    {"cmdFit(1)", fit<1>},
    {"cmdFit(2)", fit<2>},
    {"cmdFit(3)", fit<3>},
    {"cmdFit(4)", fit<4>},
    {"mnuBestFit", run<&B::tools, &DisplayTools::mnuBestFit_Click>},
    {"mnu50", zoom<50>},
    {"mnu100", zoom<100>},
    {"mnu150", zoom<150>},
    {"mnu200", zoom<200>},
    {"cmdOverlay", run<&B::tools, &DisplayTools::cmdOverlay_Click>},
    {"mnuNone", run<&B::tools, &DisplayTools::mnuNone_Click>},
    {"mnuBlack", run<&B::tools, &DisplayTools::mnuBlack_Click>},
    {"mnuWhite", run<&B::tools, &DisplayTools::mnuWhite_Click>},

    {"cmdPlay", play},
    {"mnuPlay", play},
    {"cmdReverse", reverse},
    {"mnuReverse", reverse},
    {"cmdStop", stop},
    {"mnuStop", stop},
    {"cmdNext", nextFrame},
    {"mnuNextSlice", nextFrame},
    {"cmdPrev", previousFrame},
    {"mnuPreviousSlice", previousFrame},
    {"cmdNextImage", nextImage},
    {"mnuNext", nextImage},
    {"cmdPrevImage", previousImage},
    {"mnuPrevious", previousImage},
};

}  // namespace

std::span<const CommandRow<ViewerBehaviour>> viewerCommands() { return rows; }

}  // namespace cinedisc
