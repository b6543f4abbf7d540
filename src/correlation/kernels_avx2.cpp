// Compiled with -mavx2. Sixteen registers hold twelve sums and what they are made of.
#include "correlation/kernels_lanes.hpp"

namespace numcore::correlation {
namespace {

struct Lanes {
    typedef double Real __attribute__((vector_size(32)));

    static constexpr std::size_t kTileFirst = 4;
    static constexpr std::size_t kTileSecond = 3;
    static constexpr std::size_t kMaskedTile = 2;
};

}  // namespace

const Kernels& avx2Kernels() {
    static constexpr Kernels table = LaneKernels<Lanes>::table();
    return table;
}

}  // namespace numcore::correlation
