// The uniform random stream: reproducible from a 32-bit seed, with random access.
//
// Philox 4x32-10, Salmon, Moraes, Dror and Shaw (2011), "Parallel random numbers: as easy as 1, 2, 3", Proc.
// SC11. The key is (seed, 0). Uniform number i of a seed comes from block i / 2, whose counter is (low word of
// i / 2, high word of i / 2, 0, 0): words 0 and 1 of the block for even i, words 2 and 3 for odd i. The first
// word of the pair gives the upper 32 bits and the second the lower 32 bits of a 64-bit number, and its upper
// 53 bits times 2^-53 are the uniform.
#pragma once

#include <cstdint>
#include <span>

namespace numcore::rngcore {

/// Uniform number in [0, 1) number `index` (from 0) of the stream of `seed`.
double uniform(std::int32_t seed, std::uint64_t index);

/// Fills `out` with the numbers index, index + 1, ... of the stream of `seed`.
void fillUniform(std::int32_t seed, std::uint64_t index, std::span<double> out);

/// A new seed from the system's source of randomness mixed with the clock.
std::int32_t chooseSeed();

/// Starts the stream of the calling thread.
///
/// @param seed      in/out: the seed; a chosen one is written back
/// @param seedMode  16-bit boolean: -1 uses the caller's seed; any other value chooses one
void GetSeed(std::int32_t& seed, std::int16_t seedMode);

/// The next number in [0, 1) of the calling thread's stream: after GetSeed of a seed, call i (from 0) gives
/// uniform(seed, i). A thread that never called GetSeed draws from seed 0.
double Random01();

/// A whole number in [0, bound), each equally likely, from the calling thread's stream; 0 for bound < 1.
///
/// Lemire (2019), ACM Trans. Model. Comput. Simul. 29(1):3, with the upper 32 bits of each number drawn; takes
/// one number of the stream, rarely more.
std::int32_t RandomInt(std::int32_t bound);

/// Stores an advanced seed after a loop: it depends on the seed and on how many numbers were drawn, so that
/// GetSeed with it starts another stream. Drawing goes on where it was.
///
/// @param seed  out: word 0 of the Philox block with counter (numbers drawn, low and high word, 1, 0)
void GetSeedUpdate(std::int32_t& seed);

}  // namespace numcore::rngcore
