#include "suite/vmcore_kernels.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "suite/rngcore.hpp"
#include "suite/vmcore.hpp"

namespace {

using namespace numcore::vmcore;

// Numbers among which every 5th is missing, every 11th repeats, and the last are special.
std::vector<double> mixedCells(std::size_t n) {
    std::vector<double> cells(n);
    numcore::rngcore::fillUniform(17, 0, cells);
    for (std::size_t i = 0; i < n; ++i) {
        if (i % 5 == 3) cells[i] = kMissing;
        if (i % 11 == 7) cells[i] = 0.5;
    }
    if (n > 20) cells[n - 1] = -0.0;
    if (n > 30) cells[n - 9] = std::nextafter(kMissing, 0.0);
    return cells;
}

TEST(Kernels, InstructionSetsGiveTheSameBits) {
    if (!hasAvx2()) GTEST_SKIP() << "this processor has no AVX2";
    std::vector<double> weights(2048);
    numcore::rngcore::fillUniform(18, 0, weights);
    for (std::size_t n = 0; n <= 2048; n += n < 70 ? 1 : 989) {
        const std::vector<double> cells = mixedCells(n);
        for (const double* w :
             {static_cast<const double*>(nullptr), static_cast<const double*>(weights.data())}) {
            BlockSums baseline;
            BlockSums wide;
            baselineKernels().sumBlock(cells.data(), w, n, 0.375, baseline);
            avx2Kernels().sumBlock(cells.data(), w, n, 0.375, wide);
            // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): the same bits are what is asked
            EXPECT_EQ(std::memcmp(&baseline, &wide, sizeof wide), 0) << n;
        }
        EXPECT_EQ(baselineKernels().countMissing(cells.data(), n), avx2Kernels().countMissing(cells.data(), n));
        std::vector<double> insideBaseline(n + 8);
        std::vector<double> insideWide(n + 8);
        const BracketCounts a =
            baselineKernels().scanBracket(cells.data(), n, 0.25, 0.5, insideBaseline.data());
        const BracketCounts b = avx2Kernels().scanBracket(cells.data(), n, 0.25, 0.5, insideWide.data());
        EXPECT_EQ(std::memcmp(&a, &b, sizeof a), 0) << n;
        EXPECT_EQ(std::memcmp(insideBaseline.data(), insideWide.data(), a.nInside * sizeof(double)), 0) << n;
    }
}

TEST(Kernels, OnlyTheExactMarkerIsMissing) {
    const double neighbours[] = {std::nextafter(kMissing, 0.0),
                                 std::nextafter(kMissing, -std::numeric_limits<double>::infinity()),
                                 kMissing,
                                 kOverflow,
                                 std::nan(""),
                                 std::numeric_limits<double>::lowest()};
    for (const Kernels* k : {&baselineKernels(), &kernels()}) EXPECT_EQ(k->countMissing(neighbours, 6), 1);
}

}  // namespace
