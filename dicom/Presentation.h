#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cinedisc::dicom {

/// A display window (PS3.3 C.11.2.1.2 and C.11.2.1.3).
struct Window {
    enum class Function { Linear, LinearExact, Sigmoid };
    double center = 0;
    double width = 0;
    Function function = Function::Linear;
};

/// A modality, VOI or palette look-up table (PS3.3 C.11.1.1, C.11.2.1.1, C.7.6.3.1.5): values below
/// `firstMapped` take the first entry, values past the end the last.
struct LookupTable {
    std::int64_t firstMapped = 0;
    int bits = 16;  ///< bits of an entry: 8 to 16
    std::vector<std::uint16_t> entries;
};

struct Rescale {
    double slope = 1;
    double intercept = 0;
};

/// How a frame's stored values become grey. Modality steps that must not be applied (XA and XRF, where they
/// lead back to beam intensity, PS3.3 C.8.7.1.1.2) are left out already.
struct GreyTransform {
    std::optional<Rescale> rescale;
    std::optional<LookupTable> modalityLut;
    std::vector<Window> windows;
    std::vector<LookupTable> voiLuts;  ///< these come before the windows when present
    bool inverse = false;              ///< MONOCHROME1, or presentation LUT shape INVERSE
    std::optional<std::pair<std::int64_t, std::int64_t>>
        padding;  ///< stored values lowest to highest, shown as background
};

/// Red, green and blue tables of PALETTE COLOR, segmented ones expanded.
struct Palette {
    LookupTable red, green, blue;
};

/// The display shutter (PS3.3 C.7.6.11, C.7.6.15). Rows and columns count from 1. What lies outside any of
/// the present shapes is covered; a bitmap shutter covers where its overlay has a 1.
struct Shutter {
    struct Rectangle {
        int left, right, upper, lower;
    };
    struct Circle {
        int row, column, radius;
    };
    std::optional<Rectangle> rectangle;
    std::optional<Circle> circle;
    std::vector<std::pair<int, int>> polygon;        ///< row, column
    std::optional<int> bitmapGroup;                  ///< overlay group that covers
    std::optional<std::uint16_t> presentationValue;  ///< grey of the covered part, P-value 0 .. 65535

    bool any() const { return rectangle || circle || polygon.size() >= 3 || bitmapGroup; }
};

/// An overlay plane (PS3.3 C.9.2), its bits unpacked: one byte a pixel, 0 or 1, frame after frame.
struct Overlay {
    int group = 0x6000;
    int rows = 0, columns = 0;
    int originRow = 1,
        originColumn = 1;     ///< place of its first pixel in the image, counted from 1, may be below
    int firstImageFrame = 1;  ///< image frame that its first frame goes with, counted from 1
    int frames = 1;           ///< 1: the same plane goes with every image frame
    bool multiFrame = false;
    int embeddedBit = -1;  ///< 0 .. 15 when its bits lie in the pixel cells, otherwise -1
    std::string label;
    std::vector<std::uint8_t> bits;
};

/// Width of a pixel divided by its height, 1 for square ones.
using PixelAspect = double;

}  // namespace cinedisc::dicom
