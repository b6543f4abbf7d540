// Compiled with -mavx2.
#include "suite/vmcore_kernels_lanes.hpp"

namespace numcore::vmcore {
namespace {

struct Lanes {
    typedef double Real __attribute__((vector_size(32)));

    static int signBits(const Real& lanes) { return __builtin_ia32_movmskpd256(lanes); }
};

}  // namespace

const Kernels& avx2Kernels() {
    static constexpr Kernels table = LaneKernels<Lanes>::table();
    return table;
}

}  // namespace numcore::vmcore
