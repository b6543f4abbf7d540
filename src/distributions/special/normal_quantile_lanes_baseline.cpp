#include <cstdint>

#include "distributions/special/normal_quantile_kernel.hpp"
#include "distributions/special/normal_quantile_lanes.hpp"

namespace numcore::distributions {
namespace {

struct Lanes {
    typedef double Real __attribute__((vector_size(16)));
    typedef std::uint64_t Bits __attribute__((vector_size(16)));

    static int signBits(const Real& lanes) { return __builtin_ia32_movmskpd(lanes); }
    static Real squareRoot(const Real& lanes) { return __builtin_ia32_sqrtpd(lanes); }
};

}  // namespace

void baselineNormalQuantiles(const double* p, std::size_t n, double* z) {
    NormalQuantileColumn<Lanes>::compute(p, n, z);
}

}  // namespace numcore::distributions
