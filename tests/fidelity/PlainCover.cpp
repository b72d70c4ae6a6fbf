#include "tests/fidelity/ReferencePictures.h"

#include <algorithm>
#include <cmath>

namespace cinedisc::fidelity {

namespace {

void paint(Pixels& picture, int row, int column, std::uint8_t grey) {
    if (row < 1 || column < 1 || row > picture.rows || column > picture.columns) return;
    const std::size_t at = (static_cast<std::size_t>(row - 1) * static_cast<std::size_t>(picture.columns) +
                            static_cast<std::size_t>(column - 1)) *
                           3;
    std::fill_n(&picture.rgb[at], 3, grey);
}

/// Whether a point lies in a polygon or on its outline: by the angle that the vertices turn around it.
bool isInPolygon(const std::vector<double>& vertices, double row, double column) {
    double turned = 0;
    for (std::size_t i = 0; i + 1 < vertices.size(); i += 2) {
        const std::size_t next = (i + 2) % (vertices.size() / 2 * 2);
        const double y0 = vertices[i] - row, x0 = vertices[i + 1] - column;
        const double y1 = vertices[next] - row, x1 = vertices[next + 1] - column;
        const double across = x0 * y1 - x1 * y0, along = x0 * x1 + y0 * y1;
        if (across == 0 && along <= 0) return true;
        turned += std::atan2(across, along);
    }
    return std::lround(turned / (2 * std::acos(-1.0))) % 2 != 0;
}

std::uint8_t shutterGrey(const HeaderReader& header) {
    return static_cast<std::uint8_t>(header.integer(DCM_ShutterPresentationValue, 0) >> 8);
}

/// PS3.3 C.7.6.11, all shapes but the bitmap.
void closeShutter(const HeaderReader& header, Pixels& picture) {
    const auto shapes = header.texts(DCM_ShutterShape);
    const auto has = [&](const char* shape) {
        return std::find(shapes.begin(), shapes.end(), shape) != shapes.end();
    };
    const auto edge = [&](const DcmTagKey& tag) { return header.integer(tag, 0); };
    const auto center = header.numbers(DCM_CenterOfCircularShutter);
    const auto vertices = header.numbers(DCM_VerticesOfThePolygonalShutter);
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
            if (has("POLYGONAL")) open = open && isInPolygon(vertices, row, column);
            if (!open) paint(picture, row, column, shutterGrey(header));
        }
    }
}

/// An overlay plane (PS3.3 C.9.2): the bits of its own data or, without any, one bit of each pixel cell.
class Plane {
  public:
    Plane(const HeaderReader& header, Uint16 group, int frame)
        : rows(header.integer({group, 0x0010}, 0)), columns(header.integer({group, 0x0011}, 0)) {
        isEmbedded_ = !header.has({group, 0x3000});
        words_ = header.words(isEmbedded_ ? DCM_PixelData : DcmTagKey(group, 0x3000));
        bit_ = header.integer({group, 0x0102}, 0);
        const bool isMultiFrame = header.has({group, 0x0015}) && !isEmbedded_;
        const int own = isMultiFrame ? frame + 1 - header.integer({group, 0x0051}, 1) : 0;
        const bool isThere = own >= 0 && own < header.integer({group, 0x0015}, 1);
        if (!isThere) rows = 0;
        first_ = static_cast<std::size_t>(std::max(own, 0)) * static_cast<std::size_t>(rows * columns);
        const auto origin = header.numbers({group, 0x0050});
        if (origin.size() == 2) {
            top = static_cast<int>(origin[0]);
            left = static_cast<int>(origin[1]);
        }
    }

    bool operator()(int row, int column) const {
        const std::size_t pixel = first_ + static_cast<std::size_t>(row * columns + column);
        const std::size_t word = isEmbedded_ ? pixel : pixel / 16;
        const std::size_t bit = isEmbedded_ ? static_cast<std::size_t>(bit_) : pixel % 16;
        return word < words_.size() && (words_[word] >> bit & 1);
    }

    int rows, columns, top = 1, left = 1;

  private:
    bool isEmbedded_ = false;
    int bit_ = 0;
    std::size_t first_ = 0;
    std::vector<unsigned> words_;
};

void layOverlay(const HeaderReader& header, Uint16 group, int frame, std::uint8_t grey, Pixels& picture) {
    const Plane plane(header, group, frame);
    for (int row = 0; row < plane.rows; ++row) {
        for (int column = 0; column < plane.columns; ++column)
            if (plane(row, column)) paint(picture, plane.top + row, plane.left + column, grey);
    }
}

}  // namespace

void coverPlainly(const HeaderReader& header, int frame, Pixels& picture) {
    if (header.has(DCM_ShutterShape)) closeShutter(header, picture);
    const auto shapes = header.texts(DCM_ShutterShape);
    const bool isBitmap = std::find(shapes.begin(), shapes.end(), "BITMAP") != shapes.end();
    const int covering = isBitmap ? header.integer(DCM_ShutterOverlayGroup, 0) : 0;
    if (covering) layOverlay(header, static_cast<Uint16>(covering), frame, shutterGrey(header), picture);
    for (Uint16 group = 0x6000; group <= 0x601E; group = static_cast<Uint16>(group + 2)) {
        if (header.has({group, 0x0010}) && group != covering) layOverlay(header, group, frame, 255, picture);
    }
}

}  // namespace cinedisc::fidelity
