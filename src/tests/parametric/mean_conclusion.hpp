// What the t and z tests have in common: from the estimate and its error to the limits.
#pragma once

#include "tests/parametric/means.hpp"

namespace numcore::tests {

/// Law of a statistic of means: Student's, or the normal one.
struct MeanLaw {
    bool normal;
    double df;

    double lowerTail(double statistic) const;
    double quantile(double p) const;
};

/// A difference of means, estimated.
struct Estimate {
    double difference;
    double standardError;
};

/// p-value and critical value by the law or, when the question asks for it, by resampling.
///
/// @param request  statistic, groups and known variances to resample
Decision decideMeans(const MeanLaw& law, double statistic, const MeanQuestion& question,
                     ResamplingRequest request);

/// Fills what follows from an estimate: difference, degrees of freedom, statistic, p-value, critical value and
/// limits around the difference; status 0, or -2 without a standard error or degrees of freedom.
///
/// @param request     what to resample when the question asks for it
/// @param critical    critical value to take instead of the law's, or null; resampling does not read it
MeanTest concludeMeans(const Estimate& estimate, const MeanLaw& law, const MeanQuestion& question,
                       const ResamplingRequest& request, const double* critical = nullptr);

}  // namespace numcore::tests
