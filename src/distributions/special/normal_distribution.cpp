// Standard normal density and distribution function.
// Cody, W. J. (1969), Rational Chebyshev approximations for the error function, Math. Comp. 23:631-637.

#include <array>
#include <cmath>

#include "distributions/special/polynomial.hpp"
#include "numcore/special.h"

namespace {

using numcore::distributions::polynomial;

// By power of z^2, |z| and 1 / z^2; denominators end with their leading 1.
constexpr std::array<double, 5> kCentralNumerator = {1.8154981253343561249e04, 1.0676894854603709582e03,
                                                     1.6102823106855587881e02, 2.2352520354606839287e00,
                                                     6.5682337918207449113e-2};
constexpr std::array<double, 5> kCentralDenominator = {4.5507789335026729956e04, 1.0260932208618978205e04,
                                                       9.7609855173777669322e02, 4.7202581904688241870e01, 1.0};
constexpr std::array<double, 9> kMiddleNumerator = {
    9.8427148383839780218e03, 1.1602651437647350124e04, 6.8481904505362823326e03,
    2.4945375852903726711e03, 5.9727027639480026226e02, 9.3506656132177855979e01,
    8.8831497943883759412e00, 3.9894151208813466764e-1, 1.0765576773720192317e-8};
constexpr std::array<double, 9> kMiddleDenominator = {
    1.9685429676859990727e04, 3.8912003286093271411e04, 3.4900952721145977266e04,
    1.8615571640885098091e04, 6.4855582982667607550e03, 1.5193775994075548050e03,
    2.3538790178262499861e02, 2.2266688044328115691e01, 1.0};
constexpr std::array<double, 6> kTailNumerator = {2.9112874951168792e-5, 1.421619193227893466e-3,
                                                  2.2235277870649807e-2, 1.274011611602473639e-1,
                                                  2.1589853405795699e-1, 2.307344176494017303e-2};
constexpr std::array<double, 6> kTailDenominator = {7.29751555083966205e-5, 3.78239633202758244e-3,
                                                    6.59881378689285515e-2, 4.68238212480865118e-1,
                                                    1.28426009614491121e00, 1.0};

constexpr double kInverseRootTwoPi = 3.9894228040143267794e-1;
constexpr double kCentralEnd = 0.66291e0;
constexpr double kMiddleEnd = 5.656854249492381;  // the square root of 32
constexpr double kSquareNegligible = 1.1102230246251565e-16;
constexpr double kSmallestResult = 1e-16;
constexpr double kSaturation = 8.3;  // from here on the lower tail is below kSmallestResult
constexpr double kRootOfTruncatedTwoPi = 2.5066282746309994;  // of 6.28318530717958

// e^-x, 0 <= x < 40, to the last digit of a double: Taylor's series after taking out powers of 2.
constexpr long double decay(long double x) {
    constexpr long double kLogTwo = 0.693147180559945309417232121458176568L;
    long double halvings = 1.0L;
    for (; x >= kLogTwo; x -= kLogTwo) halvings *= 0.5L;
    long double sum = 1.0L;
    for (int n = 30; n > 0; --n) sum = 1.0L - x / static_cast<long double>(n) * sum;
    return halvings * sum;
}

// e^(-t^2 / 2) for t = 0, 1/16, 2/16, ... up to kSaturation.
constexpr int kSixteenths = 16;
constexpr auto kCoarseDecay = [] {
    std::array<double, static_cast<std::size_t>(kSaturation * kSixteenths) + 1> table{};
    for (std::size_t k = 0; k < table.size(); ++k) {
        table[k] =
            static_cast<double>(decay(static_cast<long double>(k * k) / (2.0L * kSixteenths * kSixteenths)));
    }
    return table;
}();

// e^(-y^2 / 2) for 0 <= y < kSaturation, as e^(-t^2 / 2) e^(-(y-t)(y+t) / 2), t being y cut to a multiple of
// 1/16: without the relative error that rounding y^2 would cause.
double densityExponential(double y) {
    const auto nSixteenths = static_cast<int>(y * kSixteenths);
    const double t = static_cast<double>(nSixteenths) / kSixteenths;
    return kCoarseDecay[static_cast<std::size_t>(nSixteenths)] * std::exp(-0.5 * (y - t) * (y + t));
}

double centralLower(double z, double y) {
    const double square = y > kSquareNegligible ? z * z : 0.0;
    return 0.5 + z * (polynomial(kCentralNumerator, square) / polynomial(kCentralDenominator, square));
}

double middleUpper(double y) {
    return densityExponential(y) * (polynomial(kMiddleNumerator, y) / polynomial(kMiddleDenominator, y));
}

double tailUpper(double y) {
    const double w = 1.0 / (y * y);
    const double correction = w * (polynomial(kTailNumerator, w) / polynomial(kTailDenominator, w));
    return densityExponential(y) * ((kInverseRootTwoPi - correction) / y);
}

}  // namespace

double PDFNormalStd(double z) {
    return std::exp(-0.5 * z * z) / kRootOfTruncatedTwoPi;  // Kept: 2 pi cut to 15 digits
}

double CDFNormalStd(double z) {
    const double y = std::abs(z);
    if (y <= kCentralEnd) return centralLower(z, y);
    if (!(y < kSaturation)) return std::isnan(z) ? z : (z < 0.0 ? 0.0 : 1.0);
    const double beyond = y <= kMiddleEnd ? middleUpper(y) : tailUpper(y);
    const double lower = beyond < kSmallestResult ? 0.0 : beyond;  // Kept: the publication goes down to 1e-300
    return z > 0.0 ? 1.0 - beyond : lower;
}
