// Logarithm of the beta function from the Stirling correction of the log-gamma function.
// Fullerton, W. (1977), SLATEC library, routines DLBETA and D9LGMC.

#include <algorithm>
#include <array>
#include <cmath>

#include "numcore/markers.hpp"
#include "numcore/special.h"
#include "suite/basecore.hpp"

namespace {

using numcore::kMissing;
using numcore::basecore::GammaLn;

// Chebyshev series of x times the correction in 2 (10 / x)^2 - 1.
constexpr std::array<double, 15> kCorrectionSeries = {
    0.1666389480451863247205729650822e+0,  -0.1384948176067563840732986059135e-4,
    0.9810825646924729426157171547487e-8,  -0.1809129475572494194263306266719e-10,
    0.6221098041892605227126015543416e-13, -0.3399615005417721944303330599666e-15,
    0.2683181998482698748957538846666e-17, -0.2868042435334643284144622399999e-19,
    0.3962837061046434803679306666666e-21, -0.6831888753985766870111999999999e-23,
    0.1429227355942498147573333333333e-24, -0.3547598158101070547199999999999e-26,
    0.1025680058010470912000000000000e-27, -0.3401102254316748799999999999999e-29,
    0.1276642195630062933333333333333e-30};
constexpr int kTermsUsed = 5;
constexpr int kMostTerms = 1000;
constexpr double kFarthestArgument = 1.1;
constexpr double kCorrectionStart = 10.0;
constexpr double kOneTermStart = 94906265.6242516;
constexpr double kCorrectionEnd = 3.74519403096316e306;
constexpr double kHalfLogTwoPi = 0.9189385332046728;

// Clenshaw's recurrence over the first terms of the series; T_0 counts half.
double sumOfSeries(double x, int nTerms) {
    const double twice = x + x;
    double now = 0.0;
    double before = 0.0;
    double beforeThat = 0.0;
    for (int i = nTerms - 1; i >= 0; --i) {
        beforeThat = before;
        before = now;
        now = twice * before - beforeThat + kCorrectionSeries[static_cast<std::size_t>(i)];
    }
    return 0.5 * (now - beforeThat);
}

// p >= 10
double bothLarge(double p, double q) {
    const double corrections = GammaLnCorr(p) + GammaLnCorr(q) - GammaLnCorr(p + q);
    const double share = p / (p + q);
    return -0.5 * std::log(q) + kHalfLogTwoPi + corrections + (p - 0.5) * std::log(share) +
           q * std::log1p(-share);
}

// q >= 10 > p
double oneLarge(double p, double q) {
    const double corrections = GammaLnCorr(q) - GammaLnCorr(p + q);
    return GammaLn(p) + corrections + p - p * std::log(p + q) + (q - 0.5) * std::log1p(-p / (p + q));
}

}  // namespace

double chebyshev_eval(double x, int32_t n) {
    if (n < 1 || n > kMostTerms || x < -kFarthestArgument || x > kFarthestArgument) return kMissing;
    return sumOfSeries(x, std::min(n, static_cast<int>(kCorrectionSeries.size())));
}

double GammaLnCorr(double x) {
    if (x < kCorrectionStart || x >= kCorrectionEnd) return kMissing;
    if (x >= kOneTermStart) return 1.0 / (12.0 * x);
    const double t = 10.0 / x;
    return sumOfSeries(2.0 * t * t - 1.0, kTermsUsed) / x;
}

double betaln(double a, double b) {
    if (std::isnan(a) || std::isnan(b)) return a + b;
    const double p = std::min(a, b);
    const double q = std::max(a, b);
    if (p >= kCorrectionStart) return bothLarge(p, q);
    if (q >= kCorrectionStart) return oneLarge(p, q);
    return GammaLn(p) + GammaLn(q) - GammaLn(p + q);
}
