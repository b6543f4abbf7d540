#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <vector>

#include "suite/rngcore.hpp"
#include "suite/vmcore.hpp"

namespace {

using namespace numcore::vmcore;
constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::nan("");

using Shape = std::function<double(std::size_t i, std::size_t n, double u)>;

const std::map<std::string, Shape> kShapes = {
    {"uniform", [](auto, auto, double u) { return u; }},
    {"ascending", [](std::size_t i, auto, auto) { return static_cast<double>(i); }},
    {"descending", [](std::size_t i, auto, auto) { return -static_cast<double>(i); }},
    {"saw", [](std::size_t i, auto, auto) { return static_cast<double>(i % 1024); }},
    {"equal", [](auto, auto, auto) { return 7.0; }},
    {"two values", [](auto, auto, double u) { return u < 0.5 ? -0.0 : 3.0; }},
    {"one run of ties", [](auto, auto, double u) { return std::clamp(u, 0.3, 0.7); }},
    {"one outlier", [](std::size_t i, auto, auto) { return i == 17 ? 1e300 : 0.0; }},
    {"missing", [](auto, auto, double u) { return u < 0.6 ? kMissing : u; }},
    {"all missing", [](auto, auto, auto) { return kMissing; }},
    {"one present", [](std::size_t i, std::size_t n, auto) { return i + 1 == n ? 2.5 : kMissing; }},
    {"NaN", [](auto, auto, double u) { return u < 0.4   ? kNaN
                                              : u < 0.5 ? kMissing
                                                        : u; }},
    {"all NaN", [](auto, auto, auto) { return kNaN; }},
    {"infinities", [](auto, auto, double u) { return u < 0.3   ? -kInf
                                                     : u > 0.8 ? kInf
                                                     : u < 0.4 ? kNaN
                                                               : u; }},
    {"below the marker",
     [](auto, auto, double u) {
         return u < 0.5 ? std::numeric_limits<double>::lowest() : u < 0.6 ? kMissing : u;
     }},
    {"late step", [](std::size_t i, std::size_t n, double u) { return i > n - n / 50 ? u + 5.0 : u; }},
};

std::vector<double> sortedPresent(std::vector<double> cells) {
    std::erase(cells, kMissing);
    std::sort(cells.begin(), cells.end(),
              [](double a, double b) { return a < b || (std::isnan(b) && !std::isnan(a)); });
    return cells;
}

bool same(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

void expectSelected(const std::string& name, const std::vector<double>& cells, std::size_t nSteps) {
    const std::vector<double> sorted = sortedPresent(cells);
    const auto m = std::ssize(sorted);
    ASSERT_EQ(countPresent(cells), m) << name;
    std::vector<std::int64_t> all = {-1, m, m + 5};
    for (std::size_t step = 0; step <= nSteps; ++step) {
        const auto rank = static_cast<std::int64_t>(step) * (m - 1) / static_cast<std::int64_t>(nSteps);
        const OrderPair pair = selectPair(cells, rank);
        if (m == 0) {
            EXPECT_EQ(pair.at, kMissing);
            continue;
        }
        const auto at = static_cast<std::size_t>(rank);
        EXPECT_TRUE(same(pair.at, sorted[at])) << name << " " << cells.size() << " rank " << rank;
        EXPECT_TRUE(same(pair.next, sorted[std::min(at + 1, sorted.size() - 1)])) << name << " rank " << rank;
        all.push_back(rank);
    }
    std::reverse(all.begin(), all.end());
    std::vector<double> values(all.size());
    EXPECT_EQ(selectRanks(cells, all, values), m);
    for (std::size_t i = 0; i < all.size(); ++i) {
        const bool inRange = all[i] >= 0 && all[i] < m;
        const double expected = inRange ? sorted[static_cast<std::size_t>(all[i])] : kMissing;
        EXPECT_TRUE(same(values[i], expected)) << name << " " << cells.size() << " rank " << all[i];
    }
}

TEST(Order, SelectionEqualsSorting) {
    std::vector<std::size_t> sizes;
    for (std::size_t n = 0; n <= 70; ++n) sizes.push_back(n);
    for (std::size_t n = 4095; n <= 4100; ++n) sizes.push_back(n);
    sizes.push_back(100003);
    std::vector<double> u(sizes.back());
    numcore::rngcore::fillUniform(99, 0, u);
    for (const auto& [name, shape] : kShapes) {
        for (const std::size_t n : sizes) {
            std::vector<double> cells(n);
            for (std::size_t i = 0; i < n; ++i) cells[i] = shape(i, n, u[i]);
            expectSelected(name, cells, n > 5000 ? 12 : n > 70 ? 40 : 6);
        }
    }
}

TEST(Order, ShortOutputTakesWhatFits) {
    const std::vector<double> cells = {5.0, 1.0, 3.0};
    const std::vector<std::int64_t> ranks = {0, 1, 2};
    std::vector<double> out = {9.0};
    selectRanks(cells, ranks, out);
    EXPECT_EQ(out.front(), 1.0);
    const OrderPair outside = selectPair(cells, 7);
    EXPECT_EQ(outside.at, kMissing);
    EXPECT_EQ(outside.next, kMissing);
}

TEST(Order, CompactKeepsOrder) {
    const std::vector<double> cells = {kMissing, 2.0, kNaN, kMissing, -1.0};
    std::vector<double> out(cells.size());
    ASSERT_EQ(compact(cells, out.data()), 3);
    EXPECT_EQ(out[0], 2.0);
    EXPECT_TRUE(std::isnan(out[1]));
    EXPECT_EQ(out[2], -1.0);
}

}  // namespace
