// Tests of proportions: against reference values, and what is kept as it is.

#include <cmath>

#include "parametric_calls.hpp"

namespace {

using namespace numcore::testing;

std::vector<std::int32_t> sizesOf(const Row& row) {
    std::vector<std::int32_t> sizes;
    for (const double n : row.list("n")) sizes.push_back(static_cast<std::int32_t>(n));
    return sizes;
}

struct Asked {
    std::int32_t samples = 1;
    std::int32_t n1 = 80;
    std::int32_t n2 = 0;
    double p1 = 0.4625;
    double p2 = 0.4;
    double D = 0.0;
    double alpha = 0.05;
    std::int32_t alternative = 0;
    std::int16_t continuity = 0;
    std::int32_t variance = 0;
    std::int32_t interval = 1;
};

Outcome proportions(const Asked& a) {
    Outcome r;
    r.status = Cpp_TestProportions(a.samples, a.n1, a.n2, a.p1, a.p2, a.D, a.alpha, a.alternative, a.continuity,
                                   a.variance, a.interval, &r.statistic, &r.critical, &r.p, &r.lower, &r.upper);
    return r;
}

TEST(Proportions, MatchReference) {
    const auto whole = [](const Row& row, const char* name) { return static_cast<std::int32_t>(row[name]); };
    for (const Row& row : rowsOf("parametric/proportions.csv", "proportions")) {
        const Outcome got =
            proportions({whole(row, "samples"), whole(row, "n1"), whole(row, "n2"), row["p1"], row["p2"],
                         row["D"], row["alpha"], whole(row, "alternative"), flag(row, "continuity"),
                         whole(row, "variance"), whole(row, "interval")});
        expectCells(row, {{"z", got.statistic},
                          {"critical", got.critical},
                          {"p", got.p},
                          {"lower", got.lower},
                          {"upper", got.upper}});
        EXPECT_EQ(got.status, 0);
    }
}

TEST(Proportions, OfSeveralSamplesMatchReference) {
    const char* const file = "parametric/more_tests.csv";
    for (const Row& row : rowsOf(file, "chi2")) {
        const auto n = sizesOf(row);
        const Values p = row.list("x");
        const Values given = row.list("o1");
        Outcome got;
        EXPECT_EQ(TestKProportionsChi2(size(p), n.data(), p.data(), orNull(given), row["alpha"], &got.statistic,
                                       &got.critical, &got.df, &got.p),
                  0);
        expectList(row, {got.statistic, got.df, got.p, got.critical});
    }
    for (const Row& row : rowsOf(file, "pairs")) {
        Values d(9);
        Values critical(9);
        Values p(9);
        std::vector<std::int32_t> significant(9);
        EXPECT_EQ(TestKProportionsMarascuilo(3, sizesOf(row).data(), row.list("x").data(), row["alpha"],
                                             d.data(), critical.data(), p.data(), significant.data()),
                  0);
        expectList(row, {d[1], d[2], d[5], critical[1], critical[2], critical[5], p[1], p[2], p[5]});
        EXPECT_EQ(d[3], d[1]);
        EXPECT_EQ(p[8], 1.0);
        EXPECT_EQ(significant, (std::vector<std::int32_t>{0, 1, 0, 1, 0, 1, 0, 1, 0}));
    }
}

// The draws' p-value against the exact one, and what it depends on.
TEST(Proportions, MonteCarlo) {
    constexpr std::int32_t kDraws = 100000;
    for (const Row& row : rowsOf("parametric/more_tests.csv", "monte")) {
        const auto n = sizesOf(row);
        const Values p = row.list("x");
        const double exact = row.list("expected")[0];
        std::int32_t seed = 5;
        Outcome got;
        const auto run = [&](std::int32_t nDraws, std::int16_t given) {
            return Test2ProportionsMonte(n[0], n[1], p[0], p[1], row["o1"],
                                         static_cast<std::int32_t>(row["alternative"]), nDraws, &seed, given,
                                         &got.estimate, &got.p, &got.lower, &got.upper);
        };
        ASSERT_EQ(run(kDraws, -1), 0);
        EXPECT_NEAR(got.p, exact, 4.0 * std::sqrt(exact * (1.0 - exact) / kDraws));
        EXPECT_LT(got.lower, got.p);
        EXPECT_GT(got.upper, got.p);
        const double before = got.p;
        run(kDraws, -1);
        EXPECT_EQ(got.p, before) << "the same seed";
        run(kDraws, 0);
        const double chosen = got.p;
        run(kDraws, -1);
        EXPECT_EQ(got.p, chosen) << "the chosen seed was written back";
    }
    double p = 0.0;
    EXPECT_EQ(Test2ProportionsMonte(25, 30, 0.9, 0.1, 0, 0, 99, nullptr, -1, nullptr, &p, nullptr, nullptr), 0);
    EXPECT_EQ(p, 0.01) << "no draw is as far out, and yet p is not 0";
    EXPECT_EQ(Test2ProportionsMonte(2000000000, 2000000000, 0.5, 0.5, 0, 0, 99, nullptr, -1, nullptr, &p,
                                    nullptr, nullptr),
              0);
    EXPECT_EQ(p, 1.0);
    for (const double bad : {-0.1, 1.1, std::nan("")}) {
        EXPECT_EQ(Test2ProportionsMonte(5, 5, bad, 0.5, 0, 0, 99, nullptr, -1, nullptr, &p, nullptr, nullptr),
                  -1);
        EXPECT_EQ(p, kNone);
    }
}

TEST(Proportions, KeepsItsRules) {
    // Without variance: 0 without distance, else the negative marker whatever the sign.
    const Outcome equal = proportions({.p1 = 1.0, .p2 = 1.0});
    EXPECT_EQ(equal.statistic, 0.0);
    EXPECT_EQ(equal.p, 1.0);
    EXPECT_EQ(proportions({.p1 = 0.5, .p2 = 0.0}).statistic, kNone);
    EXPECT_EQ(proportions({.p1 = 0.5, .p2 = 0.0}).p, 0.0);
    // One sample: the critical value is multiplied by the code, open ends are -1 and 1.
    const double z95 = proportions({.alternative = 1}).critical;
    EXPECT_NEAR(z95, 1.6448536269514722, 1e-14);
    EXPECT_EQ(proportions({.alternative = -1}).critical, -z95);
    EXPECT_EQ(proportions({.alternative = 2}).critical, 2.0 * z95);
    EXPECT_EQ(proportions({.alternative = -1}).lower, -1.0);
    EXPECT_EQ(proportions({.alternative = 1}).upper, 1.0);
    EXPECT_NE(proportions({.alternative = 2}).upper, 1.0) << "exactly 1 opens the upper end";
    // The adjusted interval is centred on the share itself.
    const Outcome adjusted = proportions({.interval = 9});
    EXPECT_NEAR(adjusted.upper + adjusted.lower, 2.0 * 0.4625, 1e-14);
    // The correction goes into the count of the exact interval.
    double lower = 0.0;
    double upper = 0.0;
    GetInfSupClopper(37.00625, 80, 0.05, &lower, &upper);
    EXPECT_EQ(proportions({.continuity = -1, .interval = 3}).upper, upper);
    EXPECT_EQ(proportions({.continuity = 1, .interval = 3}).statistic, proportions({}).statistic)
        << "a flag of 1 is false";
    // Two samples: centred on the difference less D.
    const Outcome two = proportions({.samples = 2, .n2 = 90, .D = 0.05});
    EXPECT_NEAR(two.lower + two.upper, 2.0 * (0.4625 - 0.4 - 0.05), 1e-14);
    EXPECT_EQ(proportions({.samples = 5, .n2 = 90, .D = 0.05}).p, two.p);
}

TEST(Proportions, Intervals) {
    double lower = 0.0;
    double upper = 0.0;
    // R 4.2.2: prop.test(5, 20, correct = FALSE)$conf.int
    GetInfSupWilson(-1.959963984540054, 0.25, 20, 0.0, &lower, &upper);
    EXPECT_NEAR(lower, 0.111861701407666, 1e-13);
    EXPECT_NEAR(upper, 0.468700877618744, 1e-13);
    GetInfSupWilson(1.96, 0.0, 20, 0.01, &lower, &upper);
    EXPECT_GE(lower, 0.0);
    GetInfSupClopper(0.0, 20, 0.05, &lower, &upper);
    EXPECT_EQ(lower, 0.0);
    GetInfSupClopper(20.5, 20, 0.05, &lower, &upper);
    EXPECT_EQ(upper, 1.0);
    for (const double bad : {std::nan(""), HUGE_VAL}) {
        GetInfSupClopper(bad, 20, 0.05, &lower, &upper);
        EXPECT_EQ(upper, kNone);
        GetInfSupWilson(bad, 0.5, 20, 0.0, &lower, nullptr);
        EXPECT_EQ(lower, kNone);
    }
}

// How often the limits of 20 trials hold the true proportion, summed over all counts. Expected: the same sums
// over the intervals of SciPy 1.10.1 (quantiles of beta and of norm).
TEST(Proportions, IntervalsCover) {
    const double shares[] = {0.03, 0.2, 0.37, 0.5, 0.81};
    const double exact[] = {0.978991643622, 0.978488998633, 0.982163045345, 0.958610534668, 0.961085489303};
    const double wilson[] = {0.978991643622, 0.956328121873, 0.939181968014, 0.958610534668, 0.961085489303};
    for (int k = 0; k < 5; ++k) {
        double covered[2] = {0.0, 0.0};
        for (int count = 0; count <= 20; ++count) {
            const double probability =
                std::exp(std::lgamma(21.0) - std::lgamma(count + 1.0) - std::lgamma(21.0 - count) +
                         count * std::log(shares[k]) + (20 - count) * std::log1p(-shares[k]));
            double lower[2];
            double upper[2];
            GetInfSupClopper(count, 20, 0.05, &lower[0], &upper[0]);
            GetInfSupWilson(1.959963984540054, count / 20.0, 20, 0.0, &lower[1], &upper[1]);
            for (int i = 0; i < 2; ++i)
                covered[i] += lower[i] <= shares[k] && shares[k] <= upper[i] ? probability : 0.0;
        }
        EXPECT_NEAR(covered[0], exact[k], 1e-11) << shares[k];
        EXPECT_NEAR(covered[1], wilson[k], 1e-11) << shares[k];
    }
}

TEST(Proportions, BadInput) {
    EXPECT_EQ(proportions({.n1 = 0}).status, -1);
    EXPECT_EQ(proportions({.n1 = INT32_MIN}).p, kNone);
    EXPECT_EQ(proportions({.p1 = std::nan("")}).status, -1);
    EXPECT_EQ(proportions({.samples = 2, .n2 = 0}).status, -1);
    const std::int32_t n[] = {20, 30};
    const double zeros[] = {0.0, 0.0};
    const double half[] = {0.5, std::nan("")};
    double p = 0.0;
    EXPECT_EQ(TestKProportionsChi2(2, n, zeros, nullptr, 0.05, nullptr, nullptr, nullptr, &p), -2);
    EXPECT_EQ(p, kNone);
    EXPECT_EQ(TestKProportionsChi2(2, n, half, nullptr, 0.05, nullptr, nullptr, nullptr, &p), -1);
    EXPECT_EQ(TestKProportionsChi2(1, n, half, nullptr, 0.05, nullptr, nullptr, nullptr, &p), -1);
    EXPECT_EQ(TestKProportionsChi2(1, n, half, half, 0.05, nullptr, nullptr, nullptr, &p), 0);
    EXPECT_EQ(TestKProportionsMarascuilo(INT32_MIN, n, zeros, 0.05, nullptr, nullptr, nullptr, nullptr), -1);
    double pairs[4] = {};
    EXPECT_EQ(TestKProportionsMarascuilo(2, n, zeros, 0.05, nullptr, nullptr, pairs, nullptr), 0);
    EXPECT_EQ(pairs[1], 1.0);
}

}  // namespace
