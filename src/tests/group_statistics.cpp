#include "tests/group_statistics.hpp"

#include <cmath>

#include "numcore/markers.hpp"

namespace numcore::tests {

double bartlettStatistic(std::span<const GroupMoments> groups) {
    constexpr double kSmallestVariance = 1e-12;
    double nUsed = 0.0;
    for (const GroupMoments& group : groups) {
        if (group.weight > 1.0 && group.variance() != 0.0) nUsed += 1.0;
    }
    if (nUsed <= 1.0) return std::nan("");
    double pooled = 0.0;
    double freedom = 0.0;
    double logs = 0.0;
    double reciprocals = 0.0;
    for (const GroupMoments& group : groups) {
        // Kept: not the filter above.
        if (!(group.weight > 0.0 && group.variance() > kSmallestVariance)) continue;
        const double f = group.weight - 1.0;
        pooled += f * group.variance();
        freedom = std::trunc(freedom + f);  // Kept: whole after each addition, also with fractional weights
        logs += f * std::log(group.variance());
        reciprocals += 1.0 / f;
    }
    return (freedom * std::log(pooled / freedom) - logs) /
           (1.0 + (reciprocals - 1.0 / freedom) / (3.0 * (nUsed - 1.0)));
}

double oneWayF(std::span<const GroupMoments> groups) {
    double nUsed = 0.0;
    double weight = 0.0;
    double mean = 0.0;
    double between = 0.0;
    double within = 0.0;
    for (const GroupMoments& group : groups) {
        if (!(group.weight > 0.0)) continue;
        nUsed += 1.0;
        weight += group.weight;
        const double step = group.mean - mean;
        const double share = group.weight / weight;
        between += step * step * group.weight * (1.0 - share);
        mean += step * share;
        within += group.squares;
    }
    const double freedomBetween = nUsed - 1.0;
    const double freedomWithin = weight - nUsed;
    if (!(freedomBetween > 0.0 && freedomWithin > 0.0)) return std::nan("");
    if (within > 0.0) return (between / freedomBetween) / (within / freedomWithin);
    return between > 0.0 ? kOverflow : std::nan("");
}

double welchF(std::span<const GroupMoments> groups) {
    double precision = 0.0;
    double mean = 0.0;
    double between = 0.0;
    for (const GroupMoments& group : groups) {
        const double variance = group.variance();
        if (!(group.weight > 1.0 && variance > 0.0)) return std::nan("");
        const double own = group.weight / variance;
        precision += own;
        const double step = group.mean - mean;
        between += step * step * own * (1.0 - own / precision);
        mean += step * own / precision;
    }
    double lambda = 0.0;
    for (const GroupMoments& group : groups) {
        const double rest = 1.0 - group.weight / group.variance() / precision;
        lambda += rest * rest / (group.weight - 1.0);
    }
    const auto k = static_cast<double>(groups.size());
    if (k < 2.0) return std::nan("");
    return between / (k - 1.0) / (1.0 + 2.0 * (k - 2.0) / (k * k - 1.0) * lambda);
}

}  // namespace numcore::tests
