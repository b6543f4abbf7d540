// Resampled p-values: what is asked for and how it is told.
#pragma once

#include <string>

#include "cli/options.hpp"
#include "cli/tests/outcome.hpp"

namespace numcore::cli {

/// The library's options; those of no resampling when none is wanted.
ResamplingOptions resamplingOf(const ResampleRequest& request);

/// Every arrangement was tried: p is no estimate.
bool isExact(const ResamplingOptions& resampling);

/// Limits of 99 % of the p-value that infinitely many resamples would give; of an exact one missing.
struct PLimits {
    double lower;
    double upper;
};
PLimits limitsOfP(const TestOutcome& outcome);

/// The method with what gave its p-value: "Paired t test, all 1024 arrangements".
std::string methodOf(const TestOutcome& outcome);

/// A sentence about where a p-value comes from, how sure it is, and how it is made again.
std::string tellResampling(const TestOutcome& outcome);

}  // namespace numcore::cli
