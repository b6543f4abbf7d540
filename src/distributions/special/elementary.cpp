// Small functions: a polynomial, the inverse hyperbolic tangent, the zeta function's partial sums, the
// continued fraction of the incomplete beta function, and Pade coefficients.

#include <algorithm>
#include <array>
#include <cmath>

#include "numcore/markers.hpp"
#include "numcore/special.h"
#include "numcore/special.hpp"

namespace {

using numcore::kMissing;
using numcore::kOverflow;

constexpr int kMaxFractionSteps = 100;
constexpr double kFractionTolerance = 3e-7;

constexpr int kTermsOneByOne = 1000;
constexpr double kHalfEpsilon = 0x1p-53;
constexpr int kMaxPadeDegree = 13;

// Sum of n^-s for first < n <= last: the Euler-Maclaurin formula, Abramowitz and Stegun (1964), 23.1.30, which
// is exact to the last digits from first = 1000 on for every s whose terms still matter there.
double sumOfPowers(double s, double first, double last) {
    const auto power = [s](double n) { return std::pow(n, -s); };
    // -f' / 12 + f''' / 720
    const auto slopes = [s, power](double n) {
        return s * power(n) / n * (1.0 / 12.0 - (s + 1.0) * (s + 2.0) / (720.0 * n * n));
    };
    const double integral = first * power(first) * std::expm1((1.0 - s) * std::log(last / first)) / (1.0 - s);
    return integral + 0.5 * (power(last) - power(first)) + (slopes(first) - slopes(last));
}

// The first n whose term changes a sum of that size by no more than tol, or not at all in double precision.
double lastTerm(double s, double tol, double sum) {
    const double smallestChange = std::max(tol, kHalfEpsilon * sum);
    return std::ceil(std::pow(smallestChange, -1.0 / s));
}

}  // namespace

double numcore::Poly(const cST_MVect<double>& coefficients, std::int32_t n, double x) {
    if (n < 1) return 0.0;
    const matrix<double> none;
    const matrix<double>& c = coefficients.columnCount() > 0 ? coefficients.column(0) : none;
    double value = c[n - 1];
    for (std::int32_t power = n - 1; power-- > 0;) value = value * x + c[power];
    return value;
}

double ArctanH(double x) {
    if (x <= -1.0 || x >= 1.0) return kMissing;
    return 0.5 * std::log((1.0 + x) / (1.0 - x));
}

double RiemannZeta(double s, double tol) {
    if (std::isnan(s) || std::isnan(tol)) return s + tol;
    if (s <= 1.0) return kOverflow;
    const double largestLastChange = std::max(tol, 0.0);
    double sum = 1.0;
    for (int n = 2; n <= kTermsOneByOne; ++n) {
        const double before = sum;
        sum += std::pow(n, -s);
        if (sum - before <= largestLastChange) return sum;
    }
    const auto until = [s, sum](double last) {
        return last > kTermsOneByOne ? sum + sumOfPowers(s, kTermsOneByOne, last) : sum;
    };
    // Where tol is below the resolution of the sum, the end depends on the sum a little.
    const double nearly = until(lastTerm(s, tol, sum));
    return until(lastTerm(s, tol, nearly));
}

double Betacf(double x, double a, double b) {
    double value = 1.0;
    double olderNumerator = 1.0;
    double olderDenominator = 1.0;
    double denominator = 1.0 - (a + b) * x / (a + 1.0);
    for (int m = 1; m <= kMaxFractionSteps; ++m) {
        const double shape = a + 2 * m;
        const double even = m * (b - m) * x / ((shape - 1.0) * shape);
        const double odd = -(a + m) * (a + b + m) * x / (shape * (shape + 1.0));
        const double evenNumerator = value + even * olderNumerator;
        const double evenDenominator = denominator + even * olderDenominator;
        const double newest = evenDenominator + odd * denominator;
        const double before = value;
        value = (evenNumerator + odd * value) / newest;
        if (std::abs(value - before) < kFractionTolerance * std::abs(value)) return value;
        olderNumerator = evenNumerator / newest;
        olderDenominator = evenDenominator / newest;
        denominator = 1.0;
    }
    return 0.0;  // Kept: no convergence
}

int32_t GetPadeCoefficients(int32_t degree, double* coefficients) {
    if (degree < 1 || degree > kMaxPadeDegree || coefficients == nullptr) return 0;
    int64_t coefficient = 1;
    for (int32_t power = degree; power > 0; --power) {
        coefficients[power] = static_cast<double>(coefficient);
        coefficient = coefficient * (2 * degree - power + 1) * power / (degree - power + 1);
    }
    coefficients[0] = static_cast<double>(coefficient);
    return degree + 1;
}
