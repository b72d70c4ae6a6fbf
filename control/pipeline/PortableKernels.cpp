#include "control/pipeline/RowLoops.h"

namespace cinedisc {

const RowKernels& RowKernels::portable() {
    static constexpr RowKernels kernels{loops::lookUp<std::uint8_t>,
                                        loops::lookUp<std::uint16_t>,
                                        loops::linear<std::uint8_t>,
                                        loops::linear<std::int8_t>,
                                        loops::linear<std::uint16_t>,
                                        loops::linear<std::int16_t>,
                                        loops::invert,
                                        loops::splitColors,
                                        loops::pick,
                                        loops::scale,
                                        loops::mix,
                                        loops::packGrey,
                                        loops::packColor};
    return kernels;
}

}  // namespace cinedisc
