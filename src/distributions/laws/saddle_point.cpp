// Loader, C. (2000), Fast and accurate computation of binomial probabilities: a mass is Stirling's formula of
// its factorials times exp(-deviance), and the deviance of each cell is computed without cancellation.

#include "distributions/laws/saddle_point.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "distributions/laws/noncentral_terms.hpp"
#include "suite/basecore.hpp"

namespace numcore::distributions {
namespace {

constexpr double kTwoPi = 2.0 * basecore::Pi();

// stirlingError of the counts 1 to 15. That of 0 is infinite; a cell of 0 takes 0 and, in the product of counts
// below the root, 1 / (2 pi) for itself, which together make 0! = 1.
constexpr std::array<double, 16> kCountErrors = {0.0,
                                                 0.08106146679532725822,
                                                 0.041340695955409294094,
                                                 0.027677925684998339149,
                                                 0.020790672103765093112,
                                                 0.016644691189821192163,
                                                 0.013876128823070747999,
                                                 0.011896709945891770095,
                                                 0.010411265261972096497,
                                                 0.0092554621827127329177,
                                                 0.0083305634333628712565,
                                                 0.007573675487951840795,
                                                 0.0069428401072095298657,
                                                 0.0064089941880042070684,
                                                 0.0059513701127588477356,
                                                 0.005554733551962801371};
constexpr double kTabulated = 15.0;

double errorOf(double count) {
    if (count <= kTabulated && std::floor(count) == count) return kCountErrors[static_cast<std::size_t>(count)];
    return stirlingError(count);
}

double factorOf(double count) {
    return count > 0.0 ? count : 1.0 / kTwoPi;
}

// count - mean - count ln(count / mean) <= 0, the negative deviance of one cell; excess is mean - count.
double logLikelihoodRatio(double count, double mean, double excess) {
    constexpr double kLargeQuotient = 1e6;  // far from overflow, and 1 in 1 + v does not matter to v any more
    if (count == 0.0) return -mean;
    if (excess > kLargeQuotient * count) return count * (std::log(mean) - std::log(count)) - excess;
    return count * log1pMinus(excess / count, mean / count);
}

}  // namespace

double poissonMass(double count, double mean) {
    if (count == 0.0) return std::exp(-mean);
    const double exponent = logLikelihoodRatio(count, mean, mean - count) - errorOf(count);
    return std::exp(exponent) / basecore::sqr(kTwoPi * count);
}

double binomialMass(double k, double m, double x, double y, double excess) {
    const double n = k + m;
    const double corrections = errorOf(n) - errorOf(k) - errorOf(m);
    const double ratio = logLikelihoodRatio(k, n * x, excess) + logLikelihoodRatio(m, n * y, -excess);
    return std::exp(corrections + ratio) *
           basecore::sqr(factorOf(n) / factorOf(std::max(k, m)) / factorOf(std::min(k, m)) / kTwoPi);
}

double hypergeometricMass(double marked, double total, double totalMarked, double drawn) {
    const double totalOther = total - totalMarked;
    const double kept = total - drawn;
    const double markedKept = totalMarked - marked;
    const double other = drawn - marked;
    const double otherKept = totalOther - other;
    // drawn totalMarked - marked total, exact to the last bit although both products are rounded
    const double product = drawn * totalMarked;
    const double lost = std::fma(drawn, totalMarked, -product);
    const double excess = (std::fma(-marked, total, product) + lost) / total;

    const double shareDrawn = drawn / total;
    const double shareKept = kept / total;
    const double ratio = logLikelihoodRatio(marked, totalMarked * shareDrawn, excess) +
                         logLikelihoodRatio(markedKept, totalMarked * shareKept, -excess) +
                         logLikelihoodRatio(other, totalOther * shareDrawn, -excess) +
                         logLikelihoodRatio(otherKept, totalOther * shareKept, excess);
    const double corrections = errorOf(totalMarked) + errorOf(totalOther) + errorOf(drawn) + errorOf(kept) -
                               errorOf(total) - errorOf(marked) - errorOf(markedKept) - errorOf(other) -
                               errorOf(otherKept);
    const double cells = factorOf(marked) * factorOf(markedKept) * factorOf(other) * factorOf(otherKept);
    const double margins = factorOf(totalMarked) * factorOf(totalOther) * factorOf(drawn) * factorOf(kept);
    return std::exp(corrections + ratio) * basecore::sqr(margins / (kTwoPi * factorOf(total) * cells));
}

}  // namespace numcore::distributions
