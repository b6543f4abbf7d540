// Scalar helpers and text replacement that every other subsystem uses.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace numcore::basecore {

/// True for the 16-bit boolean -1 only; 1 and every other value are false.
constexpr bool isTrue(std::int16_t flag) {
    return flag == -1;
}

/// The constant pi.
constexpr double Pi() {
    return 3.14159265358979323846;
}

/// The square root of x (the name follows the Basic convention); NaN for x < 0.
double sqr(double x);

/// The smaller of two numbers; b when one of them is NaN.
constexpr double Min(double a, double b) {
    return a < b ? a : b;
}
/// The larger of two numbers; b when one of them is NaN.
constexpr double Max(double a, double b) {
    return a > b ? a : b;
}

/// The sign of x as an integer, for comparing signs: -1, 0 or 1; 0 for NaN.
constexpr std::int32_t FSign(double x) {
    return (x > 0.0 ? 1 : 0) - (x < 0.0 ? 1 : 0);
}
/// The sign of x as a factor: -1, 0 or 1; 0 for NaN.
constexpr double FSgn(double x) {
    return FSign(x);
}

/// Natural logarithm of the gamma function.
///
/// @param x  argument, > 0
/// @return the missing value for x <= 0 and NaN; the overflow marker where the logarithm exceeds it
///
/// Near 1 and 2, where the logarithm vanishes, the Taylor series in zeta(k) - 1 about these points, from which
/// (0, 2.5) is covered; up to 10 the recurrence into that range; above it Stirling's series. Abramowitz and
/// Stegun (1964), 6.1.15, 6.1.33 and 6.1.41. Relative error below 1e-15 everywhere, the zeros included; no
/// global state.
double GammaLn(double x);

/// ln(e^a + e^b) with the larger argument factored out, so that nothing overflows; NaN when an argument is NaN.
double LogExpAPlusExpB(double a, double b);

/// n! rounded correctly; the missing value for n < 0, the overflow marker for n > 170.
double Fact(std::int32_t n);

/// Binomial coefficient C(n, k), exact up to 2^53.
///
/// @param n, k  counts; both are rounded to whole numbers
/// @return 0 for k < 0 and k > n; the missing value for n < 0 and for what is not finite; the overflow marker
/// beyond the largest double
double Cnk(double n, double k);

/// The text with each occurrence of `from` replaced by `to`, scanned once from the left: replacements are not
/// scanned again. An empty `from` leaves the text as it is.
std::u16string Replace(std::u16string_view text, std::u16string_view from, std::u16string_view to);

}  // namespace numcore::basecore
