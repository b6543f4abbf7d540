// The density that the beta and Fisher laws share.
#pragma once

namespace numcore::distributions {

/// x^a y^b / (divisor B(a, b)) without overflow on the way; a, b > 0 and finite, 0 < x, y < 1, y = 1 - x.
double betaPowersOver(double divisor, double a, double b, double x, double y);

}  // namespace numcore::distributions
