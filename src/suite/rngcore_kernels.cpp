#include "suite/rngcore_kernels.hpp"

#include "suite/vmcore_kernels.hpp"

namespace numcore::rngcore {

const Kernels& kernels() {
    static const Kernels& fastest = vmcore::hasAvx2() ? avx2Kernels() : baselineKernels();
    return fastest;
}

}  // namespace numcore::rngcore
