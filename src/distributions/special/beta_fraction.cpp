// Continued fraction of the incomplete beta ratio, equation (9) of the publication.
#include <cmath>

#include "distributions/special/beta_parts.hpp"

namespace numcore::distributions::beta_parts {
namespace {

constexpr double kTolerance = 15.0 * kEpsilon;
constexpr double kRescale = 0x1p+200;
constexpr int kMaxSteps = 1000;  // a few dozen suffice in the range of the fraction

}  // namespace

// x^a y^b / B(a, b) over beta_1 + alpha_2 / (beta_2 + alpha_3 / (beta_3 + ...)) with
//   alpha_(n+1) = (a + n - 1)(a + b + n - 1) n (b - n) x^2 / (a + 2 n - 1)^2,
//   beta_(n+1)  = n + n (b - n) x / (a + 2 n - 1) + (a + n)(lambda + 1 + n (1 + y)) / (a + 2 n + 1).
double continuedFraction(const Arguments& at, double lambda) {
    const double factor = powerFactor(at);
    if (factor == 0.0) return 0.0;
    double inverse = 1.0 / (at.a + 1.0);  // of a + 2 n + 1
    // Numerators and denominators are kept at a common scale that starts with a denominator of 1.
    double numerator = 1.0 / (at.a * inverse * (lambda + 1.0));
    double denominator = 1.0;
    double olderNumerator = 0.0;
    double olderDenominator = numerator;
    for (int n = 1; n < kMaxSteps; ++n) {
        const double growth = n * (at.b - n) * at.x * inverse;
        const double alpha = (at.a + (n - 1)) * inverse * (at.a + at.b + (n - 1)) * growth * at.x;
        inverse = 1.0 / (at.a + (2 * n + 1));
        const double beta = n + growth + (at.a + n) * inverse * (lambda + 1.0 + n * (1.0 + at.y));
        const double newNumerator = beta * numerator + alpha * olderNumerator;
        const double newDenominator = beta * denominator + alpha * olderDenominator;
        // The convergents differ by at most the tolerance, without dividing for each.
        const double one = newNumerator * denominator;
        const double other = numerator * newDenominator;
        olderNumerator = numerator;
        olderDenominator = denominator;
        numerator = newNumerator;
        denominator = newDenominator;
        if (std::abs(one - other) <= kTolerance * std::abs(one)) break;
        if (std::abs(denominator) > kRescale) {
            const double scale = 1.0 / denominator;
            olderNumerator *= scale;
            olderDenominator *= scale;
            numerator *= scale;
            denominator = 1.0;
        }
    }
    return factor * (numerator / denominator);
}

}  // namespace numcore::distributions::beta_parts
