// The resampling engine, by test, size and number of threads.
#include <benchmark/benchmark.h>
#include <omp.h>

#include <random>
#include <vector>

#include "tests/resampling/resampling.hpp"

namespace numcore::benchmarks {
namespace {

using tests::Statistic;

std::vector<double> normalValues(std::int64_t n) {
    std::mt19937_64 random(4);
    std::normal_distribution<double> normal;
    std::vector<double> values(static_cast<std::size_t>(n));
    for (double& value : values) value = normal(random);
    return values;
}

// range: size of each group, resamples (0: every arrangement), threads.
void run(benchmark::State& state, Statistic statistic, std::int16_t method) {
    const std::vector<double> values = normalValues(2 * state.range(0));
    const auto n = static_cast<std::size_t>(state.range(0));
    const tests::Sample groups[] = {{std::span(values).first(n), {}}, {std::span(values).subspan(n), {}}};
    tests::ResamplingRequest request;
    request.statistic = statistic;
    request.groups = std::span(groups).first(statistic == Statistic::kPairedT ? 1 : 2);
    if (statistic == Statistic::kVarianceRatio) request.hypothesised = 1.0;
    omp_set_num_threads(static_cast<int>(state.range(2)));
    std::int64_t nUsed = 0;
    for (auto _ : state) {
        ResamplingOptions options = {};
        options.method = method;
        options.nResamples = state.range(1);
        options.seedGiven = NUMCORE_TRUE;
        benchmark::DoNotOptimize(tests::resample(request, options));
        nUsed = options.nUsed;
    }
    state.SetItemsProcessed(state.iterations() * nUsed);
}

/// Drawn permutations of two groups: sums over one of them.
void BM_PermuteT(benchmark::State& state) {
    run(state, Statistic::kT, NUMCORE_RESAMPLE_PERMUTATION);
}
BENCHMARK(BM_PermuteT)
    ->ArgsProduct({{20, 200, 2000, 20000}, {10000}, {1, 2}})
    ->Args({200, 100000, 1})
    ->Args({200, 100000, 2})
    ->UseRealTime();

/// Drawn permutations of two groups whose values are all looked at.
void BM_PermuteOneWayF(benchmark::State& state) {
    run(state, Statistic::kOneWayF, NUMCORE_RESAMPLE_PERMUTATION);
}
BENCHMARK(BM_PermuteOneWayF)->ArgsProduct({{20, 200, 2000}, {10000}, {1, 2}})->UseRealTime();

/// Drawn changes of sign.
void BM_PermutePairedT(benchmark::State& state) {
    run(state, Statistic::kPairedT, NUMCORE_RESAMPLE_PERMUTATION);
}
BENCHMARK(BM_PermutePairedT)->ArgsProduct({{20, 200, 2000}, {10000}, {1, 2}})->UseRealTime();

/// Bootstrap samples of two groups.
void BM_BootstrapWelch(benchmark::State& state) {
    run(state, Statistic::kWelch, NUMCORE_RESAMPLE_BOOTSTRAP);
}
BENCHMARK(BM_BootstrapWelch)->ArgsProduct({{20, 200, 2000}, {10000}, {1, 2}})->UseRealTime();

/// Every arrangement of two groups of 11: 705432 of them.
void BM_EveryArrangement(benchmark::State& state) {
    run(state, Statistic::kT, NUMCORE_RESAMPLE_AUTOMATIC);
}
BENCHMARK(BM_EveryArrangement)->ArgsProduct({{11}, {0}, {1, 2}})->UseRealTime();

}  // namespace
}  // namespace numcore::benchmarks
