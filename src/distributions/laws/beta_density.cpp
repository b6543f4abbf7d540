#include "distributions/laws/beta_density.hpp"

#include <cmath>

#include "distributions/special/beta_parts.hpp"

namespace numcore::distributions {
namespace {

constexpr double kDividesSafely = 1e-10;  // the powers then underflow only where the quotient is below 1e-297

}  // namespace

double betaPowersOver(double divisor, double a, double b, double x, double y) {
    const beta_parts::Arguments at = {a, b, x, y};
    if (divisor > kDividesSafely) return beta_parts::powerFactor(at) / divisor;
    return beta_parts::powerFactor(at, -std::log(divisor));
}

}  // namespace numcore::distributions
