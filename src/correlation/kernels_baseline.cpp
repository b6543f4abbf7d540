#include "correlation/kernels_lanes.hpp"

namespace numcore::correlation {
namespace {

struct Lanes {
    typedef double Real __attribute__((vector_size(16)));

    static constexpr std::size_t kTileFirst = 2;
    static constexpr std::size_t kTileSecond = 2;
    static constexpr std::size_t kMaskedTile = 1;
};

}  // namespace

const Kernels& baselineKernels() {
    static constexpr Kernels table = LaneKernels<Lanes>::table();
    return table;
}

}  // namespace numcore::correlation
