// Tests of means: against reference values, between one another, and what is kept as it is.

#include <cmath>
#include <limits>

#include "numcore/special.h"
#include "parametric_calls.hpp"
#include "suite/rngcore.hpp"

namespace {

using namespace numcore::testing;

const char* const kFile = "parametric/means.csv";
constexpr double kInfinity = std::numeric_limits<double>::infinity();
const Values kFirst = {0.7, -1.6, -0.2, -1.2, -0.1, 3.4, 3.7, 0.8, 0.0, 2.0};
const Values kSecond = {1.9, 0.8, 1.1, 0.1, -0.1, 4.4, 5.5, 1.6, 4.6, 3.4};

MeanOptions optionsOf(const Row& row) {
    MeanOptions options;
    options.hypothesised = row["hypothesised"];
    options.alpha = row["alpha"];
    options.alternative = static_cast<std::int32_t>(row["alternative"]);
    options.equal = flag(row, "equal");
    options.cochran = flag(row, "cochran");
    options.paired = flag(row, "paired");
    options.given = flag(row, "given");
    options.variance1 = orZero(row, "variance1");
    options.variance2 = orZero(row, "variance2");
    options.weights = row.list("w");
    options.weights2 = row.list("w2");
    return options;
}

void expectOutcome(const Row& row, const Outcome& got, int nPairs = 0) {
    expectCells(row, {{"status", got.status},
                      {"difference", got.estimate},
                      {"statistic", got.statistic},
                      {"critical", got.critical},
                      {"df", got.df},
                      {"p", got.p},
                      {"lower", got.lower},
                      {"upper", got.upper},
                      {"pairs", nPairs}});
}

TEST(Means, MatchReference) {
    for (const Row& row : rowsOf(kFile, "ttest_one"))
        expectOutcome(row, tTestOne(row.list("x"), optionsOf(row)));
    for (const char* test : {"ttest_two", "ztest"}) {
        for (const Row& row : rowsOf(kFile, test)) {
            MeanOptions options = optionsOf(row);
            ST_PairOutput pairs{1, 0, nullptr, nullptr};
            options.pairs = &pairs;
            const auto call = row.text("test") == "ztest" ? zTest : tTest;
            const Outcome got = call(row.list("x"), row.list("y"), options);
            expectOutcome(row, got, pairs.nPairs);
        }
    }
    for (const Row& row : rowsOf("parametric/more_tests.csv", "z")) {
        const auto alternative = static_cast<std::int32_t>(row["alternative"]);
        const Outcome got = zTestOne(
            row.list("x"),
            {.hypothesised = row["o1"], .alternative = alternative, .given = -1, .variance1 = row["o2"]});
        expectList(row, {got.statistic, got.p, got.lower, got.upper});
    }
}

TEST(Means, WelchAnovaMatchesReference) {
    for (const Row& row : rowsOf("parametric/more_tests.csv", "welch")) {
        const Values x = row.list("x");
        const Values w = row.list("w");
        std::vector<std::int32_t> groups;
        for (const double n : row.list("n"))
            groups.insert(groups.end(), static_cast<std::size_t>(n), groups.empty() ? 1 : groups.back() + 1);
        Outcome got;
        ASSERT_EQ(ComputeWelchANOVA(x.data(), groups.data(), orNull(w), size(x), 10, row["alpha"], nullptr,
                                    &got.statistic, &got.critical, &got.df, &got.df2, &got.p),
                  0);
        expectList(row, {got.statistic, got.df, got.df2, got.p, got.critical});
    }
}

TEST(Means, TestsAgreeWithOneAnother) {
    Values differences;
    for (std::size_t i = 0; i < kFirst.size(); ++i) differences.push_back(kFirst[i] - kSecond[i]);
    for (const std::int32_t alternative : {0, -1, 1}) {
        const Outcome paired = tTest(kFirst, kSecond, {.alternative = alternative, .paired = -1});
        const Outcome one = tTestOne(differences, {.alternative = alternative});
        EXPECT_NEAR(paired.statistic, one.statistic, 1e-12);
        EXPECT_NEAR(paired.p, one.p, 1e-13);
        EXPECT_NEAR(paired.df, one.df, 0.0);
        const Outcome pairedZ = zTest(kFirst, kSecond, {.alternative = alternative, .paired = -1});
        EXPECT_NEAR(pairedZ.p, zTestOne(differences, {.alternative = alternative}).p, 1e-13);
        EXPECT_NEAR(pairedZ.statistic, paired.statistic, 1e-12) << "without weights the errors are the same";
    }
    // Two groups: Welch's F is the square of Welch's t.
    Values all = kFirst;
    all.insert(all.end(), kSecond.begin(), kSecond.end());
    std::vector<std::int32_t> groups(kFirst.size(), 2);
    groups.resize(all.size(), 5);
    const Outcome t = tTest(kFirst, kSecond);
    Outcome f;
    ComputeWelchANOVA(all.data(), groups.data(), nullptr, size(all), 5, 0.05, nullptr, &f.statistic,
                      &f.critical, &f.df, &f.df2, &f.p);
    EXPECT_NEAR(f.statistic, t.statistic * t.statistic, 1e-12);
    EXPECT_NEAR(f.df2, t.df, 1e-10);
    EXPECT_NEAR(f.p, t.p, 1e-12);
}

TEST(Means, PooledTIsTheFOfTwoGroups) {
    Values all = kFirst;
    all.insert(all.end(), kSecond.begin(), kSecond.begin() + 6);
    const std::int32_t sizes[] = {size(kFirst), 6};
    Outcome f;
    ASSERT_EQ(GetLKStatistics(all.data(), sizes, 2, &f.statistic, &f.df, &f.df2), 0);
    const Outcome t = tTest(kFirst, Values(kSecond.begin(), kSecond.begin() + 6), {.equal = -1});
    EXPECT_NEAR(t.statistic * t.statistic, f.statistic, 1e-12);
    EXPECT_EQ(t.df, f.df2);
}

TEST(Means, ZIsTAtLargeSamples) {
    Values x(20000);
    Values y(20000);
    numcore::rngcore::fillUniform(1, 0, x);
    numcore::rngcore::fillUniform(2, 0, y);
    const Outcome t = tTest(x, y);
    const Outcome z = zTest(x, y);
    EXPECT_NEAR(z.statistic, t.statistic, 1e-12);
    EXPECT_NEAR(z.p, t.p, 1e-5);
    EXPECT_NEAR(z.upper, t.upper, 1e-6);
}

// Kept: only -1 is a true flag; an alternative other than 0 and -1 is upper.
TEST(Means, FlagsAndCodes) {
    EXPECT_EQ(tTest(kFirst, kSecond, {.equal = 1}).df, tTest(kFirst, kSecond).df);
    EXPECT_EQ(tTest(kFirst, kSecond, {.equal = -1}).df, 18.0);
    EXPECT_EQ(tTest(kFirst, kSecond, {.paired = 1}).df, tTest(kFirst, kSecond).df);
    EXPECT_EQ(zTest(kFirst, kSecond, {.given = 1}).statistic, zTest(kFirst, kSecond).statistic);
    EXPECT_EQ(tTest(kFirst, kSecond, {.alternative = 7}).p, tTest(kFirst, kSecond, {.alternative = 1}).p);
    EXPECT_EQ(tTest(kFirst, kSecond, {.alternative = -2}).p, tTest(kFirst, kSecond, {.alternative = 1}).p);
}

// Kept: the Cochran-Cox value is of counts whatever the weights.
TEST(Means, WeightsOfTwo) {
    const Values two(kFirst.size(), 2.0);
    const MeanOptions plain{.equal = -1, .cochran = -1};
    const MeanOptions weighted{.equal = -1, .cochran = -1, .weights = two, .weights2 = two};
    const Outcome got = tTest(kFirst, kSecond, weighted);
    EXPECT_EQ(got.df, 38.0);
    EXPECT_NEAR(got.critical, 2.262157162, 1e-7) << "9 degrees of freedom";
    EXPECT_EQ(got.critical, tTest(kFirst, kSecond, plain).critical);
    EXPECT_NE(got.statistic, tTest(kFirst, kSecond, plain).statistic);
    // z: the error has the counts.
    EXPECT_NEAR(zTest(kFirst, kSecond, {.given = -1, .variance1 = 1, .variance2 = 1, .weights = two}).statistic,
                zTest(kFirst, kSecond, {.given = -1, .variance1 = 1, .variance2 = 1}).statistic, 1e-14);
}

// Kept: pairs take the first weights only, and drop where either value is absent.
TEST(Means, Pairs) {
    Values x = kFirst;
    Values y = kSecond;
    x[2] = kNone;
    y[5] = std::nan("");
    Values w(10, 1.0);
    w[7] = 2e-16;
    double means[10];
    double differences[10];
    ST_PairOutput pairs{1, -7, means, differences};
    const MeanOptions options{.paired = -1, .weights = w, .weights2 = Values(10, -3.0), .pairs = &pairs};
    const Outcome got = tTest(x, y, options);
    EXPECT_EQ(got.df, 6.0);
    ASSERT_EQ(pairs.nPairs, 7);
    EXPECT_EQ(means[2], (x[3] + y[3]) * 0.5);
    EXPECT_EQ(differences[6], x[9] - y[9]);
    pairs = {0, -7, means, differences};
    tTest(x, y, options);
    EXPECT_EQ(pairs.nPairs, -7) << "not requested";
    pairs.requested = 5;
    zTest(x, y, {.pairs = &pairs});
    EXPECT_EQ(pairs.nPairs, -7) << "not paired";
    y.resize(4);
    EXPECT_EQ(tTest(x, y, {.paired = -1}).df, 2.0) << "the second sample is shorter";
}

TEST(Means, TooFewObservations) {
    const Outcome few = tTest({1.0}, {2.0, 3.0, 5.0});
    EXPECT_EQ(few.status, -1);
    for (const double cell : {few.estimate, few.statistic, few.critical, few.p, few.lower, few.upper})
        EXPECT_EQ(cell, kNone);
    EXPECT_EQ(few.df, kUntouched);
    EXPECT_EQ(tTest({1.0}, {2.0, 3.0, 5.0}, {.equal = -1}).status, 0) << "pooled: one sample may be single";
    EXPECT_EQ(tTest({1.0}, {2.0}, {.equal = -1}).status, -1);
    EXPECT_EQ(tTest({}, {2.0, 3.0}, {.equal = -1}).status, -1);
    EXPECT_EQ(zTest({1.0}, {2.0, 3.0}).status, -1);
    EXPECT_EQ(zTest({1.0}, {2.0, 3.0}).estimate, kNone);
    for (const Outcome& paired : {tTest({1.0}, {2.0}, {.paired = -1}), zTest({1.0}, {2.0}, {.paired = -1})}) {
        EXPECT_EQ(paired.status, -1);
        EXPECT_EQ(paired.estimate, kUntouched);
        EXPECT_EQ(paired.upper, kUntouched);
    }
    EXPECT_EQ(zTestOne({5.0}, {.hypothesised = 4.0, .given = -1, .variance1 = 0.25}).statistic, 2.0);
    EXPECT_EQ(zTestOne({5.0}).status, -1);
    EXPECT_EQ(tTestOne({}).status, -1);
    EXPECT_EQ(tTestOne({}).df, -1.0);
}

TEST(Means, NoSpread) {
    const Values fives(3, 5.0);
    // Kept: the zero test looks at the difference, the sign test at its distance from D.
    EXPECT_EQ(tTest(fives, fives, {.hypothesised = 1.0}).statistic, 0.0);
    EXPECT_EQ(tTest(fives, {4, 4}, {.hypothesised = 1.0}).statistic, kNone);
    EXPECT_EQ(tTest(fives, {4, 4}, {.hypothesised = 0.5}).statistic, kHuge);
    EXPECT_EQ(tTest(fives, {4, 4}, {.hypothesised = 1.0}).status, 0);
    EXPECT_EQ(tTest(fives, {4, 4}).df, 3.0) << "Welch without variance";
    EXPECT_EQ(tTest(fives, {4, 4}).p, 0.0);
    EXPECT_EQ(tTest(fives, {4, 4}, {.alternative = -1}).p, 1.0);
    EXPECT_EQ(tTest(fives, {4, 4}, {.cochran = -1}).critical, kNone) << "no variances to weigh with";
    EXPECT_EQ(zTest(fives, {4, 4}).statistic, kHuge);
    EXPECT_EQ(zTest(fives, fives).statistic, kNone) << "no zero case";
    EXPECT_EQ(zTest(fives, {4, 4}, {.given = -1, .variance1 = -1.0}).status, -2);
    EXPECT_EQ(zTestOne(fives).status, -2);
    EXPECT_EQ(zTestOne(fives).upper, kHuge);
}

// Kept: the one-sample test counts every value that is not missing, whatever its weight.
TEST(Means, OneSampleCountsValues) {
    Values w(10, 1.0);
    w[0] = w[1] = 0.0;
    EXPECT_EQ(tTestOne(kFirst, {.weights = w}).df, 9.0);
}

TEST(Means, BadInput) {
    const Values infinite = {1.0, kInfinity, 2.0};
    const Outcome got = tTest(infinite, kSecond);
    EXPECT_EQ(got.status, -2);
    EXPECT_EQ(got.statistic, kNone);
    EXPECT_EQ(got.upper, kNone);
    EXPECT_EQ(tTest({1.0, -kInfinity, 2.0, std::nan("")}, kSecond).status, 0) << "left out";
    EXPECT_EQ(tTestOne(infinite).status, -2);
    EXPECT_EQ(tTestOne(kFirst, {.hypothesised = std::nan("")}).status, -2);
    EXPECT_EQ(tTest(kFirst, kSecond, {.hypothesised = std::nan("")}).p, kNone);
    EXPECT_EQ(
        tTest(kFirst, kSecond, {.equal = -1, .weights = Values(10, 0.05), .weights2 = Values(10, 0.05)}).status,
        -2)
        << "weights of 1 in sum";
    EXPECT_EQ(tTest(kFirst, kSecond, {.alpha = std::nan("")}).critical, kNone);
    EXPECT_EQ(tTest(kFirst, kSecond, {.alpha = 0.0}).upper, kHuge);
    EXPECT_EQ(Cpp_TTest2SamplesNew(nullptr, 5, nullptr, -3, nullptr, nullptr, 0, 0.05, 0, 0, 0, 0, nullptr,
                                   nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
              -1);
    EXPECT_EQ(ComputeWelchANOVA(kFirst.data(), nullptr, nullptr, 10, 3, 0.05, nullptr, nullptr, nullptr,
                                nullptr, nullptr, nullptr),
              -1);
    const std::int32_t groups[] = {1, 1, 2, 2, INT32_MAX};
    const double flat[] = {1, 2, 3, 3, 4};
    double F = 0.0;
    EXPECT_EQ(
        ComputeWelchANOVA(flat, groups, nullptr, 5, 2, 0.05, nullptr, &F, nullptr, nullptr, nullptr, nullptr),
        -2);
    EXPECT_EQ(F, kNone);
    EXPECT_EQ(ComputeWelchANOVA(flat, groups, nullptr, 5, INT32_MAX, 0.05, nullptr, nullptr, nullptr, nullptr,
                                nullptr, nullptr),
              -1)
        << "a group of one";
}

// Limits cover the true difference as often as they say: 4000 normal samples of a fixed seed.
TEST(Means, LimitsCover) {
    constexpr int kRuns = 4000;
    int covered[4] = {0, 0, 0, 0};
    Values x(8);
    Values y(12);
    for (int run = 0; run < kRuns; ++run) {
        Values u(20);
        numcore::rngcore::fillUniform(11, static_cast<std::uint64_t>(run) * 20, u);
        for (std::size_t i = 0; i < 8; ++i) x[i] = 3.0 + InvCDFNormalStd(u[i]);
        for (std::size_t i = 0; i < 12; ++i) y[i] = 1.0 + InvCDFNormalStd(u[8 + i]);
        const Outcome outcomes[] = {tTest(x, y, {.equal = -1}), tTest(x, y, {.alpha = 0.1}),
                                    zTest(x, y, {.given = -1, .variance1 = 1.0, .variance2 = 1.0}),
                                    tTest(x, y, {.alternative = 1})};
        for (int k = 0; k < 4; ++k) covered[k] += outcomes[k].lower <= 2.0 && 2.0 <= outcomes[k].upper ? 1 : 0;
    }
    const double wanted[] = {0.95, 0.9, 0.95, 0.95};
    for (int k = 0; k < 4; ++k) {
        const double error = std::sqrt(wanted[k] * (1.0 - wanted[k]) / kRuns);
        EXPECT_NEAR(static_cast<double>(covered[k]) / kRuns, wanted[k], 3.0 * error) << k;
    }
}

}  // namespace
