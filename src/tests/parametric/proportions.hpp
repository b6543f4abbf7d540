// Tests and intervals of proportions.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "tests/parametric/decision.hpp"
#include "tests/parametric/samples.hpp"

namespace numcore::tests {

/// A sample's size and the share of successes in it.
struct Proportion {
    double n;
    double p;
};

/// True for a size of 1 and more and a share within [0, 1].
bool isProportion(const Proportion& sample);

enum class ProportionInterval { kWald, kWilson, kClopperPearson, kAdjustedWald };

struct ProportionQuestion {
    double hypothesised = 0.0;  ///< difference
    double alpha = 0.05;
    std::int32_t alternativeCode =
        0;  ///< as the caller gave it: the one-sample critical value is multiplied by it
    bool continuity = false;
    bool separateVariance = false;  ///< otherwise pooled, or theoretical for one sample
    ProportionInterval interval = ProportionInterval::kWald;  ///< one sample only

    Alternative alternative() const { return alternativeOf(alternativeCode); }
};

struct ProportionTest {
    std::int32_t status = kTooFew;
    double z = kMissing;
    double critical = kMissing;
    double pValue = kMissing;
    Limits limits;
};

/// z test of a share against a theoretical one, with the interval of the share.
ProportionTest oneProportionTest(const Proportion& sample, double theoretical,
                                 const ProportionQuestion& question);
/// z test of two shares, with the interval of their difference less the hypothesised one.
ProportionTest twoProportionsTest(const Proportion& first, const Proportion& second,
                                  const ProportionQuestion& question);

Limits wilsonLimits(double critical, const Proportion& sample, double correction);
Limits clopperPearsonLimits(double count, double n, double alpha);

struct ProportionsChiSquare {
    std::int32_t status = kTooFew;
    double chiSquare = kMissing;
    double critical = kMissing;
    double df = kMissing;
    double pValue = kMissing;
};

/// @param theoretical  one share a sample, or empty to test equality
ProportionsChiSquare kProportionsTest(std::span<const Proportion> samples, std::span<const double> theoretical,
                                      double alpha);

/// Comparison of two of k proportions.
struct ProportionPair {
    double difference;
    double critical;
    double pValue;
    bool significant;
};

/// Marascuilo's comparison of samples i and j of k.
ProportionPair marascuiloPair(const Proportion& first, const Proportion& second, double k, double alpha);

struct MonteCarloTest {
    std::int32_t status = kTooFew;
    double difference = kMissing;
    double pValue = kMissing;
    Limits limits;  ///< of the p-value
};

/// Monte Carlo test of two shares; draws are counted by the stream of the seed.
MonteCarloTest monteCarloProportions(const Proportion& first, const Proportion& second, double hypothesised,
                                     Alternative alternative, std::int32_t nSimulations, std::int32_t seed);

}  // namespace numcore::tests
