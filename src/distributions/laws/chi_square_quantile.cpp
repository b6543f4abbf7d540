#include "distributions/laws/chi_square_quantile.hpp"

#include <array>
#include <cmath>
#include <numbers>

#include "distributions/special/incomplete_gamma.hpp"
#include "distributions/special/polynomial.hpp"
#include "numcore/special.h"
#include "suite/basecore.hpp"

namespace numcore::distributions {
namespace {

// Starting values.
constexpr double kFarBelowFactor = 1.24;
constexpr double kFewDegrees = 0.32;
constexpr double kFewDegreesStart = 0.4;
constexpr double kFewDegreesTolerance = 0.01;
constexpr int kMaxFewDegreesSteps = 1000;  // some dozen suffice
constexpr double kTwoNinths = 0.222222;
constexpr double kFarAboveFactor = 2.2;
constexpr double kFarAboveOffset = 6.0;

// Tail area by a ratio of polynomials, and the logarithmic slopes of its parts.
constexpr std::array<double, 3> kNumerator = {1.0, 4.67, 1.0};
constexpr std::array<double, 2> kNumeratorSlope = {4.67, 2.0};
constexpr std::array<double, 4> kDenominator = {0.0, 6.73, 6.66, 1.0};
constexpr std::array<double, 3> kDenominatorSlope = {6.73, 13.32, 3.0};

// Taylor terms by power of a; those with C are multiplied by c, and the last is by power of c.
constexpr std::array<double, 6> kFirst = {210, 140, 105, 84, 70, 60};
constexpr double kFirstDivisor = 420;
constexpr std::array<double, 5> kSecond = {420, 735, 966, 1141, 1278};
constexpr std::array<double, 4> kThird = {210, 462, 707, 932};
constexpr double kMiddleDivisor = 2520;
constexpr std::array<double, 3> kFourth = {252, 672, 1182};
constexpr std::array<double, 3> kFourthC = {294, 889, 1740};
constexpr double kLastDivisor = 5040;
constexpr std::array<double, 2> kFifth = {84, 264};
constexpr std::array<double, 2> kFifthC = {175, 606};
constexpr std::array<double, 3> kSixthC = {120, 346, 127};

bool isLargeChange(double from, double to) {
    return std::abs(from / to - 1.0) > kLargeChange;
}

}  // namespace

ChiSquareEquation::ChiSquareEquation(double p, double nu)
    : p_(p),
      nu_(nu),
      shape_(0.5 * nu),
      power_(0.5 * nu - 1.0),
      logGamma_(basecore::GammaLn(0.5 * nu)),
      logFactor_(logGamma_ + 0.5 * nu * std::numbers::ln2) {}

bool ChiSquareEquation::isFarBelow() const {
    return nu_ < -kFarBelowFactor * std::log(p_);
}

double ChiSquareEquation::farBelowStart() const {
    return std::pow(p_ * shape_ * std::exp(logFactor_), 1.0 / shape_);
}

double ChiSquareEquation::start() const {
    return nu_ <= kFewDegrees ? fewDegreesStart() : wilsonHilfertyStart();
}

// Newton's iteration on the logarithm of the tail area.
double ChiSquareEquation::fewDegreesStart() const {
    const double logTail = std::log(1.0 - p_);
    double x = kFewDegreesStart;
    for (int step = 0; step < kMaxFewDegreesSteps; ++step) {
        const double before = x;
        const double numerator = polynomial(kNumerator, x);
        const double denominator = polynomial(kDenominator, x);
        const double slope =
            -0.5 + polynomial(kNumeratorSlope, x) / numerator - polynomial(kDenominatorSlope, x) / denominator;
        const double excess =
            1.0 - std::exp(logTail + logFactor_ - std::numbers::ln2 + 0.5 * x) * denominator / numerator;
        x -= excess / slope;
        if (!(std::abs(before / x - 1.0) > kFewDegreesTolerance)) break;
    }
    return x;
}

// The cube root is nearly normal; far above, the leading term of the tail area takes over.
double ChiSquareEquation::wilsonHilfertyStart() const {
    const double variance = kTwoNinths / nu_;
    const double root = InvCDFNormalStd(p_) * std::sqrt(variance) + 1.0 - variance;
    const double x = nu_ * root * root * root;
    if (!(x > kFarAboveFactor * nu_ + kFarAboveOffset)) return x;
    return -2.0 * (std::log(1.0 - p_) - power_ * std::log(0.5 * x) + logGamma_);
}

double ChiSquareEquation::corrected(double x) const {
    const double missing = p_ - incompleteGamma(0.5 * x, shape_);
    const double t = missing * std::exp(logFactor_ + 0.5 * x - power_ * std::log(x));
    const double b = t / x;
    const double a = 0.5 * t - b * power_;
    const double c = power_;
    const double s1 = polynomial(kFirst, a) / kFirstDivisor;
    const double s2 = polynomial(kSecond, a) / kMiddleDivisor;
    const double s3 = polynomial(kThird, a) / kMiddleDivisor;
    const double s4 = (polynomial(kFourth, a) + c * polynomial(kFourthC, a)) / kLastDivisor;
    const double s5 = (polynomial(kFifth, a) + c * polynomial(kFifthC, a)) / kMiddleDivisor;
    const double s6 = polynomial(kSixthC, c) / kLastDivisor;
    const double tail = s1 - b * (s2 - b * (s3 - b * (s4 - b * (s5 - b * s6))));
    return x + t * (1.0 + 0.5 * t * s1 - b * c * tail);
}

double chiSquareRoot(const ChiSquareEquation& equation, double start) {
    double x = start;
    // A value is compared with one that stays for a while, each time twice as long (Brent's search for cycles).
    double anchor = x;
    int sinceAnchor = 0;
    int patience = 1;
    for (int left = kMaxCorrections; left > 0;) {
        const double before = x;
        x = equation.corrected(before);
        --left;
        if (isLargeChange(before, x) || x == before || std::isnan(x)) return x;
        ++sinceAnchor;
        if (x == anchor) left %= sinceAnchor;
        if (sinceAnchor == patience) {
            anchor = x;
            sinceAnchor = 0;
            patience *= 2;
        }
    }
    return x;
}

}  // namespace numcore::distributions
