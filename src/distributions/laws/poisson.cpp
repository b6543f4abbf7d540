// Poisson law.

#include "distributions/laws/count_sums.hpp"
#include "distributions/laws/saddle_point.hpp"
#include "distributions/special/beta_ratio.hpp"
#include "numcore/discrete_laws.h"

using namespace numcore;
using namespace numcore::distributions;

namespace {

// Number of trials of the binomial law that stands for a Poisson law with the same mean: the difference is of
// relative size mean^2 / trials, far below rounding for counts of 32 bits.
constexpr double kManyTrials = 1e40;

// Around k, from the masses themselves: CDFPoisson with its normal approximation is not good enough to find a
// quantile.
Tails poissonTails(double k, double lambda) {
    const double next = k + 1.0;
    if (next <= lambda && isShortSum(k / lambda, lambda)) {
        return fromLowerTail(poissonMass(k, lambda) *
                             sumOfProducts([=](double i) { return (k - i) / lambda; }));
    }
    if (next > lambda && isShortSum(lambda / next, lambda)) {
        return fromUpperTail(poissonMass(next, lambda) *
                             sumOfProducts([=](double i) { return lambda / (next + 1.0 + i); }));
    }
    const double share = lambda / kManyTrials;
    const BetaRatio ratio = betaRatio(kManyTrials, next, 1.0 - share, share);
    return {ratio.lower, ratio.upper};
}

}  // namespace

double PDFPoisson(double k, double lambda) {
    if (!(lambda > 0.0)) return kMissing;
    if (!isCount(k)) return std::isnan(k) ? k : 0.0;
    return std::isinf(lambda) ? 0.0 : poissonMass(k, lambda);
}

double CDFPoisson(int32_t k, double lambda) {
    if (!(lambda > 0.0)) return kMissing;
    if (k < 0) return 0.0;
    return k == 0 ? std::exp(-lambda) : 1.0 - IncompleteGamma(lambda, k + 1.0);
}

uint32_t InvCDFPoisson(double p, double lambda) {
    if (!isProbability(p) || !(lambda > 0.0)) return kNoCount;
    if (p == 1.0) return kUnboundedCount;
    const double massAtZero = std::exp(-lambda);
    if (massAtZero >= p) return 0;
    if (std::isinf(lambda)) return kNoCount;
    constexpr double kNoLast = std::numeric_limits<double>::infinity();
    const double k = countBySummation(p, massAtZero, kNoLast, [=](double j) { return lambda / (j + 1.0); });
    if (k >= 0.0) return static_cast<uint32_t>(k);
    const double guess = guessCount(p, lambda, lambda, 1.0 / std::sqrt(lambda));
    return countBySearch(p, guess, kNoLast, [=](double j) { return poissonTails(j, lambda); });
}
