#include "tests/resampling/resampling.hpp"

#include <gtest/gtest.h>
#include <omp.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "reference_table.hpp"
#include "suite/rngcore.hpp"

namespace {

using namespace numcore;
using namespace numcore::tests;
using numcore::testing::agrees;
using numcore::testing::Row;

constexpr Statistic kStatistics[] = {
    Statistic::kZ,       Statistic::kT,       Statistic::kWelch,         Statistic::kPairedZ,
    Statistic::kPairedT, Statistic::kOneMean, Statistic::kVarianceRatio, Statistic::kBartlett,
    Statistic::kLevene,  Statistic::kOneWayF, Statistic::kWelchF};

Statistic statisticOf(const std::string& name) {
    static const std::map<std::string, Statistic> names = {
        {"z", Statistic::kZ},
        {"t", Statistic::kT},
        {"welch", Statistic::kWelch},
        {"pairedz", Statistic::kPairedZ},
        {"pairedt", Statistic::kPairedT},
        {"onemean", Statistic::kOneMean},
        {"ratio", Statistic::kVarianceRatio},
        {"bartlett", Statistic::kBartlett},
        {"levene", Statistic::kLevene},
        {"oneway", Statistic::kOneWayF},
        {"welchf", Statistic::kWelchF},
    };
    return names.at(name);
}

bool hasOneGroup(Statistic statistic) {
    return statistic == Statistic::kPairedZ || statistic == Statistic::kPairedT ||
           statistic == Statistic::kOneMean;
}

ResamplingOptions optionsOf(std::int16_t method, std::int64_t nResamples, std::int32_t seed) {
    ResamplingOptions options = {};
    options.useResampling = -1;
    options.method = method;
    options.nResamples = nResamples;
    options.seed = seed;
    options.seedGiven = -1;
    return options;
}

/// A request that owns its observations.
struct Case {
    std::vector<std::vector<double>> values, weights;
    std::vector<double> variances;
    std::vector<Sample> samples;
    ResamplingRequest request;

    explicit Case(const Row& row) {
        request.statistic = statisticOf(row.text("statistic"));
        request.hypothesised = row["hypothesised"];
        request.alpha = row["alpha"];
        request.alternative = alternativeOf(static_cast<std::int32_t>(row["alternative"]));
        if (!row.text("variances").empty()) variances = row.list("variances");
        for (const char* group : {"1", "2", "3"}) {
            const std::string valuesColumn = std::string("values") + group;
            const std::string weightsColumn = std::string("weights") + group;
            if (row.text(valuesColumn).empty()) continue;
            add(row.list(valuesColumn),
                row.text(weightsColumn).empty() ? std::vector<double>() : row.list(weightsColumn));
        }
        finish();
    }

    /// Groups of the given sizes with normal-like values, the later ones larger and wider.
    Case(Statistic statistic, const std::vector<std::size_t>& sizes) {
        request.statistic = statistic;
        if (statistic == Statistic::kVarianceRatio) request.hypothesised = 1.0;
        std::uint64_t from = 0;
        for (const std::size_t n : sizes) {
            std::vector<double> group(n);
            rngcore::fillUniform(5, from, group);
            from += n;
            const auto g = static_cast<double>(values.size());
            for (double& x : group) x = 0.3 * g + (1.0 + 0.2 * g) * std::log(x / (1.0 - x));
            add(group, {});
            if (hasOneGroup(statistic)) break;
        }
        finish();
    }
    Case(const Case&) = delete;
    Case& operator=(const Case&) = delete;

    void add(const std::vector<double>& x, const std::vector<double>& w) {
        values.push_back(x);
        weights.push_back(w);
    }
    void finish() {
        for (std::size_t g = 0; g < values.size(); ++g) samples.push_back({values[g], weights[g]});
        request.groups = samples;
        request.givenVariances = variances;
    }
};

TEST(Resampling, EveryArrangementMatchesBruteForce) {
    for (const Row& row : numcore::testing::readTable("tests/resampling_exact.csv")) {
        SCOPED_TRACE(row.text("id"));
        const Case c(row);
        ResamplingOptions options = optionsOf(NUMCORE_RESAMPLE_AUTOMATIC, 0, 1);
        const Resampled found = resample(c.request, options);
        ASSERT_TRUE(found.ok);
        EXPECT_EQ(options.outcome, NUMCORE_RESAMPLED | NUMCORE_RESAMPLED_ALL);
        EXPECT_EQ(static_cast<double>(options.nUsed), row["n"]);
        EXPECT_EQ(static_cast<double>(options.nExtreme), row["extreme"]);
        EXPECT_TRUE(agrees(found.pValue, row["p"], 1e-14)) << found.pValue;
        EXPECT_TRUE(agrees(found.critical, row["critical"], 1e-11)) << found.critical;
        EXPECT_EQ(found.pFrom, found.pValue);
        EXPECT_EQ(found.pTo, found.pValue);
        if (row.text("lower").empty()) {
            EXPECT_EQ(found.lowerCritical, kMissing);
        } else {
            EXPECT_TRUE(agrees(found.lowerCritical, row["lower"], 1e-11)) << found.lowerCritical;
        }

        // Drawn permutations of the same data tell as much as their limits say.
        options = optionsOf(NUMCORE_RESAMPLE_PERMUTATION, 20000, 3);
        const Resampled drawn = resample(c.request, options);
        EXPECT_EQ(options.outcome, NUMCORE_RESAMPLED);
        EXPECT_LE(drawn.pFrom, row["p"] * (1.0 + 1e-12));
        EXPECT_GE(drawn.pTo, row["p"] * (1.0 - 1e-12));
    }
}

TEST(Resampling, ThreadsDoNotChangeABit) {
    const int before = omp_get_max_threads();
    for (const Statistic statistic : kStatistics) {
        SCOPED_TRACE(static_cast<int>(statistic));
        const Case large(statistic, {30, 70, 55});
        Case few(statistic, {5, 7});
        const bool takesThree = statistic >= Statistic::kBartlett;
        ResamplingRequest request = large.request;
        if (!takesThree && !hasOneGroup(statistic)) request.groups = request.groups.first(2);
        for (const std::int16_t method : {std::int16_t{0}, std::int16_t{1}, std::int16_t{2}}) {
            for (const ResamplingRequest& r : {request, few.request}) {
                Resampled first;
                for (const int threads : {1, 2, 8}) {
                    omp_set_num_threads(threads);
                    ResamplingOptions options = optionsOf(method, 4001, 9);
                    const Resampled found = resample(r, options);
                    ASSERT_TRUE(found.ok);
                    if (threads == 1) first = found;
                    EXPECT_EQ(found.pValue, first.pValue);
                    EXPECT_EQ(found.critical, first.critical);
                    EXPECT_EQ(found.lowerCritical, first.lowerCritical);
                }
            }
        }
    }
    omp_set_num_threads(before);
}

TEST(Resampling, LimitsHoldTheDrawnPValue) {
    const Case c(Statistic::kT, {40, 25});
    ResamplingOptions options = optionsOf(NUMCORE_RESAMPLE_AUTOMATIC, 9999, 2);
    const Resampled found = resample(c.request, options);
    EXPECT_EQ(found.pValue, (static_cast<double>(options.nExtreme) + 1.0) / 10000.0);
    EXPECT_LT(found.pFrom, found.pValue);
    EXPECT_GT(found.pTo, found.pValue);
    // R 4.2.2: binom.test(0, 999, conf.level = 0.99).
    const Case unlike(Statistic::kT, {200, 200});
    ResamplingRequest distant = unlike.request;
    distant.hypothesised = 1e3;
    options = optionsOf(NUMCORE_RESAMPLE_AUTOMATIC, 999, 2);
    const Resampled none = resample(distant, options);
    EXPECT_EQ(options.nExtreme, 0);
    EXPECT_EQ(none.pValue, 0.001);
    EXPECT_EQ(none.pFrom, 0.0);
    EXPECT_NEAR(none.pTo, 0.00528958162053871, 1e-12);
}

TEST(Resampling, SeedsAndTheRecord) {
    const Case c(Statistic::kT, {40, 25});
    ResamplingOptions options = optionsOf(NUMCORE_RESAMPLE_AUTOMATIC, 0, 11);
    const Resampled first = resample(c.request, options);
    EXPECT_EQ(options.nUsed, NUMCORE_RESAMPLES_DEFAULT);
    EXPECT_EQ(options.seed, 11);
    options.seed = 12;
    EXPECT_NE(resample(c.request, options).critical, first.critical);

    // A seed of chance comes back, and gives the same again.
    options.seedGiven = 0;
    const Resampled chance = resample(c.request, options);
    options.seedGiven = -1;
    const Resampled again = resample(c.request, options);
    EXPECT_EQ(again.critical, chance.critical);
    options.seedGiven = 1;  // not true
    const std::int32_t before = options.seed;
    resample(c.request, options);
    EXPECT_NE(options.seed, before);
}

TEST(Resampling, TimeLimitLeavesAPrefix) {
    const Case c(Statistic::kWelchF, {300, 200});
    ResamplingOptions options = optionsOf(NUMCORE_RESAMPLE_PERMUTATION, NUMCORE_RESAMPLES_LARGEST, 4);
    for (const double limit : {1e-12, 0.05}) {
        options.timeLimit = limit;
        const Resampled stopped = resample(c.request, options);
        EXPECT_EQ(options.outcome, NUMCORE_RESAMPLED | NUMCORE_RESAMPLED_STOPPED);
        EXPECT_GT(options.nUsed, 0);
        EXPECT_LT(options.nUsed, NUMCORE_RESAMPLES_LARGEST);
        ResamplingOptions repeat = optionsOf(NUMCORE_RESAMPLE_PERMUTATION, options.nUsed, 4);
        const Resampled whole = resample(c.request, repeat);
        EXPECT_EQ(repeat.outcome, NUMCORE_RESAMPLED);
        EXPECT_EQ(repeat.nExtreme, options.nExtreme);
        EXPECT_EQ(whole.pValue, stopped.pValue);
        EXPECT_EQ(whole.critical, stopped.critical);
    }
    // One that is not reached changes nothing.
    options.nResamples = 3000;
    options.timeLimit = 1e6;
    resample(c.request, options);
    EXPECT_EQ(options.nUsed, 3000);
    EXPECT_EQ(options.outcome, NUMCORE_RESAMPLED);
}

TEST(Resampling, AbsurdOptionsMeanTheDefaults) {
    const Case c(Statistic::kPairedT, {12});
    const double nan = std::nan("");
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double limit : {nan, infinity, -infinity, -1.0, kMissing, 0.0}) {
        ResamplingOptions options = optionsOf(-77, std::numeric_limits<std::int64_t>::min(), 4);
        options.timeLimit = limit;
        options.maxArrangements = std::numeric_limits<std::int64_t>::min();
        EXPECT_TRUE(resample(c.request, options).ok);
        EXPECT_EQ(options.nUsed, NUMCORE_RESAMPLES_DEFAULT);  // a negative bound: never every arrangement
        EXPECT_EQ(options.outcome, NUMCORE_RESAMPLED);
    }
    ResamplingOptions options = optionsOf(0, 5, 4);
    options.maxArrangements = std::numeric_limits<std::int64_t>::max();
    EXPECT_TRUE(resample(c.request, options).ok);
    EXPECT_EQ(options.nUsed, 4096);
    EXPECT_EQ(options.outcome, NUMCORE_RESAMPLED | NUMCORE_RESAMPLED_ALL | NUMCORE_RESAMPLED_BOUNDED);
    options.maxArrangements = 4095;
    resample(c.request, options);
    EXPECT_EQ(options.nUsed, 5);
    options.nResamples = std::numeric_limits<std::int64_t>::max();
    options.timeLimit = 1e-9;
    resample(c.request, options);
    EXPECT_EQ(options.outcome, NUMCORE_RESAMPLED | NUMCORE_RESAMPLED_STOPPED | NUMCORE_RESAMPLED_BOUNDED);

    // One observation against very many has many arrangements of a long row: they are drawn.
    const Case lopsided(Statistic::kT, {1, 70000});
    options = optionsOf(0, 200, 4);
    EXPECT_TRUE(resample(lopsided.request, options).ok);
    EXPECT_EQ(options.nUsed, 200);
}

TEST(Resampling, DataWithoutAStatisticGivesNothing) {
    const std::vector<double> good = {1.0, 2.0, 4.0};
    const std::vector<double> none;
    const auto fails = [](Statistic statistic, const std::vector<Sample>& groups, double hypothesised = 1.0,
                          std::vector<double> variances = {}) {
        ResamplingRequest request;
        request.statistic = statistic;
        request.groups = groups;
        request.hypothesised = hypothesised;
        request.givenVariances = variances;
        ResamplingOptions options = optionsOf(0, 50, 1);
        options.nUsed = options.nExtreme = 77;
        options.outcome = 77;
        const Resampled found = resample(request, options);
        return !found.ok && found.pValue == kMissing && found.critical == kMissing && found.pFrom == kMissing &&
               options.nUsed == 0 && options.nExtreme == 0 && options.outcome == 0;
    };
    for (const Statistic statistic : kStatistics) {
        EXPECT_TRUE(fails(statistic, {}));
        EXPECT_TRUE(fails(statistic, {{none, {}}}));
        EXPECT_TRUE(fails(statistic, {{none, {}}, {none, {}}}));
        EXPECT_TRUE(hasOneGroup(statistic) || fails(statistic, {{good, {}}}));
        for (const double bad : {std::nan(""), std::numeric_limits<double>::infinity(), kMissing}) {
            const std::vector<double> values = {1.0, bad, 3.0};
            EXPECT_TRUE(fails(statistic, {{values, {}}, {good, {}}}));
            EXPECT_TRUE(fails(statistic, {{good, values}, {good, {}}}));
            EXPECT_TRUE(!hasOneGroup(statistic) || fails(statistic, {{values, {}}}));
        }
    }
    const std::vector<double> one = {2.0};
    const std::vector<double> light = {0.2, 0.3, 0.1};
    const std::vector<double> zero = {1.0, 0.0, 1.0};
    EXPECT_TRUE(fails(Statistic::kPairedT, {{one, {}}}));
    EXPECT_TRUE(fails(Statistic::kOneMean, {{good, {}}}, 0.0, {1.0, 1.0}));
    EXPECT_TRUE(fails(Statistic::kWelch, {{one, {}}, {good, {}}}));
    EXPECT_TRUE(fails(Statistic::kWelch, {{good, light}, {good, light}}));
    EXPECT_TRUE(fails(Statistic::kT, {{good, zero}, {good, {}}}));
    EXPECT_TRUE(fails(Statistic::kT, {{good, one}, {good, {}}}));
    EXPECT_TRUE(fails(Statistic::kT, {{good, {}}, {good, {}}, {good, {}}}));
    EXPECT_TRUE(fails(Statistic::kT, {{good, {}}, {good, {}}}, std::nan("")));
    EXPECT_TRUE(fails(Statistic::kVarianceRatio, {{good, {}}, {good, {}}}, 0.0));
    EXPECT_TRUE(fails(Statistic::kVarianceRatio, {{good, {}}, {one, {}}}));
    EXPECT_TRUE(fails(Statistic::kZ, {{good, {}}, {good, {}}}, 0.0, {1.0}));
    EXPECT_TRUE(fails(Statistic::kZ, {{good, {}}, {good, {}}}, 0.0, {1.0, -1.0}));
}

TEST(Resampling, ScaleAndPlaceOfTheDataDoNotMatter) {
    // Powers of two, so that the resampled statistics are the same but for rounding.
    for (const Statistic statistic :
         {Statistic::kT, Statistic::kWelch, Statistic::kVarianceRatio, Statistic::kOneWayF}) {
        SCOPED_TRACE(static_cast<int>(statistic));
        const Case c(statistic, {20, 30});
        ResamplingOptions options = optionsOf(0, 999, 8);
        const Resampled plain = resample(c.request, options);
        for (const double scale : {0x1p1000, 0x1p-1000}) {
            Case other(statistic, {20, 30});
            for (auto& group : other.values) {
                for (double& x : group) x = 0.25 * scale * x;
            }
            const Resampled found = resample(other.request, options);
            EXPECT_EQ(found.pValue, plain.pValue);
            EXPECT_NEAR(found.critical, plain.critical, 1e-12 * plain.critical);
        }
        Case moved(statistic, {20, 30});
        for (auto& group : moved.values) {
            for (double& x : group) x += 1e7;
        }
        const Resampled found = resample(moved.request, options);
        EXPECT_EQ(found.pValue, plain.pValue);
        EXPECT_NEAR(found.critical, plain.critical, 1e-7 * plain.critical);
    }
}

TEST(Resampling, BootstrapAgreesWithTheLaws) {
    // R 4.2.2: the laws' quantiles at 0.975 (t with 248 and 149, z) and 0.95 (F with 1 and 248). The
    // logistic-like data is symmetric, so that the bootstrap of large groups comes close.
    const auto criticalOf = [](Statistic statistic) {
        const Case c(statistic, {150, 100});
        ResamplingOptions options = optionsOf(NUMCORE_RESAMPLE_BOOTSTRAP, 20000, 6);
        const Resampled found = resample(c.request, options);
        EXPECT_TRUE(found.ok);
        EXPECT_EQ(options.outcome, NUMCORE_RESAMPLED);
        return found.critical;
    };
    EXPECT_NEAR(criticalOf(Statistic::kWelch), 1.9696, 0.06);
    EXPECT_NEAR(criticalOf(Statistic::kZ), 1.9600, 0.06);
    EXPECT_NEAR(criticalOf(Statistic::kPairedT), 1.9760, 0.06);
    EXPECT_NEAR(criticalOf(Statistic::kOneMean), 1.9760, 0.06);
    EXPECT_NEAR(criticalOf(Statistic::kLevene), 3.8789, 0.5);
}

TEST(Resampling, BootstrapImposesTheHypothesis) {
    // The critical value is that of the hypothesis, whatever the data says of it; the p-value is not.
    for (const Statistic statistic : kStatistics) {
        if (statistic == Statistic::kBartlett || statistic >= Statistic::kLevene) continue;
        SCOPED_TRACE(static_cast<int>(statistic));
        const Case c(statistic, {25, 35});
        ResamplingRequest other = c.request;
        other.hypothesised = 40.0;
        ResamplingOptions options = optionsOf(NUMCORE_RESAMPLE_BOOTSTRAP, 999, 6);
        const Resampled close = resample(c.request, options);
        const Resampled distant = resample(other, options);
        EXPECT_NEAR(close.critical, distant.critical, 1e-9 * close.critical);
        EXPECT_EQ(distant.pValue, statistic == Statistic::kVarianceRatio ? 0.002 : 0.001);
        EXPECT_GT(close.pValue, 0.002);
    }
}

TEST(Resampling, LevelsOutsideTheUnitInterval) {
    const Case c(Statistic::kT, {6, 5});
    ResamplingRequest request = c.request;
    ResamplingOptions options = optionsOf(0, 0, 1);
    const auto criticalAt = [&](double alpha) {
        request.alpha = alpha;
        return resample(request, options).critical;
    };
    EXPECT_EQ(criticalAt(std::nan("")), kMissing);
    EXPECT_EQ(criticalAt(-3.0), criticalAt(0.0));
    EXPECT_EQ(criticalAt(1e-9), criticalAt(0.0));
    EXPECT_EQ(criticalAt(2.0), criticalAt(1.0));
    EXPECT_LT(criticalAt(1.0), criticalAt(0.5));
    EXPECT_LT(criticalAt(0.5), criticalAt(0.05));
}

}  // namespace
