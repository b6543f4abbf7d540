// Tests of variances and Welch's analysis of variance by the library.
#pragma once

#include "cli/options.hpp"
#include "cli/tests/outcome.hpp"
#include "cli/tests/samples.hpp"

namespace numcore::cli {

/// The ratio of two variances.
TestOutcome testRatio(const Comparison& comparison, const TestRequest& request);
/// The variance of one sample against request.variances[0].
TestOutcome testVariance(const TestSample& sample, const TestRequest& request);
/// Equal variances of two or more samples.
TestOutcome testBartlett(const Comparison& comparison, const TestRequest& request);
TestOutcome testLevene(const Comparison& comparison, const TestRequest& request);
/// Equal means of two or more samples.
TestOutcome testWelchAnova(const Comparison& comparison, const TestRequest& request);

}  // namespace numcore::cli
