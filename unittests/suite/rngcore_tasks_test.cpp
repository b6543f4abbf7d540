#include "suite/rngcore_tasks.hpp"

#include <gtest/gtest.h>

#include "suite/rngcore_kernels.hpp"
#include "suite/vmcore_kernels.hpp"

namespace {

using namespace numcore::rngcore;

std::vector<std::uint32_t> falling(std::uint32_t from, std::size_t n) {
    std::vector<std::uint32_t> bounds(n);
    for (std::uint32_t& bound : bounds) bound = from--;
    return bounds;
}

// Expected values: a Python model of Philox and of the numbers in whole-number arithmetic, itself held against
// the known answers published with Random123.
TEST(RngcoreTasks, WordsMatchTheModel) {
    std::vector<std::uint64_t> words(5);
    fillTaskWords(7, (std::uint64_t{1} << 32) + 5, 0, words);
    EXPECT_EQ(words, (std::vector<std::uint64_t>{0x2ff5ff1f3346ce05, 0x8595203e6bf8f2b, 0x9570d9bcf38d91eb,
                                                 0x7bfd952cdfbb421f, 0xa35c668e623ecd28}));
    std::vector<std::uint64_t> later(3);
    fillTaskWords(7, (std::uint64_t{1} << 32) + 5, 1, later);
    EXPECT_EQ(later, std::vector<std::uint64_t>(words.begin() + 2, words.end()));
}

TEST(RngcoreTasks, NumbersMatchTheModel) {
    const auto drawn = [](std::int32_t seed, std::uint64_t task, const std::vector<std::uint32_t>& bounds) {
        TaskDraws draws(seed, bounds);
        draws.draw(task + 1);  // nothing of another task stays
        const auto numbers = draws.draw(task);
        return std::vector<std::uint32_t>(numbers.begin(), numbers.end());
    };
    EXPECT_EQ(drawn(7, 3, falling(30, 20)),
              (std::vector<std::uint32_t>{0, 6, 1, 8, 13, 6, 8, 4, 15, 20, 1, 4, 0, 7, 2, 13, 2, 5, 2, 10}));
    EXPECT_EQ(drawn(-5, (std::uint64_t{1} << 33) + 1, std::vector<std::uint32_t>(9, 1000)),
              (std::vector<std::uint32_t>{877, 523, 155, 23, 666, 441, 194, 456, 779}));
    // Word 5 of this task, and word 7 of that, begin again with a further one.
    EXPECT_EQ(drawn(7, 28922, falling((1U << 24) - 3, 16)),
              (std::vector<std::uint32_t>{190209, 14966080, 14925900, 2055193, 13978152, 7348559, 11392974,
                                          14679383, 11523504, 14448382, 14349372, 13780458, 3650827, 10747368,
                                          14643813, 11996797}));
    EXPECT_EQ(drawn(7, 193406, falling((1U << 24) - 3, 16)),
              (std::vector<std::uint32_t>{2329323, 6611598, 10248082, 6948678, 6827837, 6084290, 8428234,
                                          2716741, 9988283, 5543675, 13816749, 3301245, 10539462, 1826782,
                                          15586940, 15113846}));
    EXPECT_TRUE(drawn(1, 1, {}).empty());
    EXPECT_EQ(drawn(1, 1, {1, 1}), (std::vector<std::uint32_t>{0, 0}));
}

TEST(RngcoreTasks, InstructionSetsGiveTheSameBits) {
    if (!numcore::vmcore::hasAvx2()) GTEST_SKIP() << "no AVX2 here";
    const PhiloxTask task = {42, 0xFFFFFFFE, 3, 2, 9};
    std::vector<std::uint64_t> words(48), wordsAvx2(48);
    baselineKernels().fillWords(task, 24, words.data());
    avx2Kernels().fillWords(task, 24, wordsAvx2.data());
    ASSERT_EQ(words, wordsAvx2);
    const auto bounds = falling(2147483647, 96);
    std::vector<std::uint32_t> numbers(96), numbersAvx2(96);
    baselineKernels().splitWords({words.data(), 48, bounds.data(), 96, numbers.data()}, 1);
    avx2Kernels().splitWords({wordsAvx2.data(), 48, bounds.data(), 96, numbersAvx2.data()}, 1);
    EXPECT_EQ(words, wordsAvx2);
    EXPECT_EQ(numbers, numbersAvx2);
    // One lane of the last vector is rare.
    std::vector<std::uint64_t> left(8, ~std::uint64_t{0});
    left[6] = 5;
    const std::vector<std::uint32_t> ones(8, 1);
    for (const Kernels* kernels : {&baselineKernels(), &avx2Kernels()}) {
        EXPECT_TRUE(kernels->splitWords({left.data(), 8, ones.data(), 8, numbers.data()}, 6));
        EXPECT_FALSE(kernels->splitWords({left.data(), 8, ones.data(), 8, numbers.data()}, 5));
    }
}

}  // namespace
