// The tests with resampled p-values: what goes into the engine, and what follows from its answer.

#include <cmath>

#include "parametric_calls.hpp"

namespace {

using namespace numcore::testing;

const Values kFirst = {0.7, -1.6, -0.2, -1.2, -0.1, 3.4, 3.7, 0.8, 0.0, 2.0};
const Values kSecond = {1.9, 0.8, 1.1, 0.1, -0.1, 4.4, 5.5, 1.6, 4.6, 3.4};

ResamplingOptions drawing(std::int64_t nResamples = 2000) {
    ResamplingOptions options{};
    options.useResampling = NUMCORE_TRUE;
    options.method = NUMCORE_RESAMPLE_PERMUTATION;
    options.nResamples = nResamples;
    options.seed = 3;
    options.seedGiven = NUMCORE_TRUE;
    return options;
}

// All 1024 changes of sign of the differences.
TEST(Resampled, PairedTIsExact) {
    double total = 0.0;
    for (std::size_t i = 0; i < 10; ++i) total += kFirst[i] - kSecond[i];
    int nExtreme = 0;
    for (unsigned signs = 0; signs < 1024; ++signs) {
        double sum = 0.0;
        for (std::size_t i = 0; i < 10; ++i)
            sum += (signs >> i & 1U) != 0 ? kFirst[i] - kSecond[i] : kSecond[i] - kFirst[i];
        if (std::abs(sum) >= std::abs(total) - 1e-9) ++nExtreme;
    }
    ResamplingOptions options = drawing();
    options.method = NUMCORE_RESAMPLE_AUTOMATIC;
    const Outcome got = tTest(kFirst, kSecond, {.paired = -1, .resampling = &options});
    EXPECT_EQ(got.status, 0);
    EXPECT_EQ(options.nUsed, 1024);
    EXPECT_EQ(options.nExtreme, nExtreme);
    EXPECT_DOUBLE_EQ(got.p, nExtreme / 1024.0);
}

TEST(Resampled, LimitsFollowTheCriticalValue) {
    for (const std::int32_t alternative : {0, 1, -1}) {
        for (const std::int16_t equal : {std::int16_t{0}, std::int16_t{-1}}) {
            MeanOptions asked{.hypothesised = -0.5, .alternative = alternative, .equal = equal};
            const Outcome law = tTest(kFirst, kSecond, asked);
            ResamplingOptions options = drawing();
            asked.resampling = &options;
            const Outcome got = tTest(kFirst, kSecond, asked);
            EXPECT_EQ(got.statistic, law.statistic);
            EXPECT_EQ(got.df, law.df);
            EXPECT_NEAR(got.p, law.p, 0.03);
            EXPECT_NEAR(got.critical, law.critical, 0.25);
            const double error = (got.estimate + 0.5) / got.statistic;
            if (alternative != -1) {
                EXPECT_NEAR(got.lower, got.estimate - std::abs(got.critical) * error, 1e-12);
            }
            if (alternative != 1) {
                EXPECT_NEAR(got.upper, got.estimate + std::abs(got.critical) * error, 1e-12);
            }
            EXPECT_EQ(options.nUsed, 2000);
            EXPECT_EQ(options.outcome & NUMCORE_RESAMPLED, NUMCORE_RESAMPLED);
            EXPECT_EQ(got.p, (static_cast<double>(options.nExtreme) + 1.0) / 2001.0);
            ResamplingOptions again = drawing();
            asked.resampling = &again;
            EXPECT_EQ(tTest(kFirst, kSecond, asked).p, got.p);
        }
    }
}

TEST(Resampled, OnlyWhenTheFlagIsTrue) {
    ResamplingOptions options = drawing();
    options.useResampling = 1;
    EXPECT_EQ(tTest(kFirst, kSecond, {.resampling = &options}).p, tTest(kFirst, kSecond).p);
    EXPECT_EQ(options.nUsed, 0);
}

TEST(Resampled, EveryTestHasItsStatistic) {
    const auto expectClose = [](const Outcome& got, double lawP, const ResamplingOptions& options,
                                double tolerance) {
        EXPECT_EQ(got.status, 0);
        EXPECT_EQ(options.nUsed, 2000);
        EXPECT_NEAR(got.p, lawP, tolerance);
        EXPECT_GT(got.critical, 0.0);
    };
    ResamplingOptions options = drawing();
    expectClose(zTest(kFirst, kSecond, {.resampling = &options}), zTest(kFirst, kSecond).p, options, 0.05);
    options = drawing();
    expectClose(zTest(kFirst, kSecond, {.given = -1, .variance1 = 4, .variance2 = 4, .resampling = &options}),
                zTest(kFirst, kSecond, {.given = -1, .variance1 = 4, .variance2 = 4}).p, options, 0.05);
    options = drawing();
    expectClose(zTest(kFirst, kSecond, {.paired = -1, .resampling = &options}), 0.003, options, 0.01);

    Outcome got;
    options = drawing();
    got.status = Cpp_FTest2SamplesNew(kFirst.data(), 10, kSecond.data(), 10, nullptr, nullptr, 1, 0.05, 0, 0,
                                      &options, &got.ratio, nullptr, &got.critical, nullptr, nullptr, &got.p,
                                      &got.lower, &got.upper);
    expectClose(got, fTest(kFirst, kSecond).p, options, 0.15);
    EXPECT_NEAR(got.lower, got.ratio / got.critical, 1e-12);
    EXPECT_GT(got.upper, got.ratio);

    Values all = kFirst;
    all.insert(all.end(), kSecond.begin(), kSecond.end());
    std::vector<std::int32_t> groups(20, 1);
    std::fill(groups.begin() + 10, groups.end(), 2);
    options = drawing();
    got.status = ComputeWelchANOVA(all.data(), groups.data(), nullptr, 20, 2, 0.05, &options, nullptr,
                                   &got.critical, nullptr, nullptr, &got.p);
    expectClose(got, tTest(kFirst, kSecond).p, options, 0.03);
}

}  // namespace
