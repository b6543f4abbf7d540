// Compiled with -mavx2.
#include <cstdint>

#include "distributions/special/normal_quantile_kernel.hpp"
#include "distributions/special/normal_quantile_lanes.hpp"

namespace numcore::distributions {
namespace {

struct Lanes {
    typedef double Real __attribute__((vector_size(32)));
    typedef std::uint64_t Bits __attribute__((vector_size(32)));

    static int signBits(const Real& lanes) { return __builtin_ia32_movmskpd256(lanes); }
    static Real squareRoot(const Real& lanes) { return __builtin_ia32_sqrtpd256(lanes); }
};

}  // namespace

void avx2NormalQuantiles(const double* p, std::size_t n, double* z) {
    NormalQuantileColumn<Lanes>::compute(p, n, z);
}

}  // namespace numcore::distributions
