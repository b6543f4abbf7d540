// Doors of the tests of variances.

#include <algorithm>
#include <array>
#include <numeric>

#include "exports/parametric_input.hpp"

namespace inside = numcore::tests;

using inside::cellsAt;
using inside::Groups;
using inside::GroupsOutputs;
using inside::VarianceQuestion;
using numcore::isTrue;

namespace {

struct RatioOutputs {
    double* ratio;
    double* F;
    double* critical;
    double* df1;
    double* df2;
    double* pValue;
    double* lower;
    double* upper;

    std::int32_t write(const inside::RatioTest& test) const {
        inside::put(ratio, test.ratio);
        inside::put(F, test.F);
        inside::put(critical, test.critical);
        inside::put(df1, test.df1);
        inside::put(df2, test.df2);
        inside::put(pValue, test.pValue);
        inside::put(lower, test.limits.lower);
        inside::put(upper, test.limits.upper);
        return test.status;
    }
};

VarianceQuestion questionOf(double hypothesised, double alpha, std::int32_t alternative,
                            ResamplingOptions* resampling) {
    return {hypothesised, alpha, inside::alternativeOf(alternative), inside::askedFor(resampling)};
}

VarianceQuestion groupsQuestion(double alpha, ResamplingOptions* resampling) {
    return {.alpha = alpha, .resampling = inside::askedFor(resampling)};
}

inside::LeveneCentre centreOf(std::int16_t median) {
    return isTrue(median) ? inside::LeveneCentre::kMedian : inside::LeveneCentre::kMean;
}

// Columns first to last of a data set, cut to those of its table.
Groups columnRange(const numcore::cST_DataSet& data, std::int32_t first, std::int32_t last) {
    const std::int32_t from = std::max(first, 1);
    const std::int32_t to = std::min(last, data.numeric1->columnCount());
    std::vector<std::int32_t> columns(static_cast<std::size_t>(std::max(to - from + 1, 0)));
    std::iota(columns.begin(), columns.end(), from);
    return inside::groupsOf(data, columns);
}

Groups twoSamples(const double* x1, std::int32_t n, const double* x2, const double* weights) {
    Groups groups;
    groups.reserve(2);
    groups.add(inside::compactSample(cellsAt(x1, n), cellsAt(weights, n)));
    groups.add(inside::compactSample(cellsAt(x2, n), cellsAt(weights, n)));
    return groups;
}

struct BartlettOutputs {
    double* statistic;
    double* critical;
    double* df;
    double* pValue;

    std::int32_t write(const inside::BartlettTest& test) const {
        inside::put(statistic, test.statistic);
        inside::put(critical, test.critical);
        inside::put(df, test.df);
        inside::put(pValue, test.pValue);
        return test.status;
    }
};

}  // namespace

int32_t FTest2Samples(const double* x1, int32_t n, const double* x2, const double* weights, double R,
                      double alpha, int32_t alternative, double* ratio, double* F, double* critical,
                      double* df1, double* df2, double* pValue, double* lower, double* upper) {
    return Cpp_FTest2SamplesNew(x1, n, x2, n, weights, weights, R, alpha, alternative, NUMCORE_FALSE, nullptr,
                                ratio, F, critical, df1, df2, pValue, lower, upper);
}

int32_t VB_FTest2Samples(SAFEARRAY* x1, SAFEARRAY* x2, SAFEARRAY* weights, double R, double alpha,
                         int32_t alternative, double* ratio, double* F, double* critical, double* df1,
                         double* df2, double* pValue, double* lower, double* upper) {
    const inside::ArraySamples samples(x1, x2, weights);
    return FTest2Samples(samples.first(), samples.n(), samples.second(), samples.weights(), R, alpha,
                         alternative, ratio, F, critical, df1, df2, pValue, lower, upper);
}

int32_t Cpp_FTest2SamplesNew(const double* x1, int32_t n1, const double* x2, int32_t n2, const double* weights1,
                             const double* weights2, double R, double alpha, int32_t alternative,
                             int16_t weightedDf, ResamplingOptions* resampling, double* ratio, double* F,
                             double* critical, double* df1, double* df2, double* pValue, double* lower,
                             double* upper) {
    return inside::withCopy(resampling, [&](ResamplingOptions* options) {
        return inside::withinMemory([&] {
            const auto first = inside::compactSample(cellsAt(x1, n1), cellsAt(weights1, n1));
            const auto second = inside::compactSample(cellsAt(x2, n2), cellsAt(weights2, n2));
            const RatioOutputs out{ratio, F, critical, df1, df2, pValue, lower, upper};
            return out.write(inside::varianceRatioTest(first.view(), second.view(), isTrue(weightedDf),
                                                       questionOf(R, alpha, alternative, options)));
        });
    });
}

int32_t FRatioTest(double variance1, int32_t n1, double variance2, int32_t n2, double R, double alpha,
                   int32_t alternative, double* ratio, double* F, double* critical, double* df1, double* df2,
                   double* pValue, double* lower, double* upper) {
    const RatioOutputs out{ratio, F, critical, df1, df2, pValue, lower, upper};
    if (n1 < 2 || n2 < 2) return out.write({});
    return out.write(inside::varianceRatioTest({variance1, n1 - 1.0}, {variance2, n2 - 1.0},
                                               questionOf(R, alpha, alternative, nullptr)));
}

int32_t Cpp_VarTestOneSample(const double* x, int32_t n, const double* weights, double sigma2, double alpha,
                             int32_t alternative, double* variance, double* ratio, double* chiSquare,
                             double* critical, double* df, double* pValue, double* lower, double* upper) {
    return inside::withinMemory([&] {
        const inside::VarianceTest test = inside::varianceTest(cellsAt(x, n), cellsAt(weights, n),
                                                               questionOf(sigma2, alpha, alternative, nullptr));
        inside::put(variance, test.variance);
        inside::put(ratio, test.ratio);
        inside::put(chiSquare, test.chiSquare);
        inside::put(critical, test.critical);
        inside::put(df, test.df);
        inside::put(pValue, test.pValue);
        inside::put(lower, test.limits.lower);
        inside::put(upper, test.limits.upper);
        return inside::kDone;
    });
}

int32_t Cpp_BTestKSamplesNew(ST_DataSet* data, int32_t firstGroup, int32_t lastGroup, double alpha,
                             ResamplingOptions* resampling, double* statistic, double* critical, double* df,
                             double* pValue) {
    return inside::withCopy(resampling, [&](ResamplingOptions* options) {
        return inside::withinMemory([&] {
            const numcore::cST_DataSet set(data);
            const Groups groups = columnRange(set, firstGroup, lastGroup);
            const BartlettOutputs out{statistic, critical, df, pValue};
            return out.write(inside::bartlettTest(groups.views, groupsQuestion(alpha, options)));
        });
    });
}

int32_t BTestKSamples(const double* data, int32_t n, int32_t k, const double* weights, double alpha,
                      double* statistic, double* critical, double* df, double* pValue) {
    return inside::withinMemory([&] {
        const Groups groups = inside::groupsOf(data, n, k, cellsAt(weights, n));
        const BartlettOutputs out{statistic, critical, df, pValue};
        return out.write(inside::bartlettTest(groups.views, groupsQuestion(alpha, nullptr)));
    });
}

int32_t VB_BTestKSamples(SAFEARRAY* data, SAFEARRAY* weights, double alpha, double* statistic, double* critical,
                         double* df, double* pValue) {
    const inside::ArrayGroups groups(data, weights);
    return BTestKSamples(groups.data(), groups.n(), groups.nGroups(), groups.weights(), alpha, statistic,
                         critical, df, pValue);
}

int32_t BTest2Samples(const double* x1, int32_t n, const double* x2, const double* weights, double alpha,
                      double* statistic, double* critical, double* df, double* pValue) {
    return inside::withinMemory([&] {
        const Groups groups = twoSamples(x1, n, x2, weights);
        const BartlettOutputs out{statistic, critical, df, pValue};
        return out.write(inside::bartlettTest(groups.views, groupsQuestion(alpha, nullptr)));
    });
}

int32_t VB_BTest2Samples(SAFEARRAY* x1, SAFEARRAY* x2, SAFEARRAY* weights, double alpha, double* statistic,
                         double* critical, double* df, double* pValue) {
    const inside::ArraySamples samples(x1, x2, weights);
    return BTest2Samples(samples.first(), samples.n(), samples.second(), samples.weights(), alpha, statistic,
                         critical, df, pValue);
}

int32_t Cpp_LTestKSamplesNew(ST_DataSet* data, int32_t firstGroup, int32_t lastGroup, double alpha,
                             int16_t median, ResamplingOptions* resampling, double* F, double* critical,
                             double* df1, double* df2, double* pValue) {
    return inside::withCopy(resampling, [&](ResamplingOptions* options) {
        return inside::withinMemory([&] {
            const numcore::cST_DataSet set(data);
            const Groups groups = columnRange(set, firstGroup, lastGroup);
            const GroupsOutputs out{F, critical, df1, df2, pValue};
            return out.write(
                inside::leveneTest(groups.views, centreOf(median), groupsQuestion(alpha, options)));
        });
    });
}

int32_t Cpp_LTest2SamplesNew(ST_DataSet* data, int32_t firstGroup, int32_t secondGroup, double alpha,
                             int16_t median, ResamplingOptions* resampling, double* F, double* critical,
                             double* df1, double* df2, double* pValue) {
    return inside::withCopy(resampling, [&](ResamplingOptions* options) {
        return inside::withinMemory([&] {
            const numcore::cST_DataSet set(data);
            const std::array columns{firstGroup, secondGroup};
            const Groups groups = inside::groupsOf(set, columns);
            const GroupsOutputs out{F, critical, df1, df2, pValue};
            return out.write(
                inside::leveneTest(groups.views, centreOf(median), groupsQuestion(alpha, options)));
        });
    });
}

int32_t LTestKSamples(const double* data, int32_t n, int32_t k, const double* weights, double alpha,
                      int16_t median, double* F, double* critical, double* df1, double* df2, double* pValue) {
    return inside::withinMemory([&] {
        const Groups groups = inside::groupsOf(data, n, k, cellsAt(weights, n));
        const GroupsOutputs out{F, critical, df1, df2, pValue};
        return out.write(inside::leveneTest(groups.views, centreOf(median), groupsQuestion(alpha, nullptr)));
    });
}

int32_t VB_LTestKSamples(SAFEARRAY* data, SAFEARRAY* weights, double alpha, int16_t median, double* F,
                         double* critical, double* df1, double* df2, double* pValue) {
    const inside::ArrayGroups groups(data, weights);
    return LTestKSamples(groups.data(), groups.n(), groups.nGroups(), groups.weights(), alpha, median, F,
                         critical, df1, df2, pValue);
}

int32_t LTest2Samples(const double* x1, int32_t n, const double* x2, const double* weights, double alpha,
                      int16_t median, double* F, double* critical, double* df1, double* df2, double* pValue) {
    return inside::withinMemory([&] {
        const Groups groups = twoSamples(x1, n, x2, weights);
        const GroupsOutputs out{F, critical, df1, df2, pValue};
        return out.write(inside::leveneTest(groups.views, centreOf(median), groupsQuestion(alpha, nullptr)));
    });
}

int32_t VB_LTest2Samples(SAFEARRAY* x1, SAFEARRAY* x2, SAFEARRAY* weights, double alpha, int16_t median,
                         double* F, double* critical, double* df1, double* df2, double* pValue) {
    const inside::ArraySamples samples(x1, x2, weights);
    return LTest2Samples(samples.first(), samples.n(), samples.second(), samples.weights(), alpha, median, F,
                         critical, df1, df2, pValue);
}

int32_t GetLKStatistics(const double* deviations, const int32_t* sizes, int32_t nGroups, double* F, double* df1,
                        double* df2) {
    return inside::withinMemory([&] {
        std::vector<inside::Sample> groups;
        const double* next = deviations;
        for (const std::int32_t size : cellsAt(deviations == nullptr ? nullptr : sizes, nGroups)) {
            if (size < 1) continue;
            groups.push_back({cellsAt(next, size), {}});
            next += size;
        }
        const GroupsOutputs out{F, nullptr, df1, df2, nullptr};
        return out.write(inside::oneWayStatistic(groups));
    });
}
