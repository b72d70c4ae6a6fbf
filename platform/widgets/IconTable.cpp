#include "platform/widgets/IconTable.h"

#include <algorithm>
#include <iterator>

namespace cinedisc {

namespace {

constexpr const char* triangle = "M 7.5 5 L 19 12 L 7.5 19 Z";
constexpr const char* barAndTriangle =
    "M 5.5 5.5 L 8 5.5 L 8 18.5 L 5.5 18.5 Z M 10.5 5.5 L 20 12 L 10.5 18.5 Z";
constexpr const char* twoTriangles = "M 3.5 6 L 11.5 12 L 3.5 18 Z M 12.5 6 L 20.5 12 L 12.5 18 Z";
constexpr const char* chevron = "M 9.5 6 L 15.5 12 L 9.5 18";

constexpr IconDrawing drawings[] = {
    {Icon::Disc, "", "O 12 12 9 O 12 12 2.6 M 6.2 12 C 6.2 8.8 8.8 6.2 12 6.2"},
    {Icon::Folder, "", "M 3.5 18.5 L 3.5 5.5 L 9.5 5.5 L 11.5 8.5 L 20.5 8.5 L 20.5 18.5 Z"},
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
    {Icon::NextImage, twoTriangles, ""},
    {Icon::PreviousImage, twoTriangles, "", Side::Mirrored},
    {Icon::Next, "", chevron},
    {Icon::Previous, "", chevron, Side::Mirrored},
    {Icon::Patient, "O 12 7.8 4 M 4.5 20.5 C 4.5 15.6 7.6 13.6 12 13.6 C 16.4 13.6 19.5 15.6 19.5 20.5 Z",
     ""},
    {Icon::Program, "M 10 8 L 16.5 12 L 10 16 Z", "O 12 12 10"},
};

constexpr IconDrawing nothing{Icon::None, "", ""};

}  // namespace

const IconDrawing& iconDrawing(Icon icon) {
    const auto* found = std::ranges::find(drawings, icon, &IconDrawing::icon);
    return found == std::end(drawings) ? nothing : *found;
}

}  // namespace cinedisc
