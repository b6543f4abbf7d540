#include "suite/rngcore_tasks.hpp"

#include <algorithm>

#include "suite/rngcore_kernels.hpp"

namespace numcore::rngcore {
namespace {

constexpr std::uint32_t kTaskUse = 2;  // third word of the counter; 0 and 1 are those of rngcore.cpp
constexpr std::size_t kMostPerWord = 8;
constexpr std::size_t kWordsTogether = 2 * kBlocksTogether;
// Below it a word begins again so rarely, once in 2^16 words, that the exact test may be slow.
constexpr std::uint64_t kLargestProduct = std::uint64_t{1} << 48;

std::size_t roundedUp(std::size_t n, std::size_t step) {
    return (n + step - 1) / step * step;
}

PhiloxTask taskOf(std::int32_t seed, std::uint64_t task, std::uint32_t firstBlock) {
    return {static_cast<std::uint32_t>(seed), firstBlock, static_cast<std::uint32_t>(task), kTaskUse,
            static_cast<std::uint32_t>(task >> 32)};
}

// Numbers of one word, those of places first, first + step, ...; the word that is left.
std::uint64_t split(std::uint64_t word, std::span<const std::uint32_t> bounds, std::size_t first,
                    std::size_t step, std::span<std::uint32_t> numbers) {
    for (std::size_t i = first; i < bounds.size(); i += step) {
        const std::uint64_t low = (word & 0xFFFFFFFFU) * bounds[i];
        const std::uint64_t high = (word >> 32) * bounds[i] + (low >> 32);
        numbers[i] = static_cast<std::uint32_t>(high >> 32);
        word = (high << 32) | (low & 0xFFFFFFFFU);
    }
    return word;
}

}  // namespace

void fillTaskWords(std::int32_t seed, std::uint64_t task, std::uint32_t firstBlock,
                   std::span<std::uint64_t> out) {
    const std::size_t whole = out.size() / kWordsTogether * kWordsTogether;
    kernels().fillWords(taskOf(seed, task, firstBlock), whole / 2, out.data());
    if (whole == out.size()) return;
    std::uint64_t rest[kWordsTogether];
    kernels().fillWords(taskOf(seed, task, firstBlock + static_cast<std::uint32_t>(whole / 2)), kBlocksTogether,
                        rest);
    std::copy_n(rest, out.size() - whole, out.begin() + static_cast<std::ptrdiff_t>(whole));
}

TaskDraws::TaskDraws(std::int32_t seed, std::span<const std::uint32_t> bounds)
    : seed_(seed), n_(bounds.size()) {
    const std::uint64_t largest = bounds.empty() ? 1 : *std::max_element(bounds.begin(), bounds.end());
    std::size_t nPerWord = 0;
    while (nPerWord == 0 || (nPerWord < kMostPerWord && rare_ <= kLargestProduct / largest)) {
        rare_ *= largest;
        ++nPerWord;
    }
    words_.resize(roundedUp((n_ + nPerWord - 1) / nPerWord, kWordsTogether));
    bounds_.assign(bounds.begin(), bounds.end());
    if (n_ > 0) bounds_.resize(roundedUp(n_, words_.size()), 1);
    numbers_.resize(bounds_.size());
}

std::span<const std::uint32_t> TaskDraws::draw(std::uint64_t task) {
    kernels().fillWords(taskOf(seed_, task, 0), words_.size() / 2, words_.data());
    const WordSplit wordSplit = {words_.data(), words_.size(), bounds_.data(), bounds_.size(), numbers_.data()};
    if (kernels().splitWords(wordSplit, rare_)) beginAgain(task);
    return std::span(numbers_).first(n_);
}

void TaskDraws::beginAgain(std::uint64_t task) {
    auto nextBlock = static_cast<std::uint32_t>(words_.size() / 2);
    std::uint64_t further[2];
    bool hasSecond = false;
    const auto nextWord = [&] {
        hasSecond = !hasSecond;
        if (hasSecond) fillTaskWords(seed_, task, nextBlock++, further);
        return further[hasSecond ? 0 : 1];
    };
    for (std::size_t i = 0; i < words_.size(); ++i) {
        if (words_[i] >= rare_) continue;
        std::uint64_t product = 1;
        for (std::size_t j = i; j < bounds_.size(); j += words_.size()) product *= bounds_[j];
        const std::uint64_t surplus = (0U - product) % product;  // 2^64 mod product
        while (words_[i] < surplus) words_[i] = split(nextWord(), bounds_, i, words_.size(), numbers_);
    }
}

}  // namespace numcore::rngcore
