#include "suite/vmcore_kernels_lanes.hpp"

namespace numcore::vmcore {
namespace {

struct Lanes {
    typedef double Real __attribute__((vector_size(16)));

    static int signBits(const Real& lanes) { return __builtin_ia32_movmskpd(lanes); }
};

}  // namespace

const Kernels& baselineKernels() {
    static constexpr Kernels table = LaneKernels<Lanes>::table();
    return table;
}

}  // namespace numcore::vmcore
