#pragma once

#include "dicom/codecs/JpegLsBits.h"
#include "dicom/codecs/JpegLsParameters.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace cinedisc::dicom::codecs {

/// A line of samples and the one above, with a neighbour more at each end. Samples of the same pixel follow
/// each other.
struct JpegLsLines {
    JpegLsLines(std::size_t width, std::size_t components)
        : step(components), above((width + 2) * components), line((width + 2) * components) {}

    std::size_t step;  ///< samples in a pixel
    std::vector<int> above, line;
    int runIndex = 0;

    /// Moves on to the next line.
    void advance();
    /// The samples of the current line.
    std::span<const int> samples() const { return std::span(line).subspan(step, line.size() - 2 * step); }
};

/// The context model of one scan (ITU-T T.87 annex A): decodes line after line.
class JpegLsScan {
  public:
    JpegLsScan(const JpegLsParameters& parameters, std::span<const std::uint8_t> data);

    /// Decodes a line of one or three samples a pixel; false when the bits make no sense or run out.
    bool decodeLine(JpegLsLines& lines);
    const JpegLsBits& bits() const { return bits_; }

  private:
    struct Context {
        std::uint32_t magnitude = 0;  ///< A
        int bias = 0;                 ///< B
        int correction = 0;           ///< C
        int count = 1;                ///< N
    };
    struct RunContext {
        std::uint32_t magnitude = 0;
        int count = 1, negative = 0;
    };

    template <std::size_t Step>
    bool decodePixels(JpegLsLines& lines);
    template <std::size_t Step>
    bool decodeRun(JpegLsLines& lines, std::size_t& x, std::size_t width);
    int decodeRegular(int context, int left, int above, int diagonal);
    int decodeInterruption(int runIndex, bool likeLeft, int left, int above);
    int decodeMapped(int shift, int limit);
    int quantised(int gradient) const;
    int reconstructed(int predicted, int error) const;

    const JpegLsParameters parameters_;
    JpegLsBits bits_;
    bool good_ = true;
    std::array<Context, 365> contexts_;
    std::array<RunContext, 2> runContexts_;
};

}  // namespace cinedisc::dicom::codecs
