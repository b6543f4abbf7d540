#include "suite/vmcore_kernels_lanes.hpp"

namespace numcore::vmcore {
namespace {

struct Lanes {
    typedef double Real __attribute__((vector_size(16)));
};

}  // namespace

const Kernels& baselineKernels() {
    static constexpr Kernels table = LaneKernels<Lanes>::table();
    return table;
}

}  // namespace numcore::vmcore
