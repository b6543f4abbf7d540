// Sums outwards from the end where the central ratio is smallest, with the recurrence of the ratio in its
// stable direction: Benton, D. and Krishnamoorthy, K. (2003), Computing discrete mixtures of continuous
// distributions, Comput. Statist. Data Anal. 43:249-267, carried by ratios of terms so that nothing underflows
// on the way.

#include "distributions/laws/noncentral_mixture.hpp"

#include <algorithm>
#include <cmath>

#include "distributions/laws/central_ratios.hpp"

namespace numcore::distributions {
namespace {

// Half width of the window in standard deviations, and a constant for the skewness at small means: beyond it a
// Poisson law has less than 1e-19 of its mass.
constexpr double kWindowWidth = 9.2;
constexpr double kWindowExtra = 12.0;
// For a tail that the weights do not concentrate on.
constexpr double kWholeExtra = 40.0;
constexpr double kNegligible = 1e-18;

struct Window {
    int first;
    int last;
};

Window windowAround(double mean, double extra) {
    const double reach = kWindowWidth * std::sqrt(mean);
    return {static_cast<int>(std::max(0.0, mean - reach - 1.0)), static_cast<int>(mean + reach + extra)};
}

bool isGamma(const Mixture& mixture) {
    return std::isinf(mixture.b);
}

double logWeight(const Mixture& mixture, int j) {
    const double k = j + mixture.offset;
    if (mixture.halfLambda == 0.0) return k == 0.0 ? 0.0 : -HUGE_VAL;
    return logPoissonTerm(k, mixture.halfLambda);
}

double logUnit(const Mixture& mixture, double shape) {
    if (isGamma(mixture)) return logPoissonTerm(shape, mixture.x);
    return logBetaUnit(shape, mixture.b, mixture.x, mixture.y);
}

// The unit of shape + 1 over that of shape, times shape + 1.
double unitGrowth(const Mixture& mixture, double shape) {
    return isGamma(mixture) ? mixture.x : mixture.x * (shape + mixture.b);
}

// sum e^logScale where the second factor alone may underflow.
double scaled(double sum, double logScale) {
    const double root = std::exp(0.5 * logScale);
    return root * sum * root;
}

double lowerOver(const Mixture& mixture, Window window) {
    const double top = mixture.a + window.last;
    double ratio = isGamma(mixture) ? gammaLowerRatio(top, mixture.x)
                                    : betaLowerRatio(top, mixture.b, mixture.x, mixture.y);
    double sum = ratio;  // of weight times ratio from j upwards, over weight and unit of j
    for (int j = window.last; j-- > window.first;) {
        const double shape = mixture.a + j;
        const double k = j + 1 + mixture.offset;
        const double inverse = 1.0 / ((shape + 1.0) * k);
        const double growth = unitGrowth(mixture, shape) * inverse;
        ratio = 1.0 + ratio * (growth * k);
        sum = ratio + sum * (growth * mixture.halfLambda);
    }
    return scaled(sum, logWeight(mixture, window.first) + logUnit(mixture, mixture.a + window.first));
}

double upperOver(const Mixture& mixture, Window window) {
    const double bottom = mixture.a + window.first;
    double tail = isGamma(mixture) ? gammaUpperRatio(bottom, mixture.x)
                                   : betaUpperRatio(bottom, mixture.b, mixture.x, mixture.y);
    double unit = 1.0;
    double weight = 1.0;
    double sum = tail;
    double last = 0.0;
    for (int j = window.first; j < window.last; ++j) {
        const double shape = mixture.a + j;
        const double k = j + 1 + mixture.offset;
        const double inverse = 1.0 / ((shape + 1.0) * k);
        tail += unit;
        unit *= unitGrowth(mixture, shape) * inverse * k;
        weight *= mixture.halfLambda * inverse * (shape + 1.0);
        const double term = weight * tail;
        sum += term;
        if (term < kNegligible * sum && term < last) break;
        last = term;
    }
    return scaled(sum, logWeight(mixture, window.first) + logUnit(mixture, bottom));
}

}  // namespace

double mixtureLower(const Mixture& mixture, double tiltedMean) {
    if (mixture.halfLambda == 0.0) return lowerOver(mixture, {0, 0});
    return lowerOver(mixture, windowAround(tiltedMean, kWindowExtra));
}

double mixtureUpper(const Mixture& mixture, double tiltedMean) {
    if (mixture.halfLambda == 0.0) return upperOver(mixture, {0, 0});
    return upperOver(mixture, windowAround(tiltedMean, kWindowExtra));
}

double mixtureWholeLower(const Mixture& mixture) {
    if (mixture.halfLambda == 0.0) return lowerOver(mixture, {0, 0});
    return lowerOver(mixture, {0, windowAround(mixture.halfLambda, kWholeExtra).last});
}

double mixtureWholeUpper(const Mixture& mixture) {
    if (mixture.halfLambda == 0.0) return upperOver(mixture, {0, 0});
    return upperOver(mixture, {0, windowAround(mixture.halfLambda, kWholeExtra).last});
}

}  // namespace numcore::distributions
