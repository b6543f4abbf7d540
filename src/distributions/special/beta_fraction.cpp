// Continued fraction of the incomplete beta ratio, equation (9) of the publication.
#include "distributions/special/beta_parts.hpp"
#include "distributions/special/continued_fraction.hpp"

namespace numcore::distributions::beta_parts {
namespace {

constexpr double kTolerance = 15.0 * kEpsilon;
constexpr int kMaxSteps = 1000;  // a few dozen suffice in the range of the fraction

}  // namespace

// x^a y^b / B(a, b) over beta_1 + alpha_2 / (beta_2 + alpha_3 / (beta_3 + ...)) with
//   alpha_(n+1) = (a + n - 1)(a + b + n - 1) n (b - n) x^2 / (a + 2 n - 1)^2,
//   beta_(n+1)  = n + n (b - n) x / (a + 2 n - 1) + (a + n)(lambda + 1 + n (1 + y)) / (a + 2 n + 1).
double continuedFraction(const Arguments& at, double lambda) {
    const double factor = powerFactor(at);
    if (factor == 0.0) return 0.0;
    double inverse = 1.0 / (at.a + 1.0);  // of a + 2 n + 1
    Convergents fraction(1.0, at.a * inverse * (lambda + 1.0));
    for (int n = 1; n < kMaxSteps; ++n) {
        const double growth = n * (at.b - n) * at.x * inverse;
        const double alpha = (at.a + (n - 1)) * inverse * (at.a + at.b + (n - 1)) * growth * at.x;
        inverse = 1.0 / (at.a + (2 * n + 1));
        const double beta = n + growth + (at.a + n) * inverse * (lambda + 1.0 + n * (1.0 + at.y));
        if (fraction.advance(alpha, beta, kTolerance)) break;
    }
    return factor * fraction.value();
}

}  // namespace numcore::distributions::beta_parts
