#include <emmintrin.h>

#include "suite/rngcore_kernels_lanes.hpp"

namespace numcore::rngcore {
namespace {

struct Sse2Lanes {
    using Words = std::uint64_t __attribute__((vector_size(16)));
    static constexpr Words kSteps = {0, 1};

    static Words product(Words a, Words b) {
        return reinterpret_cast<Words>(
            _mm_mul_epu32(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
    }
    static Words widen(const std::uint32_t* from) { return Words{from[0], from[1]}; }
    static void narrow(Words words, std::uint32_t* to) {
        to[0] = static_cast<std::uint32_t>(words[0]);
        to[1] = static_cast<std::uint32_t>(words[1]);
    }
    static void interleave(Words a, Words b, std::uint64_t* to) {
        const Words first = {a[0], b[0]};
        const Words second = {a[1], b[1]};
        __builtin_memcpy(to, &first, sizeof first);
        __builtin_memcpy(to + 2, &second, sizeof second);
    }
};

}  // namespace

const Kernels& baselineKernels() {
    static constexpr Kernels table = LaneKernels<Sse2Lanes>::table();
    return table;
}

}  // namespace numcore::rngcore
