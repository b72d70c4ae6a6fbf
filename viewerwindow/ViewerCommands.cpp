#include "viewerwindow/ViewerCommands.h"

#include "viewerwindow/ViewerBehaviour.h"

namespace cinedisc {

namespace {

template <int Index>
void fit(ViewerBehaviour& form) {
    form.tools.cmdFit_Click(Index);
}

template <int Percent>
void zoom(ViewerBehaviour& form) {
    form.tools.zoomTo(Percent);
}

using B = ViewerBehaviour;
using Tools = DisplayTools;
constexpr auto menu = MenuKind::Menu;

// Captions to the letter: a missing access key and a trailing blank are meant.
constexpr CommandRow<B> rows[] = {
    {handle<&B::exporter, &ExportCommand::cmdExport_Click>,
     {"cmdExport", "Export..", Icon::None, "Save the picture as JPEG or BMP"},
     {"mnuExport", "Export", "mnuFile"}},
    {end, {}, {"mnuExit", "E&xit", "mnuFile"}},

    {nullptr, {}, {"mnuEdit", "&Edit", "", "", menu}},
    {handle<&B::tools, &Tools::mnuCopy_Click>, {}, {"mnuCopy", "&Copy Image", "mnuEdit", "Ctrl+C"}},
    {handle<&B::tools, &Tools::mnuCopyHeader_Click>, {}, {"mnuCopyHeader", "Copy Header", "mnuEdit"}},

    {nullptr, {}, {"mnuTools", "&Tools", "", "", menu}},
    {handle<&B::tools, &Tools::cmdWindow_Click>,
     {"cmdWindow", "", Icon::Window, "Window: drag to change contrast and brightness"},
     {"mnuWindow", "&Window", "mnuTools"}},
    {handle<&B::tools, &Tools::cmdPanning_Click>, {}, {"mnuPanning", "&Panning", "mnuTools"}},
    {handle<&B::tools, &Tools::cmdSmooth_Click>,
     {"cmdSmooth", "Smooth", Icon::None, "Smooth drawing on or off"},
     {"mnuSmooth", "&Smooth", "mnuTools"}},
    {handle<&B::tools, &Tools::cmdMagnify_Click>,
     {"cmdMagnify", "", Icon::Magnify, "Magnify: a loupe under the mouse while it is pressed"},
     {"mnuMagnify", "&Magnify", "mnuTools"}},
    {handle<&B::tools, &Tools::cmdInvert_Click>,
     {"cmdInvert", "Invert", Icon::None, "Invert the grey scale"},
     {"mnuInvert", "&Invert", "mnuTools"}},
    {handle<&B::tools, &Tools::cmdLabel_Click>,
     {"cmdLabel", "", Icon::Label, "Label: click to write on the picture"},
     {"mnuLabel", "&Label", "mnuTools"}},
    {handle<&B::tools, &Tools::cmdHeader_Click>,
     {"cmdHeader", "Header", Icon::None, "Show the file's header as text"},
     {"mnuHeader", "&Header", "mnuTools"}},
    {handle<&B::tools, &Tools::Command3_Click>, {"Command3", "Command3", Icon::None, "Display option"}},

    {nullptr, {}, {"mnuZoom", "&Zoom", "mnuTools", "", menu}},
    {handle<&B::tools, &Tools::cmdZoom_Click>, {"cmdZoom", "Zoom", Icon::None, "Choose the magnification"}},
    {fit<0>, {"cmdFit(0)", "Best Fit", Icon::None, "Fit the picture to the view"}},
    {fit<1>, {"cmdFit(1)", "100%", Icon::None, "One screen pixel per image pixel"}},
    {fit<2>, {"cmdFit(2)", "50%", Icon::None, "Half size"}},
    {fit<3>, {"cmdFit(3)", "150%", Icon::None, "One and a half times the size"}},
    {fit<4>, {"cmdFit(4)", "200%", Icon::None, "Double size"}},
    {handle<&B::tools, &Tools::mnuBestFit_Click>, {}, {"mnuBestFit", "&Bestfit", "mnuZoom"}},
    {zoom<50>, {}, {"mnu50", "50%", "mnuZoom"}},
    {zoom<100>, {}, {"mnu100", "100%", "mnuZoom"}},
    {zoom<150>, {}, {"mnu150", "150%", "mnuZoom"}},
    {zoom<200>, {}, {"mnu200", "200%", "mnuZoom"}},

    {nullptr, {}, {"mnuOverLay", "&Overlay", "mnuTools", "", menu}},
    {handle<&B::tools, &Tools::cmdOverlay_Click>,
     {"cmdOverlay", "Overlay", Icon::None, "Choose the background"}},
    {handle<&B::tools, &Tools::mnuNone_Click>, {}, {"mnuNone", "None", "mnuOverLay"}},
    {handle<&B::tools, &Tools::mnuBlack_Click>, {}, {"mnuBlack", "&Black ", "mnuOverLay"}},
    {handle<&B::tools, &Tools::mnuWhite_Click>, {}, {"mnuWhite", "&White", "mnuOverLay"}},

    {nullptr, {}, {"mnuCine", "&Cine", "mnuTools", "", menu}},
    {handle<&B::cine, &CinePlayer::cmdReverse_Click>, {}, {"mnuReverse", "&Reverse", "mnuCine"}},
    {handle<&B::cine, &CinePlayer::cmdStop_Click>,
     {"cmdStop", "Stop", Icon::None, "Stop the cine"},
     {"mnuStop", "&Stop", "mnuCine"}},
    {handle<&B::cine, &CinePlayer::cmdPlay_Click>, {}, {"mnuPlay", "&Play", "mnuCine"}},
    {handle<&B::frames, &FrameStepper::cmdNext_Click>,
     {"cmdNext", "", Icon::NextFrame, "Next frame"},
     {"mnuNextSlice", "Next Slice", "mnuCine"}},
    {handle<&B::frames, &FrameStepper::cmdPrev_Click>,
     {"cmdPrev", "", Icon::PreviousFrame, "Previous frame"},
     {"mnuPreviousSlice", "Previous Slice ", "mnuCine"}},
    {handle<&B::frames, &FrameStepper::cmdNextImage_Click>,
     {"cmdNextImage", "", Icon::NextImage, "Next image file"},
     {"mnuNext", "Next Image", "mnuCine"}},
    {handle<&B::frames, &FrameStepper::cmdPrevImage_Click>,
     {"cmdPrevImage", "", Icon::PreviousImage, "Previous image file"},
     {"mnuPrevious", "Previous Image", "mnuCine"}},

    {nullptr, {}, {"mnuHelp", "&Help", "", "", menu}},
};

}  // namespace

std::span<const CommandRow<ViewerBehaviour>> viewerCommands() { return rows; }

}  // namespace cinedisc
