// The bodies of the kernels, written over lanes; instantiated once for each instruction set, in a file of its
// own that is compiled for that set. Nothing of the standard library is called here: an inline function
// compiled for a wider set could be the copy that the linker keeps for all.
#pragma once

#include "suite/rngcore_kernels.hpp"

namespace numcore::rngcore {

/// @tparam Lanes  in an unnamed namespace of the including file; Lanes::Words is a vector of 2 or 4 64-bit
/// words,
///                Lanes::product multiplies the lower halves of its lanes, Lanes::widen loads 32-bit numbers
///                into lanes, Lanes::narrow stores the lanes' lower halves, Lanes::interleave stores a0 b0 a1
///                b1 ...
template <class Lanes>
class LaneKernels {
  public:
    static constexpr Kernels table() { return {&fillWords, &splitWords}; }

  private:
    using Words = typename Lanes::Words;
    static constexpr std::size_t kWidth = sizeof(Words) / sizeof(std::uint64_t);
    static constexpr std::uint64_t kLowerHalf = 0xFFFFFFFFU;

    // Philox 4x32-10: multipliers, steps of the key and rounds of Salmon et al. (2011).
    static constexpr std::uint32_t kMultiplier0 = 0xD2511F53U;
    static constexpr std::uint32_t kMultiplier1 = 0xCD9E8D57U;
    static constexpr std::uint32_t kKeyStep0 = 0x9E3779B9U;
    static constexpr std::uint32_t kKeyStep1 = 0xBB67AE85U;
    static constexpr int kRounds = 10;

    static Words all(std::uint64_t word) { return Words{} + word; }

    static void fillWords(const PhiloxTask& task, std::size_t nBlocks, std::uint64_t* out) {
        const Words multiplier0 = all(kMultiplier0);
        const Words multiplier1 = all(kMultiplier1);
        for (std::size_t block = 0; block < nBlocks; block += kWidth) {
            // Only the lower half of a lane counts until the end.
            Words x0 = Lanes::kSteps + (task.firstBlock + block);
            Words x1 = all(task.second);
            Words x2 = all(task.third);
            Words x3 = all(task.fourth);
            std::uint32_t key0 = task.seed;
            std::uint32_t key1 = 0;
            for (int round = 0; round < kRounds; ++round) {
                const Words product0 = Lanes::product(x0, multiplier0);
                const Words product1 = Lanes::product(x2, multiplier1);
                x0 = (product1 >> 32) ^ x1 ^ all(key0);
                x2 = (product0 >> 32) ^ x3 ^ all(key1);
                x1 = product1;
                x3 = product0;
                key0 += kKeyStep0;
                key1 += kKeyStep1;
            }
            Lanes::interleave((x0 << 32) | (x1 & kLowerHalf), (x2 << 32) | (x3 & kLowerHalf), out + 2 * block);
        }
    }

    static bool splitWords(const WordSplit& split, std::uint64_t rare) {
        Words anyRare = {};
        for (std::size_t i = 0; i < split.nWords; i += kWidth) {
            Words word;
            __builtin_memcpy(&word, split.words + i, sizeof word);
            for (std::size_t place = i; place < split.nBounds; place += split.nWords) {
                const Words bound = Lanes::widen(split.bounds + place);
                const Words low = Lanes::product(word, bound);
                const Words high = Lanes::product(word >> 32, bound) + (low >> 32);
                Lanes::narrow(high >> 32, split.numbers + place);
                word = (high << 32) | (low & kLowerHalf);
            }
            __builtin_memcpy(split.words + i, &word, sizeof word);
            anyRare |= static_cast<Words>(word < rare);
        }
        std::uint64_t found = 0;
        for (std::size_t lane = 0; lane < kWidth; ++lane) found |= anyRare[lane];
        return found != 0;
    }
};

}  // namespace numcore::rngcore
