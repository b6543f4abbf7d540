// The doors of the coefficients as a foreign caller uses them, through the shared library.

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

#include "numcore/numcore.h"

namespace {

constexpr double kNone = NUMCORE_MISSING;
using Values = std::vector<double>;

struct Destroy {
    void operator()(SAFEARRAY* array) const { SafeArrayDestroy(array); }
};
using Owned = std::unique_ptr<SAFEARRAY, Destroy>;

Owned table(uint32_t rows, uint32_t columns, const Values& values = {}) {
    SAFEARRAYBOUND bounds[2] = {{rows, 1}, {columns, 1}};
    Owned array(SafeArrayCreate(VT_R8, 2, bounds));
    for (std::size_t i = 0; i < values.size(); ++i) static_cast<double*>(array->pvData)[i] = values[i];
    return array;
}

const double* cells(const Owned& array) {
    return static_cast<const double*>(array->pvData);
}

// Three columns of six rows; R 4.2.2: cor(m), cor(m, method = "spearman"), cor(m, method = "kendall").
const Values kData = {1, 2, 3, 4, 5, 6, 2, 1, 4, 3, 6, 5, 6, 4, 5, 2, 3, 1};
constexpr double kPearson01 = 0.82857142857142863;
constexpr double kKendall01 = 0.6;

TEST(CorrelationDoors, PairsFromFirstElements) {
    double p = 0.0;
    double S = 0.0;
    int16_t exact = NUMCORE_TRUE;
    const double* x = kData.data();
    const double* y = x + 6;
    EXPECT_DOUBLE_EQ(Cpp_V_PearsonRho(x, 6, y, nullptr, nullptr, -1, -1, -1, &p, 0, -1), kPearson01);
    EXPECT_DOUBLE_EQ(VB_V_SpearmanRho(x, 6, y, nullptr, nullptr, &p, 0, &S), kPearson01);
    EXPECT_NEAR(S, 6.0, 1e-13);
    EXPECT_DOUBLE_EQ(VB_V_KendallTau(x, 6, y, nullptr, nullptr, &p, 0, &exact, 0, &S), kKendall01);
    EXPECT_EQ(S, 9.0);
    EXPECT_EQ(exact, NUMCORE_TRUE);
    // An excluded row is as good as none.
    const int16_t exclusion[] = {0, 0, 0, 0, 1, 0};
    const double shortX[] = {1, 2, 3, 4, 6};
    const double shortY[] = {2, 1, 4, 3, 5};
    EXPECT_EQ(Cpp_V_PearsonRho(x, 6, y, exclusion, nullptr, -1, -1, -1, nullptr, 0, -1),
              Cpp_V_PearsonRho(shortX, 5, shortY, nullptr, nullptr, -1, -1, -1, nullptr, 0, -1));
    EXPECT_EQ(VB_V_KendallTau(x, 6, y, exclusion, nullptr, nullptr, 0, nullptr, 0, nullptr),
              VB_V_KendallTau(shortX, 5, shortY, nullptr, nullptr, nullptr, 0, nullptr, 0, nullptr));
    for (const int n : {INT32_MIN, -1, 0}) {
        EXPECT_EQ(Cpp_V_PearsonRho(x, n, y, nullptr, nullptr, -1, -1, -1, &p, 0, -1), kNone);
        EXPECT_EQ(VB_V_SpearmanRho(x, n, y, nullptr, nullptr, &p, 0, &S), kNone);
        EXPECT_EQ(VB_V_KendallTau(x, n, y, nullptr, nullptr, &p, 0, &exact, 0, &S), kNone);
    }
    EXPECT_EQ(VB_V_SpearmanRho(nullptr, 6, y, nullptr, nullptr, &p, 0, &S), kNone);
}

TEST(CorrelationDoors, MatricesFromFirstElements) {
    Values r(9, 7.0);
    Values p(9, 7.0);
    EXPECT_EQ(VB_M_PearsonRho(kData.data(), 6, 3, nullptr, nullptr, 0, r.data(), p.data()), 0);
    EXPECT_DOUBLE_EQ(r[1], kPearson01);
    EXPECT_EQ(r[1], r[3]);
    EXPECT_EQ(VB_M_SpearmanRho(kData.data(), 6, 3, nullptr, nullptr, 0, r.data(), nullptr), 0);
    EXPECT_DOUBLE_EQ(r[3], kPearson01);
    EXPECT_EQ(
        VB_M_KendallTau(kData.data(), 6, 3, nullptr, nullptr, 0, NUMCORE_KENDALL_EXACT, r.data(), p.data()), 0);
    EXPECT_DOUBLE_EQ(r[1], kKendall01);
    EXPECT_NEAR(p[1], 0.13611111111111113, 1e-14);
    EXPECT_EQ(VB_M_PearsonRho(kData.data(), 0, 3, nullptr, nullptr, 0, r.data(), p.data()), 0);
    EXPECT_EQ(r, Values(9, kNone));
    for (const auto door : {VB_M_PearsonRho, VB_M_SpearmanRho}) {
        EXPECT_EQ(door(nullptr, 6, 3, nullptr, nullptr, 0, r.data(), p.data()), -1);
        EXPECT_EQ(door(kData.data(), 6, 3, nullptr, nullptr, 0, nullptr, p.data()), -1);
        EXPECT_EQ(door(kData.data(), -6, 3, nullptr, nullptr, 0, r.data(), p.data()), -1);
        EXPECT_EQ(door(kData.data(), 6, 0, nullptr, nullptr, 0, r.data(), p.data()), -1);
    }
}

TEST(CorrelationDoors, AutomationArrays) {
    const Owned data = table(6, 3, kData);
    const Owned square = table(3, 3);
    const Owned probabilities = table(3, 3);
    EXPECT_EQ(M_PearsonRhoSPV(data.get(), nullptr, nullptr, 0, square.get(), probabilities.get()), 0);
    EXPECT_DOUBLE_EQ(cells(square)[3], kPearson01);
    EXPECT_EQ(M_SpearmanRhoSPV(data.get(), nullptr, nullptr, 0, square.get(), nullptr), 0);
    EXPECT_DOUBLE_EQ(cells(square)[3], kPearson01);
    EXPECT_EQ(M_KendallTauSPV(data.get(), nullptr, nullptr, 0, 0, square.get(), nullptr), 0);
    EXPECT_DOUBLE_EQ(cells(square)[3], kKendall01);

    const Owned first = table(6, 1, Values(kData.begin(), kData.begin() + 6));
    const Owned second = table(6, 2, Values(kData.begin() + 6, kData.end()));
    const Owned row = table(1, 2);
    EXPECT_EQ(Cpp_M_PearsonRhoMatMat(first.get(), second.get(), nullptr, nullptr, 0, row.get(), nullptr), 0);
    EXPECT_DOUBLE_EQ(cells(row)[0], kPearson01);
    EXPECT_EQ(Cpp_M_SpearmanRhoMatMat(first.get(), second.get(), nullptr, nullptr, 0, row.get(), nullptr), 0);
    EXPECT_DOUBLE_EQ(cells(row)[0], kPearson01);
    EXPECT_EQ(Cpp_M_KendallTauMatMat(first.get(), second.get(), nullptr, nullptr, 0, 0, row.get(), nullptr), 0);
    EXPECT_DOUBLE_EQ(cells(row)[0], kKendall01);

    const Owned shorter = table(5, 2);
    EXPECT_EQ(Cpp_M_PearsonRhoMatMat(first.get(), shorter.get(), nullptr, nullptr, 0, row.get(), nullptr), -1);
    EXPECT_EQ(Cpp_M_PearsonRhoMatMat(first.get(), nullptr, nullptr, nullptr, 0, row.get(), nullptr), -1);
    EXPECT_EQ(Cpp_M_PearsonRhoMatMat(first.get(), second.get(), nullptr, nullptr, 0, square.get(), nullptr),
              -1);
    EXPECT_EQ(M_PearsonRhoSPV(nullptr, nullptr, nullptr, 0, square.get(), nullptr), -1);
    EXPECT_EQ(M_PearsonRhoSPV(data.get(), nullptr, nullptr, 0, nullptr, nullptr), -1);
    EXPECT_EQ(M_KendallTauSPV(data.get(), nullptr, nullptr, 0, 0, row.get(), nullptr), -1);
}

TEST(CorrelationDoors, IntervalsCellByCell) {
    const Owned r = table(1, 3, {0.5, 1.0, -1.0});
    const Owned n = table(1, 1, {20.0});
    const Owned lower = table(1, 3);
    const Owned upper = table(1, 2, {7.0, 7.0});
    Cpp_PearsonRhoConfidenceInterval(r.get(), n.get(), 0.05, lower.get(), upper.get());
    EXPECT_NEAR(cells(lower)[0], 0.07381057440740976, 1e-14);  // R: tanh(atanh(r) - qnorm(.975) / sqrt(17))
    EXPECT_NEAR(cells(upper)[0], 0.7717607064299188, 1e-14);
    EXPECT_EQ(cells(lower)[1], 1.0);
    EXPECT_EQ(cells(lower)[2], 0.0) << "the shortest array bounds the cells";
    Cpp_PearsonRhoConfidenceInterval(r.get(), nullptr, 0.05, lower.get(), lower.get());
    EXPECT_EQ(cells(lower)[1], 1.0);
    Cpp_PearsonRhoConfidenceInterval(nullptr, n.get(), 0.05, nullptr, nullptr);
}

}  // namespace
