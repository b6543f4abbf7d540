#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "numcore/association.h"
#include "numcore/continuous_laws.h"
#include "reference_table.hpp"

namespace {

using numcore::testing::agrees;
using numcore::testing::readDataColumn;
using numcore::testing::readTable;

const char* const kVariables[] = {"mpg", "hp", "wt", "qsec", "disp"};

std::vector<double> cars(std::size_t nVariables) {
    std::vector<double> data;
    for (std::size_t v = 0; v < nVariables; ++v) {
        const auto column = readDataColumn("mtcars.csv", kVariables[v]);
        data.insert(data.end(), column.begin(), column.end());
    }
    return data;
}

TEST(PartialCorrelation, MatchesReference) {
    for (const auto& row : readTable("correlation/association/partial.csv")) {
        const std::string file = row.text("dataset") + ".csv";
        const auto x = readDataColumn(file, row.text("x"));
        const auto y = readDataColumn(file, row.text("y"));
        const auto z = readDataColumn(file, row.text("z"));
        double p = 0.0;
        const auto n = static_cast<std::int32_t>(x.size());
        const double r = Cpp_V_PartialCorrelation(x.data(), n, y.data(), z.data(), nullptr, &p);
        EXPECT_TRUE(agrees(r, row["r"], 1e-12, 1e-15)) << row.line() << ": " << r;
        EXPECT_TRUE(agrees(p, row["p"], 1e-10)) << row.line() << ": " << p;
    }
}

TEST(PartialCorrelation, KeepsZeroAndOneWhereNothingIsLeft) {
    const double x[] = {1, 2, 3, 4, 5};
    const double y[] = {2, 1, 4, 3, 6};
    const double constant[] = {7, 7, 7, 7, 7};
    double p = 0.5;
    EXPECT_EQ(V_PartialCorrelation(x, 5, y, x, nullptr, &p), 0.0);
    EXPECT_EQ(p, 1.0);
    EXPECT_EQ(V_PartialCorrelation(constant, 5, y, x, nullptr, &p), 0.0);
    EXPECT_EQ(p, 1.0);
    EXPECT_EQ(V_PartialCorrelation(x, 5, y, constant, nullptr, &p), NUMCORE_MISSING);
    EXPECT_EQ(p, NUMCORE_MISSING);
    EXPECT_EQ(V_PartialCorrelation(x, 5, nullptr, x, nullptr, nullptr), NUMCORE_MISSING);
    EXPECT_EQ(V_PartialCorrelation(x, 0, y, x, nullptr, &p), NUMCORE_MISSING);
}

// A weight of 2 is a doubled row for the coefficient, while the probability counts rows: kept.
TEST(PartialCorrelation, WeightsCountForTheCoefficientAndRowsForTheProbability) {
    const std::vector<double> x = {1, 2, 3, 4, 5, 2, NUMCORE_MISSING};
    const std::vector<double> y = {2, 1, 4, 3, 6, 5, 1};
    const std::vector<double> z = {1, 3, 2, 5, 4, 4, 2};
    const std::vector<double> w = {1, 2, 1, 1, 1, 1, 9};
    const std::vector<double> x2 = {1, 2, 2, 3, 4, 5, 2};
    const std::vector<double> y2 = {2, 1, 1, 4, 3, 6, 5};
    const std::vector<double> z2 = {1, 3, 3, 2, 5, 4, 4};
    double pWeighted = 0.0;
    double pRows = 0.0;
    const double weighted = V_PartialCorrelation(x.data(), 7, y.data(), z.data(), w.data(), &pWeighted);
    EXPECT_TRUE(
        agrees(weighted, V_PartialCorrelation(x2.data(), 7, y2.data(), z2.data(), nullptr, &pRows), 1e-13));
    EXPECT_TRUE(
        agrees(pWeighted, CDFStudent(weighted * std::sqrt(4.0 / (1.0 - weighted * weighted)), 4.0), 1e-12));
    EXPECT_GT(std::abs(pRows - pWeighted), 1e-3);
}

TEST(PartialMatrix, MatchesResidualCorrelations) {
    const auto data = cars(5);
    std::vector<double> r(25);
    std::vector<double> p(25);
    ASSERT_EQ(M_PartialCorrelation(data.data(), 32, 5, nullptr, NUMCORE_PARTIAL_TWO_SIDED, r.data(), p.data()),
              0);
    for (const auto& row : readTable("correlation/association/partial_matrix.csv")) {
        const auto cell = static_cast<std::size_t>(row["j"] * 5 + row["i"]);
        EXPECT_TRUE(agrees(r[cell], row["r"], 1e-11)) << row.line();
        EXPECT_TRUE(agrees(p[cell], row["p"], 1e-9)) << row.line();
    }
    std::vector<double> lower(25);
    M_PartialCorrelation(data.data(), 32, 5, nullptr, NUMCORE_PARTIAL_LOWER, r.data(), lower.data());
    EXPECT_TRUE(agrees(2.0 * std::min(lower[1], 1.0 - lower[1]), p[1], 1e-12));
}

TEST(PartialMatrix, OfThreeVariablesIsTheFirstOrderCoefficient) {
    const auto data = cars(3);
    std::vector<double> r(9);
    std::vector<double> p(9);
    ASSERT_EQ(Cpp_M_PartialCorrelation(data.data(), 32, 3, nullptr, NUMCORE_PARTIAL_AS_FIRST_ORDER, r.data(),
                                       p.data()),
              0);
    double pOne = 0.0;
    const double one = V_PartialCorrelation(data.data(), 32, &data[32], &data[64], nullptr, &pOne);
    EXPECT_TRUE(agrees(r[3], one, 1e-13));
    EXPECT_TRUE(agrees(p[3], pOne, 1e-11));
}

// d = a + b: what c and d leave of a and b is one variable, with opposite signs.
TEST(PartialMatrix, HandlesLinearRelations) {
    const std::vector<double> a = {1, 2, 3, 4, 5, 7};
    const std::vector<double> b = {2, 1, 4, 3, 6, 1};
    const std::vector<double> c = {1, 5, 2, 6, 3, 1};
    std::vector<double> data;
    for (const auto& column : {a, b, c}) data.insert(data.end(), column.begin(), column.end());
    for (std::size_t i = 0; i < 6; ++i) data.push_back(a[i] + b[i]);
    std::vector<double> r(16);
    std::vector<double> p(16);
    ASSERT_EQ(M_PartialCorrelation(data.data(), 6, 4, nullptr, NUMCORE_PARTIAL_TWO_SIDED, r.data(), p.data()),
              0);
    EXPECT_TRUE(agrees(r[4], -1.0, 1e-9)) << r[4];
    EXPECT_TRUE(agrees(r[12], 1.0, 1e-9)) << r[12];
    EXPECT_EQ(r[2 * 4], 0.0) << "b and d determine a";
    EXPECT_EQ(p[2 * 4], 1.0);
    EXPECT_EQ(r[5], 1.0);
}

TEST(PartialMatrix, RefusesBadInput) {
    const double data[] = {1, 2, 3, 5, 5, 5};
    double r[4] = {0, 0, 0, 0};
    EXPECT_EQ(M_PartialCorrelation(data, 3, 2, nullptr, 0, r, nullptr), -2);
    EXPECT_EQ(r[1], NUMCORE_MISSING);
    EXPECT_EQ(M_PartialCorrelation(nullptr, 3, 2, nullptr, 0, r, nullptr), -1);
    EXPECT_EQ(M_PartialCorrelation(data, 3, 0, nullptr, 0, r, nullptr), -1);
    EXPECT_EQ(M_PartialCorrelationSPV(nullptr, nullptr, 0, nullptr, nullptr), -1);
}

SAFEARRAY* table(std::uint32_t rows, std::uint32_t columns) {
    SAFEARRAYBOUND bounds[2] = {{rows, 0}, {columns, 0}};
    return SafeArrayCreate(VT_R8, 2, bounds);
}

TEST(PartialMatrix, AutomationArraysEitherWayRound) {
    const auto data = cars(3);
    std::vector<double> r(9);
    M_PartialCorrelation(data.data(), 32, 3, nullptr, 0, r.data(), nullptr);
    SAFEARRAY* upright = table(32, 3);
    SAFEARRAY* transposed = table(3, 32);
    SAFEARRAY* rho = table(3, 3);
    SAFEARRAY* weights = table(5, 1);
    for (std::size_t cell = 0; cell < data.size(); ++cell) {
        static_cast<double*>(upright->pvData)[cell] = data[cell];
        static_cast<double*>(transposed->pvData)[cell % 32 * 3 + cell / 32] = data[cell];
    }
    EXPECT_EQ(M_PartialCorrelationSPV(upright, nullptr, 0, rho, nullptr), 0);
    EXPECT_EQ(static_cast<double*>(rho->pvData)[5], r[5]);
    static_cast<double*>(rho->pvData)[5] = 0.0;
    EXPECT_EQ(M_PartialCorrelationSPV_T(transposed, nullptr, 0, rho, nullptr), 0);
    EXPECT_EQ(static_cast<double*>(rho->pvData)[5], r[5]);
    EXPECT_EQ(M_PartialCorrelationSPV(upright, weights, 0, rho, nullptr), -1) << "weights of another length";
    const double alpha = GetCronbachAlpha(data.data(), 32, 3, nullptr, NUMCORE_ITEMS_CORRELATION);
    EXPECT_EQ(CronbachAlphaSPV_T(transposed, nullptr, NUMCORE_ITEMS_CORRELATION), alpha);
    EXPECT_EQ(Cpp_CronbachAlphaSPV_T(transposed, weights, NUMCORE_ITEMS_CORRELATION), NUMCORE_MISSING);
    for (SAFEARRAY* array : {upright, transposed, rho, weights}) SafeArrayDestroy(array);
}

}  // namespace
