// Limits of a proportion from the beta law.
#pragma once

namespace numcore::tests {

struct ProportionLimits {
    double lower = 0.0;
    double upper = 1.0;
};

/// Clopper and Pearson (1934), Biometrika 26:404-413.
///
/// @param count  successes, not necessarily whole
/// @param n      trials, > 0
/// @param tail   probability left out on each side, in (0, 1)
/// @return 0 below for a count of 0 or less, 1 above for n or more
ProportionLimits clopperPearson(double count, double n, double tail);

}  // namespace numcore::tests
