// Range of k normal variables by the trapezoidal rule about the mid-range, where its integrands are analytic
// and fall off as exp(-u^2): the rule converges exponentially.
//
// With D(u) = Phi(u + w/2) - Phi(u - w/2): P(range <= w) = k int phi(u + w/2) D^(k - 1) du,
// P(range > w) = k int phi(u + w/2) [Phi(u + w/2)^(k - 1) - D^(k - 1)] du, in positive terms both.

#include "distributions/laws/studentized_range_normal.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include "distributions/laws/normal_tail.hpp"
#include "numcore/special.h"

namespace numcore::distributions {
namespace {

constexpr double kNegligible = 1e-13;
constexpr int kMaxNodes = 1000;

// Steps of the rule that leave an error of 1e-12, measured for k from 2 to 1e5. Below the middle: in units of
// the width of the integrand, at most the step at the middle, 1 / (1 + fall ln k). Above: growing from there.
constexpr double kStepOfWidth = 0.78;
constexpr double kLeastCurvature = 0.1;
constexpr double kStepFall = 1.02;
constexpr double kLogUpperStart = -0.22;  // from where the upper tail, then about 0.1, is integrated for itself
constexpr double kLargestStepGrowth = 0.3;
constexpr double kLargestStep = 0.57;

constexpr double kLargestRange = 60.0;      // beyond, the upper tail is no double
constexpr double kSmallRange = 0.5;         // below, D comes from its series in w
constexpr double kSeriesLimit = 0.05;       // of n x in (1 - x)^n: six terms below, cancellation is mild above
constexpr double kLargestWholePower = 1e9;  // of k, by repeated squaring

constexpr std::array<double, 7> kReciprocals = {0.0, 1.0 / 2, 1.0 / 3, 1.0 / 4, 1.0 / 5, 1.0 / 6, 1.0 / 7};

// P(N > x) by its Taylor series about the nearest multiple of 1/8, for many x a few nanoseconds each. The
// tables hold tail and density at these multiples, from mpmath with 30 digits.
constexpr int kGridPerUnit = 8;
constexpr int kTerms = 13;
constexpr std::array kGridTails = {5.0e-1,
                                   4.50261775169887107e-1,
                                   4.01293674317076276e-1,
                                   3.53830233327276206e-1,
                                   3.08537538725986896e-1,
                                   2.65985529048700532e-1,
                                   2.26627352376868199e-1,
                                   1.90786952852510626e-1,
                                   1.58655253931457051e-1,
                                   1.30294517136808855e-1,
                                   1.05649773666855258e-1,
                                   8.45657223513357199e-2,
                                   6.6807201268858066e-2,
                                   5.20812794152195477e-2,
                                   4.00591568638170904e-2,
                                   3.03963617652613751e-2,
                                   2.27501319481792072e-2,
                                   1.67933064484488126e-2,
                                   1.22244726550447032e-2,
                                   8.77447509573836169e-3,
                                   6.20966532577613517e-3,
                                   4.33244836301255863e-3,
                                   2.97976323505455675e-3,
                                   2.02013748994600168e-3,
                                   1.34989803163009453e-3,
                                   8.89025299108432059e-4,
                                   5.77025042390767043e-4,
                                   3.69078454275067309e-4,
                                   2.32629079035525036e-4,
                                   1.44480725881235767e-4,
                                   8.84172852008038678e-5,
                                   5.33123497510963451e-5,
                                   3.16712418331199213e-5,
                                   1.85367378462019931e-5,
                                   1.06885257749344205e-5,
                                   6.07162391133059891e-6,
                                   3.3976731247300604e-6,
                                   1.87299200555670949e-6,
                                   1.01708324256870317e-6,
                                   5.44042275574916321e-7,
                                   2.86651571879193912e-7,
                                   1.48768873187766285e-7,
                                   7.60496051648871425e-8,
                                   3.82913410612442842e-8,
                                   1.89895624658877194e-8,
                                   9.2753987345608214e-9,
                                   4.46217245390161187e-9,
                                   2.1142167424408471e-9,
                                   9.86587645037698141e-10,
                                   4.53418032669528449e-10,
                                   2.05226342521893888e-10,
                                   9.14814758360861017e-11,
                                   4.01600058385911781e-11,
                                   1.73624089535205688e-11,
                                   7.39225777801782242e-12,
                                   3.09949295175721543e-12,
                                   1.279812543885835e-12,
                                   5.20403440031678149e-13,
                                   2.08385815867206943e-13,
                                   8.21725260758433725e-14,
                                   3.19089167291089623e-14,
                                   1.22017193178992348e-14,
                                   4.59462743577859546e-15,
                                   1.70371429163287321e-15,
                                   6.22096057427178412e-16,
                                   2.23681206444410505e-16,
                                   7.91972631464247734e-17,
                                   2.76119359072526162e-17,
                                   9.47953482220331835e-18,
                                   3.20463272702075966e-18,
                                   1.0667637375474858e-18,
                                   3.49667069821390078e-19,
                                   1.12858840595384065e-19,
                                   3.58681293664972839e-20,
                                   1.12246335913279827e-20,
                                   3.45878848723358004e-21,
                                   1.04945150753626075e-21,
                                   3.1353462318874764e-22,
                                   9.22341352493941815e-23,
                                   2.67164802875322482e-23,
                                   7.61985302416052607e-24,
                                   2.13989367371962899e-24,
                                   5.91717690736561785e-25,
                                   1.61106191843575632e-25,
                                   4.31900631780923035e-26,
                                   1.14006084628039117e-26,
                                   2.96308087809435859e-27,
                                   7.58278961226325162e-28,
                                   1.91065957449867571e-28,
                                   4.74029371947159794e-29,
                                   1.15796031856864177e-29,
                                   2.78514290079370655e-30,
                                   6.59577144611367508e-31,
                                   1.53796688298452606e-31,
                                   3.53094239588599326e-32,
                                   7.98170305928774874e-33,
                                   1.776482112077679e-33,
                                   3.89301008074042079e-34,
                                   8.39979606363341766e-35,
                                   1.78447148587279679e-35,
                                   3.73256429887771338e-36,
                                   7.68707252947017561e-37,
                                   1.55872628888119921e-37,
                                   3.11195399890873611e-38,
                                   6.11716439954987968e-39};
constexpr std::array kGridDensities = {
    3.98942280401432678e-1,  3.95837686944749484e-1,  3.86668116802849207e-1,  3.71855093869768911e-1,
    3.52065326764299478e-1,  3.28160968550375034e-1,  3.01137432154804405e-1,  2.72054998378543504e-1,
    2.4197072451914335e-1,   2.11876645775699463e-1,  1.82649085389021905e-1,  1.55012265458293197e-1,
    1.29517595665891728e-1,  1.06538268130585063e-1,  8.62773188265115144e-2,  6.8786275826691898e-2,
    5.3990966513188052e-2,   4.1720985256338606e-2,   3.17396518356674157e-2,  2.37719008299138029e-2,
    1.75283004935685374e-2,  1.27241815968314318e-2,  9.09356250159105277e-3,  6.39812031072355616e-3,
    4.43184841193800718e-3,  3.0222580351987561e-3,   2.02904805729976779e-3,  1.34111887349037763e-3,
    8.72682695045760066e-4,  5.59061522232164819e-4,  3.5259568236744539e-4,   2.18931637764612097e-4,
    1.33830225764885352e-4,  8.0540448555594136e-5,   4.77186365412049454e-5,  2.78340342292148776e-5,
    1.59837411069054744e-5,  9.03638788905137213e-6,  5.02950728859244535e-6,  2.75594259754997194e-6,
    1.48671951473429771e-6,  7.8959077406939935e-7,   4.12847098862999837e-7,  2.125154738310288e-7,
    1.07697600425432764e-7,  5.37323265056914993e-8,  2.63924320357057333e-8,  1.27625462035364406e-8,
    6.07588284982328549e-9,  2.8477089782968211e-9,   1.31400181815588389e-9,  5.96912229143432195e-10,
    2.66955661476285192e-10, 1.17538986990502974e-10, 5.09493795884368332e-11, 2.17425263571896668e-11,
    9.13472040836459334e-12, 3.77828454566408983e-12, 1.53853795056127503e-12, 6.1678799685380572e-13,
    2.43432053302900983e-13, 9.45875028078652176e-14, 3.6182944511125172e-14,  1.36266217597700495e-14,
    5.05227108353689229e-15, 1.84416271541666933e-15, 6.62713745596875154e-16, 2.34458978470431197e-16,
    8.16623563166955004e-17, 2.80021317355065073e-17, 9.45310388190285247e-18, 3.14175210866486656e-18,
    1.02797735716689148e-18, 3.31138236018879076e-19, 1.05014498299703697e-19, 3.27871253878143696e-20,
    1.00779353943000099e-20, 3.04967772063353056e-21, 9.08553431197666473e-22, 2.66477869438827194e-22,
    7.69459862670641935e-23, 2.18738355461856131e-23, 6.12178486524712121e-24, 1.68672908127047704e-24,
    4.57537559052080527e-25, 1.22186244829839546e-25, 3.21241787162143998e-26, 8.31487831077956746e-27,
    2.11881925350935355e-27, 5.31552386602179303e-28, 1.31284176061540287e-28, 3.19222020463522134e-29,
    7.64165541158720334e-30, 1.80092740391477321e-30, 4.17848754454264562e-31, 9.54456557328790964e-32,
    2.14638373566306035e-32, 4.75195938738845667e-33, 1.03574350962083501e-33, 2.22252098091454571e-34,
    4.695195357975146e-35,   9.76507568150727381e-36, 1.99945534221854511e-36, 4.03052809201181598e-37,
    7.9988277570068115e-38};
constexpr int kGridSize = static_cast<int>(kGridTails.size());

// Coefficients of d^m: the tail, then -phi(x) (-1)^(m - 1) He_(m - 1)(x) / m!.
constexpr auto kTaylor = [] {
    std::array<std::array<double, kTerms>, kGridTails.size()> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const double x = static_cast<double>(i) / kGridPerUnit;
        double hermite = 1.0;
        double older = 0.0;
        double scale = -kGridDensities[i];
        table[i][0] = kGridTails[i];
        for (std::size_t m = 1; m < kTerms; ++m) {
            scale /= static_cast<double>(m);
            table[i][m] = scale * hermite;
            scale = -scale;
            const double next = x * hermite - static_cast<double>(m - 1) * older;
            older = hermite;
            hermite = next;
        }
    }
    return table;
}();

double positiveUpperTail(double x) {
    // Either neighbour of a half does.
    const int i = static_cast<int>(x * kGridPerUnit + 0.5);  // NOLINT(bugprone-incorrect-roundings)
    if (i >= kGridSize) return normalUpperTail(x);
    const auto& c = kTaylor[static_cast<std::size_t>(i)];
    const double d = x - static_cast<double>(i) / kGridPerUnit;
    // Two interleaved Horner sums.
    const double d2 = d * d;
    double even = c[12];
    double odd = c[11];
    for (std::size_t m = 10; m > 0; m -= 2) {
        even = even * d2 + c[m];
        odd = odd * d2 + c[m - 1];
    }
    return (even * d2 + c[0]) + odd * d;
}

double upperTail(double x) {
    return x >= 0.0 ? positiveUpperTail(x) : 1.0 - positiveUpperTail(-x);
}

// base^exponent for a whole exponent >= 0.
double wholePower(double base, unsigned exponent) {
    double result = 1.0;
    for (; exponent != 0; exponent >>= 1) {
        if ((exponent & 1U) != 0) result *= base;
        base *= base;
    }
    return result;
}

// D(u) / phi(u) for small w: 2 sum He_2m(u) (w/2)^(2m + 1) / (2m + 1)!
double smallDifference(double u, double w) {
    const double half = 0.5 * w;
    double hermite = 1.0;
    double older = 0.0;
    double scale = half;
    double sum = scale;
    for (int m = 1; m < 60; ++m) {
        const double next = u * hermite - (m - 1) * older;
        older = hermite;
        hermite = next;
        scale *= half / (m + 1);
        if (m % 2 != 0) continue;
        const double term = scale * hermite;
        sum += term;
        if (std::abs(term) < 1e-17 * sum && m > 8) break;
    }
    return 2.0 * sum;
}

// base^n - low^n, given both powers and reduction = base - low; by the binomial series where they nearly agree.
double powerDifference(double basePower, double lowPower, double reduction, double base, double n) {
    if (!(n * reduction < kSeriesLimit * base)) return basePower - lowPower;
    const double x = reduction / base;
    double sum = 1.0;
    for (int m = 6; m > 0; --m) sum = 1.0 - (n - m) * x * kReciprocals[static_cast<std::size_t>(m)] * sum;
    return basePower * n * x * sum;
}

// exp(-(i step)^2 / 2) for i = 0, 1, ... by multiplication.
class Bell {
  public:
    explicit Bell(double step) : ratio_(std::exp(-0.5 * step * step)), change_(ratio_ * ratio_) {}

    double value() const { return value_; }
    void advance() {
        value_ *= ratio_;
        ratio_ *= change_;
    }

  private:
    double value_ = 1.0;
    double ratio_;
    double change_;
};

}  // namespace

NormalRange::NormalRange(double k)
    : k_(k),
      whole_(k <= kLargestWholePower && k == std::floor(k)),
      // The k-th root of 1/2 is the median of the largest of k uniform variables.
      middle_(2.0 * InvCDFNormalStd(std::exp2(-1.0 / k))),
      upperStart_(2.0 * InvCDFNormalStd(std::exp(kLogUpperStart / k))),
      middleStep_(1.0 / (1.0 + kStepFall * std::log(k))) {}

double NormalRange::power(double base, double exponent) const {
    if (whole_) return wholePower(base, static_cast<unsigned>(exponent));
    return std::pow(base, exponent);
}

std::array<double, 3> NormalRange::powers(std::array<double, 3> bases) const {
    const double n = k_ - 1.0;
    if (!whole_) return {std::pow(bases[0], n), std::pow(bases[1], n), std::pow(bases[2], n)};
    // Side by side, so that the products overlap.
    std::array<double, 3> result = {1.0, 1.0, 1.0};
    for (auto exponent = static_cast<unsigned>(n); exponent != 0; exponent >>= 1) {
        if ((exponent & 1U) != 0)
            for (std::size_t i = 0; i < 3; ++i) result[i] *= bases[i];
        for (std::size_t i = 0; i < 3; ++i) bases[i] *= bases[i];
    }
    return result;
}

RangeTails NormalRange::lowerPart(double w) const {
    const double half = 0.5 * w;
    const double edge = std::exp(-0.5 * half * half);
    // The curvature of the logarithm of the integrand at 0.
    const double centre = w < kSmallRange ? w * kInverseSqrt2Pi : 1.0 - 2.0 * positiveUpperTail(half);
    const double curvature = 1.0 - half * half + (k_ - 1.0) * w * edge * kInverseSqrt2Pi / centre;
    const double width = 1.0 / std::sqrt(std::max(curvature, kLeastCurvature));
    const double step = std::min(kStepOfWidth * width, middleStep_);
    const double rise = std::exp(half * step);
    const double growth = rise + 1.0 / rise;
    Bell bells(step);
    double cosh = 1.0;  // of u w / 2, by its recurrence
    double older = 0.5 * growth;
    double sum = 0.0;
    double densitySum = 0.0;
    for (int i = 0; i < kMaxNodes; ++i, bells.advance()) {
        const double u = i * step;
        const double bell = bells.value();
        double difference = 0.0;
        if (w < kSmallRange) {
            difference = smallDifference(u, w) * bell * kInverseSqrt2Pi;
        } else if (u > half) {
            difference = positiveUpperTail(u - half) - positiveUpperTail(u + half);
        } else {
            difference = 1.0 - positiveUpperTail(half - u) - positiveUpperTail(u + half);
        }
        const double share = i == 0 ? 0.5 : 1.0;
        const double powered = power(difference, k_ - 2.0) * share * bell;
        const double term = powered * difference * cosh;
        sum += term;
        densitySum += powered * bell;
        if (term <= kNegligible * sum && u > half) break;
        const double next = growth * cosh - older;
        older = cosh;
        cosh = next;
    }
    const double lower = std::min(2.0 * k_ * step * kInverseSqrt2Pi * edge * sum, 1.0);
    const double density =
        2.0 * k_ * (k_ - 1.0) * step * kInverseSqrt2Pi * kInverseSqrt2Pi * edge * edge * densitySum;
    return {lower, 1.0 - lower, density};
}

RangeTails NormalRange::upperPart(double w, bool withDensity) const {
    const double half = 0.5 * w;
    const double edge = std::exp(-0.5 * half * half);
    const double stepGrowth = std::clamp(0.16 * (std::log(k_) - 0.9), 0.0, kLargestStepGrowth);
    const double step = std::min(middleStep_ * (1.0 + stepGrowth * (w / middle_ - 1.0)), kLargestStep);
    const double growth = std::exp(half * step);
    const double decay = 1.0 / growth;
    Bell bells(step);
    double sum = 0.0;
    double densitySum = 0.0;
    double rise = 1.0;  // exp(u w / 2) and its inverse
    double fall = 1.0;
    for (int i = 0; i < kMaxNodes; ++i, rise *= growth, fall *= decay, bells.advance()) {
        const double u = i * step;
        const double bell = bells.value();
        const double near = upperTail(half - u);
        const double far = positiveUpperTail(half + u);
        const double share = i == 0 ? 0.5 : 1.0;
        // Phi(u + w/2), Phi(w/2 - u) and their common D.
        const double right = 1.0 - far;
        const double left = 1.0 - near;
        const double difference = right - near;
        const auto [rightPower, leftPower, lowPower] = powers({right, left, difference});
        const double rightTerm = powerDifference(rightPower, lowPower, near, right, k_ - 1.0) * fall;
        const double leftTerm = powerDifference(leftPower, lowPower, far, left, k_ - 1.0) * rise;
        const double term = (rightTerm + leftTerm) * bell * share;
        sum += term;
        if (withDensity) densitySum += power(difference, k_ - 2.0) * bell * bell * share;
        if (term <= kNegligible * sum) break;
    }
    const double upper = std::min(k_ * step * kInverseSqrt2Pi * edge * sum, 1.0);
    const double density =
        2.0 * k_ * (k_ - 1.0) * step * kInverseSqrt2Pi * kInverseSqrt2Pi * edge * edge * densitySum;
    return {1.0 - upper, upper, density};
}

RangeTails NormalRange::at(double w, bool withDensity) const {
    if (!(w > 0.0)) return {0.0, 1.0, 0.0};
    if (w > kLargestRange) return {1.0, 0.0, 0.0};
    return w < upperStart_ ? lowerPart(w) : upperPart(w, withDensity);
}

}  // namespace numcore::distributions
