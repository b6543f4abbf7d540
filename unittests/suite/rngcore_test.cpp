#include "suite/rngcore.hpp"

#include <Random123/philox.h>
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <set>
#include <thread>
#include <vector>

#include "suite/vmcore.hpp"

namespace {

using namespace numcore::rngcore;
using Words = std::array<std::uint32_t, 4>;

std::vector<double> draw(std::int32_t seed, std::size_t n) {
    GetSeed(seed, -1);
    std::vector<double> values(n);
    for (double& x : values) x = Random01();
    return values;
}

TEST(Rngcore, GeneratorMatchesPublishedVectors) {
    // Known answers published with Random123 for philox4x32, 10 rounds.
    struct Known {
        Words counter;
        std::array<std::uint32_t, 2> key;
        Words words;
    };
    const Known known[] = {{{0, 0, 0, 0}, {0, 0}, {0x6627e8d5, 0xe169c58d, 0xbc57ac4c, 0x9b00dbd8}},
                           {{0xffffffff, 0xffffffff, 0xffffffff, 0xffffffff},
                            {0xffffffff, 0xffffffff},
                            {0x408f276d, 0x41c83b0e, 0xa20bc7c6, 0x6d5451fd}},
                           {{0x243f6a88, 0x85a308d3, 0x13198a2e, 0x03707344},
                            {0xa4093822, 0x299f31d0},
                            {0xd16cfe09, 0x94fdcceb, 0x5001e420, 0x24126ea1}}};
    for (const Known& k : known) {
        const r123::Philox4x32::ctr_type counter = {{k.counter[0], k.counter[1], k.counter[2], k.counter[3]}};
        const auto words = r123::Philox4x32()(counter, {{k.key[0], k.key[1]}});
        EXPECT_EQ((Words{words[0], words[1], words[2], words[3]}), k.words);
    }
    // The same words as uniforms: upper 53 bits of each pair.
    EXPECT_EQ(uniform(0, 0), static_cast<double>(0x6627e8d5e169c58dU >> 11) / 0x1p53);
    EXPECT_EQ(uniform(0, 1), static_cast<double>(0xbc57ac4c9b00dbd8U >> 11) / 0x1p53);
}

TEST(Rngcore, OneStreamHoweverItIsRead) {
    for (const std::int32_t seed : {0, 1, -1, 123456789, std::numeric_limits<std::int32_t>::min()}) {
        const std::vector<double> values = draw(seed, 101);
        for (const std::size_t start : {0U, 1U, 6U, 7U, 100U}) {
            std::vector<double> filled(values.size() - start);
            fillUniform(seed, start, filled);
            EXPECT_EQ(filled,
                      std::vector<double>(values.begin() + static_cast<std::ptrdiff_t>(start), values.end()));
            EXPECT_EQ(uniform(seed, start), values[start]);
        }
    }
}

TEST(Rngcore, MatrixDrawsFromTheSameStreamAndKeepsItsPlace) {
    const std::vector<double> values = draw(42, 10);
    std::vector<double> cells(6, -1.0);
    std::int32_t seed = 42;
    std::int32_t state = 0;
    using numcore::vmcore::M_GenerateRandom01;
    M_GenerateRandom01({cells.data(), 3, 2}, 2, 2, &seed, -1, &state);
    EXPECT_EQ(cells, (std::vector<double>{values[0], values[1], values[2], values[3], -1.0, -1.0}));
    EXPECT_EQ(state, 4);
    M_GenerateRandom01({cells.data(), 3, 2}, 1000, 1000, &seed, -1, &state);
    EXPECT_EQ(cells, std::vector<double>(values.begin() + 4, values.end()));
    EXPECT_EQ(state, 10);
    EXPECT_EQ(seed, 42);
    M_GenerateRandom01({cells.data(), 3, 2}, 3, -2, &seed, -1, &state);
    M_GenerateRandom01({nullptr, 3, 2}, 3, 2, &seed, -1, nullptr);
    EXPECT_EQ(state, 10);

    M_GenerateRandom01({cells.data(), 3, 2}, 3, 2, &seed, 1, nullptr);  // 1 is not true: chooses a seed
    EXPECT_EQ(cells, draw(seed, 6));
    M_GenerateRandom01({cells.data(), 3, 2}, 3, 2, nullptr, -1, nullptr);
    EXPECT_EQ(cells, draw(0, 6));
}

TEST(Rngcore, SeedsAreChosenAndAdvanced) {
    std::set<std::int32_t> seeds;
    for (int i = 0; i < 8; ++i) {
        std::int32_t seed = 5;
        GetSeed(seed, 0);
        seeds.insert(seed);
    }
    EXPECT_GE(seeds.size(), 7U);

    const auto advancedAfter = [](std::int32_t seed, std::size_t n) {
        draw(seed, n);
        GetSeedUpdate(seed);
        return seed;
    };
    EXPECT_EQ(advancedAfter(5, 10), advancedAfter(5, 10));
    EXPECT_NE(advancedAfter(5, 10), advancedAfter(5, 11));
    EXPECT_NE(advancedAfter(5, 10), 5);
    EXPECT_NE(draw(advancedAfter(5, 10), 4), draw(5, 4));
}

TEST(Rngcore, EachThreadHasItsStream) {
    const std::vector<double> expected = draw(9, 4);
    std::int32_t seed = 9;
    GetSeed(seed, -1);
    EXPECT_EQ(Random01(), expected[0]);
    std::thread([] { draw(77, 3); }).join();
    EXPECT_EQ(Random01(), expected[1]);
}

TEST(Rngcore, UniformsAreSpreadEvenly) {
    std::vector<double> values(100000);
    fillUniform(2024, 0, values);
    const auto summary = numcore::vmcore::summarize(values);
    EXPECT_GE(summary.minimum, 0.0);
    EXPECT_LT(summary.maximum, 1.0);
    EXPECT_NEAR(summary.mean, 0.5, 4.0 * 0.2887 / 316.0);
    EXPECT_NEAR(numcore::vmcore::variance(summary), 1.0 / 12.0, 4.0 * 0.0745 / 316.0);
}

TEST(Rngcore, IntegersAreUnbiasedWithinTheirBound) {
    std::int32_t seed = 31;
    GetSeed(seed, -1);
    EXPECT_EQ(RandomInt(0), 0);
    EXPECT_EQ(RandomInt(-5), 0);
    EXPECT_EQ(RandomInt(1), 0);
    std::array<int, 6> counts{};
    for (int i = 0; i < 60000; ++i) ++counts.at(static_cast<std::size_t>(RandomInt(6)));
    for (const int count : counts) EXPECT_NEAR(count, 10000, 400);
    // With 3/4 of 2^31 a plain remainder or product would favour every third value by half.
    const std::int32_t bound = 0x60000000;
    int nThirds = 0;
    for (int i = 0; i < 60000; ++i) {
        const std::int32_t value = RandomInt(bound);
        ASSERT_GE(value, 0);
        ASSERT_LT(value, bound);
        nThirds += value % 3 == 0 ? 1 : 0;
    }
    EXPECT_NEAR(nThirds, 20000, 500);
}

}  // namespace
