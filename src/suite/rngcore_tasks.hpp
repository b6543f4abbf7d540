// A random stream of its own for each task of a computation, so that tasks may run in any order and on any
// thread.
//
// Words 2 i and 2 i + 1 of task t under a seed are those of the Philox block (rngcore.hpp) with key (seed, 0)
// and counter (i, low word of t, 2, high word of t): its words 0 and 1, and its words 2 and 3, the first of
// each pair above the second.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace numcore::rngcore {

/// Words 2 firstBlock, 2 firstBlock + 1, ... of a task's stream.
void fillTaskWords(std::int32_t seed, std::uint64_t task, std::uint32_t firstBlock,
                   std::span<std::uint64_t> out);

/// Whole numbers below given bounds, exactly uniform, several from each word.
///
/// Brackett-Rozinsky and Lemire (2025), Batched ranged random integer generation, Softw. Pract. Exper.
/// 55:155-169: a word times a bound gives a number above and the next word below; the last word tells whether
/// to begin again with another one. Number i comes from word i % nWords, after numbers i - nWords, i - 2
/// nWords, ..., where nWords is a multiple of 8; the words to begin again with follow these.
class TaskDraws {
  public:
    /// @param bounds  of the numbers of each task: 1 to 2^31 - 1
    TaskDraws(std::int32_t seed, std::span<const std::uint32_t> bounds);

    /// One number a bound; they stay until the next call.
    std::span<const std::uint32_t> draw(std::uint64_t task);

  private:
    void beginAgain(std::uint64_t task);

    std::int32_t seed_;
    std::size_t n_;
    std::uint64_t rare_ = 1;  // no product of a word's bounds exceeds it
    std::vector<std::uint64_t> words_;
    std::vector<std::uint32_t> bounds_;  // and then 1 up to the end of the last row of nWords
    std::vector<std::uint32_t> numbers_;
};

}  // namespace numcore::rngcore
