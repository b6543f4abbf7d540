#include "suite/rngcore.hpp"

#include <Random123/philox.h>

#include <array>
#include <chrono>
#include <random>

#include "numcore/markers.hpp"

namespace numcore::rngcore {
namespace {

using Block = std::array<std::uint32_t, 4>;

// Third word of the counter: what the block is for.
enum class Use : std::uint32_t { kUniforms = 0, kNextSeed = 1 };

struct Stream {
    std::int32_t seed = 0;
    std::uint64_t drawn = 0;
};

thread_local Stream stream;

Block philox(std::int32_t seed, std::uint64_t counter, Use use) {
    const r123::Philox4x32::ctr_type count = {{static_cast<std::uint32_t>(counter),
                                               static_cast<std::uint32_t>(counter >> 32),
                                               static_cast<std::uint32_t>(use), 0U}};
    const r123::Philox4x32::key_type key = {{static_cast<std::uint32_t>(seed), 0U}};
    const auto words = r123::Philox4x32()(count, key);
    return {words[0], words[1], words[2], words[3]};
}

double toUnit(std::uint32_t upper, std::uint32_t lower) {
    const std::uint64_t bits = (std::uint64_t{upper} << 32) | lower;
    return static_cast<double>(bits >> 11) * 0x1p-53;
}

// The upper word of the next number of the thread's stream.
std::uint32_t nextWord() {
    const std::uint64_t index = stream.drawn++;
    return philox(stream.seed, index / 2, Use::kUniforms)[index % 2 * 2];
}

}  // namespace

double uniform(std::int32_t seed, std::uint64_t index) {
    const Block words = philox(seed, index / 2, Use::kUniforms);
    return index % 2 == 0 ? toUnit(words[0], words[1]) : toUnit(words[2], words[3]);
}

void fillUniform(std::int32_t seed, std::uint64_t index, std::span<double> out) {
    std::size_t i = 0;
    if (index % 2 == 1 && !out.empty()) out[i++] = uniform(seed, index);
    for (; i + 1 < out.size(); i += 2) {
        const Block words = philox(seed, (index + i) / 2, Use::kUniforms);
        out[i] = toUnit(words[0], words[1]);
        out[i + 1] = toUnit(words[2], words[3]);
    }
    if (i < out.size()) out[i] = uniform(seed, index + i);
}

std::int32_t chooseSeed() {
    const auto clock = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    const auto chance = static_cast<std::int32_t>(std::random_device{}());
    return static_cast<std::int32_t>(philox(chance, clock, Use::kNextSeed)[0]);
}

void GetSeed(std::int32_t& seed, std::int16_t seedMode) {
    if (!isTrue(seedMode)) seed = chooseSeed();
    stream = {seed, 0};
}

double Random01() {
    return uniform(stream.seed, stream.drawn++);
}

std::int32_t RandomInt(std::int32_t bound) {
    if (bound < 1) return 0;
    const auto range = static_cast<std::uint32_t>(bound);
    std::uint64_t product = std::uint64_t{nextWord()} * range;
    if (static_cast<std::uint32_t>(product) < range) {
        const std::uint32_t surplus = (0U - range) % range;  // 2^32 mod range
        while (static_cast<std::uint32_t>(product) < surplus) product = std::uint64_t{nextWord()} * range;
    }
    return static_cast<std::int32_t>(product >> 32);
}

void GetSeedUpdate(std::int32_t& seed) {
    seed = static_cast<std::int32_t>(philox(stream.seed, stream.drawn, Use::kNextSeed)[0]);
}

}  // namespace numcore::rngcore
