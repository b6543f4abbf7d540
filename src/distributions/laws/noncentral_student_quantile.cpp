// Quantile of the noncentral Student law: the root of the logarithm of the smaller tail by Newton steps inside
// a bracket, over z with t = sinh(z): there the logarithm is smooth, and nearly straight in the heavy tails.

#include <algorithm>
#include <cmath>

#include "distributions/laws/noncentral.hpp"
#include "numcore/markers.hpp"
#include "numcore/noncentral_laws.h"
#include "numcore/special.h"

namespace numcore::distributions {
namespace {

constexpr double kLargestQuantile = 1e100;
// A Newton step of this relative size leaves an error of its square.
constexpr double kTolerance = 1e-10;
constexpr int kMaxSteps = 200;

// Where the normal approximation of N + delta - t s puts the quantile, or near it.
double startingPoint(double p, double nu, double delta) {
    const double z = InvCDFNormalStd(p);
    const double spread = std::sqrt(1.0 + 0.5 * delta * delta / nu);
    return delta + z * std::min(spread, 1e3 * (1.0 + std::abs(delta)));
}

// The two values at z: how far the logarithm of the tail is from its target, positive below the quantile, and
// the Newton step.
struct Position {
    double excess;
    double step;
};

Position positionAt(double z, double p, double nu, double delta) {
    const double t = std::sinh(z);
    const Tails tails = noncentralStudent(t, nu, delta);
    const bool lower = p < 0.5;
    const double tail = lower ? tails.lower : tails.upper;
    const double excess = lower ? std::log(p) - std::log(tail) : std::log(tail) - std::log1p(-p);
    const double density = noncentralStudentDensity(t, nu, delta);
    return {excess, excess * tail / (density * std::cosh(z))};
}

double quantile(double p, double nu, double delta) {
    double above = std::asinh(kLargestQuantile);
    double below = -above;
    double z = std::asinh(startingPoint(p, nu, delta));
    for (int i = 0; i < kMaxSteps; ++i) {
        const auto [excess, step] = positionAt(z, p, nu, delta);
        if (std::abs(step) <= kTolerance * std::abs(z)) return std::sinh(z + step);
        (excess > 0.0 ? below : above) = z;
        const double reach = 1.0 + std::abs(z);
        const double next = z + std::clamp(step, -reach, reach);
        z = next > below && next < above ? next : 0.5 * (below + above);
        if (z == below || z == above) break;
    }
    return std::sinh(z);
}

}  // namespace
}  // namespace numcore::distributions

double InvCDFStudentNC(double p, double nu, double delta) {
    using namespace numcore;
    if (!(p >= 0.0 && p <= 1.0)) return kMissing;
    if (distributions::noncentralStudent(0.0, nu, delta).lower == kMissing || p == 0.0) return kMissing;
    if (p == 1.0) return kOverflow;
    const double t = distributions::quantile(p, nu, delta);
    // Beyond lies no quantile that the distribution function could tell from infinity.
    if (std::abs(t) >= 0.999 * distributions::kLargestQuantile) return t > 0.0 ? kOverflow : kMissing;
    return t;
}
