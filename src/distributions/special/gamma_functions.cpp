// Gamma function and the first two derivatives of its logarithm.

#include <array>
#include <cmath>
#include <limits>

#include "distributions/special/polynomial.hpp"
#include "numcore/markers.hpp"
#include "numcore/special.h"
#include "suite/basecore.hpp"

namespace {

using numcore::kMissing;
using numcore::kOverflow;
using numcore::basecore::Pi;
using numcore::distributions::polynomial;

// Coefficients of 1 / Gamma(z) by power, from power 1 on. Zhang, S. and Jin, J. (1996), Computation of Special
// Functions, GAMMA2.
constexpr std::array<double, 26> kReciprocalGamma = {1.0e0,
                                                     0.5772156649015329e0,
                                                     -0.6558780715202538e0,
                                                     -0.420026350340952e-1,
                                                     0.1665386113822915e0,
                                                     -0.421977345555443e-1,
                                                     -0.96219715278770e-2,
                                                     0.72189432466630e-2,
                                                     -0.11651675918591e-2,
                                                     -0.2152416741149e-3,
                                                     0.1280502823882e-3,
                                                     -0.201348547807e-4,
                                                     -0.12504934821e-5,
                                                     0.11330272320e-5,
                                                     -0.2056338417e-6,
                                                     0.61160950e-8,
                                                     0.50020075e-8,
                                                     -0.11812746e-8,
                                                     0.1043427e-9,
                                                     0.77823e-11,
                                                     -0.36968e-11,
                                                     0.51e-12,
                                                     -0.206e-13,
                                                     -0.54e-14,
                                                     0.14e-14,
                                                     0.1e-15};
constexpr double kLargestGammaArgument = 170.0;
constexpr double kProductOverflows = 172.0;
constexpr double kLargestPole = 0x1p-1024;  // the reciprocal of anything smaller overflows

// Bernardo, J. M. (1976), Algorithm AS 103, Appl. Statist. 25:315-317.
constexpr double kDigammaSmall = 1e-05;
constexpr double kDigammaAsymptotic = 8.5;
constexpr double kDigammaOfOne = -0.5772156649;
constexpr double kDigamma2 = 0.083333333333333;
constexpr double kDigamma4 = 0.00833333333333333;
constexpr double kDigamma6 = 0.003968253968;

// Schneider, B. E. (1978), Algorithm AS 121, Appl. Statist. 27:97-99; the Bernoulli numbers exact.
constexpr double kTrigammaSmall = 1.0e-4;
constexpr double kTrigammaAsymptotic = 5.0;
constexpr double kTrigammaOfOneWidth = 1e-12;
constexpr std::array<double, 5> kBernoulli = {1.0, 1.0 / 6.0, -1.0 / 30.0, 1.0 / 42.0, -1.0 / 30.0};

double seriesOfGamma(double z) {
    return 1.0 / (polynomial(kReciprocalGamma, z) * z);
}

// Gamma(x), x > 0, not whole where it is above 1; infinite where it overflows.
double gammaByProduct(double x) {
    if (x > kProductOverflows) return std::numeric_limits<double>::infinity();
    double product = 1.0;
    for (; x > 2.0; x -= 2.0) product *= (x - 1.0) * (x - 2.0);
    return x > 1.0 ? product * (x - 1.0) * seriesOfGamma(x - 1.0) : product * seriesOfGamma(x);
}

// sin(pi x), right also where it is small.
double sineOfPiTimes(double x) {
    const double whole = std::round(x);
    const double sine = std::sin(Pi() * (x - whole));
    return std::fmod(whole, 2.0) == 0.0 ? sine : -sine;
}

}  // namespace

double GammaF(double x) {
    if (x > kLargestGammaArgument || std::abs(x) <= kLargestPole) return kOverflow;
    if (x == std::floor(x)) {
        return x <= 0.0 ? kOverflow : numcore::basecore::Fact(static_cast<int32_t>(x) - 1);
    }
    if (x > 0.0) return gammaByProduct(x);
    return -Pi() / (x * gammaByProduct(-x) * sineOfPiTimes(x));
}

double Digamma(double x) {
    if (x <= 0.0) return kMissing;
    if (x <= kDigammaSmall) return kDigammaOfOne - 1.0 / x;
    double shift = 0.0;
    while (x < kDigammaAsymptotic) {
        shift -= 1.0 / x;
        x += 1.0;
    }
    const double inverse = 1.0 / x;
    const double square = inverse * inverse;
    return shift + std::log(x) - 0.5 * inverse -
           square * (kDigamma2 - square * (kDigamma4 - kDigamma6 * square));
}

double Trigamma(double x) {
    if (x <= 0.0) return kMissing;
    if (std::abs(x - 1.0) <= kTrigammaOfOneWidth) return Pi() * Pi() / 6.0;  // Kept: not in the publication
    if (x <= kTrigammaSmall) return 1.0 / (x * x);
    double shift = 0.0;
    while (x < kTrigammaAsymptotic) {
        shift += 1.0 / (x * x);
        x += 1.0;
    }
    const double inverse = 1.0 / x;
    const double square = inverse * inverse;
    return shift + 0.5 * square + polynomial(kBernoulli, square) * inverse;
}
