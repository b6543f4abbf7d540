// Series and continued fractions of NIST DLMF 8.11.4 and 8.9.2 (gamma), and equation (9) of Didonato, A. R. and
// Morris, A. H. (1992), ACM Trans. Math. Softw. 18:360-373 (beta).

#include "distributions/laws/central_ratios.hpp"

#include <cmath>
#include <limits>

#include "distributions/laws/noncentral_terms.hpp"
#include "distributions/special/beta_ratio.hpp"
#include "distributions/special/continued_fraction.hpp"
#include "suite/basecore.hpp"

namespace numcore::distributions {
namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
constexpr int kMaxSteps = 20000;
constexpr double kEuler = 0.57721566490153286061;
constexpr double kSmallShape = 0.5;     // of the upper gamma ratio, below which 1 - P cancels
constexpr double kSmallArgument = 0.5;  // below which its continued fraction is slow

// ln Gamma(1 + a) with relative accuracy: what 1 + a loses comes back through the slope at 1.
double logGammaOnePlus(double a) {
    const double rounded = 1.0 + a;
    const double lost = a - (rounded - 1.0);
    return basecore::GammaLn(rounded) - kEuler * lost;
}

// Q(a, y) e^y y^-a Gamma(a + 1), y not small against a.
double gammaUpperFraction(double a, double y) {
    Convergents convergents(a, y + 1.0 - a);
    for (int n = 1; n < kMaxSteps; ++n)
        if (convergents.advance(n * (a - n), y + (2 * n + 1) - a, kEpsilon)) break;
    return convergents.value();
}

// The same for small a and y, where 1 - P cancels: with P = e^c (1 + a s) both parts of 1 - P are small.
double gammaUpperNearZero(double a, double y) {
    const double c = a * std::log(y) - logGammaOnePlus(a);
    double power = 1.0;
    double s = 0.0;
    for (int n = 1; n < kMaxSteps; ++n) {
        power *= -y / n;
        const double term = power / (a + n);
        s += term;
        if (std::abs(term) <= kEpsilon * std::abs(s)) break;
    }
    return (-std::expm1(c) - std::exp(c) * a * s) * std::exp(y - c);
}

// I_x(a, b) over its unit, x below the mean.
double betaFraction(double a, double b, double x, double y) {
    const double lambda = a * y - b * x;
    double inverse = 1.0 / (a + 1.0);  // of a + 2 n + 1
    Convergents convergents(a, a * inverse * (lambda + 1.0));
    for (int n = 1; n < kMaxSteps; ++n) {
        const double growth = n * (b - n) * x * inverse;
        const double alpha = (a + (n - 1)) * inverse * (a + b + (n - 1)) * growth * x;
        inverse = 1.0 / (a + (2 * n + 1));
        const double beta = n + growth + (a + n) * inverse * (lambda + 1.0 + n * (1.0 + y));
        if (convergents.advance(alpha, beta, kEpsilon)) break;
    }
    return convergents.value();
}

// Below the mean, and not where the small leading argument makes it slow.
bool fractionConverges(double a, double b, double x, double y) {
    return a * y - b * x > -y && a * y >= kSmallArgument;
}

}  // namespace

double gammaLowerRatio(double a, double y) {
    double term = 1.0;
    double sum = 1.0;
    for (int n = 1; n < kMaxSteps; ++n) {
        term *= y / (a + n);
        sum += term;
        if (term <= kEpsilon * sum) break;
    }
    return sum;
}

double gammaUpperRatio(double a, double y) {
    if (y >= a && y >= kSmallArgument) return gammaUpperFraction(a, y);
    if (a < kSmallShape && y < kSmallArgument) return gammaUpperNearZero(a, y);
    return std::exp(-logPoissonTerm(a, y)) - gammaLowerRatio(a, y);
}

double logBetaUnit(double a, double b, double x, double y) {
    return logBinomialTerm(a, b, x, y) + std::log(b / (a + b));
}

double betaLowerRatio(double a, double b, double x, double y) {
    if (fractionConverges(a, b, x, y)) return betaFraction(a, b, x, y);
    return betaRatio(a, b, x, y).lower * std::exp(-logBetaUnit(a, b, x, y));
}

double betaUpperRatio(double a, double b, double x, double y) {
    if (fractionConverges(b, a, y, x)) return a / b * betaFraction(b, a, y, x);
    return betaRatio(a, b, x, y).upper * std::exp(-logBetaUnit(a, b, x, y));
}

}  // namespace numcore::distributions
