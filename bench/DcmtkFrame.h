#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

class DcmDataset;

namespace cinedisc::bench {

/// One compressed grey frame in a data set of DCMTK's, decoded the way that library offers it.
class DcmtkFrame {
  public:
    enum class Syntax { Rle, Lossless, Baseline };

    DcmtkFrame(std::span<const std::uint8_t> stream, int size, int bits, Syntax syntax);
    ~DcmtkFrame();

    /// `into` has room for the frame; false when the library refuses.
    bool decode(std::span<std::byte> into);

  private:
    std::unique_ptr<DcmDataset> dataset_;
};

}  // namespace cinedisc::bench
