#include "panels/MenuTable.h"

#include <algorithm>
#include <iterator>

namespace cinedisc {

namespace {

constexpr MenuKind menu = MenuKind::Menu;
constexpr MenuKind command = MenuKind::Command;

constexpr MenuRow rows[] = {
    {"mnuFile", "&File", "", "", menu},
    {"mnuOpen", "&Open", "mnuFile", "", command},
    {"mnuOpenCD", "OpenCD", "mnuFile", "", command},
    {"mnuExport", "Export", "mnuFile", "", command},
    {"mnuExit", "E&xit", "mnuFile", "", command},
    {"mnuEdit", "&Edit", "", "", menu},
    {"mnuCopy", "&Copy Image", "mnuEdit", "Ctrl+C", command},
    {"mnuCopyHeader", "Copy Header", "mnuEdit", "", command},
    {"mnuTools", "&Tools", "", "", menu},
    {"mnuWindow", "&Window", "mnuTools", "", command},
    {"mnuPanning", "&Panning", "mnuTools", "", command},
    {"mnuSmooth", "&Smooth", "mnuTools", "", command},
    {"mnuMagnify", "&Magnify", "mnuTools", "", command},
    {"mnuInvert", "&Invert", "mnuTools", "", command},
    {"mnuLabel", "&Label", "mnuTools", "", command},
    {"mnuHeader", "&Header", "mnuTools", "", command},
    {"mnuZoom", "&Zoom", "mnuTools", "", menu},
    {"mnuBestFit", "&Bestfit", "mnuZoom", "", command},
    {"mnu50", "50%", "mnuZoom", "", command},
    {"mnu100", "100%", "mnuZoom", "", command},
    {"mnu150", "150%", "mnuZoom", "", command},
    {"mnu200", "200%", "mnuZoom", "", command},
    {"mnuOverLay", "&Overlay", "mnuTools", "", menu},
    {"mnuNone", "None", "mnuOverLay", "", command},
    {"mnuBlack", "&Black ", "mnuOverLay", "", command},
    {"mnuWhite", "&White", "mnuOverLay", "", command},
    {"mnuCine", "&Cine", "mnuTools", "", menu},
    {"mnuReverse", "&Reverse", "mnuCine", "", command},
    {"mnuStop", "&Stop", "mnuCine", "", command},
    {"mnuPlay", "&Play", "mnuCine", "", command},
    {"mnuNextSlice", "Next Slice", "mnuCine", "", command},
    {"mnuPreviousSlice", "Previous Slice ", "mnuCine", "", command},
    {"mnuNext", "Next Image", "mnuCine", "", command},
    {"mnuPrevious", "Previous Image", "mnuCine", "", command},
    {"mnuHelp", "&Help", "", "", menu},
    {"mnuAbout", "&About", "mnuHelp", "", command},
};

}  // namespace

std::span<const MenuRow> mainMenuTable() { return rows; }

std::vector<MenuRow> menuTableWithout(std::initializer_list<std::string_view> names) {
    std::vector<MenuRow> kept;
    std::ranges::copy_if(rows, std::back_inserter(kept), [&](const MenuRow& row) {
        return std::ranges::find(names, std::string_view(row.name)) == names.end();
    });
    return kept;
}

}  // namespace cinedisc
