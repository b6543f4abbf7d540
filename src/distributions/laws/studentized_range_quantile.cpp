// Quantile of the studentized range: the root of the logarithm of the smaller tail over ln q, which is nearly
// straight in both tails, by inverse interpolation with the density as slope.

#include <algorithm>
#include <cmath>

#include "distributions/laws/studentized_range.hpp"
#include "numcore/continuous_laws.h"
#include "numcore/markers.hpp"
#include "numcore/studentized_range.h"

namespace numcore::distributions {
namespace {

constexpr double kLargestQuantile = 1e150;
constexpr double kLeastQuantile = 1e-150;
constexpr double kLongestStep = 2.0;
// The error of an interpolated point is about the square of the product of the two changes of ln q before it.
constexpr double kProductOfChanges = 1e-7;
constexpr double kLeastChange = 1e-12;
constexpr int kMaxSteps = 200;

struct Law {
    double ranges;
    double k;
    double df;
};

// As if all differences of two means, over all ranges, were independent Student variables; close in the upper
// tail. In the lower tail k - 1 of them are.
double startingPoint(double p, const Law& law) {
    const double differences = p < 0.5 ? law.k - 1.0 : 0.5 * law.k * (law.k - 1.0);
    const double outside = -std::expm1(std::log(p) / (law.ranges * differences));
    const double t = -InvCDFStudent(0.5 * std::clamp(outside, 1e-300, 1.0 - 1e-9), std::max(law.df, 1.0));
    // The tail falls as the power df of t.
    const double heavy = law.df < 1.0 && t > 1.0 ? std::pow(t, 1.0 / law.df) : t;
    return std::clamp(std::sqrt(2.0) * heavy, 1e-6, 1e100);
}

// How far the logarithm of the tail lies from its target, rising with z = ln q, and dz / d(excess).
struct Point {
    double z;
    double excess;
    double slope;
};

Point pointAt(double z, double p, const Law& law) {
    const double q = std::exp(z);
    const StudentizedRange tails = studentizedRange(q, law.ranges, law.k, law.df, true);
    const bool lower = p < 0.5;
    const double tail = lower ? tails.lower : tails.upper;
    const double excess = lower ? std::log(tail) - std::log(p) : std::log1p(-p) - std::log(tail);
    return {z, excess, tail / (tails.density * q)};
}

// z where excess = 0, from the cubic through two points with their slopes.
double interpolated(const Point& a, const Point& b) {
    const double span = b.excess - a.excess;
    const double secant = (b.z - a.z) / span;
    const double curvature = (secant - a.slope) / span;
    const double twist = (a.slope + b.slope - 2.0 * secant) / (span * span);
    const double x = -a.excess;
    return a.z + x * (a.slope + x * (curvature + (x - span) * twist));
}

double quantile(double p, const Law& law) {
    double below = std::log(kLeastQuantile);
    double above = std::log(kLargestQuantile);
    Point previous{0.0, 0.0, 0.0};
    double change = 1.0;
    double z = std::log(startingPoint(p, law));
    for (int i = 0; i < kMaxSteps; ++i) {
        const Point here = pointAt(z, p, law);
        (here.excess < 0.0 ? below : above) = z;
        const double newton = z - here.slope * here.excess;
        double next = i == 0 ? newton : interpolated(here, previous);
        // Where the interpolation strays, the Newton step; where that does, or a tail is 0, the middle.
        if (!(std::abs(next - z) < 2.0 * std::abs(newton - z))) next = newton;
        if (!(next >= below && next <= above)) next = 0.5 * (below + above);
        next = std::clamp(next, z - kLongestStep, z + kLongestStep);
        const double newChange = std::abs(next - z);
        z = next;
        if (newChange * change <= kProductOfChanges || newChange <= kLeastChange) break;
        change = newChange;
        previous = here;
    }
    return std::exp(z);
}

}  // namespace
}  // namespace numcore::distributions

double qtukey(double p, double ranges, double k, double df) {
    using namespace numcore;
    if (distributions::studentizedRange(0.0, ranges, k, df).lower == kMissing) return kMissing;
    if (!(p >= 0.0 && p <= 1.0)) return kMissing;
    if (p == 0.0) return 0.0;
    if (p == 1.0) return kOverflow;
    const double q = distributions::quantile(p, {ranges, k, df});
    if (q <= 1.001 * distributions::kLeastQuantile) return 0.0;
    return q < 0.999 * distributions::kLargestQuantile ? q : kOverflow;
}
