#include "tests/clopper_pearson.hpp"

#include <cstdint>

#include "numcore/continuous_laws.h"

namespace numcore::tests {

ProportionLimits clopperPearson(double count, double n, double tail) {
    constexpr std::int16_t kLowerTail = -1;
    constexpr std::int16_t kUpperTail = 0;
    ProportionLimits limits;
    if (count > 0.0) limits.lower = InvCDFBeta(tail, count, n - count + 1.0, kLowerTail);
    if (count < n) limits.upper = InvCDFBeta(tail, count + 1.0, n - count, kUpperTail);
    return limits;
}

}  // namespace numcore::tests
