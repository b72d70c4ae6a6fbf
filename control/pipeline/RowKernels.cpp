#include "control/pipeline/RowKernels.h"

namespace cinedisc {

const RowKernels& RowKernels::best() {
    static const RowKernels& chosen = avx2() ? *avx2() : portable();
    return chosen;
}

}  // namespace cinedisc
