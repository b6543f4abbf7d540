// Negative binomial law: failures before success number `size`, with probabilities (type 1, a whole size) or
// with a mean and a dispersion (type 2, a real size).

#include "distributions/laws/count_sums.hpp"
#include "distributions/laws/saddle_point.hpp"
#include "distributions/special/beta_ratio.hpp"
#include "numcore/discrete_laws.h"
#include "suite/basecore.hpp"

using namespace numcore;
using namespace numcore::distributions;

namespace {

constexpr double kSmallestSize = 1e-300;  // below, reciprocals overflow and no mass but that at 0 is left
constexpr double kLargeOdds = 1e15;   // above, probabilities keep the digits and products with odds overflow
constexpr double kFewTrials = 100.0;  // below, masses of type 1 are products
constexpr double kNoLast = std::numeric_limits<double>::infinity();

struct NegativeBinomial {
    double size = 1.0;
    double success = 0.5;
    double failure = 0.5;
    double odds = 1.0;          // failure / success
    bool oddsAreExact = false;  // and the probabilities rounded, or the other way round

    double mass(double k) const {
        const double excess =
            oddsAreExact ? std::fma(-size, odds, k) * success : std::fma(size + k, success, -size);
        return size / (size + k) * binomialMass(size, k, success, failure, excess);
    }
    double mean() const { return size * odds; }
    double variance() const { return size * odds / success; }
    double ratio(double k) const { return (size + k) * failure / (k + 1.0); }
    double lostSuccess(bool fromFailure) const;
    Tails betaTails(double k) const;
    Tails tails(double k) const;
    std::uint32_t quantile(double p) const;
};

// What exact odds have beyond the rounded probability of a success, or beyond 1 - failure.
double NegativeBinomial::lostSuccess(bool fromFailure) const {
    const double rest = 1.0 - success;
    const double lostRest = (1.0 - rest) - success;
    const double lost = (std::fma(-success, odds, rest) + lostRest) * success;
    const double gap = (1.0 - std::max(success, failure)) - std::min(success, failure);
    return fromFailure ? lost - gap : lost;
}

// The incomplete beta ratio; it reads the probability of the larger shape's side, whose rounding would cost the
// digits of large sizes: from there along the slope.
Tails NegativeBinomial::betaTails(double k) const {
    const double next = k + 1.0;
    const BetaRatio beta = betaRatio(size, next, success, failure);
    if (!oddsAreExact) return {beta.lower, beta.upper};
    const double gained = (size + k) * mass(k) * (lostSuccess(size > next) / success);
    if (!(std::abs(gained) < std::min(beta.lower, beta.upper))) return {beta.lower, beta.upper};
    return {beta.lower + gained, beta.upper - gained};
}

// The sum of the masses on the shorter side, or the incomplete beta ratio where it would have hundreds of
// terms.
Tails NegativeBinomial::tails(double k) const {
    constexpr double kSlowDecay = 0.8;  // of the ratios far out
    const double next = k + 1.0;
    if (size >= 1.0 && ratio(k) >= 1.0) {  // a size below 1 has its mode at 0
        const auto fall = [&](double i) { return (k - i) / ((size + k - 1.0 - i) * failure); };
        if (isShortSum(fall(0.0), variance())) return fromLowerTail(mass(k) * sumOfProducts(fall));
    } else if (failure <= kSlowDecay) {
        const auto fall = [&](double i) { return ratio(next + i); };
        if (isShortSum(fall(0.0), variance())) return fromUpperTail(mass(next) * sumOfProducts(fall));
    }
    return betaTails(k);
}

std::uint32_t NegativeBinomial::quantile(double p) const {
    if (p == 0.0) return 0;
    if (p == 1.0) return kUnboundedCount;
    const double massAtZero = std::exp(-size * std::log1p(odds));
    const double k = countBySummation(p, massAtZero, kNoLast, [this](double j) { return ratio(j); });
    if (k >= 0.0) return static_cast<std::uint32_t>(k);
    const double skewness = (1.0 + failure) / basecore::sqr(size * failure);
    const double guess = guessCount(p, mean(), variance(), skewness);
    return countBySearch(p, guess, kNoLast, [this](double j) { return tails(j); });
}

double distribution(double k, const NegativeBinomial& law) {
    if (std::isnan(k)) return k;
    if (k < 0.0) return 0.0;
    return std::isinf(k) ? 1.0 : std::min(law.tails(std::floor(k)).lower, 1.0);
}

bool outOfDomain1(double n, double p) {
    return !(n >= 1.0) || std::isinf(n) || !isInnerProbability(p);
}
NegativeBinomial fromProbability(double n, double p) {
    return {n, p, 1.0 - p, (1.0 - p) / p, false};
}

bool outOfDomain2(double k, double p) {
    return !(k > 0.0) || std::isinf(k) || !(p > 0.0) || std::isinf(p);
}
NegativeBinomial fromMean(double k, double p) {
    const double size = std::max(k, kSmallestSize);
    return {size, 1.0 / (1.0 + p), p / (1.0 + p), p, p < kLargeOdds && std::isfinite(size * p)};
}

}  // namespace

double PDFBinomialNeg1(double k, double n, double p) {
    const double successes = std::round(n);
    if (outOfDomain1(successes, p)) return kMissing;
    if (!isCount(k)) return std::isnan(k) ? k : 0.0;
    if (k + successes < kFewTrials) {
        return basecore::Cnk(k + successes - 1.0, successes - 1.0) * std::pow(p, successes) *
               std::pow(1.0 - p, k);
    }
    return fromProbability(successes, p).mass(k);
}

double CDFBinomialNeg1(double k, double n, double p) {
    const double successes = std::round(n);
    return outOfDomain1(successes, p) ? kMissing : distribution(k, fromProbability(successes, p));
}

uint32_t InvCDFBinomialNeg1(double p, double n, double p1) {
    const double successes = std::round(n);
    if (outOfDomain1(successes, p1) || !isProbability(p)) return kNoCount;
    return fromProbability(successes, p1).quantile(p);
}

double PDFBinomialNeg2(double x, double k, double p) {
    if (outOfDomain2(k, p)) return kMissing;
    if (!isCount(x)) return std::isnan(x) ? x : 0.0;
    return fromMean(k, p).mass(x);
}

double CDFBinomialNeg2(double x, double k, double p) {
    return outOfDomain2(k, p) ? kMissing : distribution(x, fromMean(k, p));
}

uint32_t InvCDFBinomialNeg2(double p, double k, double p1) {
    if (outOfDomain2(k, p1) || !isProbability(p)) return kNoCount;
    return fromMean(k, p1).quantile(p);
}
