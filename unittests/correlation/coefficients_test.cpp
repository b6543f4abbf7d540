// Coefficients against other programs' values, through the functions over containers; what is kept as it is.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

#include "numcore/correlation.hpp"
#include "reference_table.hpp"

namespace {

using numcore::cST_MVect;
using numcore::matrix;
using numcore::testing::agrees;
using numcore::testing::Row;
using Values = std::vector<double>;

constexpr double kNone = NUMCORE_MISSING;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

matrix<double> vectorOf(const Values& values) {
    return matrix<double>(static_cast<std::int32_t>(values.size()), 1, const_cast<double*>(values.data()),
                          false);
}

struct Found {
    double value;
    double p = 123.5;
    double S = 123.5;
    std::int16_t exact = 0;
};

Found pearson(const Values& x, const Values& y, const Values& weights = {}, int alternative = 0) {
    Found found{};
    const auto a = vectorOf(x);
    const auto b = vectorOf(y);
    const auto w = vectorOf(weights);
    found.value = numcore::V_PearsonRho(&a, a.rows(), &b, nullptr, weights.empty() ? nullptr : &w, -1, -1, -1,
                                        &found.p, alternative, -1);
    return found;
}

Found spearman(const Values& x, const Values& y, const Values& weights = {}, int alternative = 0) {
    Found found{};
    const auto a = vectorOf(x);
    const auto b = vectorOf(y);
    const auto w = vectorOf(weights);
    found.value = numcore::V_SpearmanRho(&a, a.rows(), &b, nullptr, weights.empty() ? nullptr : &w, &found.p,
                                         alternative, &found.S);
    return found;
}

Found kendall(const Values& x, const Values& y, const Values& weights = {}, int alternative = 0,
              std::int16_t exact = -1, std::int16_t continuity = 0) {
    Found found{};
    found.exact = exact;
    const auto a = vectorOf(x);
    const auto b = vectorOf(y);
    const auto w = vectorOf(weights);
    found.value = numcore::V_KendallTau(&a, a.rows(), &b, nullptr, weights.empty() ? nullptr : &w, &found.p,
                                        alternative, &found.exact, continuity, &found.S);
    return found;
}

std::int16_t flag(const Row& row, const char* column) {
    return row.text(column).empty() ? std::int16_t{0} : static_cast<std::int16_t>(row[column]);
}

template <class Cell>
void expectMatrix(const Row& row, const char* name, const cST_MVect<Cell>& got) {
    const auto expected = row.list(name);
    if (expected.empty()) return;
    const auto p = static_cast<std::size_t>(got.columnCount());
    ASSERT_EQ(expected.size(), p * p) << row.text("id");
    for (std::size_t k = 0; k < expected.size(); ++k) {
        if (std::isnan(expected[k])) continue;
        const double cell =
            static_cast<double>(got.column(static_cast<std::int32_t>(k / p))[static_cast<std::int32_t>(k % p)]);
        EXPECT_TRUE(agrees(cell, expected[k], row["rel_tol"], row["abs_tol"]))
            << row.text("id") << ' ' << name << ' ' << k << ": " << cell << ", not " << expected[k];
    }
}

void expectMatrices(const Row& row) {
    std::vector<std::string> names;
    std::istringstream in(row.text("columns"));
    for (std::string name; std::getline(in, name, ':');) names.push_back(name);
    const auto p = static_cast<std::int32_t>(names.size());
    const std::string file = row.text("dataset") + ".csv";
    const auto n = static_cast<std::int32_t>(numcore::testing::readDataColumn(file, names[0]).size());
    cST_MVect<double> data(n, p, 0.0);
    for (std::int32_t c = 0; c < p; ++c) {
        const auto cells = numcore::testing::readDataColumn(file, names[static_cast<std::size_t>(c)]);
        std::ranges::copy(cells, data.cells(c).begin());
    }
    matrix<double> weights;
    if (!row.text("weights").empty()) {
        weights = vectorOf(numcore::testing::readDataColumn(file, row.text("weights")));
    }
    cST_MVect<double> r(p, p, 7.0), pValues(p, p, 7.0), squared(p, p, 7.0), lower(p, p, 7.0), upper(p, p, 7.0);
    cST_MVect<std::int32_t> significant(p, p, 7);
    const auto alternative = static_cast<std::int32_t>(row["alternative"]);
    const double alpha = row["alpha"];
    const matrix<std::int16_t> none;
    if (row.text("family") == "pearson") {
        numcore::M_PearsonCovCorr_ST(data, n, p, weights, none, flag(row, "correlation"), flag(row, "unbiased"),
                                     flag(row, "frequency"), alternative, r, -1, pValues, alpha, significant,
                                     -1, squared, -1, lower, upper);
    } else if (row.text("family") == "spearman") {
        numcore::M_SpearmanRho_ST(data, n, p, weights, none, 0, alternative, r, -1, pValues, alpha, significant,
                                  -1, squared, -1, lower, upper);
    } else {
        const std::int16_t law = flag(row, "continuity") != 0 ? 1 : 0;
        numcore::M_KendallTau_ST(data, n, p, weights, none, law, alternative, r, -1, pValues, alpha,
                                 significant, -1, squared, -1, lower, upper);
    }
    expectMatrix(row, "r", r);
    expectMatrix(row, "p", pValues);
    expectMatrix(row, "significant", significant);
    expectMatrix(row, "r2", squared);
    expectMatrix(row, "lower", lower);
    expectMatrix(row, "upper", upper);
}

void expectPair(const Row& row) {
    const auto x = row.list("x");
    const auto y = row.list("y");
    const auto alternative = static_cast<int>(row["alternative"]);
    Found found{};
    if (row.text("family") == "pearson") found = pearson(x, y, {}, alternative);
    if (row.text("family") == "spearman") found = spearman(x, y, {}, alternative);
    if (row.text("family") == "kendall") found = kendall(x, y, {}, alternative, flag(row, "exact"));
    const auto expect = [&](const char* name, double got) {
        if (row.text(name).empty()) return;
        EXPECT_TRUE(agrees(got, row[name], row["rel_tol"], row["abs_tol"]))
            << row.text("id") << ' ' << name << ": " << got << ", not " << row[name];
    };
    expect("r", found.value);
    expect("p", found.p);
    expect("S", found.S);
    expect("used_exact", found.exact);
}

TEST(Coefficients, MatchReference) {
    for (const Row& row : numcore::testing::readTable("correlation/coefficients.csv")) {
        if (row.text("columns").empty()) {
            expectPair(row);
        } else {
            expectMatrices(row);
        }
    }
}

TEST(Pearson, CountsObservationsOfNoWeight) {
    const Values x = {1.0, 2.0, 4.0, 9.0};
    const Values y = {2.0, 1.0, 5.0, 3.0};
    EXPECT_EQ(pearson(x, y, {0.0, 0.0, 0.0, 0.0}).value, kNone);
    // Rows of no weight change the degrees of freedom only.
    Values longX = x;
    Values longY = y;
    longX.push_back(1e9);
    longY.push_back(-1e9);
    const Found longer = pearson(longX, longY, {1.0, 1.0, 1.0, 1.0, 0.0});
    EXPECT_EQ(longer.value, pearson(x, y).value);
    double p = 0.0;
    PVal_Pearson(0, longer.value, 5, &p, nullptr);
    EXPECT_EQ(longer.p, p);
}

TEST(Pearson, RoundingBeyondOneIsTreatedDifferentlyAtEachEnd) {
    // Sums that give r = 1 + 2^-52: found by search, the coefficient of a line in rounded cells.
    Found above{};
    Found below{};
    for (int seed = 1; seed < 4000 && (above.p != 1.0 || below.value != -1.0); ++seed) {
        Values x, up, down;
        for (int i = 0; i < 5; ++i) {
            x.push_back(std::fmod(seed * (i + 1) * 0.6180339887, 1.0));
            up.push_back(3.0 * x.back() + 0.1);
            down.push_back(-3.0 * x.back() + 0.1);
        }
        const Found rising = pearson(x, up, {}, 0);
        const Found falling = pearson(x, down, {}, 1);
        EXPECT_LE(rising.value, 1.0);
        EXPECT_GE(falling.value, -1.0);
        if (rising.value == 1.0 && rising.p == 1.0) above = rising;
        if (falling.value == -1.0 && falling.p == 0.0) below = falling;
    }
    EXPECT_EQ(above.p, 1.0) << "clamped from above, p = 1";
    EXPECT_EQ(below.p, 0.0) << "clamped from below, p = 0 where exactly -1 gives 1 for the upper tail";
    EXPECT_EQ(pearson({1.0, 2.0, 3.0}, {3.0, 2.0, 1.0}, {}, 1).p, 1.0);
    EXPECT_EQ(pearson({1.0, 2.0, 3.0}, {1.0, 2.0, 3.0}).p, 0.0);
}

TEST(Pearson, UsesTheTailOfTheSizeOfTForEachAlternative) {
    const Values x = {1.0, 2.0, 3.0, 4.0, 5.0};
    const Values rising = {1.0, 3.0, 2.0, 5.0, 4.0};
    const Values falling = {4.0, 5.0, 2.0, 3.0, 1.0};
    for (const int alternative : {-1, 1}) {
        EXPECT_NEAR(pearson(x, rising, {}, alternative).p, pearson(x, falling, {}, alternative).p, 1e-15);
    }
    EXPECT_EQ(pearson(x, rising, {}, -2).p, 0.0);
    EXPECT_EQ(pearson(x, rising, {}, 2).p, kNone);
}

TEST(Pearson, CovarianceNeedsAPositiveDivisor) {
    const auto a = vectorOf({1.0});
    double p = 0.0;
    EXPECT_EQ(numcore::V_PearsonRho(&a, 1, &a, nullptr, nullptr, 0, -1, -1, &p, 0, 0), kNone);
    EXPECT_EQ(numcore::V_PearsonRho(&a, 1, &a, nullptr, nullptr, 0, 0, -1, &p, 0, 0), 0.0);
    EXPECT_EQ(numcore::V_PearsonRho(&a, 1, &a, nullptr, nullptr, 0, 1, 1, &p, 0, 0), 0.0)
        << "a flag of 1 is false";
    EXPECT_EQ(p, 0.0) << "not asked, not written";
}

TEST(Spearman, StepsByOneWhereTheGivenCoefficientStepsByTwo) {
    // Ties put S between the sums that orders have, where the steps differ.
    const Values x = {1.0, 2.0, 2.0, 3.0, 5.0};
    const Values y = {1.0, 1.0, 2.0, 1.0, 3.0};
    const Found found = spearman(x, y, {}, 1);
    EXPECT_DOUBLE_EQ(found.p, 1.0 - CDFSpearman(found.value, 5, found.S + 1.0));
    double given = 0.0;
    PvalSpearman(found.value, 1, 5, &given, 0, 0.05, nullptr, 0, nullptr, nullptr);
    EXPECT_DOUBLE_EQ(given, 1.0 - CDFSpearman(found.value, 5, found.S + 2.0));
    EXPECT_NE(given, found.p);
    EXPECT_EQ(spearman(x, y, {}, 2).p, kNone);
    EXPECT_EQ(spearman(x, x).value, 1.0) << "ties leave nothing beside 1";
}

TEST(Spearman, FewUntiedValuesReachTheirOwnSum) {
    // The coefficient brings S back with a rounding error of either sign; the tail begins at the whole number.
    const Values x = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0};
    Values y = x;
    std::vector<int> sums;
    do {
        double sum = 0.0;
        for (std::size_t i = 0; i < 7; ++i) sum += (x[i] - y[i]) * (x[i] - y[i]);
        sums.push_back(static_cast<int>(sum));
    } while (std::next_permutation(y.begin(), y.end()));
    std::sort(sums.begin(), sums.end());
    for (int k = 0; k < 200; ++k) {
        for (int step = 0; step < 25; ++step) std::next_permutation(y.begin(), y.end());
        const Found lower = spearman(x, y, {}, -1);
        const auto reached = sums.end() - std::lower_bound(sums.begin(), sums.end(), std::lround(lower.S));
        EXPECT_DOUBLE_EQ(lower.p, static_cast<double>(reached) / 5040.0) << "S = " << lower.S;
        EXPECT_NEAR(
            lower.p + spearman(x, y, {}, 1).p,
            1.0 + static_cast<double>(std::count(sums.begin(), sums.end(), std::lround(lower.S))) / 5040.0,
            1e-12);
    }
}

TEST(Spearman, WeightsOfAnySizeAreThoseOfRepeatedRows) {
    const Values x = {1.0, 2.0, 3.0, 4.0, 5.0};
    const Values y = {1.0, 5.0, 2.0, 2.0, 4.0};
    // R 4.2.2: cor(c(1,1,2,3,3,3,4,5), c(1,1,5,2,2,2,2,4), method = "spearman"). The ranks of smaller weights
    // lie on a line with those of larger ones.
    const Values counts = {2.0, 1.0, 3.0, 1.0, 1.0};
    for (const double scale : {1.0, 0.125, 0.12, 0.01, 0.7, 33.3}) {
        Values weights;
        for (const double count : counts) weights.push_back(scale * count);
        EXPECT_NEAR(spearman(x, y, weights).value, 0.5662307880697337, 1e-12) << scale;
    }
}

TEST(Spearman, WeightedConstantHasNoCoefficient) {
    // The weights sum to another number in another order, and their cubes are rounded.
    const Values weights = {0.1, 0.7, 0.3, 1.9, 0.2, 0.11};
    const Values x = {1.0, 3.0, 2.0, 5.0, 4.0, 6.0};
    const Values flat(6, 0.1);
    for (int alternative = -1; alternative <= 2; ++alternative) {
        EXPECT_EQ(spearman(x, flat, weights, alternative).value, kNone);
        EXPECT_EQ(spearman(flat, flat, weights, alternative).p, kNone);
    }
    EXPECT_EQ(spearman({1.0}, {1.0}, {2.3}).value, kNone);
    Values data = x;
    data.insert(data.end(), flat.begin(), flat.end());
    data.insert(data.end(), x.begin(), x.end());
    double r[9];
    double p[9];
    const auto table = matrix<double>(6, 3, data.data(), false);
    const auto w = vectorOf(weights);
    auto coefficients = matrix<double>(3, 3, r, true);
    auto pValues = matrix<double>(3, 3, p, true);
    EXPECT_EQ(numcore::M_SpearmanRho(&table, nullptr, &w, 0, &coefficients, &pValues), 0);
    for (const int cell : {1, 3, 4, 5, 7}) {
        EXPECT_EQ(r[cell], kNone) << cell;
        EXPECT_EQ(p[cell], kNone) << cell;
    }
    EXPECT_EQ(r[2], 1.0);
}

TEST(Kendall, TruncatesEachProductOfWeights) {
    const Values x = {1.0, 2.0, 3.0};
    const Values y = {1.0, 3.0, 2.0};
    // Products 1.5 * 1.5, 1.5 * 0.5 and 1.5 * 0.5: 2, 0 and 0.
    const Found found = kendall(x, y, {1.5, 1.5, 0.5});
    EXPECT_EQ(found.S, 2.0);
    EXPECT_EQ(found.value, 1.0);
    EXPECT_EQ(kendall(x, y, {0.5, 0.5, 0.5}).value, kNone) << "all products truncated to nothing";
    EXPECT_EQ(kendall(x, y, {1.0, kNaN, kInfinity}).value, kNone) << "weights that are not finite are none";
}

TEST(Kendall, ConstantColumnHasPValueZero) {
    const Values x = {1.0, 2.0, 3.0, 4.0};
    const Found found = kendall(x, {5.0, 5.0, 5.0, kNone});
    EXPECT_EQ(found.value, kNone);
    EXPECT_EQ(found.p, 0.0);
    EXPECT_EQ(found.exact, 0);
    EXPECT_EQ(kendall(x, {5.0, 5.0, 5.0, 5.0}, {}, 2).p, kNone) << "the alternative is looked at first";
}

TEST(Kendall, SaysWhetherTheExactLawWasUsed) {
    Values x, y;
    for (int i = 0; i < 49; ++i) {
        x.push_back(i);
        y.push_back(i * 11 % 49);
    }
    EXPECT_EQ(kendall(x, y).exact, -1);
    EXPECT_EQ(kendall(x, y, {}, 0, 0).exact, 0);
    EXPECT_EQ(kendall(x, y, {}, 0, 1).exact, 0) << "a flag of 1 is false";
    const Values heavier(49, 50.0 / 49.0);
    EXPECT_EQ(kendall(x, y, heavier).exact, 0) << "50 weight or more";
    y[3] = y[4];
    EXPECT_EQ(kendall(x, y).exact, 0) << "ties";
    // Continuity moves S towards 0, so both tails grow.
    EXPECT_GT(kendall(x, y, {}, 0, 0, -1).p, kendall(x, y, {}, 0, 0, 0).p);
}

TEST(Kendall, DifferencesWhoseProductIsTinyAreTies) {
    const Found found = kendall({0.0, 1e-8, 1.0, 2.0}, {0.0, 1e-8, 1.0, 2.0});
    EXPECT_EQ(found.S, 5.0);
    EXPECT_EQ(found.exact, 0);
    EXPECT_DOUBLE_EQ(found.value, 5.0 / 6.0) << "each difference alone is large enough to count as untied";
    const Found tinier = kendall({0.0, 1e-16, 1.0, 2.0}, {0.0, 1e-16, 1.0, 2.0});
    EXPECT_EQ(tinier.value, 1.0) << "tied in both";
}

TEST(Coefficients, FewObservations) {
    for (int n = 0; n <= 4; ++n) {
        Values x, y;
        for (int i = 0; i < n; ++i) {
            x.push_back(i);
            y.push_back(i * i);
        }
        for (const auto& found : {pearson(x, y), spearman(x, y), kendall(x, y)}) {
            EXPECT_EQ(found.value == kNone, n < 2) << n;
            EXPECT_FALSE(std::isnan(found.p)) << n;
        }
        EXPECT_EQ(pearson(x, y).p == kNone, n < 2) << n << ": r = 1 has p = 0 without degrees of freedom";
    }
}

TEST(Coefficients, TakeInfinitiesAndNan) {
    const Values x = {-kInfinity, 1.0, 2.0, kInfinity, 4.0};
    const Values y = {1.0, 2.0, 3.0, 9.0, 8.0};
    EXPECT_EQ(pearson(x, y).value, kNone);
    EXPECT_DOUBLE_EQ(spearman(x, y).value, 0.9 + 0.1);
    EXPECT_DOUBLE_EQ(kendall(x, y).value, 1.0);
    EXPECT_EQ(kendall({kInfinity, kInfinity, 1.0}, {1.0, 1.0, 0.0}).S, 2.0) << "equal infinities are tied";
    EXPECT_EQ(pearson({1.0, kNaN, 3.0}, {1.0, 2.0, 3.0}).value, kNone);
    EXPECT_DOUBLE_EQ(spearman({1.0, kNaN, 3.0}, {1.0, 3.0, 2.0}).value, 1.0) << "NaN is after every number";
    EXPECT_EQ(kendall({1.0, kNaN, 3.0}, {1.0, 3.0, 2.0}).S, 1.0) << "NaN is tied with everything";
}

TEST(IsConstant, LooksAtPresentValuesOnly) {
    const auto x = vectorOf({kNone, 2.0, kNone, 2.0, 3.0});
    EXPECT_TRUE(numcore::V_IsConstant(&x, 4));
    EXPECT_FALSE(numcore::V_IsConstant(&x, 99));
    EXPECT_TRUE(numcore::V_IsConstant(&x, -1));
    EXPECT_TRUE(numcore::V_IsConstant(nullptr, 3));
}

}  // namespace
