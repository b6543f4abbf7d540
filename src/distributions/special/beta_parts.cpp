#include "distributions/special/beta_parts.hpp"

#include <algorithm>
#include <cmath>

#include "distributions/special/continued_fraction.hpp"
#include "distributions/special/polynomial.hpp"

namespace numcore::distributions::beta_parts {
namespace {

// Lowest power first, constant terms of 1 included.
constexpr std::array<double, 4> kLogNumerator = {1.0, -0.129418923021993e+01, 0.405303492862024e+00,
                                                 -0.178874546012214e-01};
constexpr std::array<double, 4> kLogDenominator = {1.0, -0.162752256355323e+01, 0.747811014037616e+00,
                                                   -0.845104217945565e-01};
constexpr std::array<double, 3> kExpNumerator = {1.0, 0.914041914819518e-09, 0.238082361044469e-01};
constexpr std::array<double, 5> kExpDenominator = {1.0, -0.499999999085958e+00, 0.107141568980644e+00,
                                                   -0.119041179760821e-01, 0.595130811860248e-03};
constexpr std::array<double, 3> kRemainderNumerator = {0.333333333333333e+00, -0.224696413112536e+00,
                                                       0.620886815375787e-02};
constexpr std::array<double, 3> kRemainderDenominator = {1.0, -0.127408923933623e+01, 0.354508718369557e+00};
constexpr double kRemainderAtLow = 0.566749439387324e-01;   // x - ln(1 + x) at -0.3
constexpr double kRemainderAtHigh = 0.456512608815524e-01;  // and at 1/3
constexpr double kLogRationalEnd = 0.375;
constexpr double kExpRationalEnd = 0.15;
constexpr double kRemainderStart = -0.39;
constexpr double kRemainderEnd = 0.57;
constexpr double kRemainderLow = -0.18;
constexpr double kRemainderHigh = 0.18;

constexpr std::array<double, 5> kErfNumerator = {0.128379167095513e+00, 0.479137145607681e-01,
                                                 0.323076579225834e-01, -0.133733772997339e-02,
                                                 0.771058495001320e-04};
constexpr std::array<double, 4> kErfDenominator = {1.0, 0.375795757275549e+00, 0.538971687740286e-01,
                                                   0.301048631703895e-02};
constexpr std::array<double, 8> kErfcNumerator = {
    3.00459261020162e+02, 4.51918953711873e+02, 3.39320816734344e+02, 1.52989285046940e+02,
    4.31622272220567e+01, 7.21175825088309e+00, 5.64195517478974e-01, -1.36864857382717e-07};
constexpr std::array<double, 8> kErfcDenominator = {
    3.00459260956983e+02, 7.90950925327898e+02, 9.31354094850610e+02, 6.38980264465631e+02,
    2.77585444743988e+02, 7.70001529352295e+01, 1.27827273196294e+01, 1.00000000000000e+00};
constexpr std::array<double, 5> kErfcTailNumerator = {2.82094791773523e-01, 4.65807828718470e+00,
                                                      2.13688200555087e+01, 2.62370141675169e+01,
                                                      2.10144126479064e+00};
constexpr std::array<double, 5> kErfcTailDenominator = {1.0, 1.80124575948747e+01, 9.90191814623914e+01,
                                                        1.87114811799590e+02, 9.41537750555460e+01};
constexpr double kInverseRootPi = 0.564189583547756;
constexpr double kErfcSmallEnd = 0.5;
constexpr double kErfcMiddleEnd = 4.0;

constexpr std::array<double, 7> kPsiNumerator = {
    0.130560269827897e+04, 0.413810161269013e+04, 0.363351846806499e+04, 0.118645200713425e+04,
    0.142441585084029e+03, 0.477762828042627e+01, 0.895385022981970e-02};
constexpr std::array<double, 7> kPsiDenominator = {0.691091682714533e-05,
                                                   0.190831076596300e+04,
                                                   0.364127349079381e+04,
                                                   0.221000799247830e+04,
                                                   0.520752771467162e+03,
                                                   0.448452573429826e+02,
                                                   1.0};
constexpr std::array<double, 5> kPsiTailNumerator = {0.0, -0.648157123766197e+00, -0.448616543918019e+01,
                                                     -0.701677227766759e+01, -0.212940445131011e+01};
constexpr std::array<double, 5> kPsiTailDenominator = {0.777788548522962e+01, 0.546117738103215e+02,
                                                       0.892920700481861e+02, 0.322703493791143e+02, 1.0};
constexpr double kPsiZero = 1.461632144968362341262659542325721325e0;
constexpr double kQuarterPi = 0.785398163397448e0;
constexpr double kPsiNegligible = 1e-9;
constexpr double kPsiLow = 0.5;
constexpr double kPsiHigh = 3.0;

constexpr std::array<double, 7> kGammaNumerator = {
    0.577215664901533e+00, -0.409078193005776e+00, -0.230975380857675e+00, 0.597275330452234e-01,
    0.766968181649490e-02, -0.514889771323592e-02, 0.589597428611429e-03};
constexpr std::array<double, 5> kGammaDenominator = {0.100000000000000e+01, 0.427569613095214e+00,
                                                     0.158451672430138e+00, 0.261132021441447e-01,
                                                     0.423244297896961e-02};
constexpr std::array<double, 9> kGammaLowNumerator = {
    -0.422784335098468e+00, -0.771330383816272e+00, -0.244757765222226e+00,
    0.118378989872749e+00,  0.930357293360349e-03,  -0.118290993445146e-01,
    0.223047661158249e-02,  0.266505979058923e-03,  -0.132674909766242e-03};
constexpr std::array<double, 3> kGammaLowDenominator = {1.0, 0.273076135303957e+00, 0.559398236957378e-01};

constexpr std::array<double, 6> kStirling = {0.833333333333333e-01, -0.277777777760991e-02,
                                             0.793650666825390e-03, -0.595202931351870e-03,
                                             0.837308034031215e-03, -0.165322962780713e-02};

constexpr double kGammaFractionStart = 1.1;
constexpr double kGammaSmallPoint = 0.25;
constexpr double kGammaRatio = 2.59;
constexpr double kGammaSmallPower = -0.13394;
constexpr double kGammaTolerance = 0.1 * kEpsilon;
constexpr int kMaxGammaSteps = 1000;  // below 100 are taken

double expMinusOne(double x) {
    if (std::abs(x) <= kExpRationalEnd)
        return x * (polynomial(kExpNumerator, x) / polynomial(kExpDenominator, x));
    const double power = std::exp(x);
    return x > 0.0 ? power * (0.5 + (0.5 - 1.0 / power)) : (power - 0.5) - 0.5;
}

// h - ln(1 + h) for h next to 0, from ln(1 + h) = 2 artanh(h / (h + 2)).
double remainderNearZero(double h) {
    const double r = h / (h + 2.0);
    const double t = r * r;
    const double w = polynomial(kRemainderNumerator, t) / polynomial(kRemainderDenominator, t);
    return t * (h + 2.0 - 2.0 * r * w);
}

// Delta(b) - Delta(a + b), b >= 8, with ratio b / (a + b) and its complement.
double correctionDifference(double b, double ratio, double complement) {
    const double square = ratio * ratio;
    const double t = 1.0 / (b * b);
    double geometric = 1.0;  // (1 - ratio^(2 k + 1)) / (1 - ratio)
    double power = 1.0;
    double sum = kStirling[0];
    for (std::size_t k = 1; k < kStirling.size(); ++k) {
        geometric = 1.0 + (ratio + square * geometric);
        power *= t;
        sum += kStirling[k] * power * geometric;
    }
    return sum * complement / b;
}

// 1 - Gamma(a + 1) x^-a P(a, x), the alternating series of P.
double lowerSeriesDefect(double a, double x) {
    const double tolerance = kGammaTolerance / (a + 1.0);
    double power = x;
    double sum = x / (a + 3.0);
    for (int n = 4; n < kMaxGammaSteps; ++n) {
        const double shape = a + n;
        const double inverse = 1.0 / (n * shape);  // the only division of a step
        power *= -x * (shape * inverse);
        const double term = power * (n * inverse);
        sum += term;
        if (std::abs(term) <= tolerance) break;
    }
    return a * x * ((sum / 6.0 - 0.5 / (a + 2.0)) * x + 1.0 / (a + 1.0));
}

// The even part of Legendre's fraction of Gamma(a, x) e^x x^-a.
double upperFraction(double a, double x) {
    Convergents fraction(1.0, x + 1.0 - a);
    for (int n = 1; n < kMaxGammaSteps; ++n) {
        if (fraction.advance(-n * (n - a), x + (2 * n + 1) - a, kEpsilon)) break;
    }
    return fraction.value();
}

}  // namespace

double logOnePlus(double x) {
    if (std::abs(x) > kLogRationalEnd) return std::log(1.0 + x);
    const double t = x / (x + 2.0);
    const double square = t * t;
    return 2.0 * t * (polynomial(kLogNumerator, square) / polynomial(kLogDenominator, square));
}

double argumentMinusLogOnePlus(double x) {
    if (x < kRemainderStart || x > kRemainderEnd) return x - std::log((x + 0.5) + 0.5);
    if (x < kRemainderLow) {
        const double h = (x + 0.3) / 0.7;
        return remainderNearZero(h) + (kRemainderAtLow - h * 0.3);
    }
    if (x > kRemainderHigh) {
        const double h = 0.75 * x - 0.25;
        return remainderNearZero(h) + (kRemainderAtHigh + h / 3.0);
    }
    return remainderNearZero(x);
}

double scaledErfc(double x) {
    if (x <= kErfcSmallEnd) {
        const double t = x * x;
        const double erf = x * ((polynomial(kErfNumerator, t) + 1.0) / polynomial(kErfDenominator, t));
        return std::exp(t) * (0.5 + (0.5 - erf));
    }
    if (x <= kErfcMiddleEnd) return polynomial(kErfcNumerator, x) / polynomial(kErfcDenominator, x);
    const double t = 1.0 / (x * x);
    return (kInverseRootPi - t * polynomial(kErfcTailNumerator, t) / polynomial(kErfcTailDenominator, t)) / x;
}

double psi(double x) {
    if (x <= kPsiNegligible) return -1.0 / x;
    if (x < kPsiLow) return psi(1.0 - x) - 4.0 * kQuarterPi / std::tan(4.0 * kQuarterPi * x);
    if (x <= kPsiHigh) {
        return (x - kPsiZero) * (polynomial(kPsiNumerator, x) / polynomial(kPsiDenominator, x));
    }
    const double w = 1.0 / (x * x);
    const double tail = polynomial(kPsiTailNumerator, w) / polynomial(kPsiTailDenominator, w);
    return tail - 0.5 / x + std::log(x);
}

double reciprocalGammaExcess(double x) {
    const bool shifted = x > 0.5;  // 1 / Gamma(1 + x) = 1 / (x Gamma(x)) then
    const double t = shifted ? x - 1.0 : x;
    if (t == 0.0) return 0.0;
    if (t > 0.0) {
        const double w = polynomial(kGammaNumerator, t) / polynomial(kGammaDenominator, t);
        return shifted ? t / x * ((w - 0.5) - 0.5) : x * w;
    }
    const double w = polynomial(kGammaLowNumerator, t) / polynomial(kGammaLowDenominator, t);
    return shifted ? t * w / x : x * ((w + 0.5) + 0.5);
}

double stirlingCorrection(double a) {
    return polynomial(kStirling, 1.0 / (a * a)) / a;
}

double stirlingCorrection(double a, double b) {
    const double smaller = std::min(a, b);
    const double larger = std::max(a, b);
    const double h = smaller / larger;
    const double ratio = 1.0 / (1.0 + h);
    return stirlingCorrection(smaller) + correctionDifference(larger, ratio, h * ratio);
}

double logGammaRatio(double a, double b) {
    const double complement = a > b ? 1.0 / (1.0 + b / a) : (a / b) / (1.0 + a / b);
    const double ratio = a > b ? (b / a) * complement : 1.0 / (1.0 + a / b);
    const double order = a > b ? a + (b - 0.5) : b + (a - 0.5);
    const double correction = correctionDifference(b, ratio, complement);
    const double fromSum = order * logOnePlus(a / b);
    const double fromPower = a * (std::log(b) - 1.0);
    // The larger is taken away last.
    return fromSum > fromPower ? (correction - fromPower) - fromSum : (correction - fromSum) - fromPower;
}

double upperGammaNearZero(double a, double x, double logPower) {
    const double defect = lowerSeriesDefect(a, x);
    const double excess = reciprocalGammaExcess(a);
    const bool nearOne = x < kGammaSmallPoint ? logPower > kGammaSmallPower : a < x / kGammaRatio;
    if (nearOne) {
        const double powerExcess = expMinusOne(logPower);
        const double power = 0.5 + (0.5 + powerExcess);
        return std::max(0.0, (power * defect - powerExcess) * (1.0 + excess) - excess);
    }
    return 0.5 + (0.5 - std::exp(logPower) * (1.0 + excess) * (0.5 + (0.5 - defect)));
}

double scaledUpperGamma(double a, double x) {
    if (a == 0.5) return scaledErfc(std::sqrt(x)) / (kInverseRootPi * std::sqrt(x));
    if (a == 1.0) return 1.0 / x;
    if (x >= kGammaFractionStart) return upperFraction(a, x);
    const double logPower = a * std::log(x);
    const double density = a * (1.0 + reciprocalGammaExcess(a)) * std::exp(logPower - x);
    return upperGammaNearZero(a, x, logPower) / density;
}

}  // namespace numcore::distributions::beta_parts
