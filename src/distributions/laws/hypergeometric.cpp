// Hypergeometric law: marked items among n drawn without replacement from N of which K are marked.

#include "distributions/laws/count_sums.hpp"
#include "distributions/laws/saddle_point.hpp"
#include "numcore/discrete_laws.h"

using namespace numcore;
using namespace numcore::distributions;

namespace {

constexpr double kLargestPopulation = 0x1p+53;  // beyond, doubles are not whole numbers one by one
constexpr double kLongSumVariance = 500.0 * 500.0;
constexpr double kSmoothRatio = 0.97;  // below, the seventh derivative matters and 1400 terms are enough

struct Hypergeometric {
    double total = 0.0;
    double marked = 0.0;
    double drawn = 0.0;

    bool valid() const {
        return isCount(total) && isCount(marked) && isCount(drawn) && total <= kLargestPopulation &&
               marked <= total && drawn <= total;
    }
    double lowest() const { return std::max(0.0, drawn - (total - marked)); }
    double highest() const { return std::min(drawn, marked); }
    double mean() const { return drawn * (marked / total); }
    double variance() const { return mean() * ((total - marked) / total) * ((total - drawn) / (total - 1.0)); }

    double mass(double x) const { return hypergeometricMass(x, total, marked, drawn); }
    // Ratio of the mass at x + 1 to that at x, and its inverse.
    double rise(double x) const {
        return (marked - x) * (drawn - x) / ((x + 1.0) * (total - marked - drawn + x + 1.0));
    }
    double fall(double x) const {
        return (x + 1.0) * (total - marked - drawn + x + 1.0) / ((marked - x) * (drawn - x));
    }
    double lowerTail(double x) const;
    double smoothSum(double from, double direction) const;
};

// Sum of the masses from `from` outwards where they hardly change from one to the next: the midpoint form of
// the Euler-Maclaurin formula up to the fifth derivative, the derivatives by differences. The integral over the
// smooth curve takes the double exponential rule for decaying functions on a half line, Takahasi, H. and Mori,
// M. (1974), Publ. RIMS Kyoto Univ. 9:721-741.
double Hypergeometric::smoothSum(double from, double direction) const {
    constexpr double kStep = 1.0 / 8.0;
    constexpr double kFirst = -3.75;
    constexpr double kLast = 2.75;
    constexpr double kNegligible = 1e-20;
    const double reach = direction > 0.0 ? highest() - from : from - lowest();
    const double width = std::sqrt(variance());
    double integral = 0.0;
    for (double t = kFirst; t <= kLast; t += kStep) {
        const double decay = std::exp(-t);
        const double u = width * std::exp(t - decay);
        if (u > reach) break;
        const double x = from + direction * (u - 0.5);
        // Adding to a large count rounds the node away: back to it along the slope of the curve.
        const double lost = u - (direction * (x - from) + 0.5);
        const double slope = (direction > 0.0 ? rise(x) : fall(x - 1.0)) - 1.0;
        const double term = mass(x) * (1.0 + lost * slope) * u * (1.0 + decay);
        integral += term;
        if (t > 0.0 && term < kNegligible * integral) break;
    }
    const auto at = [&](double offset) { return mass(from + direction * offset); };
    const double first = at(0.0) - at(-1.0);
    const double second = at(1.0) - at(-2.0);
    const double third = at(2.0) - at(-3.0);
    return kStep * integral + first / 24.0 - 17.0 / 5760.0 * (second - 3.0 * first) +
           367.0 / 967680.0 * (third - 5.0 * second + 10.0 * first);
}

double Hypergeometric::lowerTail(double x) const {
    const double next = x + 1.0;
    const bool below = rise(x) >= 1.0;
    const double from = below ? x : next;
    const auto fallBelow = [&](double i) { return fall(x - 1.0 - i); };
    const auto fallAbove = [&](double i) { return rise(next + i); };
    const auto tail = [&](const auto& ratios, double direction) {
        if (variance() > kLongSumVariance && ratios(0.0) > kSmoothRatio) {
            return smoothSum(from, direction);
        }
        return mass(from) * sumOfProducts(ratios);
    };
    return below ? tail(fallBelow, -1.0) : fromUpperTail(tail(fallAbove, 1.0)).lower;
}

}  // namespace

double PDFHyperG(double x, double N, double K, double n) {
    const Hypergeometric law = {N, K, n};
    if (!law.valid()) return kMissing;
    if (!(x >= law.lowest() && x <= law.highest() && std::floor(x) == x)) return std::isnan(x) ? x : 0.0;
    return law.lowest() == law.highest() ? 1.0 : law.mass(x);
}

double CDFHyperG(double x, double N, double K, double n) {
    const Hypergeometric law = {N, K, n};
    if (!law.valid()) return kMissing;
    if (std::isnan(x)) return x;
    if (x < law.lowest()) return 0.0;
    return x >= law.highest() ? 1.0 : law.lowerTail(std::floor(x));
}
