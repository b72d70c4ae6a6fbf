#include "platform/widgets/IconTable.h"

#include <algorithm>
#include <iterator>

namespace cinedisc {

namespace {

constexpr const char* triangle = "M 7.5 5 L 19 12 L 7.5 19 Z";
constexpr const char* barAndTriangle =
    "M 5.5 5.5 L 8 5.5 L 8 18.5 L 5.5 18.5 Z M 10.5 5.5 L 20 12 L 10.5 18.5 Z";
constexpr const char* pictureAndChevron = "M 3 6 L 13.5 6 L 13.5 18 L 3 18 Z M 17.5 8 L 21.5 12 L 17.5 16";
constexpr const char* chevron = "M 9.5 6 L 15.5 12 L 9.5 18";

constexpr IconDrawing drawings[] = {
    {Icon::Disc, "", "O 12 12 9 O 12 12 2.6 M 6.2 12 C 6.2 8.8 8.8 6.2 12 6.2"},
    {Icon::Folder, "", "M 3.5 18.5 L 3.5 5.5 L 9.5 5.5 L 11.5 8.5 L 20.5 8.5 L 20.5 18.5 Z"},
    {Icon::Document, "", "M 6 3.5 L 14 3.5 L 18 7.5 L 18 20.5 L 6 20.5 Z M 14 3.5 L 14 7.5 L 18 7.5"},
    {Icon::Parent, "", "M 6 12.5 L 12 6 L 18 12.5 M 12 6 L 12 19"},
    {Icon::List, "",
     "M 4 6 L 10 6 M 4 12 L 10 12 M 4 18 L 10 18 M 14 6 L 20 6 M 14 12 L 20 12 M 14 18 L 20 18"},
    {Icon::Details, "", "M 4 6 L 20 6 M 4 10 L 20 10 M 4 14 L 20 14 M 4 18 L 20 18"},
    {Icon::Question, "",
     "O 12 12 9 M 9.2 9.6 C 9.2 6 14.8 6 14.8 9.4 C 14.8 11.6 12 11.6 12 13.8 M 12 16.6 L 12 17"},
    {Icon::Warning, "", "O 12 12 9 M 12 6.8 L 12 13.4 M 12 16.6 L 12 17"},
    {Icon::Window, "M 12 3.5 C 16.7 3.5 20.5 7.3 20.5 12 C 20.5 16.7 16.7 20.5 12 20.5 Z", "O 12 12 8.5"},
    {Icon::Magnify, "", "O 10.5 10.5 6.7 M 15.5 15.5 L 20.5 20.5"},
    {Icon::Label, "", "M 5 8 L 5 4.5 L 19 4.5 L 19 8 M 12 4.5 L 12 19.5 M 9 19.5 L 15 19.5"},
    {Icon::Pan, "",
     "M 12 3.5 L 12 20.5 M 3.5 12 L 20.5 12 M 9.5 6 L 12 3.5 L 14.5 6 M 9.5 18 L 12 20.5 L 14.5 18 M 6 9.5 L "
     "3.5 12 "
     "L 6 14.5 M 18 9.5 L 20.5 12 L 18 14.5"},
    {Icon::Play, triangle, ""},
    {Icon::Reverse, triangle, "", Side::Mirrored},
    {Icon::NextFrame, barAndTriangle, ""},
    {Icon::PreviousFrame, barAndTriangle, "", Side::Mirrored},
    {Icon::NextImage, "", pictureAndChevron},
    {Icon::PreviousImage, "", pictureAndChevron, Side::Mirrored},
    {Icon::Next, "", chevron},
    {Icon::Previous, "", chevron, Side::Mirrored},
    {Icon::Patient, "O 12 7.8 4 M 4.5 20.5 C 4.5 15.6 7.6 13.6 12 13.6 C 16.4 13.6 19.5 15.6 19.5 20.5 Z",
     ""},
};

constexpr ProgramLayer layers[] = {
    {0xff1c2733,
     "M 14 2 L 50 2 C 56.6 2 62 7.4 62 14 L 62 50 C 62 56.6 56.6 62 50 62 L 14 62 C 7.4 62 2 56.6 2 50 L 2 "
     "14 "
     "C 2 7.4 7.4 2 14 2 Z",
     ""},
    {0xffc9d3dc, "O 32 32 24", ""},
    {0xff31404f, "",
     "M 20 14 C 28 19 25 26 32 31 C 39 36 37 43 45 48 M 29 27 C 36 25 38 20 45 19 M 34 35 C 28 38 25 42 24 "
     "48"},
    {0xff1c2733, "O 45 45 14", ""},
    {0xff4fc3a1, "M 41 37.5 L 53 45 L 41 52.5 Z", ""},
};

constexpr IconDrawing nothing{Icon::None, "", ""};

}  // namespace

const IconDrawing& iconDrawing(Icon icon) {
    const auto* found = std::ranges::find(drawings, icon, &IconDrawing::icon);
    return found == std::end(drawings) ? nothing : *found;
}

std::span<const ProgramLayer> programIcon() { return layers; }

}  // namespace cinedisc
