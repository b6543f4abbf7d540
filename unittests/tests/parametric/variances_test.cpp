// Tests of variances: against reference values, and what is kept as it is.

#include <cmath>
#include <sstream>

#include "numcore/special.h"
#include "parametric_calls.hpp"
#include "suite/rngcore.hpp"

namespace {

using namespace numcore::testing;

const Values kFirst = {1, 4, 2, 8};
const Values kSecond = {5, 7, 1.5, 9, 3, 3.5};

Outcome varianceTest(const Values& x, double sigma2, double alpha = 0.05, int alternative = 0,
                     const Values& weights = {}) {
    Outcome r;
    r.status = Cpp_VarTestOneSample(x.data(), size(x), orNull(weights), sigma2, alpha, alternative, &r.estimate,
                                    &r.ratio, &r.statistic, &r.critical, &r.df, &r.p, &r.lower, &r.upper);
    return r;
}

/// Groups as the columns of a table, short ones filled up with missing cells.
struct Table {
    explicit Table(const std::vector<Values>& groups) : k(static_cast<int>(groups.size())) {
        std::size_t rows = 0;
        for (const Values& group : groups) rows = std::max(rows, group.size());
        n = static_cast<int>(rows);
        for (Values group : groups) {
            group.resize(rows, kNone);
            cells.insert(cells.end(), group.begin(), group.end());
        }
    }
    int k;
    int n = 0;
    Values cells;
};

Outcome bartlett(const std::vector<Values>& groups, double alpha = 0.05, const Values& weights = {}) {
    const Table table(groups);
    Outcome r;
    r.status = BTestKSamples(table.cells.data(), table.n, table.k, orNull(weights), alpha, &r.statistic,
                             &r.critical, &r.df, &r.p);
    return r;
}

Outcome levene(const std::vector<Values>& groups, std::int16_t median, double alpha = 0.05,
               const Values& weights = {}) {
    const Table table(groups);
    Outcome r;
    r.status = LTestKSamples(table.cells.data(), table.n, table.k, orNull(weights), alpha, median, &r.statistic,
                             &r.critical, &r.df, &r.df2, &r.p);
    return r;
}

std::vector<Values> groupsOf(const Row& row) {
    std::vector<Values> groups;
    std::istringstream in(row.text("groups"));
    for (std::string cell; std::getline(in, cell, ';');)
        groups.push_back(Row({{"g", cell}}, row.line()).list("g"));
    return groups;
}

std::vector<Values> groupsBySize(const Row& row) {
    std::vector<Values> groups;
    const Values x = row.list("x");
    auto from = x.begin();
    for (const double n : row.list("n")) {
        groups.emplace_back(from, from + static_cast<std::ptrdiff_t>(n));
        from += static_cast<std::ptrdiff_t>(n);
    }
    return groups;
}

TEST(Variances, MatchReference) {
    for (const char* test : {"ftest", "vartest_one"}) {
        for (const Row& row : rowsOf("parametric/variances.csv", test)) {
            const auto alternative = static_cast<int>(row["alternative"]);
            const Outcome got =
                row.text("y").empty()
                    ? varianceTest(row.list("x"), row["hypothesised"], row["alpha"], alternative)
                    : fTest(row.list("x"), row.list("y"), row["hypothesised"], row["alpha"], alternative);
            expectCells(row, {{"status", got.status},
                              {"variance", got.estimate},
                              {"ratio", got.ratio},
                              {"statistic", got.statistic},
                              {"critical", got.critical},
                              {"df", got.df},
                              {"df1", got.df},
                              {"df2", got.df2},
                              {"p", got.p},
                              {"lower", got.lower},
                              {"upper", got.upper}});
        }
    }
    for (const Row& row : rowsOf("parametric/more_tests.csv", "fratio")) {
        const Values v = row.list("x");
        const Values n = row.list("n");
        Outcome got;
        EXPECT_EQ(FRatioTest(v[0], static_cast<int>(n[0]), v[1], static_cast<int>(n[1]), row["o1"],
                             row["alpha"], static_cast<int>(row["alternative"]), &got.ratio, &got.statistic,
                             &got.critical, &got.df, &got.df2, &got.p, &got.lower, &got.upper),
                  0);
        expectList(row, {got.ratio, got.statistic, got.p, got.lower, got.upper});
    }
}

TEST(Variances, OfGroupsMatchReference) {
    for (const char* test : {"bartlett", "levene"}) {
        for (const Row& row : rowsOf("parametric/groups.csv", test)) {
            const Outcome got = row.text("test") == "bartlett"
                                    ? bartlett(groupsOf(row), row["alpha"])
                                    : levene(groupsOf(row), flag(row, "median"), row["alpha"]);
            expectCells(row, {{"status", got.status},
                              {"statistic", got.statistic},
                              {"critical", got.critical},
                              {"df", got.df},
                              {"df1", got.df},
                              {"df2", got.df2},
                              {"p", got.p}});
        }
    }
    for (const char* test : {"bartlett", "median", "mean"}) {
        for (const Row& row : rowsOf("parametric/more_tests.csv", test)) {
            if (row.text("test") == "bartlett") {
                const Outcome got = bartlett(groupsBySize(row));
                expectList(row, {got.statistic, got.df, got.p});
            } else {
                const Outcome got = levene(groupsBySize(row), row.text("test") == "median" ? -1 : 0);
                expectList(row, {got.statistic, got.df, got.df2, got.p});
            }
        }
    }
}

TEST(Variances, OneVarianceKeepsItsRules) {
    const Outcome lower = varianceTest(kFirst, 4.0, 0.05, -1);
    EXPECT_EQ(lower.lower, kNone) << "not 0";
    EXPECT_GT(lower.upper, lower.estimate);
    // No size check: one value has a statistic of 0, none has nothing.
    const Outcome one = varianceTest({3.0, kNone}, 4.0);
    EXPECT_EQ(one.status, 0);
    EXPECT_EQ(one.df, 0.0);
    EXPECT_EQ(one.statistic, 0.0);
    EXPECT_EQ(one.upper, kNone);
    const Outcome none = varianceTest({kNone}, 4.0);
    EXPECT_EQ(none.status, 0);
    EXPECT_EQ(none.df, -1.0);
    for (const double cell : {none.estimate, none.ratio, none.statistic, none.p, none.critical, none.lower})
        EXPECT_EQ(cell, kNone);
    EXPECT_EQ(varianceTest(kFirst, 0.0).ratio, kHuge);
    EXPECT_EQ(varianceTest({1.0, std::nan("")}, 1.0).p, kNone);
}

TEST(Variances, RatioDegreesOfFreedom) {
    const Values x = {1, 4, 2, 8, 5, 7};
    const Values two(6, 2.0);
    EXPECT_EQ(fTest(x, kSecond, 1.0, 0.05, 0, two).df, 5.0) << "counts";
    const Outcome weighted = fTest(x, kSecond, 1.0, 0.05, 0, two, -1);
    Values xx = x;
    Values yy = kSecond;
    xx.insert(xx.end(), x.begin(), x.end());
    yy.insert(yy.end(), kSecond.begin(), kSecond.end());
    const Outcome repeated = fTest(xx, yy);
    EXPECT_EQ(weighted.df2, 11.0) << "as for repeated values";
    EXPECT_NEAR(weighted.p, repeated.p, 1e-13);
    EXPECT_NEAR(weighted.upper, repeated.upper, 1e-12);
    // The two tails and the two orders are one test.
    EXPECT_NEAR(fTest(x, kSecond, 2.0, 0.05, -1).p, fTest(kSecond, x, 0.5, 0.05, 1).p, 1e-14);
    EXPECT_NEAR(fTest(x, kSecond).lower, 1.0 / fTest(kSecond, x).upper, 1e-12);
}

TEST(Variances, RatioWithoutSpread) {
    const Outcome infinite = fTest({1, 4, 2}, {3, 3, 3});
    EXPECT_EQ(infinite.status, 0);
    EXPECT_EQ(infinite.ratio, kHuge);
    EXPECT_EQ(infinite.p, 0.0);
    EXPECT_EQ(fTest({3, 3, 3}, {1, 4, 2}).statistic, 0.0);
    const Outcome none = fTest({3, 3, 3}, {4, 4});
    EXPECT_EQ(none.status, -2);
    EXPECT_EQ(none.p, kNone);
    EXPECT_EQ(none.df, 2.0);
    EXPECT_EQ(fTest({1, 2}, {1, 2}, -1.0).status, -2);
    EXPECT_EQ(FRatioTest(1, 1, 1, 5, 1, 0.05, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                         nullptr),
              -1);
}

// Limits cover the true variance and ratio as often as they say: 4000 normal samples of a fixed seed.
TEST(Variances, LimitsCover) {
    constexpr int kRuns = 4000;
    constexpr double kTrue = 4.0;
    int covered[4] = {0, 0, 0, 0};
    Values x(9);
    Values y(12);
    for (int run = 0; run < kRuns; ++run) {
        Values u(21);
        numcore::rngcore::fillUniform(12, static_cast<std::uint64_t>(run) * 21, u);
        for (std::size_t i = 0; i < 9; ++i) x[i] = 3.0 + 2.0 * InvCDFNormalStd(u[i]);
        for (std::size_t i = 0; i < 12; ++i) y[i] = InvCDFNormalStd(u[9 + i]);
        const Outcome outcomes[] = {varianceTest(x, 1.0), varianceTest(x, 1.0, 0.05, -1), fTest(x, y, 1.0, 0.1),
                                    fTest(x, y, 1.0, 0.05, 1)};
        for (int k = 0; k < 4; ++k)
            covered[k] += outcomes[k].lower <= kTrue && kTrue <= outcomes[k].upper ? 1 : 0;
    }
    const double wanted[] = {0.95, 0.95, 0.9, 0.95};
    for (int k = 0; k < 4; ++k) {
        const double error = std::sqrt(wanted[k] * (1.0 - wanted[k]) / kRuns);
        EXPECT_NEAR(static_cast<double>(covered[k]) / kRuns, wanted[k], 3.0 * error) << k;
    }
}

TEST(Bartlett, UsableGroups) {
    const Outcome dropped = bartlett({{1, 2, 4, 9}, {3, 3, 3}, {2, 9, 4, 4, 6}});
    EXPECT_EQ(dropped.df, 1.0) << "a group without variance is left out";
    EXPECT_NEAR(dropped.statistic, bartlett({{1, 2, 4, 9}, {2, 9, 4, 4, 6}}).statistic, 1e-14);
    // Kept: a variance below 1e-12 counts as a group but not in the sums.
    const Outcome tiny = bartlett({{1, 2, 4, 9}, {1e-7, 2e-7, 3e-7}, {2, 9, 4, 4, 6}});
    EXPECT_EQ(tiny.df, 2.0);
    EXPECT_LT(tiny.statistic, 1.0);
    const Outcome none = bartlett({{1, 2, 4}, {3}, {kNone}});
    EXPECT_EQ(none.status, -2);
    for (const double cell : {none.statistic, none.critical, none.df, none.p}) EXPECT_EQ(cell, kNone);
    EXPECT_EQ(bartlett({{1e-8, 2e-8}, {1e-8, 3e-8}}).status, -2) << "none enters the sums";
}

// Kept: the total degrees of freedom are cut to a whole number after each addition: weights of 0.9 give 2.6 and
// 4.4, and the total 6 instead of 7.
TEST(Bartlett, CutsTheTotalDegreesOfFreedom) {
    const std::vector<Values> groups = {{1, 4, 2, 8}, {5, 7, 1.5, 9, 3, 3.5}};
    const Outcome got = bartlett(groups, 0.05, Values(6, 0.9));
    // Weighted variances as the weights stand for sizes 3.6 and 5.4.
    const double v1 = 0.9 * 28.75 / 2.6;
    const double v2 = 0.9 * 38.333333333333333 / 4.4;
    const double pooled = (2.6 * v1 + 4.4 * v2) / 6.0;
    const double top = 6.0 * std::log(pooled) - 2.6 * std::log(v1) - 4.4 * std::log(v2);
    EXPECT_NEAR(got.statistic, top / (1.0 + (1.0 / 2.6 + 1.0 / 4.4 - 1.0 / 6.0) / 3.0), 1e-13);
}

TEST(Levene, WeightsScaleDeviations) {
    const std::vector<Values> groups = {kFirst, {2, 9, 4, 6}};
    const Outcome plain = levene(groups, -1);
    const Outcome weighted = levene(groups, -1, 0.05, Values(4, 2.0));
    EXPECT_NEAR(weighted.statistic, plain.statistic, 1e-13);
    EXPECT_EQ(weighted.df2, 6.0) << "group sizes are counts";
    const Outcome uneven = levene(groups, 0, 0.05, {1, 1, 3, 0.5});
    EXPECT_NE(uneven.statistic, levene(groups, 0).statistic);
    EXPECT_EQ(levene(groups, 1).statistic, levene(groups, 0).statistic) << "a flag of 1 is false: the mean";
}

TEST(Levene, Degenerate) {
    EXPECT_EQ(levene({kFirst}, -1).status, -2);
    EXPECT_EQ(levene({{1}, {2}}, -1).status, -1);
    EXPECT_EQ(levene({{3, 3, 3}, {4, 4, 4}}, 0).status, -2);
    EXPECT_EQ(levene({{3, 3, 3}, {4, 4, 4}}, 0).critical, kNone);
    const Outcome infinite = levene({{1, 3}, {1, 9}}, -1);
    EXPECT_EQ(infinite.statistic, kHuge) << "deviations 1, 1 and 4, 4";
    EXPECT_LT(infinite.p, 1e-300);
    const std::int32_t sizes[] = {2, -5, 0, 3};
    const double deviations[] = {1, 2, 4, 3, 5};
    double F = 0.0;
    double df2 = 0.0;
    EXPECT_EQ(GetLKStatistics(deviations, sizes, 4, &F, nullptr, &df2), 0);
    EXPECT_EQ(df2, 3.0);
    EXPECT_EQ(GetLKStatistics(nullptr, sizes, 4, &F, nullptr, nullptr), -2);
    EXPECT_EQ(F, kNone);
    EXPECT_EQ(LTestKSamples(nullptr, 4, 2, nullptr, 0.05, 0, nullptr, nullptr, nullptr, nullptr, nullptr), -2);
    EXPECT_EQ(BTestKSamples(deviations, 5, INT32_MIN, nullptr, 0.05, nullptr, nullptr, nullptr, nullptr), -2);
}

}  // namespace
