#include <gtest/gtest.h>
#include <omp.h>

#include <bit>
#include <cmath>
#include <limits>
#include <vector>

#include "reference_table.hpp"
#include "suite/rngcore.hpp"
#include "suite/vmcore.hpp"

namespace {

using namespace numcore::vmcore;
constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::nan("");

std::vector<double> uniforms(std::size_t n, std::int32_t seed) {
    std::vector<double> values(n);
    numcore::rngcore::fillUniform(seed, 0, values);
    return values;
}

void expectSameBits(const Summary& a, const Summary& b) {
    EXPECT_EQ(a.nCells, b.nCells);
    EXPECT_EQ(a.nMissing, b.nMissing);
    EXPECT_EQ(a.nUsed, b.nUsed);
    for (const double Summary::*field :
         {&Summary::minimum, &Summary::maximum, &Summary::mean, &Summary::sumSquares, &Summary::weight}) {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(a.*field), std::bit_cast<std::uint64_t>(b.*field));
    }
}

TEST(Summary, CertifiedSets) {
    struct Certified {
        const char* file;
        double mean, deviation, tolerance;
    };
    // Certified by the publisher of the sets to 15 digits.
    const Certified sets[] = {{"nist_lew.csv", -177.435, 277.332168044316, 1e-13},
                              {"nist_michelso.csv", 299.8524, 0.0790105478190518, 2e-13},
                              {"nist_numacc1.csv", 10000002.0, 1.0, 1e-13},
                              {"nist_numacc3.csv", 1000000.2, 0.1, 2e-9}};
    for (const Certified& set : sets) {
        const Summary summary = summarize(numcore::testing::readDataColumn(set.file, "y"));
        EXPECT_TRUE(numcore::testing::agrees(summary.mean, set.mean, 1e-14)) << set.file;
        EXPECT_TRUE(numcore::testing::agrees(std::sqrt(variance(summary)), set.deviation, set.tolerance))
            << set.file;
    }
}

// Shapes that are hard on a centre carried from block to block, held against 64-bit mantissas.
TEST(Summary, HardShapesKeepTheirDigits) {
    const std::vector<double> u = uniforms(20000, 3);
    const auto shape = [&](auto value) {
        std::vector<double> cells(u.size());
        for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = value(i, static_cast<double>(i));
        return cells;
    };
    struct Shape {
        std::vector<double> cells;
        double meanTolerance;  // wider where the mean is small against the deviations
    };
    const std::vector<Shape> shapes = {
        {shape([&](std::size_t i, double) { return 1e9 + u[i]; }), 1e-15},
        {shape([&](std::size_t, double place) { return place * 1e3; }), 1e-15},
        {shape([&](std::size_t i, double place) { return std::floor(place / 2048.0) * 1e7 + u[i] * 1e6; }),
         1e-15},
        {shape([&](std::size_t i, double) { return i == 0 ? 1e16 : u[i]; }), 2e-14},
        {shape([&](std::size_t i, double) { return (i < 2048 ? 1e200 : 1.0) * (u[i] - 0.25); }), 4e-15},
        {shape([&](std::size_t i, double) { return i % 3 == 0 ? kMissing : std::exp(40.0 * u[i]); }), 1e-15},
    };
    for (std::size_t k = 0; k < shapes.size(); ++k) {
        long double sum = 0.0L;
        long double n = 0.0L;
        for (const double x : shapes[k].cells) {
            if (!IsMissingValue(x)) sum += static_cast<long double>(x), n += 1.0L;
        }
        const long double firstMean = sum / n;
        long double rest = 0.0L;
        long double squares = 0.0L;
        for (const double x : shapes[k].cells) {
            const long double d = static_cast<long double>(x) - firstMean;
            if (!IsMissingValue(x)) rest += d, squares += d * d;
        }
        const long double mean = firstMean + rest / n;
        squares -= rest * (rest / n);
        const Summary summary = summarize(shapes[k].cells);
        EXPECT_TRUE(numcore::testing::agrees(summary.mean, static_cast<double>(mean), shapes[k].meanTolerance))
            << k;
        EXPECT_TRUE(numcore::testing::agrees(summary.sumSquares, static_cast<double>(squares), 4e-15)) << k;
    }
}

TEST(Summary, ConstantColumnsHaveNoSpread) {
    for (const double value : {0.1, -7.3e200, 1e-310}) {
        const Summary summary = summarize(std::vector<double>(5000, value));
        EXPECT_EQ(summary.mean, value);
        EXPECT_EQ(variance(summary), 0.0);
    }
}

TEST(Summary, EmptyMissingAndSingle) {
    for (const std::vector<double>& cells : {std::vector<double>{}, std::vector<double>(9, kMissing)}) {
        const Summary summary = summarize(cells);
        EXPECT_EQ(summary.nMissing, std::ssize(cells));
        EXPECT_EQ(summary.minimum, kMissing);
        EXPECT_EQ(summary.maximum, kMissing);
        EXPECT_EQ(summary.mean, kMissing);
        EXPECT_EQ(variance(summary), kMissing);
    }
    EXPECT_EQ(variance(summarize(std::vector<double>{kMissing, 5.5})), 0.0);
    const std::vector<double> pair = {1.0, 3.0};
    EXPECT_EQ(variance(summarize(pair, std::vector<double>{0.5, 0.5})), kMissing);
    EXPECT_EQ(variance(summarize(pair, std::vector<double>{0.5, 2e-16})), 0.0);  // one observation has weight
    EXPECT_EQ(variance(summarize(pair, std::vector<double>{1.0, 1.0})), 2.0);
}

TEST(Summary, SpecialCells) {
    const Summary withNaN = summarize(std::vector<double>{2.0, kNaN, kMissing, -1.0});
    EXPECT_EQ(withNaN.nMissing, 1);
    EXPECT_EQ(withNaN.minimum, -1.0);
    EXPECT_EQ(withNaN.maximum, 2.0);
    EXPECT_TRUE(std::isnan(withNaN.mean) && std::isnan(variance(withNaN)));
    EXPECT_EQ(summarize(std::vector<double>{kNaN}).minimum, kMissing);

    EXPECT_EQ(summarize(std::vector<double>{1.0, kInf, 2.0}).mean, kInf);
    EXPECT_EQ(summarize(std::vector<double>{1.0, kInf, 2.0}).maximum, kInf);
    EXPECT_TRUE(std::isnan(summarize(std::vector<double>{-kInf, kInf}).mean));
    // Below the missing value there are a few numbers and -infinity.
    const double lowest = std::numeric_limits<double>::lowest();
    EXPECT_EQ(summarize(std::vector<double>{kMissing, lowest}).maximum, lowest);
    EXPECT_EQ(summarize(std::vector<double>{-kInf, kMissing}).maximum, -kInf);
    // A sum that overflows is no reason for a mean that does.
    const Summary huge = summarize(std::vector<double>{1.5e308, 1.7e308, -1.6e308, 1.6e308});
    EXPECT_NEAR(huge.mean, 0.8e308, 1e293);
    EXPECT_EQ(variance(huge), kInf);
    std::vector<double> blocks(4096, 1.6e308);
    std::fill(blocks.begin() + 2048, blocks.end(), -1.6e308);
    EXPECT_EQ(summarize(blocks).mean, 0.0);
}

TEST(Summary, WeightsSelectAndCount) {
    const std::vector<double> cells = {4.0, -9.0, kMissing, 1.0, 7.0, kNaN};
    const std::vector<double> weights = {2.0, 0.0, 5.0, 3.0, kNaN};
    const Summary summary = summarize(cells, weights);  // the last cell has no weight at all
    EXPECT_EQ(summary.nCells, 6);
    EXPECT_EQ(summary.nUsed, 2);
    EXPECT_EQ(summary.weight, 5.0);
    EXPECT_EQ(summary.minimum, -9.0);
    EXPECT_EQ(summary.maximum, 7.0);
    EXPECT_DOUBLE_EQ(summary.mean, 2.2);
    EXPECT_DOUBLE_EQ(summary.sumSquares, 10.8);
}

TEST(Summary, WeightOfTwoIsARowTwice) {
    const std::vector<double> cells = uniforms(70001, 8);
    std::vector<double> doubled = cells;
    doubled.insert(doubled.end(), cells.begin(), cells.end());
    const Summary once = summarize(cells, std::vector<double>(cells.size(), 2.0));
    const Summary twice = summarize(doubled);
    EXPECT_EQ(once.weight, twice.weight);
    EXPECT_TRUE(numcore::testing::agrees(once.mean, twice.mean, 1e-15));
    EXPECT_TRUE(numcore::testing::agrees(variance(once), variance(twice), 2e-15));
}

TEST(Summary, SameBitsForAnyNumberOfThreads) {
    std::vector<double> cells = uniforms(300001, 5);
    for (std::size_t i = 0; i < cells.size(); i += 7) cells[i] = kMissing;
    const std::vector<double> weights = uniforms(200000, 6);
    const std::span<const double> all(cells);
    const std::vector<ColumnView> columns = {
        {all, {}}, {all, weights}, {all.first(65537), {}}, {{}, {}}, {all.subspan(3), weights}};
    std::vector<Summary> expected(columns.size());
    for (std::size_t c = 0; c < columns.size(); ++c) {
        expected[c] = summarize(columns[c].cells, columns[c].weights);
        EXPECT_EQ(expected[c].nUsed > 0, c != 3);
    }
    const int before = omp_get_max_threads();
    for (const int nThreads : {1, 2, 3, 8}) {
        omp_set_num_threads(nThreads);
        std::vector<Summary> got(columns.size() + 1);
        summarizeColumns(columns, got);
        for (std::size_t c = 0; c < columns.size(); ++c) expectSameBits(got[c], expected[c]);
    }
    omp_set_num_threads(before);
    std::vector<Summary> few(2);
    summarizeColumns(columns, few);
    expectSameBits(few[1], expected[1]);
}

}  // namespace
