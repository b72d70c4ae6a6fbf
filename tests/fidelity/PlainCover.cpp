#include "tests/fidelity/PlainCover.h"

#include <algorithm>

namespace cinedisc::fidelity {

namespace {

void paint(Pixels& picture, int row, int column, std::uint8_t grey) {
    if (row < 1 || column < 1 || row > picture.rows || column > picture.columns) return;
    const std::size_t at = (static_cast<std::size_t>(row - 1) * static_cast<std::size_t>(picture.columns) +
                            static_cast<std::size_t>(column - 1)) *
                           3;
    std::fill_n(&picture.rgb[at], 3, grey);
}

/// PS3.3 C.7.6.11; the samples have rectangles and circles.
void closeShutter(const HeaderReader& header, Pixels& picture) {
    const auto shapes = header.texts(DCM_ShutterShape);
    const auto has = [&](const char* shape) {
        return std::find(shapes.begin(), shapes.end(), shape) != shapes.end();
    };
    const auto edge = [&](const DcmTagKey& tag) { return header.integer(tag, 0); };
    const auto center = header.numbers(DCM_CenterOfCircularShutter);
    const auto grey = static_cast<std::uint8_t>(header.integer(DCM_ShutterPresentationValue, 0) >> 8);
    for (int row = 1; row <= picture.rows; ++row) {
        for (int column = 1; column <= picture.columns; ++column) {
            bool open = true;
            if (has("RECTANGULAR"))
                open = column >= edge(DCM_ShutterLeftVerticalEdge) &&
                       column <= edge(DCM_ShutterRightVerticalEdge) &&
                       row >= edge(DCM_ShutterUpperHorizontalEdge) &&
                       row <= edge(DCM_ShutterLowerHorizontalEdge);
            if (has("CIRCULAR") && center.size() == 2) {
                const double dy = row - center[0], dx = column - center[1],
                             radius = header.number(DCM_RadiusOfCircularShutter, 0);
                open = open && dx * dx + dy * dy <= radius * radius;
            }
            if (!open) paint(picture, row, column, grey);
        }
    }
}

/// PS3.3 C.9.2, planes with bits of their own.
void layOverlay(const HeaderReader& header, Uint16 group, int frame, Pixels& picture) {
    const auto bytesOf = header.words({group, 0x3000});
    const int rows = header.integer({group, 0x0010}, 0), columns = header.integer({group, 0x0011}, 0);
    const auto origin = header.numbers({group, 0x0050});
    if (bytesOf.empty() || rows * columns == 0) return;
    const int frames = header.integer({group, 0x0015}, 1);
    const bool isMultiFrame = header.has({group, 0x0015});
    const int own = isMultiFrame ? frame + 1 - header.integer({group, 0x0051}, 1) : 0;
    if (own < 0 || own >= frames) return;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const std::size_t bit = (static_cast<std::size_t>(own) * static_cast<std::size_t>(rows) +
                                     static_cast<std::size_t>(row)) *
                                        static_cast<std::size_t>(columns) +
                                    static_cast<std::size_t>(column);
            if (bit / 16 >= bytesOf.size() || !(bytesOf[bit / 16] >> (bit % 16) & 1)) continue;
            const int top = origin.size() == 2 ? static_cast<int>(origin[0]) : 1;
            const int left = origin.size() == 2 ? static_cast<int>(origin[1]) : 1;
            paint(picture, top + row, left + column, 255);
        }
    }
}

}  // namespace

void coverPlainly(const HeaderReader& header, int frame, Pixels& picture) {
    if (header.has(DCM_ShutterShape)) closeShutter(header, picture);
    for (Uint16 group = 0x6000; group <= 0x601E; group = static_cast<Uint16>(group + 2)) {
        if (header.has({group, 0x3000})) layOverlay(header, group, frame, picture);
    }
}

}  // namespace cinedisc::fidelity
