// The observations as they are resampled: the hypothesis imposed on them.
#pragma once

#include <cstdint>
#include <vector>

#include "tests/resampling/resampling.hpp"

namespace numcore::tests {

/// Observations group after group; all but those of kBartlett are divided by a power of two that keeps squares
/// far from overflow.
struct NullModel {
    std::vector<std::int64_t> sizes;  ///< of the groups
    std::vector<double> data;         ///< what the data's own statistic is computed from, and what is permuted
    std::vector<double> residuals;    ///< what is bootstrapped; empty unless asked for
    std::vector<double> weights;      ///< empty: unit weights
    std::vector<double> givenVariances;
};

/// False when the request cannot be computed: the wrong number of groups, no observation, a value or weight
/// that is not finite or not positive, a hypothesis without meaning. Then the model is of no use.
bool buildNullModel(const ResamplingRequest& request, bool forBootstrap, NullModel& model);

}  // namespace numcore::tests
