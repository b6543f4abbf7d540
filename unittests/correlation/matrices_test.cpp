// Matrices against single pairs, and what must hold whatever the values.

#include <gtest/gtest.h>
#include <omp.h>

#include <cmath>
#include <random>

#include "correlation/rank_matrices.hpp"
#include "correlation/spearman.hpp"
#include "numcore/correlation.hpp"
#include "reference_table.hpp"

namespace {

namespace cor = numcore::correlation;
using cor::Coefficient;
using numcore::matrix;
using numcore::testing::agrees;
using Values = std::vector<double>;
using Columns = std::vector<Values>;

constexpr double kNone = NUMCORE_MISSING;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct Grid {
    std::size_t rows;
    std::vector<Coefficient> cells;

    const Coefficient& at(std::size_t i, std::size_t j) const { return cells[j * rows + i]; }
};

cor::Table tableOf(const Columns& columns, const Values& weights, const std::vector<std::int16_t>& exclusion) {
    cor::Table table;
    for (const Values& column : columns) table.columns.emplace_back(column);
    table.nRows = columns.empty() ? 0 : columns.front().size();
    table.rows = {weights, exclusion};
    return table;
}

enum class Family { kPearson, kCovariance, kSpearman, kKendall };
constexpr Family kFamilies[] = {Family::kPearson, Family::kCovariance, Family::kSpearman, Family::kKendall};

cor::PearsonOptions pearsonOptions(Family family) {
    return {family == Family::kPearson, true, true, true, 0};
}

Grid compute(Family family, const Columns& columns, const Values& weights = {},
             const std::vector<std::int16_t>& exclusion = {}, const Columns* second = nullptr) {
    const cor::Table first = tableOf(columns, weights, exclusion);
    const cor::Table others = tableOf(second == nullptr ? columns : *second, weights, exclusion);
    const cor::Table* other = second == nullptr ? nullptr : &others;
    const std::size_t nColumns = second == nullptr ? columns.size() : second->size();
    Grid grid{columns.size(), std::vector<Coefficient>(columns.size() * nColumns, {7.0, 7.0, -7})};
    const cor::Store store = [&](std::size_t i, std::size_t j, const Coefficient& found) {
        grid.cells[j * grid.rows + i] = found;
        if (second == nullptr) grid.cells[i * grid.rows + j] = found;
    };
    if (family == Family::kSpearman) {
        cor::spearmanMatrix(first, other, 0, store);
    } else if (family == Family::kKendall) {
        cor::kendallMatrix(first, other, {0, false, false}, store);
    } else {
        cor::pearsonMatrix(first, other, pearsonOptions(family), store);
    }
    return grid;
}

Coefficient pairOf(Family family, const Values& x, const Values& y, const Values& weights,
                   const std::vector<std::int16_t>& exclusion) {
    const cor::Rows rows{weights, exclusion};
    if (family == Family::kSpearman) return cor::spearmanPair(x, y, rows, 0);
    if (family == Family::kKendall) return cor::kendallPair(x, y, rows, {0, false, false});
    return cor::pearsonPair(x, y, rows, pearsonOptions(family));
}

/// Columns that lean on each other, with huge means in some.
Columns correlated(std::size_t n, std::size_t p, double shareMissing, std::uint64_t seed = 5) {
    std::mt19937_64 random(seed);
    std::normal_distribution<double> normal;
    std::uniform_real_distribution<double> uniform;
    Columns columns(p, Values(n));
    for (std::size_t i = 0; i < n; ++i) {
        const double common = normal(random);
        for (std::size_t c = 0; c < p; ++c) {
            columns[c][i] = common * (c % 2 == 0 ? 1.0 : -0.3) + normal(random) + (c % 4 == 3 ? 1e6 : 0.0);
            if (c % 5 == 2) columns[c][i] = std::round(columns[c][i]);
            if (c % 3 != 1 && uniform(random) < shareMissing) columns[c][i] = kNone;
        }
    }
    return columns;
}

void expectNear(const Coefficient& got, const Coefficient& expected, double relative, const std::string& what) {
    EXPECT_TRUE(agrees(got.value, expected.value, relative, relative))
        << what << ": " << got.value << ", not " << expected.value;
    EXPECT_TRUE(agrees(got.pValue, expected.pValue, 1e-8, 1e-14))
        << what << ": p " << got.pValue << ", not " << expected.pValue;
    EXPECT_EQ(got.nPairs, expected.nPairs) << what;
}

void expectSameBits(const Grid& a, const Grid& b, const char* what) {
    ASSERT_EQ(a.cells.size(), b.cells.size());
    for (std::size_t k = 0; k < a.cells.size(); ++k) {
        EXPECT_EQ(a.cells[k].value, b.cells[k].value) << what << ' ' << k;
        EXPECT_EQ(a.cells[k].pValue, b.cells[k].pValue) << what << ' ' << k;
    }
}

TEST(Matrices, AgreeWithSinglePairs) {
    for (const double shareMissing : {0.0, 0.05, 0.6}) {
        const std::size_t n = 700;
        const Columns columns = correlated(n, 9, shareMissing);
        Values weights(n);
        std::vector<std::int16_t> exclusion(n, 0);
        for (std::size_t i = 0; i < n; ++i) {
            weights[i] = static_cast<double>(i % 4);
            if (i % 7 == 0) exclusion[i] = 1;
        }
        for (const Family family : kFamilies) {
            for (int kind = 0; kind < 4; ++kind) {
                const Values& w = kind % 2 == 0 ? Values() : weights;
                const auto& skipped = kind < 2 ? std::vector<std::int16_t>() : exclusion;
                const Grid grid = compute(family, columns, w, skipped);
                for (std::size_t i = 0; i < columns.size(); ++i) {
                    for (std::size_t j = 0; j < columns.size(); ++j) {
                        // Updating itself loses the digits of a huge mean.
                        const double tolerance = i % 4 == 3 || j % 4 == 3 ? 1e-9 : 1e-13;
                        expectNear(grid.at(i, j), pairOf(family, columns[i], columns[j], w, skipped), tolerance,
                                   std::to_string(static_cast<int>(family)) + " kind " + std::to_string(kind) +
                                       " missing " + std::to_string(shareMissing) + " pair " +
                                       std::to_string(i) + ' ' + std::to_string(j));
                    }
                }
            }
        }
    }
}

TEST(Matrices, RectangularOnesArePartsOfSquareOnes) {
    for (const double shareMissing : {0.0, 0.1}) {
        const Columns all = correlated(300, 11, shareMissing);
        const Columns first(all.begin(), all.begin() + 4);
        const Columns second(all.begin() + 4, all.end());
        for (const Family family : kFamilies) {
            const Grid square = compute(family, all);
            const Grid part = compute(family, first, {}, {}, &second);
            for (std::size_t i = 0; i < first.size(); ++i) {
                for (std::size_t j = 0; j < second.size(); ++j) {
                    expectNear(part.at(i, j), square.at(i, j + 4), 1e-14, "part");
                }
            }
        }
    }
}

TEST(Matrices, DoNotDependOnThreads) {
    const int nThreads = omp_get_max_threads();
    for (const double shareMissing : {0.0, 0.05}) {
        const Columns columns = correlated(9001, 37, shareMissing);
        for (const Family family : {Family::kPearson, Family::kSpearman, Family::kKendall}) {
            omp_set_num_threads(1);
            const Grid one = compute(family, columns);
            for (const int n : {2, 8}) {
                omp_set_num_threads(n);
                expectSameBits(compute(family, columns), one, "threads");
            }
        }
    }
    omp_set_num_threads(nThreads);
}

TEST(Matrices, EqualColumnsHaveCoefficientOne) {
    Columns columns = correlated(4500, 3, 0.0);
    for (int gap = 0; gap < 2; ++gap) {
        Columns twins = columns;
        for (const Values& column : columns) {
            twins.push_back(column);
            for (double& v : twins.back()) v = v == kNone ? v : -v;
        }
        twins.push_back(columns[0]);
        Values weights(4500, 0.7);
        weights[17] = 2.3;
        for (const Values& w : {Values(), weights}) {
            const Grid grid = compute(Family::kPearson, twins, w);
            EXPECT_EQ(grid.at(0, 6).value, 1.0);
            EXPECT_EQ(grid.at(0, 6).pValue, 0.0);
            for (std::size_t c = 0; c < 3; ++c) EXPECT_EQ(grid.at(c, c + 3).value, -1.0);
        }
        EXPECT_EQ(compute(Family::kSpearman, twins).at(0, 6).value, 1.0);
        EXPECT_EQ(compute(Family::kSpearman, twins).at(1, 4).value, -1.0);
        for (std::size_t i = 0; i < 4500; i += 9) columns[0][i] = columns[2][i + 1] = kNone;
    }
}

TEST(Matrices, FrequencyWeightOfTwoIsARepeatedRow) {
    const Columns columns = correlated(40, 4, 0.1);
    Columns repeated = columns;
    Values weights(40, 1.0);
    for (std::size_t i = 0; i < 40; i += 3) {
        weights[i] = 2.0;
        for (Values& column : repeated) column.push_back(column[i]);
    }
    for (const Family family : kFamilies) {
        const Grid weighted = compute(family, columns, weights);
        const Grid rows = compute(family, repeated);
        for (std::size_t k = 0; k < rows.cells.size(); ++k) {
            EXPECT_TRUE(agrees(weighted.cells[k].value, rows.cells[k].value, 1e-10)) << k;
            if (family == Family::kSpearman || family == Family::kKendall) {
                EXPECT_TRUE(agrees(weighted.cells[k].pValue, rows.cells[k].pValue, 1e-12, 1e-14)) << k;
            }
        }
    }
}

TEST(Matrices, RankCoefficientsSeeTheOrderOnly) {
    const Columns columns = correlated(200, 5, 0.1);
    Columns mapped = columns;
    for (Values& column : mapped) {
        for (double& v : column) v = v == kNone ? v : std::cbrt(v) * 8.0 + v * 4.0;
    }
    for (const Family family : {Family::kSpearman, Family::kKendall}) {
        expectSameBits(compute(family, mapped), compute(family, columns), "monotone map");
    }
}

TEST(Matrices, OddColumnsLeaveTheOthersAlone) {
    Columns columns = correlated(500, 4, 0.0);
    const Columns plain = columns;
    columns.push_back(Values(500, 0.1));    // constant, with a mean that is rounded
    columns.push_back(Values(500, kNone));  // nothing
    columns.push_back(plain[0]);
    columns.back()[9] = kNaN;
    columns.push_back(plain[1]);
    columns.back()[9] = kInfinity;
    columns.push_back(plain[2]);
    for (double& v : columns.back()) v *= 1e200;  // sums of squares overflow
    columns.push_back(Values(500, 3.0));          // constant where column 0 is present
    columns.back()[100] = kNone;
    for (const Family family : kFamilies) {
        const Grid grid = compute(family, columns);
        const Grid alone = compute(family, plain);
        for (std::size_t i = 0; i < 4; ++i) {
            for (std::size_t j = 0; j < 4; ++j) expectNear(grid.at(i, j), alone.at(i, j), 1e-15, "plain");
            for (const std::size_t j : {4U, 9U}) {
                EXPECT_EQ(grid.at(i, j).value, family == Family::kCovariance ? 0.0 : kNone);
                EXPECT_EQ(grid.at(i, j).pValue, family == Family::kKendall ? 0.0 : kNone);
            }
            EXPECT_EQ(grid.at(i, 5).value, kNone);
            EXPECT_EQ(grid.at(i, 5).pValue, kNone);
            for (const std::size_t j : {6U, 7U}) {
                const bool ranks = family == Family::kSpearman || family == Family::kKendall;
                EXPECT_EQ(grid.at(i, j).value == kNone, !ranks) << j;
            }
        }
        for (const Coefficient& cell : grid.cells) {
            EXPECT_FALSE(std::isnan(cell.value));
            EXPECT_FALSE(std::isnan(cell.pValue));
        }
    }
}

TEST(Matrices, PairsFarFromTheMeansOfTheirColumnsKeepTheirDigits) {
    // Where y is present x lies 1e9 away from its mean.
    Columns columns(2, Values(2000));
    for (std::size_t i = 0; i < 2000; ++i) {
        const auto step = static_cast<double>(i % 17);
        columns[0][i] = step + (i < 1000 ? 0.0 : 1e9);
        columns[1][i] = i < 1000 ? kNone : step * step;
    }
    const Grid grid = compute(Family::kPearson, columns);
    Values x, y;
    for (std::size_t i = 1000; i < 2000; ++i) {
        x.push_back(static_cast<double>(i % 17));
        y.push_back(columns[1][i]);
    }
    EXPECT_TRUE(agrees(grid.at(0, 1).value, cor::pearsonPair(x, y, {}, {}).value, 1e-6));
    EXPECT_EQ(grid.at(0, 1).nPairs, 1000);
}

TEST(Matrices, WhatAnotherColumnHidesLeavesNoTrace) {
    // Nearly all of the first column's sums lies where the second one has no value.
    Columns columns = correlated(2000, 3, 0.0);
    columns[0][7] = 1e9;
    columns[1][7] = kNone;
    columns[2][11] = kNone;
    const Grid grid = compute(Family::kPearson, columns);
    expectNear(grid.at(0, 1), pairOf(Family::kPearson, columns[0], columns[1], {}, {}), 1e-13, "hidden");
    EXPECT_NEAR(grid.at(0, 2).value, pairOf(Family::kPearson, columns[0], columns[2], {}, {}).value, 1e-9);
}

TEST(Matrices, ManyColumnsAndFewRows) {
    const Columns columns = correlated(5, 2000, 0.0);
    const Grid grid = compute(Family::kPearson, columns);
    expectNear(grid.at(3, 1997), pairOf(Family::kPearson, columns[3], columns[1997], {}, {}), 1e-9, "far pair");
    for (const std::size_t n : {0U, 1U}) {
        for (const Family family : kFamilies) {
            const Grid small = compute(family, Columns(3, Values(n, 1.0)));
            EXPECT_EQ(small.at(0, 2).value, kNone);
        }
    }
    EXPECT_TRUE(compute(Family::kPearson, {}).cells.empty());
    EXPECT_EQ(compute(Family::kPearson, {{1.0, 2.0, 4.0}}).at(0, 0).value, 1.0) << "one column";
}

TEST(MatricesOfSets, VariantsWithoutWeightsAreTheSame) {
    const Columns columns = correlated(60, 3, 0.0);
    numcore::cST_MVect<double> data(60, 3, 0.0);
    for (std::int32_t c = 0; c < 3; ++c) {
        std::ranges::copy(columns[static_cast<std::size_t>(c)], data.cells(c).begin());
    }
    using Set = numcore::cST_MVect<double>;
    numcore::cST_MVect<std::int32_t> significant(3, 3, 7);
    const matrix<std::int16_t> none;
    const matrix<double> ones(60, 1, 1.0);
    std::vector<Set> full, plain;
    for (int k = 0; k < 5; ++k) {
        full.emplace_back(3, 3, 7.0);
        plain.emplace_back(3, 3, 7.0);
    }
    numcore::M_PearsonCovCorr_ST(data, 60, 3, ones, none, -1, -1, -1, 0, full[0], -1, full[1], 0.05,
                                 significant, -1, full[2], -1, full[3], full[4]);
    numcore::M_PearsonCovCorrNoMissNoWeight_ST(data, 60, 3, none, -1, -1, -1, 0, plain[0], -1, plain[1], 0.05,
                                               significant, -1, plain[2], -1, plain[3], plain[4]);
    for (std::size_t k = 0; k < 5; ++k) {
        for (std::int32_t c = 0; c < 3; ++c) {
            EXPECT_TRUE(std::ranges::equal(full[k].cells(c), plain[k].cells(c)));
        }
    }
    Set narrow(1, 2, 7.0);
    numcore::M_SpearmanRho_ST(data, INT32_MAX, 99, ones, none, 0, 0, narrow, 1, full[1], 0.05, significant, 1,
                              full[2], 1, full[3], full[4]);
    EXPECT_EQ(narrow.at(0, 0), 1.0) << "what does not fit is dropped";
    EXPECT_EQ(full[2].at(0, 1), plain[2].at(0, 1)) << "a flag of 1 is false";
}

}  // namespace
