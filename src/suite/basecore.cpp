#include "suite/basecore.hpp"

#include <array>
#include <cmath>

#include "suite/vmcore.hpp"

namespace numcore::basecore {
namespace {

using vmcore::kMissing;
using vmcore::kOverflow;

constexpr double kLargestSmall = 2.5;    // upper end of the range that the Taylor series covers
constexpr double kStirlingStart = 10.0;  // eight terms of Stirling's series suffice from here on
constexpr double kOneMinusEuler = 0.42278433509846713939;
constexpr double kStirlingConstant = 0.41893853320467274178;  // ln(2 pi) / 2 - 1/2

// (-1)^k (zeta(k) - 1) / k for k = 2, 3, ...: A&S 6.1.33.
constexpr std::array<double, 27> kZetaTerms = {
    0.32246703342411321824,    -0.067352301053198095133,   0.020580808427784547879,
    -0.0073855510286739852663, 0.0028905103307415232858,   -0.0011927539117032609771,
    0.00050966952474304242234, -0.00022315475845357937976, 0.000099457512781808533715,
    -0.0000449262367381331417, 0.000020507212775670691553, -9.439488275268395904e-6,
    4.3748667899074878042e-6,  -2.0392157538013662368e-6,  9.5514121304074198329e-7,
    -4.4924691987645660433e-7, 2.1207184805554665869e-7,   -1.0043224823968099609e-7,
    4.7698101693639805658e-8,  -2.271109460894316491e-8,   1.0838659214896954091e-8,
    -5.1834750419700466551e-9, 2.4836745438024783172e-9,   -1.1921401405860912074e-9,
    5.7313672416788620133e-10, -2.7595228851242331452e-10, 1.3304764374244489481e-10};

// B(2k) / (2k (2k - 1)) for k = 1, 2, ...: A&S 6.1.41.
constexpr std::array<double, 8> kStirlingTerms = {1.0 / 12.0,    -1.0 / 360.0,      1.0 / 1260.0,
                                                  -1.0 / 1680.0, 1.0 / 1188.0,      -691.0 / 360360.0,
                                                  1.0 / 156.0,   -3617.0 / 122400.0};

// c[0] + c[1] x + c[2] x^2 + ...
template <std::size_t n>
double polynomial(const std::array<double, n>& coefficients, double x) {
    double value = 0.0;
    for (std::size_t i = n; i-- > 0;) value = value * x + coefficients[i];
    return value;
}

// ln Gamma(2 + z), |z| <= 1/2; relative accuracy also next to z = 0.
double aboutTwo(double z) {
    return z * (kOneMinusEuler + z * polynomial(kZetaTerms, z));
}

double smallArgument(double x) {
    if (x >= 1.5) return aboutTwo(x - 2.0);
    if (x >= 0.5) return aboutTwo(x - 1.0) - std::log1p(x - 1.0);
    return aboutTwo(x) - std::log1p(x) - std::log(x);
}

double byRecurrence(double x) {
    double factor = 1.0;
    while (x > kLargestSmall) {
        x -= 1.0;
        factor *= x;
    }
    return smallArgument(x) + std::log(factor);
}

double stirling(double x) {
    const double inverse = 1.0 / x;
    return (x - 0.5) * (std::log(x) - 1.0) + kStirlingConstant +
           inverse * polynomial(kStirlingTerms, inverse * inverse);
}

// 64-bit mantissas while multiplying leave one rounding in the end.
constexpr std::array<double, 171> kFactorials = [] {
    std::array<double, 171> table{};
    long double product = 1.0L;
    for (std::size_t n = 0; n < table.size(); ++n) {
        if (n > 0) product *= static_cast<long double>(n);
        table[n] = static_cast<double>(product);
    }
    return table;
}();

}  // namespace

double sqr(double x) {
    return std::sqrt(x);
}

double GammaLn(double x) {
    if (!(x > 0.0)) return kMissing;
    if (x <= kLargestSmall) return smallArgument(x);
    if (x < kStirlingStart) return byRecurrence(x);
    const double value = stirling(x);
    return value < kOverflow ? value : kOverflow;
}

double LogExpAPlusExpB(double a, double b) {
    if (std::isnan(a) || std::isnan(b)) return a + b;
    const double larger = Max(a, b);
    const double smaller = Min(a, b);
    if (std::isinf(larger) || larger == smaller) return larger + std::log(2.0);
    return larger + std::log1p(std::exp(smaller - larger));
}

double Fact(std::int32_t n) {
    if (n < 0) return kMissing;
    const auto index = static_cast<std::size_t>(n);
    return index < kFactorials.size() ? kFactorials[index] : kOverflow;
}

double Cnk(double n, double k) {
    n = std::round(n);
    k = std::round(k);
    if (!std::isfinite(n) || !std::isfinite(k) || n < 0.0) return kMissing;
    if (k < 0.0 || k > n) return 0.0;
    const double factors = Min(k, n - k);
    if (factors > 1024.0) return kOverflow;  // C(n, k) >= 2^factors
    long double product = 1.0L;
    for (double i = 1.0; i <= factors; i += 1.0) {
        product *= static_cast<long double>(n - factors + i);  // a multiple of i after this step
        product /= static_cast<long double>(i);
    }
    const auto value = static_cast<double>(product);
    return value < kOverflow ? value : kOverflow;
}

std::u16string Replace(std::u16string_view text, std::u16string_view from, std::u16string_view to) {
    if (from.empty()) return std::u16string(text);
    std::u16string result;
    std::size_t start = 0;
    for (std::size_t found = text.find(from); found != text.npos; found = text.find(from, start)) {
        result.append(text, start, found - start).append(to);
        start = found + from.size();
    }
    return result.append(text, start);
}

}  // namespace numcore::basecore
