// What the machine's memory gives: the bound of every one-pass statistic on data larger than the caches.
#include <benchmark/benchmark.h>
#include <omp.h>

#include <array>
#include <cstddef>
#include <vector>

namespace {

constexpr std::size_t kCells = 100'000'000;  // 800 MB

/// A sum with enough independent partial sums that additions do not hold up the loads.
double sum(const double* cells, std::size_t n) {
    constexpr std::size_t kLanes = 32;
    std::array<double, kLanes> partial{};
    for (std::size_t i = 0; i + kLanes <= n; i += kLanes) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) partial[lane] += cells[i + lane];
    }
    double total = 0.0;
    for (const double value : partial) total += value;
    return total;
}

/// Reading 800 MB once.
void BM_ReadBandwidth(benchmark::State& state) {
    const int nThreads = static_cast<int>(state.range(0));
    const std::vector<double> cells(kCells, 1.0);
    for ([[maybe_unused]] auto _ : state) {
        double total = 0.0;
#pragma omp parallel num_threads(nThreads) reduction(+ : total)
        {
            const std::size_t share = kCells / static_cast<std::size_t>(omp_get_num_threads());
            total += sum(cells.data() + share * static_cast<std::size_t>(omp_get_thread_num()), share);
        }
        benchmark::DoNotOptimize(total);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kCells * sizeof(double)));
}
BENCHMARK(BM_ReadBandwidth)
    ->ArgNames({"threads"})
    ->Arg(1)
    ->Arg(2)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
