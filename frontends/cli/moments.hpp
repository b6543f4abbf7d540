// Mean and standard deviation of a sample.
#pragma once

#include <span>

namespace numcore::cli {

struct Moments {
    double mean;
    double deviation;
};

/// By the library's summary; no weights: 1 each. What does not exist is the missing value.
Moments momentsOf(std::span<const double> values, std::span<const double> weights);

}  // namespace numcore::cli
