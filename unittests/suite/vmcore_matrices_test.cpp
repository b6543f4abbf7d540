#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "suite/vmcore.hpp"

namespace {

using namespace numcore::vmcore;
using Cells = std::vector<double>;

void expectNear(const Cells& got, const Cells& expected, double relative) {
    ASSERT_EQ(got.size(), expected.size());
    double largest = 0.0;
    for (const double x : expected) largest = std::max(largest, std::abs(x));
    for (std::size_t i = 0; i < got.size(); ++i) EXPECT_NEAR(got[i], expected[i], relative * largest) << i;
}

const Cells kPositive = {4.0, 2.0, 0.6, 2.0, 5.0, 1.0, 0.6, 1.0, 3.0};

TEST(Matrices, CholeskyMatchesReference) {
    Cells lower(9, -1.0);
    ASSERT_TRUE(M_CholDecomp({kPositive.data(), 3, 3}, {lower.data(), 3, 3}));
    // R 4.2.2: t(chol(x))
    expectNear(lower, {2.0, 1.0, 0.3, 0.0, 2.0, 0.35, 0.0, 0.0, 1.6695807857064}, 1e-14);
    Cells inPlace = kPositive;
    inPlace[3] = inPlace[6] = inPlace[7] = kMissing;  // only the lower triangle counts
    ASSERT_TRUE(M_CholDecomp(MatrixView{inPlace.data(), 3, 3}, {inPlace.data(), 3, 3}));
    EXPECT_EQ(inPlace, lower);
    const Cells product = [&] {
        Cells out(9);
        EXPECT_TRUE(M_ProductATrB({lower.data(), 3, 3}, {lower.data(), 3, 3}, {out.data(), 3, 3}));
        return out;
    }();
    expectNear(product, kPositive, 1e-15);
}

TEST(Matrices, CholeskyRefusesWhatIsNotPositiveDefinite) {
    for (const Cells& bad : {Cells{1.0, 2.0, 2.0, 1.0}, Cells{0.0, 0.0, 0.0, 0.0}, Cells{1.0, 1.0, 1.0, 1.0},
                             Cells{std::nan(""), 0.0, 0.0, 1.0}, Cells{1.0, kMissing, 0.0, 1.0}}) {
        Cells lower(4, 5.0);
        EXPECT_FALSE(M_CholDecomp({bad.data(), 2, 2}, {lower.data(), 2, 2}));
        EXPECT_EQ(lower, Cells(4, 0.0));
    }
    Cells lower(4, 5.0);
    EXPECT_FALSE(M_CholDecomp({kPositive.data(), 3, 3}, {lower.data(), 2, 2}));
    EXPECT_FALSE(M_CholDecomp({nullptr, 2, 2}, {lower.data(), 2, 2}));
}

TEST(Matrices, InverseMatchesReference) {
    Cells inverse(9);
    ASSERT_TRUE(M_InverseG2({kPositive.data(), 3, 3}, {inverse.data(), 3, 3}));
    // R 4.2.2: solve(x)
    expectNear(inverse,
               {0.313901345291479839, -0.121076233183856505, -0.022421524663677132, -0.121076233183856505,
                0.260986547085201803, -0.062780269058295951, -0.022421524663677129, -0.062780269058295965,
                0.358744394618834062},
               1e-15);
    // Units of measurement do not make a matrix singular.
    Cells scaled = {4.0, 2e-12, 2e-12, 5e-24};
    ASSERT_TRUE(M_InverseG2(MatrixView{scaled.data(), 2, 2}, {scaled.data(), 2, 2}));
    EXPECT_NEAR(scaled[0], 0.3125, 1e-15);
    EXPECT_NEAR(scaled[3], 0.25e24, 1e9);
}

TEST(Matrices, SingularMatricesGetTheMoorePenroseInverse) {
    const Cells singular = {1.0, 2.0, 1.0, 2.0, 4.0, 0.0, 3.0, 6.0, 1.0};
    Cells inverse(9);
    EXPECT_FALSE(M_InverseG2({singular.data(), 3, 3}, {inverse.data(), 3, 3}));
    // NumPy: numpy.linalg.pinv
    expectNear(inverse,
               {-1.0 / 30.0, 1.0 / 15.0, 1.0 / 30.0, -1.0 / 15.0, 2.0 / 15.0, 1.0 / 15.0, 5.0 / 6.0, -2.0 / 3.0,
                1.0 / 6.0},
               1e-14);
    Cells zeros(4, 0.0);
    EXPECT_FALSE(M_InverseG2(MatrixView{zeros.data(), 2, 2}, {zeros.data(), 2, 2}));
    EXPECT_EQ(zeros, Cells(4, 0.0));
    Cells bad = {1.0, HUGE_VAL, 0.0, 1.0};
    EXPECT_FALSE(M_InverseG2(MatrixView{bad.data(), 2, 2}, {bad.data(), 2, 2}));
    EXPECT_EQ(bad, Cells(4, kMissing));
    EXPECT_FALSE(M_InverseG2({kPositive.data(), 3, 2}, {inverse.data(), 3, 2}));
}

TEST(Matrices, ProductTransposesTheSecondFactor) {
    const Cells a = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0};                                 // 2 x 3
    const Cells b = {1.0, 0.0, 0.0, 1.0, 2.0, -1.0, 7.0, 3.0, 1.0, 1.0, 1.0, 1.0};  // 4 x 3
    Cells out(8);
    ASSERT_TRUE(M_ProductATrB({a.data(), 2, 3}, {b.data(), 4, 3}, {out.data(), 2, 4}));
    EXPECT_EQ(out, (Cells{12.0, 16.0, 2.0, 2.0, 26.0, 34.0, 15.0, 20.0}));
    EXPECT_FALSE(M_ProductATrB({a.data(), 2, 3}, {b.data(), 4, 2}, {out.data(), 2, 4}));
    EXPECT_FALSE(M_ProductATrB({a.data(), 2, 3}, {b.data(), 4, 3}, {out.data(), 4, 2}));
}

TEST(Matrices, CovarianceMirrorsTheLowerTriangle) {
    Cells cells = {1.0, 2.0, 3.0, kMissing, 4.0, 5.0, 0.0, 0.0, 6.0};
    ASSERT_TRUE(M_CovMatFromSymMat(MatrixView{cells.data(), 3, 3}, {cells.data(), 3, 3}));
    EXPECT_EQ(cells, (Cells{1.0, 2.0, 3.0, 2.0, 4.0, 5.0, 3.0, 5.0, 6.0}));
    EXPECT_FALSE(M_CovMatFromSymMat({cells.data(), 3, 3}, {cells.data(), 3, 2}));
}

}  // namespace
