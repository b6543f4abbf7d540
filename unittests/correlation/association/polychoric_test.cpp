#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "numcore/association.h"
#include "reference_table.hpp"

namespace {

using numcore::testing::agrees;
using numcore::testing::readTable;

/// Cells of a table, row by row, as one weighted observation each.
struct Cells {
    std::vector<double> x;
    std::vector<double> y;
    std::vector<double> weights;

    Cells(std::int32_t nColumns, const std::vector<double>& counts) : weights(counts) {
        for (std::size_t cell = 0; cell < counts.size(); ++cell) {
            const std::size_t row = cell / static_cast<std::size_t>(nColumns);
            x.push_back(static_cast<double>(row));
            y.push_back(10.0 * static_cast<double>(cell % static_cast<std::size_t>(nColumns)));
        }
    }
    double fit(std::int32_t method, double start, ST_PolychoricFit* out) const {
        return V_PolychoricRho(x.data(), static_cast<std::int32_t>(x.size()), y.data(), weights.data(), method,
                               start, out);
    }
};

TEST(Polychoric, MatchesDirectMaximisation) {
    for (const auto& row : readTable("correlation/association/polychoric.csv")) {
        const Cells cells(static_cast<std::int32_t>(row["columns"]), row.list("counts"));
        for (const double start : {NUMCORE_MISSING, 0.0, -0.9}) {
            ST_PolychoricFit fit;
            const double rho = cells.fit(static_cast<std::int32_t>(row["method"]), start, &fit);
            EXPECT_EQ(fit.status, NUMCORE_FIT_CONVERGED) << row.line();
            EXPECT_TRUE(agrees(rho, row["rho"], 1e-10)) << row.line() << " from " << start << ": " << rho;
            if (!row.text("error").empty()) {
                EXPECT_TRUE(agrees(fit.standardError, row["error"], 1e-7))
                    << row.line() << ": " << fit.standardError;
            }
            EXPECT_TRUE(agrees(fit.logLikelihood, row["likelihood"], 1e-12)) << row.line();
        }
    }
}

TEST(Polychoric, EndsAtTheLimitWhenACellOfTwoByTwoIsEmpty) {
    ST_PolychoricFit fit;
    EXPECT_EQ(Cells(2, {10, 0, 5, 10}).fit(NUMCORE_POLYCHORIC_TWO_STEP, 0.0, &fit), 1.0);
    EXPECT_EQ(fit.status, NUMCORE_FIT_AT_LIMIT);
    EXPECT_EQ(fit.standardError, NUMCORE_MISSING);
    EXPECT_EQ(Cells(2, {0, 5, 5, 0}).fit(NUMCORE_POLYCHORIC_FULL, 0.0, &fit), -1.0);
    EXPECT_EQ(Cells(3, {9, 0, 0, 0, 9, 0, 0, 0, 9}).fit(NUMCORE_POLYCHORIC_FULL, 0.0, &fit), 1.0);
}

TEST(Polychoric, RefusesWhatIsNoOrdinalTable) {
    ST_PolychoricFit fit;
    std::vector<double> many(201);
    for (std::size_t i = 0; i < many.size(); ++i) many[i] = static_cast<double>(i % 201);
    EXPECT_EQ(V_PolychoricRho(many.data(), 201, many.data(), nullptr, 1, 0.0, &fit), NUMCORE_MISSING);
    EXPECT_EQ(fit.status, NUMCORE_FIT_DEGENERATE);
    const double x[] = {1, 1, NUMCORE_MISSING, 2};
    const double y[] = {1, 2, 1, std::nan("")};
    EXPECT_EQ(V_PolychoricRho(x, 4, y, nullptr, 1, 0.0, &fit), NUMCORE_MISSING);
    EXPECT_EQ(fit.status, NUMCORE_FIT_DEGENERATE) << "one category left";
    EXPECT_EQ(V_PolychoricRho(x, 0, y, nullptr, 1, 0.0, &fit), NUMCORE_MISSING);
    EXPECT_EQ(fit.status, NUMCORE_FIT_TOO_FEW);
    EXPECT_EQ(V_PolychoricRho(nullptr, 4, y, nullptr, 1, 0.0, nullptr), NUMCORE_MISSING);
}

TEST(Polychoric, ExclusionWeightsAndMatrixAgree) {
    std::mt19937 random(3);
    constexpr std::int32_t n = 300;
    std::vector<double> data;
    for (int i = 0; i < 3 * n; ++i) {
        const int common = i < n ? 0 : static_cast<int>(data[static_cast<std::size_t>(i % n)]);
        data.push_back(static_cast<double>((static_cast<int>(random() % 3) + common) % 4));
    }
    std::vector<double> weights(n, 1.0);
    std::vector<std::int16_t> exclusion(n, 0);
    weights[7] = 0.0;
    exclusion[7] = 1;
    std::vector<double> r(9);
    std::vector<double> errors(9);
    ASSERT_EQ(Cpp_M_Polychoric(data.data(), n, 3, weights.data(), 1, r.data(), errors.data()), 0);
    ST_PolychoricFit fit;
    const double pair =
        V_PolychoricRhoPearsonInitOnCode(data.data(), n, &data[n], exclusion.data(), nullptr, 1, &fit);
    EXPECT_EQ(r[1], pair);
    EXPECT_EQ(r[3], pair);
    EXPECT_EQ(errors[1], fit.standardError);
    EXPECT_EQ(r[4], 1.0);
    EXPECT_EQ(Cpp_M_Polychoric(data.data(), n, 0, nullptr, 1, r.data(), nullptr), -1);
}

// Derivatives against differences of the likelihood; the information against the law's own averages.
TEST(Polychoric, DerivativesBelongToTheLikelihood) {
    const double counts[] = {13, 6, 1, 69, 113, 22, 41, 132, 104};
    const double at[] = {0.45, -1.7, 0.1, -1.9, -0.2};
    const auto likelihood = [&](const double* t) {
        return PolychoricLogLike(counts, 3, 3, t + 1, t + 3, t[0]);
    };
    double gradient[5];
    double information[25];
    ASSERT_EQ(PolychoricDerivatives(counts, 3, 3, at + 1, at + 3, at[0], gradient, information), 0);
    for (int k = 0; k < 5; ++k) {
        double up[5];
        double down[5];
        std::copy(at, at + 5, up);
        std::copy(at, at + 5, down);
        up[k] += 1e-5;
        down[k] -= 1e-5;
        EXPECT_TRUE(agrees(gradient[k], (likelihood(up) - likelihood(down)) / 2e-5, 1e-6, 1e-5)) << k;
    }
    double expected[9];
    ASSERT_EQ(PolychoricPij(at + 1, 3, at + 3, 3, at[0], expected), 0);
    double total = 0.0;
    double shares = 0.0;
    for (int cell = 0; cell < 9; ++cell) {
        total += counts[cell];
        shares += expected[cell];
    }
    EXPECT_NEAR(shares, 1.0, 1e-14);
    // With the expected counts the gradient vanishes, and its change is the information.
    for (double& share : expected) share *= total;
    double moved[5];
    std::copy(at, at + 5, moved);
    moved[0] += 1e-6;
    double slope[5];
    PolychoricDerivatives(expected, 3, 3, moved + 1, moved + 3, moved[0], slope, nullptr);
    for (int k = 0; k < 5; ++k) EXPECT_TRUE(agrees(-slope[k] / 1e-6, information[k], 1e-4)) << k;
}

TEST(Polychoric, PiecesRefuseWhatIsNoLaw) {
    const double descending[] = {0.5, -0.5};
    const double counts[] = {1, 2, 3, 4, 5, -6, 7, 8, 9};
    const double fine[] = {-0.5, 0.5};
    double out[9] = {-7};
    EXPECT_EQ(PolychoricPij(descending, 3, fine, 3, 0.2, out), -1);
    EXPECT_EQ(PolychoricPij(fine, 3, fine, 3, 1.1, out), -1);
    EXPECT_EQ(PolychoricPij(fine, 3, fine, 0, 0.1, out), -1);
    EXPECT_EQ(PolychoricPij(fine, 100000, fine, 100000, 0.1, out), -1);
    EXPECT_EQ(out[0], -7) << "nothing is written";
    EXPECT_EQ(PolychoricLogLike(counts, 3, 3, fine, fine, 0.1), NUMCORE_MISSING) << "a negative count";
    EXPECT_EQ(PolychoricDerivatives(counts, 2, 2, fine, fine, 1.0, out, nullptr), -1);
    const double zero[] = {0.0};
    EXPECT_EQ(PolychoricLogLike(counts, 2, 2, zero, zero, 1.0), NUMCORE_MISSING)
        << "an impossible cell holds counts";
}

}  // namespace
