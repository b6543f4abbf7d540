#include <gtest/gtest.h>
#include <omp.h>

#include <algorithm>
#include <vector>

#include "correlation/association/permutation_test.hpp"
#include "numcore/association.h"
#include "reference_table.hpp"

namespace {

using numcore::testing::agrees;
using numcore::testing::readTable;

TEST(RvCoefficient, MatchesReferenceAndEnumeration) {
    for (const auto& row : readTable("correlation/association/rv.csv")) {
        const auto n = static_cast<std::int32_t>(row["n"]);
        const bool enumerated = n < 8;
        const ST_RVOptions options{enumerated ? 720 : 0, 1, NUMCORE_TRUE,
                                   row["standardize"] == 1.0 ? std::int16_t{NUMCORE_TRUE} : std::int16_t{1}, 0};
        ST_RVResult result;
        const auto x = row.list("x");
        const auto y = row.list("y");
        const auto w = row.list("weights");
        const double rv = Cpp_RVcoefficient(x.data(), n, 2, y.data(), 3, w.data(), &options, &result);
        EXPECT_TRUE(agrees(rv, row["rv"], 1e-12)) << row.line() << ": " << rv;
        EXPECT_EQ(result.nPermutations, enumerated ? 720 : 0);
        if (!enumerated) continue;
        EXPECT_EQ(result.complete, NUMCORE_TRUE);
        EXPECT_TRUE(agrees(result.pValue, row["pvalue"], 1e-12)) << row.line() << ": " << result.pValue;
        EXPECT_TRUE(agrees(result.expected, row["mean"], 1e-11)) << row.line() << ": " << result.expected;
    }
}

TEST(RvCoefficient, DrawnOrdersDoNotDependOnThreads) {
    const auto row = readTable("correlation/association/rv.csv").back();
    const auto x = row.list("x");
    const auto y = row.list("y");
    const ST_RVOptions options{500, 42, NUMCORE_TRUE, NUMCORE_FALSE, 0};
    // A set against itself in another order: far from the largest, so that the p-value says something.
    std::vector<double> turned(y);
    std::rotate(turned.begin(), turned.begin() + 5, turned.begin() + 32);
    const int given = omp_get_max_threads();
    ST_RVResult results[3];
    const int threads[] = {1, 2, 8};
    for (int k = 0; k < 3; ++k) {
        omp_set_num_threads(threads[k]);
        RVcoefficient(x.data(), 32, 2, turned.data(), 1, nullptr, &options, &results[k]);
    }
    omp_set_num_threads(given);
    EXPECT_GT(results[0].pValue, 1.0 / 501.0);
    EXPECT_EQ(results[0].pValue, results[1].pValue);
    EXPECT_EQ(results[0].pValue, results[2].pValue);
    EXPECT_EQ(results[0].seed, 42);
    EXPECT_EQ(results[0].nPermutations, 500);
    EXPECT_EQ(results[0].complete, NUMCORE_FALSE);
}

TEST(RvCoefficient, DrawnOrdersAreFair) {
    const numcore::association::Orders orders(4, 23, 5);
    ASSERT_FALSE(orders.complete());
    const numcore::association::Orders many(9, 40000, 5);
    std::vector<std::int32_t> order(9);
    std::vector<double> scratch;
    std::vector<int> first(9, 0);
    for (std::int64_t b = 0; b < many.count(); ++b) {
        many.get(b, order, scratch);
        ++first[static_cast<std::size_t>(order[0])];
    }
    for (const int count : first) EXPECT_NEAR(count, 40000 / 9.0, 5 * 63) << "five standard deviations";
}

TEST(RvCoefficient, SkipsIncompleteRowsAndRefusesBadInput) {
    std::vector<double> x = {1, 2, 4, 3, NUMCORE_MISSING, 9};
    std::vector<double> y = {2, 1, 5, 3, 8, NUMCORE_MISSING};
    const double x4[] = {1, 2, 4, 3};
    const double y4[] = {2, 1, 5, 3};
    EXPECT_EQ(ComputeRV(x.data(), 6, 1, y.data(), 1), ComputeRV(x4, 4, 1, y4, 1));
    EXPECT_TRUE(agrees(ComputeRV(x4, 4, 1, x4, 1), 1.0, 1e-15));
    const double constant[] = {3, 3, 3, 3};
    EXPECT_EQ(ComputeRV(x4, 4, 1, constant, 1), NUMCORE_MISSING);
    EXPECT_EQ(ComputeRV(x4, 1, 1, y4, 1), NUMCORE_MISSING);
    // The mean of 20 times 0.1 is not 0.1: a constant set still has no spread, and a constant variable adds
    // none.
    std::vector<double> tenths(20, 0.1);
    std::vector<double> wave(40);
    for (std::size_t i = 0; i < wave.size(); ++i) wave[i] = std::sin(static_cast<double>(i * i));
    EXPECT_EQ(ComputeRV(tenths.data(), 20, 1, wave.data(), 2), NUMCORE_MISSING);
    const ST_RVOptions standardized{0, 0, NUMCORE_TRUE, NUMCORE_TRUE, 0};
    const double alone =
        RVcoefficient(wave.data() + 20, 20, 1, wave.data(), 2, nullptr, &standardized, nullptr);
    tenths.insert(tenths.end(), wave.begin() + 20, wave.end());
    EXPECT_EQ(RVcoefficient(tenths.data(), 20, 2, wave.data(), 2, nullptr, &standardized, nullptr), alone);
    EXPECT_EQ(ComputeRV(nullptr, 4, 1, y4, 1), NUMCORE_MISSING);
    EXPECT_EQ(ComputeRV(x4, 4, 0, y4, 1), NUMCORE_MISSING);
    ST_RVResult result;
    EXPECT_EQ(Cpp_RV_Compute(nullptr, nullptr, &result), -1);
}

}  // namespace
