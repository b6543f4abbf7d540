#include "distributions/laws/gamma_density.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "distributions/special/beta_parts.hpp"
#include "numcore/special.h"
#include "suite/basecore.hpp"

namespace numcore::distributions {
namespace {

constexpr double kInverseRootTwoPi = 0.39894228040143267794;
constexpr double kStirlingStart = 10.0;
constexpr double kNearShape = 0.6;
constexpr double kCorrectionVanishes = 1e300;

double densityAtZero(double k) {
    if (k == 1.0) return 1.0;
    return k < 1.0 ? std::numeric_limits<double>::infinity() : 0.0;
}

// With Stirling's formula for Gamma(k) the density is sqrt(k / (2 pi)) / z e^(-k (u - ln(1 + u))) but for the
// correction, where u is the relative distance of z from k.
double densityOfLargeShape(double z, double k) {
    const double u = (z - k) / k;
    const double depth =
        std::abs(u) <= kNearShape ? beta_parts::argumentMinusLogOnePlus(u) : u - std::log(z / k);
    const double correction = GammaLnCorr(std::min(k, kCorrectionVanishes));
    return kInverseRootTwoPi * std::sqrt(k) / z * std::exp(-k * depth - correction);
}

}  // namespace

double gammaDensity(double z, double k) {
    if (z == 0.0) return densityAtZero(k);
    if (std::isinf(z)) return 0.0;
    if (k >= kStirlingStart) return densityOfLargeShape(z, k);
    return std::exp((k - 1.0) * std::log(z) - z - basecore::GammaLn(k));
}

}  // namespace numcore::distributions
