#include "tests/parametric/mean_conclusion.hpp"

#include "numcore/continuous_laws.h"
#include "numcore/special.h"

namespace numcore::tests {
namespace {

using vmcore::kWeightEpsilon;

// Kept: the zero test of t looks at the raw difference, the sign test at its distance from the hypothesis; z
// has no zero test.
double withoutError(double difference, double hypothesised, bool normal) {
    if (!normal && std::abs(difference) < kWeightEpsilon) return 0.0;
    return difference - hypothesised > (normal ? 0.0 : kWeightEpsilon) ? kOverflow : -kOverflow;
}

}  // namespace

double MeanLaw::lowerTail(double statistic) const {
    return normal ? CDFNormalStd(statistic) : CDFStudent(statistic, df);
}

double MeanLaw::quantile(double p) const {
    return normal ? InvCDFNormalStd(p) : InvCDFStudent(p, df);
}

Decision decideMeans(const MeanLaw& law, double statistic, const MeanQuestion& question,
                     ResamplingRequest request) {
    if (question.resampling != nullptr) {
        request.hypothesised = question.hypothesised;
        request.alpha = question.alpha;
        request.alternative = question.alternative;
        const Resampled found = resample(request, *question.resampling);
        return {found.pValue, found.critical};
    }
    const double lowerTail = law.lowerTail(statistic);
    return decide({lowerTail, 1.0 - lowerTail}, question.alpha, question.alternative,
                  [&law](double p) { return law.quantile(p); });
}

MeanTest concludeMeans(const Estimate& estimate, const MeanLaw& law, const MeanQuestion& question,
                       const ResamplingRequest& request, const double* critical) {
    MeanTest test;
    test.difference = asResult(estimate.difference);
    if (!law.normal) test.df = asResult(law.df);
    const bool computable = std::isfinite(estimate.difference) && std::isfinite(estimate.standardError) &&
                            std::isfinite(question.hypothesised) && (law.normal || law.df > 0.0);
    test.status = computable ? kDone : kDegenerate;
    if (!computable) return test;

    const double distance = estimate.difference - question.hypothesised;
    test.statistic = estimate.standardError < kWeightEpsilon
                         ? withoutError(estimate.difference, question.hypothesised, law.normal)
                         : asResult(distance / estimate.standardError);
    const Decision decision = decideMeans(law, test.statistic, question, request);
    test.pValue = decision.pValue;
    const bool byLaw = question.resampling == nullptr;
    test.critical = byLaw && critical != nullptr ? asResult(*critical) : decision.critical;
    test.limits =
        limitsAround(estimate.difference, test.critical, estimate.standardError, question.alternative);
    return test;
}

}  // namespace numcore::tests
