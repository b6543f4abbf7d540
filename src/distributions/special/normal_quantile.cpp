// Standard normal quantile: one and many.
#include "distributions/special/normal_quantile.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "distributions/special/normal_quantile_lanes.hpp"
#include "distributions/special/normal_quantile_steps.hpp"
#include "numcore/special.h"
#include "suite/parallel.hpp"
#include "suite/vmcore_kernels.hpp"

namespace numcore::distributions {
namespace {

constexpr std::size_t kCellsPerShare = 8192;
constexpr double kSubnormalScale = 0x1p+54;
constexpr double kLogOfScale = 37.42994775023705;  // of kSubnormalScale

struct OneLane {
    using Real = double;
    using Bits = std::uint64_t;

    static double squareRoot(double x) { return std::sqrt(x); }
};
using Steps = NormalQuantileSteps<OneLane>;

double depthOf(double tail) {
    if (tail >= std::numeric_limits<double>::min()) return Steps::tailDepth(tail);
    return std::sqrt(kLogOfScale - Steps::logarithm(tail * kSubnormalScale));
}

NormalQuantileKernel fastestKernel() {
    return vmcore::hasAvx2() ? avx2NormalQuantiles : baselineNormalQuantiles;
}

}  // namespace

void normalQuantiles(std::span<const double> p, std::span<double> z) {
    static const NormalQuantileKernel kernel = fastestKernel();
    const std::size_t nShares = (p.size() + kCellsPerShare - 1) / kCellsPerShare;
    parallelFor(static_cast<std::int64_t>(nShares), nShares > 1, [&](std::int64_t share) {
        const std::size_t first = static_cast<std::size_t>(share) * kCellsPerShare;
        kernel(p.data() + first, std::min(kCellsPerShare, p.size() - first), z.data() + first);
    });
}

}  // namespace numcore::distributions

double InvCDFNormalStd(double p) {
    using numcore::distributions::Steps;
    const double fromCentre = p - 0.5;
    if (std::abs(fromCentre) <= Steps::kCentralHalfWidth) return Steps::central(fromCentre);
    const double tail = std::min(p, 1.0 - p);
    if (tail <= 0.0) return 0.0;  // Kept: the publication flags an error at p <= 0 and p >= 1
    if (std::isnan(tail)) return tail;
    const double depth = numcore::distributions::depthOf(tail);
    const double z = depth <= Steps::kFarTailStart ? Steps::nearTail(depth) : Steps::farTail(depth);
    return fromCentre < 0.0 ? -z : z;
}
