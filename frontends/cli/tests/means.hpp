// t and z tests by the library.
#pragma once

#include <vector>

#include "cli/options.hpp"
#include "cli/tests/outcome.hpp"
#include "cli/tests/samples.hpp"

namespace numcore::cli {

/// The pairs of a mean-difference plot.
struct Pairs {
    std::vector<double> means;
    std::vector<double> differences;
};

/// One mean against mu; the estimate is the mean.
TestOutcome testOneMean(const TestSample& sample, const TestRequest& request, bool normal);

/// Two means; pairs, when not null, receives those of a paired test.
TestOutcome testTwoMeans(const Comparison& comparison, const TestRequest& request, bool normal, Pairs* pairs);

/// Two-sided limits of a sample's mean, for plots.
struct MeanLimits {
    double mean;
    double lower;
    double upper;
};
MeanLimits limitsOfMean(const TestSample& sample, double alpha);

}  // namespace numcore::cli
