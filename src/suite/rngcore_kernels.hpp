// Inner loops of the random streams, one table of them for each instruction set. All give the same bits.
#pragma once

#include <cstddef>
#include <cstdint>

namespace numcore::rngcore {

inline constexpr std::size_t kBlocksTogether = 4;

/// Key (seed, 0) and counter (firstBlock + i, second, third, fourth) of block i.
struct PhiloxTask {
    std::uint32_t seed;
    std::uint32_t firstBlock;
    std::uint32_t second, third, fourth;
};

/// Words to be split into numbers: number i from word i % nWords.
struct WordSplit {
    std::uint64_t* words;  ///< in/out: what is left of each
    std::size_t nWords;    ///< a multiple of 2 kBlocksTogether
    const std::uint32_t* bounds;
    std::size_t nBounds;  ///< a multiple of nWords
    std::uint32_t* numbers;
};

struct Kernels {
    /// Two words a block; nBlocks is a multiple of kBlocksTogether.
    void (*fillWords)(const PhiloxTask& task, std::size_t nBlocks, std::uint64_t* out);
    /// True when a word that is left is below `rare`.
    bool (*splitWords)(const WordSplit& split, std::uint64_t rare);
};

/// For every x86-64 processor.
const Kernels& baselineKernels();
/// For processors with AVX2 only.
const Kernels& avx2Kernels();
/// The fastest that this processor runs.
const Kernels& kernels();

}  // namespace numcore::rngcore
