// Proportions: counts of successes, and their tests by the library.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/options.hpp"
#include "cli/tests/outcome.hpp"

namespace numcore::cli {

/// Successes in trials of one sample.
struct CountSample {
    std::string name;
    std::int32_t successes = 0;
    std::int32_t trials = 0;
    std::size_t nMissing = 0;

    double proportion() const { return static_cast<double>(successes) / trials; }
};

/// Two-sided limits of one proportion.
struct ProportionLimits {
    double lower;
    double upper;
};
ProportionLimits limitsOfProportion(const CountSample& sample, const TestRequest& request);

/// One proportion against another number, by the normal law or by simulation; the estimate is the proportion.
TestOutcome testOneProportion(const CountSample& sample, double hypothesis, const TestRequest& request);
/// The difference of two proportions, by the normal law or by simulation.
TestOutcome testTwoProportions(const std::vector<CountSample>& samples, const TestRequest& request);
/// Equal proportions; or, when there are any, those of request.proportions (one for all, or one each).
TestOutcome testManyProportions(const std::vector<CountSample>& samples, const TestRequest& request);

/// Marascuilo's comparison of one pair.
struct ProportionPair {
    std::size_t first;
    std::size_t second;
    double difference;  // without its sign
    double critical;
    double pValue;
    bool significant;
};
std::vector<ProportionPair> comparePairs(const std::vector<CountSample>& samples, double alpha);

}  // namespace numcore::cli
