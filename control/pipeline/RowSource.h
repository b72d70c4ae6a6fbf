#pragma once

#include <array>
#include <cstdint>

namespace cinedisc {

/// Gives the rows of a picture at its own size as displayed greys or colours, a row at a time, so that a row
/// is still in the processor's cache when it is scaled.
class RowSource {
  public:
    using Channels = std::array<std::uint8_t*, 3>;

    virtual ~RowSource() = default;
    virtual int rows() const = 0;
    virtual int columns() const = 0;
    /// 1 grey, 3 colour.
    virtual int channels() const = 0;
    /// Writes the pixels [from, to) of row y, channel c to into[c][0 ...].
    virtual void read(int y, int from, int to, const Channels& into) const = 0;
};

}  // namespace cinedisc
