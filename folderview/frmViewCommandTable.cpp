#include "folderview/frmViewCommandTable.h"

#include "folderview/frmView.h"
#include "platform/widgets/EndProgram.h"

namespace cinedisc {

namespace {

void openFolder(frmView& form) { form.behaviour().cmdOpen_Click(); }
void end(frmView&) { endProgram(); }

constexpr CommandRow<frmView> rows[] = {
    {"cmdOpen", openFolder},
    {"mnuOpen", openFolder},
    {"Command15", end},
    {"mnuExit", end},
};

}  // namespace

std::span<const CommandRow<frmView>> frmViewCommandTable() { return rows; }

}  // namespace cinedisc
