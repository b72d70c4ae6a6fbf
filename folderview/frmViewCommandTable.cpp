#include "folderview/frmViewCommandTable.h"

#include "folderview/frmViewBehaviour.h"
#include "viewerwindow/ViewerCommands.h"

namespace cinedisc {

namespace {

using B = frmViewBehaviour;

void openFolder(B& form) { form.cmdOpen_Click(); }

constexpr CommandRow<B> rows[] = {
    {nullptr, {}, fileMenu},
    {openFolder, {"cmdOpen", "", Icon::Folder, "Open Folder"}, {"mnuOpen", "&Open", "mnuFile"}},
    {handle<&B::tools, &DisplayTools::cmdPanning_Click>,
     {"cmdPanning", "", Icon::Pan, "Panning: drag to move the picture"}},
    {handle<&B::cine, &CinePlayer::cmdReverse_Click>,
     {"cmdReverse", "Reverse", Icon::Reverse, "Play backward"}},
    {handle<&B::cine, &CinePlayer::cmdPlay_Click>, {"cmdPlay", "Play", Icon::Play, "Play forward"}},
    {end, {"Command15", "Exit", Icon::None, "End the program"}},
};

}  // namespace

std::span<const CommandRow<frmViewBehaviour>> frmViewCommandTable() { return rows; }

CommandFaces frmViewFaces() { return CommandFaces::of(frmViewCommandTable(), viewerCommands()); }

}  // namespace cinedisc
