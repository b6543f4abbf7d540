// The steps of the standard normal quantile, written over lanes: of one double for the scalar function, of
// several for columns. Only operations that are rounded correctly, in the same order: the same bits whatever
// the lanes. Algorithm AS 241 (PPND16), Wichura, M. J. (1988), Applied Statistics 37:477-484.
#pragma once

#include <cstddef>
#include <cstdint>

namespace numcore::distributions {

/// @tparam Lanes  in an unnamed namespace of the including file, so that code for a wider instruction set stays
///                there: Lanes::Real is double or a vector of doubles, Lanes::Bits the unsigned integers of its
///                size, Lanes::squareRoot its square root
template <class Lanes>
class NormalQuantileSteps {
  public:
    using Real = typename Lanes::Real;
    using Bits = typename Lanes::Bits;

    static constexpr double kCentralHalfWidth = 0.425;
    static constexpr double kFarTailStart = 5.0;

    /// The quantile of 1/2 + fromCentre, |fromCentre| <= kCentralHalfWidth.
    static Real central(const Real& fromCentre) {
        const Real x = kCentralOffset - fromCentre * fromCentre;
        return fromCentre * ratio(kCentralNumerator, kCentralDenominator, x);
    }

    /// sqrt(-ln tail) for the smaller of both tail probabilities, a normal number below 1/2.
    static Real tailDepth(const Real& tail) { return Lanes::squareRoot(-logarithm(tail)); }

    /// Absolute value of the quantile at that depth, depth <= kFarTailStart.
    static Real nearTail(const Real& depth) {
        return ratio(kNearTailNumerator, kNearTailDenominator, depth - kNearTailOffset);
    }

    /// The same, depth > kFarTailStart.
    static Real farTail(const Real& depth) {
        return ratio(kFarTailNumerator, kFarTailDenominator, depth - kFarTailStart);
    }

    /// ln x of a normal number x > 0, to one unit in the last place for x below 1/2: 2^k m with m next to 1,
    /// and ln m = 2 (s + s^3 / 3 + s^5 / 5 + ...) in s = (m - 1) / (m + 1). Abramowitz and Stegun
    /// (1964), 4.1.27.
    static Real logarithm(const Real& x) {
        const Bits bits = __builtin_bit_cast(Bits, x);
        const Bits exponent =
            ((bits - kRootHalfFraction) >> 52) + 1;  // with its bias; m is in [sqrt(1/2), sqrt(2))
        const Real m = __builtin_bit_cast(Real, bits - (exponent << 52) + kBitsOfOne);
        const Real k = __builtin_bit_cast(Real, exponent | kBitsOfTwoTo52) - (0x1p+52 + 1023.0);
        const Real s = (m - 1.0) / (m + 1.0);
        const Real square = s * s;
        const Real later = s * square * polynomial(kLogarithm, square) + k * kLogTwoLow;
        return k * kLogTwoHigh + (2.0 * s + later);
    }

  private:
    static constexpr double kCentralOffset = 0.180625;
    static constexpr double kNearTailOffset = 1.6;

    // Coefficients by power; denominators have a leading 1.
    static constexpr double kCentralNumerator[] = {
        3.3871328727963666080e0,  1.3314166789178437745e+2, 1.9715909503065514427e+3, 1.3731693765509461125e+4,
        4.5921953931549871457e+4, 6.7265770927008700853e+4, 3.3430575583588128105e+4, 2.5090809287301226727e+3};
    static constexpr double kCentralDenominator[] = {1.0,
                                                     4.2313330701600911252e+1,
                                                     6.8718700749205790830e+2,
                                                     5.3941960214247511077e+3,
                                                     2.1213794301586595867e+4,
                                                     3.9307895800092710610e+4,
                                                     2.8729085735721942674e+4,
                                                     5.2264952788528545610e+3};
    static constexpr double kNearTailNumerator[] = {1.42343711074968357734e0,  4.63033784615654529590e0,
                                                    5.76949722146069140550e0,  3.64784832476320460504e0,
                                                    1.27045825245236838258e0,  2.41780725177450611770e-1,
                                                    2.27238449892691845833e-2, 7.74545014278341407640e-4};
    static constexpr double kNearTailDenominator[] = {1.0,
                                                      2.05319162663775882187e0,
                                                      1.67638483018380384940e0,
                                                      6.89767334985100004550e-1,
                                                      1.48103976427480074590e-1,
                                                      1.51986665636164571966e-2,
                                                      5.47593808499534494600e-4,
                                                      1.05075007164441684324e-9};
    static constexpr double kFarTailNumerator[] = {6.65790464350110377720e0,  5.46378491116411436990e0,
                                                   1.78482653991729133580e0,  2.96560571828504891230e-1,
                                                   2.65321895265761230930e-2, 1.24266094738807843860e-3,
                                                   2.71155556874348757815e-5, 2.01033439929228813265e-7};
    static constexpr double kFarTailDenominator[] = {1.0,
                                                     5.99832206555887937690e-1,
                                                     1.36929880922735805310e-1,
                                                     1.48753612908506148525e-2,
                                                     7.86869131145613259100e-4,
                                                     1.84631831751005468180e-5,
                                                     1.42151175831644588870e-7,
                                                     2.04426310338993978564e-15};

    // Terms below 2e-17 for square <= 0.0295 are left out.
    static constexpr double kLogarithm[] = {2.0 / 3.0,  2.0 / 5.0,  2.0 / 7.0,  2.0 / 9.0,  2.0 / 11.0,
                                            2.0 / 13.0, 2.0 / 15.0, 2.0 / 17.0, 2.0 / 19.0, 2.0 / 21.0};
    static constexpr double kLogTwoHigh = 0x1.62e42fefa3p-1;  // 41 bits: its product with an exponent is exact
    static constexpr double kLogTwoLow = 0x1.3de6af278ece6p-42;
    static constexpr std::uint64_t kRootHalfFraction = 0x0006A09E667F3BCD;
    static constexpr std::uint64_t kBitsOfOne = 0x3FF0000000000000;
    static constexpr std::uint64_t kBitsOfTwoTo52 = 0x4330000000000000;

    // Even and odd powers apart, an even number of coefficients.
    template <std::size_t n>
    static Real polynomial(const double (&c)[n], const Real& x) {
        static_assert(n % 2 == 0);
        const Real square = x * x;
        Real even = square * c[n - 2] + c[n - 4];
        Real odd = square * c[n - 1] + c[n - 3];
        for (std::size_t power = n - 4; power >= 2; power -= 2) {
            even = even * square + c[power - 2];
            odd = odd * square + c[power - 1];
        }
        return even + x * odd;
    }

    template <std::size_t n>
    static Real ratio(const double (&numerator)[n], const double (&denominator)[n], const Real& x) {
        return polynomial(numerator, x) / polynomial(denominator, x);
    }
};

}  // namespace numcore::distributions
