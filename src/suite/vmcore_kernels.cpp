#include "suite/vmcore_kernels.hpp"

namespace numcore::vmcore {

bool hasAvx2() {
    return __builtin_cpu_supports("avx2") != 0;
}

const Kernels& kernels() {
    static const Kernels& fastest = hasAvx2() ? avx2Kernels() : baselineKernels();
    return fastest;
}

}  // namespace numcore::vmcore
