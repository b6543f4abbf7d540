// Binomial law.

#include "distributions/laws/count_sums.hpp"
#include "distributions/laws/saddle_point.hpp"
#include "distributions/special/beta_ratio.hpp"
#include "numcore/discrete_laws.h"
#include "suite/basecore.hpp"

using namespace numcore;
using namespace numcore::distributions;

namespace {

constexpr double kFewTrials = 10.0;              // up to here products, beyond it logarithms
constexpr double kProbabilityTolerance = 1e-12;  // a probability this close to 0 or 1 counts as such

bool countsAs(double p, double end) {
    return std::abs(p - end) < kProbabilityTolerance;
}

// base^exponent for a whole exponent of at most kFewTrials.
double smallPower(double base, double exponent) {
    double power = 1.0;
    for (double i = 0.0; i < exponent; i += 1.0) power *= base;
    return power;
}

// 0 < p < 1, 0 <= k <= n.
double innerMass(double k, double n, double p) {
    const double q = 1.0 - p;
    if (n <= kFewTrials) return basecore::Cnk(n, k) * smallPower(p, k) * smallPower(q, n - k);
    return binomialMass(k, n - k, p, q, std::fma(n, p, -k));
}

double massAtZero(double n, double p) {
    return std::exp(n * std::log1p(-p));
}

// Ratio of the mass at k + 1 to that at k.
auto growth(double n, double p) {
    return [=, odds = p / (1.0 - p)](double k) { return (n - k) * odds / (k + 1.0); };
}

// Around k < n for 0 < p < 1: the sum of the masses on the shorter side, or the incomplete beta ratio where
// that sum would have hundreds of terms.
Tails binomialTails(double k, double n, double p) {
    const double q = 1.0 - p;
    const double variance = n * p * q;
    const double next = k + 1.0;
    const auto rise = growth(n, p);
    if (rise(k) >= 1.0) {
        const double odds = q / p;
        const auto fall = [=](double i) { return (k - i) * odds / (n - k + 1.0 + i); };
        if (isShortSum(fall(0.0), variance)) return fromLowerTail(innerMass(k, n, p) * sumOfProducts(fall));
    } else {
        const auto fall = [=](double i) { return rise(next + i); };
        if (isShortSum(fall(0.0), variance)) return fromUpperTail(innerMass(next, n, p) * sumOfProducts(fall));
    }
    const BetaRatio ratio = betaRatio(n - k, next, q, p);
    return {ratio.lower, ratio.upper};
}

double directSum(double k, double n, double p) {
    const auto ratio = growth(n, p);
    double term = smallPower(1.0 - p, n);
    double sum = term;
    for (double j = 0.0; j < k; j += 1.0) {
        term *= ratio(j);
        sum += term;
    }
    return sum;
}

bool outOfDomain(double n, double p) {
    return !(n >= 0.0) || std::isinf(n) || !isProbability(p);
}

}  // namespace

double PDFBinomial(double k, double n, double p) {
    const double trials = std::round(n);
    const double share = countsAs(p, 0.0) ? 0.0 : countsAs(p, 1.0) ? 1.0 : p;
    if (outOfDomain(trials, share)) return kMissing;
    if (std::isnan(k)) return k;
    if (share == 1.0) return k == trials ? 1.0 : 0.0;
    if (share == 0.0) return k == 0.0 ? 1.0 : 0.0;
    return isCount(k) && k <= trials ? innerMass(k, trials, p) : 0.0;
}

double CDFBinomial(double k, double n, double p) {
    const double trials = std::round(n);  // Kept: halves go away from zero
    if (outOfDomain(trials, p)) return kMissing;
    const double count = std::round(k);
    if (count >= trials) return 1.0;
    if (count < 0.0 || p == 1.0) return 0.0;
    if (std::isnan(count)) return count;
    if (p == 0.0) return 1.0;
    return trials <= kFewTrials ? directSum(count, trials, p) : binomialTails(count, trials, p).lower;
}

uint32_t InvCDFBinomial(double p, double n, double p1) {
    const double trials = std::round(n);
    if (outOfDomain(trials, p1) || !isProbability(p) || trials == 0.0) return kNoCount;
    if (p == 0.0) return 0;
    if (p == 1.0 || countsAs(p1, 1.0)) return toQuantile(trials);
    if (countsAs(p1, 0.0)) return 0;
    const double k = countBySummation(p, massAtZero(trials, p1), trials, growth(trials, p1));
    if (k >= 0.0) return static_cast<uint32_t>(k);
    const double mean = trials * p1;
    const double variance = mean * (1.0 - p1);
    const double guess = guessCount(p, mean, variance, (1.0 - 2.0 * p1) / std::sqrt(variance));
    return countBySearch(p, guess, trials, [=](double j) { return binomialTails(j, trials, p1); });
}
