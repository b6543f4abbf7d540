#include <gtest/gtest.h>
#include <omp.h>

#include <cmath>
#include <vector>

#include "numcore/association.h"
#include "reference_table.hpp"

namespace {

using numcore::testing::agrees;
using numcore::testing::readTable;
using numcore::testing::Row;

struct Case {
    std::int32_t n;
    std::vector<double> a;
    std::vector<double> b;
    std::vector<double> control;

    explicit Case(const Row& row)
        : n(static_cast<std::int32_t>(row["n"])),
          a(row.list("a")),
          b(row.list("b")),
          control(row.list("control")) {}

    std::int32_t run(const ST_MantelOptions& options, ST_MantelResult& result) const {
        return control.empty() ? RunMantelTest(a.data(), b.data(), n, &options, &result)
                               : cRunMantelTest(a.data(), b.data(), control.data(), n, &options, &result);
    }
};

TEST(Mantel, MatchesEnumeration) {
    for (const auto& row : readTable("correlation/association/mantel.csv")) {
        const Case data(row);
        EXPECT_TRUE(agrees(GetZMantel(data.a.data(), data.b.data(), data.n, nullptr), row["z"], 1e-13))
            << row.line();
        const std::pair<std::int32_t, const char*> sides[] = {{1, "upper"}, {-1, "lower"}, {0, "both"}};
        for (const auto& [alternative, column] : sides) {
            const ST_MantelOptions options{720, 0, NUMCORE_TRUE,
                                           row["ranks"] == 1.0 ? std::int16_t{NUMCORE_TRUE} : std::int16_t{0},
                                           alternative};
            ST_MantelResult result;
            ASSERT_EQ(data.run(options, result), 0) << row.line();
            EXPECT_TRUE(agrees(result.rho, row["rho"], 1e-11)) << row.line() << ": " << result.rho;
            EXPECT_TRUE(agrees(result.pValue, row[column], 1e-12))
                << row.line() << " " << column << ": " << result.pValue;
            EXPECT_EQ(result.z, GetZMantel(data.a.data(), data.b.data(), data.n, nullptr));
        }
    }
}

TEST(Mantel, SumFollowsTheOrderOfTheObjects) {
    const double a[] = {0, 1, 2, 1, 0, 3, 2, 3, 0};
    const double b[] = {0, 10, 100, 10, 0, 1000, 100, 1000, 0};
    const std::int32_t turned[] = {1, 2, 0};
    EXPECT_EQ(GetZMantel(a, b, 3, nullptr), 1 * 10 + 2 * 100 + 3 * 1000);
    EXPECT_EQ(GetZMantel(a, b, 3, turned), 1 * 1000 + 2 * 10 + 3 * 100);
    const std::int32_t twice[] = {1, 1, 0};
    const std::int32_t outside[] = {0, 1, 3};
    EXPECT_EQ(GetZMantel(a, b, 3, twice), NUMCORE_MISSING);
    EXPECT_EQ(GetZMantel(a, b, 3, outside), NUMCORE_MISSING);
    EXPECT_EQ(GetZMantel(a, b, 1, nullptr), NUMCORE_MISSING);
    EXPECT_EQ(GetZMantel(a, nullptr, 3, nullptr), NUMCORE_MISSING);
}

// Points on a line and the same points shuffled a little: 40 objects, with and without missing pairs.
TEST(Mantel, DrawnOrdersDoNotDependOnThreads) {
    constexpr std::size_t n = 40;
    std::vector<double> a(n * n);
    std::vector<double> b(n * n);
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
            a[i * n + j] = std::abs(static_cast<double>(i) - static_cast<double>(j));
            b[i * n + j] =
                std::abs(std::sin(3.0 * static_cast<double>(i)) - std::sin(3.0 * static_cast<double>(j)));
        }
    }
    const ST_MantelOptions options{999, 11, NUMCORE_TRUE, NUMCORE_FALSE, 0};
    const int given = omp_get_max_threads();
    for (const bool withGap : {false, true}) {
        if (withGap) a[5] = NUMCORE_MISSING;  // row 5 of column 0
        ST_MantelResult results[3];
        const int threads[] = {1, 2, 8};
        for (int k = 0; k < 3; ++k) {
            omp_set_num_threads(threads[k]);
            ASSERT_EQ(RunMantelTest(a.data(), b.data(), n, &options, &results[k]), 0);
        }
        EXPECT_EQ(results[0].nPairs, withGap ? 779 : 780);
        EXPECT_GT(results[0].pValue, 0.001);
        EXPECT_EQ(results[0].pValue, results[1].pValue);
        EXPECT_EQ(results[0].pValue, results[2].pValue);
    }
    omp_set_num_threads(given);
}

TEST(Mantel, RefusesWhatHasNoSpread) {
    const double a[] = {0, 1, 2, 1, 0, 3, 2, 3, 0};
    const double flat[] = {0, 4, 4, 4, 0, 4, 4, 4, 0};
    const double gone[] = {0, NUMCORE_MISSING, NUMCORE_MISSING, 0, 0, NUMCORE_MISSING, 0, 0, 0};
    ST_MantelResult result;
    EXPECT_EQ(RunMantelTest(a, flat, 3, nullptr, &result), -2);
    EXPECT_EQ(result.rho, NUMCORE_MISSING);
    EXPECT_EQ(result.pValue, NUMCORE_MISSING);
    // The mean of 21 times 0.1 is not 0.1.
    std::vector<double> tenths(49, 0.1);
    std::vector<double> wave(49);
    for (std::size_t cell = 0; cell < wave.size(); ++cell) wave[cell] = std::sin(static_cast<double>(cell));
    EXPECT_EQ(RunMantelTest(tenths.data(), wave.data(), 7, nullptr, &result), -2);
    EXPECT_EQ(RunMantelTest(wave.data(), tenths.data(), 7, nullptr, &result), -2);
    tenths[5] = NUMCORE_MISSING;
    EXPECT_EQ(RunMantelTest(wave.data(), tenths.data(), 7, nullptr, &result), -2);
    EXPECT_EQ(RunMantelTest(a, gone, 3, nullptr, &result), -2);
    EXPECT_EQ(result.nPairs, 0);
    EXPECT_EQ(result.z, NUMCORE_MISSING);
    EXPECT_EQ(cRunMantelTest(a, a, a, 3, nullptr, &result), -2) << "the control leaves nothing";
    EXPECT_EQ(RunMantelTest(a, a, 3, nullptr, &result), 0);
    EXPECT_EQ(result.rho, 1.0);
    EXPECT_EQ(result.pValue, NUMCORE_MISSING) << "no test was asked for";
    EXPECT_EQ(RunMantelTest(nullptr, a, 3, nullptr, &result), -1);
    EXPECT_EQ(RunMantelTest(a, a, 1, nullptr, &result), -1);
}

}  // namespace
