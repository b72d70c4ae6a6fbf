#include "control/pipeline/CoarseRows.h"

#include <algorithm>

namespace cinedisc {

CoarseRows::CoarseRows(const dicom::CoarseFrame& coarse, int rows, int columns, const DisplayRule& rule,
                       const CoverPlane* cover, const RowKernels& kernels)
    : samples_(coarse.frame, rule, nullptr, kernels),
      kernels_(kernels),
      cover_(cover && !cover->empty() ? cover : nullptr),
      rows_(rows),
      columns_(columns),
      halvings_(coarse.halvings) {}

void CoarseRows::read(int y, int from, int to, const Channels& into) const {
    const int above = std::min(y >> halvings_, samples_.rows() - 1);
    const int below = std::min(above + 1, samples_.rows() - 1);
    const int share = AxisTable::fullWeight >> halvings_;
    const int toBelow = (y & ((1 << halvings_) - 1)) * share;
    const std::uint16_t weights[] = {static_cast<std::uint16_t>(AxisTable::fullWeight - toBelow),
                                     static_cast<std::uint16_t>(toBelow)};
    const Line& first = line(above, from, to);
    const Line& second = line(below, from, to);
    for (std::size_t c = 0; c < static_cast<std::size_t>(channels()); ++c) {
        const std::uint16_t* const lines[] = {first.channels[c].data(), second.channels[c].data()};
        kernels_.mix(lines, weights, 2, into[c], to - from);
        if (cover_) cover_->apply(y, from, to, into[c]);
    }
}

const CoarseRows::Line& CoarseRows::line(int row, int from, int to) const {
    Line& line = lines_[static_cast<std::size_t>(row & 1)];
    if (line.row == row && line.from == from && line.to == to) return line;
    line.row = row;
    line.from = from;
    line.to = to;
    const int last = samples_.columns() - 1;
    const int begin = std::min(from >> halvings_, last),
              end = std::min(((to - 1) >> halvings_) + 2, last + 1);
    for (std::size_t c = 0; c < static_cast<std::size_t>(channels()); ++c) {
        read_[c].resize(static_cast<std::size_t>(end - begin));
        line.channels[c].resize(static_cast<std::size_t>(to - from + RowKernels::slack));
    }
    samples_.read(row, begin, end, {read_[0].data(), read_[1].data(), read_[2].data()});
    for (std::size_t c = 0; c < static_cast<std::size_t>(channels()); ++c)
        widen(read_[c].data(), end - begin, from, to, line.channels[c].data());
    return line;
}

/// `greys` begins with the coarse column that `from` lies in, or with the last one.
void CoarseRows::widen(const std::uint8_t* greys, int count, int from, int to, std::uint16_t* into) const {
    constexpr int unit = 256;
    const int run = 1 << halvings_;
    int x = from & (run - 1);
    for (int i = 0, left = to - from; left > 0; ++i) {
        const int here = greys[std::min(i, count - 1)] * unit;
        const int step = (greys[std::min(i + 1, count - 1)] * unit - here) / run;
        const int stop = std::min(run, x + left);
        left -= stop - x;
        for (; x < stop; ++x) *into++ = static_cast<std::uint16_t>(here + step * x);
        x = 0;
    }
}

}  // namespace cinedisc
