#include <immintrin.h>

#include "suite/rngcore_kernels_lanes.hpp"

namespace numcore::rngcore {
namespace {

struct Avx2Lanes {
    using Words = std::uint64_t __attribute__((vector_size(32)));
    static constexpr Words kSteps = {0, 1, 2, 3};

    static Words product(Words a, Words b) {
        return reinterpret_cast<Words>(
            _mm256_mul_epu32(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
    }
    static Words widen(const std::uint32_t* from) {
        __m128i numbers;
        __builtin_memcpy(&numbers, from, sizeof numbers);
        return reinterpret_cast<Words>(_mm256_cvtepu32_epi64(numbers));
    }
    static void narrow(Words words, std::uint32_t* to) {
        const __m256i evenWords = _mm256_setr_epi32(0, 2, 4, 6, 0, 2, 4, 6);
        const __m128i numbers =
            _mm256_castsi256_si128(_mm256_permutevar8x32_epi32(reinterpret_cast<__m256i>(words), evenWords));
        __builtin_memcpy(to, &numbers, sizeof numbers);
    }
    static void interleave(Words a, Words b, std::uint64_t* to) {
        const Words first = __builtin_shufflevector(a, b, 0, 4, 1, 5);
        const Words second = __builtin_shufflevector(a, b, 2, 6, 3, 7);
        __builtin_memcpy(to, &first, sizeof first);
        __builtin_memcpy(to + 4, &second, sizeof second);
    }
};

}  // namespace

const Kernels& avx2Kernels() {
    static constexpr Kernels table = LaneKernels<Avx2Lanes>::table();
    return table;
}

}  // namespace numcore::rngcore
