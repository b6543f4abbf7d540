// The commands ttest, ztest, vartest, proptest and anova.
#pragma once

#include "cli/options.hpp"
#include "cli/report.hpp"
#include "cli/sample.hpp"

namespace numcore::cli {

/// Each takes the samples of its design out of the columns, adds the tables "samples" and "test" and the notes
/// that explain them to the report, and draws the picture that was asked for. They throw DataError when no test
/// can be computed, UsageError for options that do not fit the samples.

/// ttest and ztest.
void testMeans(Sample sample, const Options& options, Report& report);
void testVariances(Sample sample, const Options& options, Report& report);
void analyseVariance(Sample sample, const Options& options, Report& report);
void testProportions(Sample sample, const Options& options, Report& report);
/// proptest of the counts of the command line.
Report testCounts(const Options& options);

}  // namespace numcore::cli
