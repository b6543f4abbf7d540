// Counts of concordant pairs: sorting, comparing and the definition give the same whole numbers.

#include "correlation/concordance.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

namespace cor = numcore::correlation;
using cor::PairCounts;
using Values = std::vector<double>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

PairCounts byDefinition(const Values& x, const Values& y, const Values& weights) {
    PairCounts counts{};
    for (std::size_t i = 0; i < x.size(); ++i) {
        for (std::size_t j = i + 1; j < x.size(); ++j) {
            const double dx = x[j] - x[i];
            const double dy = y[j] - y[i];
            const double w = weights.empty() ? 1.0 : std::trunc(weights[i] * weights[j]);
            if (std::abs(dx * dy) > 2.220446049250313e-16) {
                counts.untiedX += w;
                counts.untiedY += w;
                counts.score += dx * dy > 0.0 ? w : -w;
            } else {
                counts.nTied += 1.0;
                if (std::abs(dx) > 2.220446049250313e-16) counts.untiedX += w;
                if (std::abs(dy) > 2.220446049250313e-16) counts.untiedY += w;
            }
        }
    }
    return counts;
}

void expectSame(const PairCounts& a, const PairCounts& b, const std::string& what) {
    EXPECT_EQ(a.untiedX, b.untiedX) << what;
    EXPECT_EQ(a.untiedY, b.untiedY) << what;
    EXPECT_EQ(a.score, b.score) << what;
    EXPECT_EQ(a.nTied, b.nTied) << what;
}

/// Columns with what makes counting hard: ties, steps next to the threshold, clusters, infinities.
Values column(int kind, std::size_t n, std::mt19937_64& random) {
    std::normal_distribution<double> normal;
    Values values(n);
    for (double& v : values) {
        v = normal(random);
        if (kind == 1) v = std::round(v * 2.0);
        if (kind == 2) v = std::round(v * 3.0) + 1e-8 * std::round(normal(random));
        if (kind == 3) v = std::round(v) + 3e-16 * std::round(normal(random));
        if (kind == 4) v *= 1e-9;
        if (kind == 5 && std::abs(v) > 1.5) v = std::copysign(kInfinity, v);
    }
    return values;
}

std::vector<cor::KendallColumn> kendallColumns(const std::vector<std::span<const double>>& columns) {
    return cor::kendallColumns(cor::SelectedColumns({columns, columns.front().size(), {}}, false));
}

TEST(Concordance, SortingComparingAndTheDefinitionAgree) {
    std::mt19937_64 random(7);
    int nSorted = 0;
    for (const std::size_t n : {2U, 7U, 9U, 64U, 65U, 333U, 1700U}) {
        for (int kinds = 0; kinds < 36; ++kinds) {
            const Values x = column(kinds % 6, n, random);
            const Values y = column(kinds / 6, n, random);
            Values counts(n);
            Values fractions(n);
            for (std::size_t i = 0; i < n; ++i) {
                counts[i] = static_cast<double>(random() % 4);
                fractions[i] = static_cast<double>(random() % 4096) / 512.0;
            }
            const auto columns = kendallColumns({x, y});
            const auto& a = columns[0];
            const auto& b = columns[1];
            for (const Values& weights : {Values(), counts, fractions}) {
                const std::string what = std::to_string(n) + " kinds " + std::to_string(kinds);
                const PairCounts expected = byDefinition(x, y, weights);
                expectSame(cor::countByComparing(x, y, weights), expected, what + " compared");
                const bool sorts = cor::stepsAreLarge(a, b) || (a.canBeSorted && b.canBeSorted);
                if (!sorts || !cor::areCounts(weights)) continue;
                ++nSorted;
                expectSame(cor::countBySorting(a, b, weights), expected, what + " sorted");
            }
        }
    }
    EXPECT_GT(nSorted, 250);
}

TEST(Concordance, ManyEqualValuesBesideOneThatIsNearDoNotTakeForever) {
    Values x(100000, 1.0);
    x.back() += 1e-12;
    EXPECT_FALSE(kendallColumns({x}).front().canBeSorted);
}

TEST(Concordance, KnowsWeightsThatAreCounts) {
    EXPECT_TRUE(cor::areCounts({}));
    EXPECT_TRUE(cor::areCounts(Values{0.0, 3.0}));
    for (const double w : {0.5, -1.0, 4e9, static_cast<double>(NAN), kInfinity}) {
        EXPECT_FALSE(cor::areCounts(Values{1.0, w})) << w;
    }
    EXPECT_FALSE(cor::areCounts(Values(3, 1e9))) << "sums of products beyond 64 bits";
}

TEST(Concordance, KernelsAgreeToTheBit) {
    if (&cor::kernels() == &cor::baselineKernels()) GTEST_SKIP();
    std::mt19937_64 random(11);
    constexpr std::size_t kColumns = 7;
    const auto cells = column(0, cor::kBlockRows * kColumns * cor::kMaskedArrays, random);
    for (const bool upper : {false, true}) {
        const cor::Panels panels{cells.data(), kColumns, cells.data(), kColumns, upper};
        Values wide(kColumns * kColumns * cor::kMaskedSums, 0.0);
        Values narrow = wide;
        for (const auto add : {&cor::Kernels::addProducts, &cor::Kernels::addMasked}) {
            (cor::avx2Kernels().*add)(panels, wide.data());
            (cor::baselineKernels().*add)(panels, narrow.data());
        }
        if (!upper) {
            EXPECT_EQ(wide, narrow);
        } else {
            const std::size_t last = (kColumns - 1) * cor::kMaskedSums;
            EXPECT_EQ(wide[last], narrow[last]);
        }
    }
    Values x = column(2, 999, random);
    const Values y = column(1, 999, random);
    const Values weights = column(0, 999, random);
    for (const double* w : {static_cast<const double*>(nullptr), weights.data()}) {
        PairCounts wide{};
        PairCounts narrow{};
        cor::avx2Kernels().countPairs({x.data(), y.data(), w}, 3, 4, 999, wide);
        cor::baselineKernels().countPairs({x.data(), y.data(), w}, 3, 4, 999, narrow);
        expectSame(wide, narrow, "kernels");
    }
}

}  // namespace
