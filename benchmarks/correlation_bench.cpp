// Doors of the correlation matrices on plain arrays.
#include <benchmark/benchmark.h>
#include <omp.h>

#include <random>
#include <vector>

#include "numcore/correlation.h"

namespace numcore::benchmarks {
namespace {

std::vector<double> normalCells(std::int64_t n, double missingShare) {
    std::mt19937_64 random(4);
    std::normal_distribution<double> normal;
    std::uniform_real_distribution<double> uniform;
    std::vector<double> cells(static_cast<std::size_t>(n));
    for (double& cell : cells) cell = uniform(random) < missingShare ? NUMCORE_MISSING : normal(random);
    return cells;
}

struct Work {
    std::int32_t rows, columns;
    std::vector<double> data, r, p;

    Work(benchmark::State& state, double missingShare)
        : rows(static_cast<std::int32_t>(state.range(0))),
          columns(static_cast<std::int32_t>(state.range(1))),
          data(normalCells(state.range(0) * state.range(1), missingShare)),
          r(static_cast<std::size_t>(state.range(1) * state.range(1))),
          p(r.size()) {
        omp_set_num_threads(static_cast<int>(state.range(2)));
    }
    void count(benchmark::State& state) const {
        state.SetItemsProcessed(state.iterations() * std::int64_t{rows} * columns * (columns + 1) / 2);
    }
};

/// Coefficients and p-values of a sheet without a missing cell.
void BM_PearsonMatrix(benchmark::State& state) {
    Work work(state, 0.0);
    for ([[maybe_unused]] auto _ : state) {
        VB_M_PearsonRho(work.data.data(), work.rows, work.columns, nullptr, nullptr, 0, work.r.data(),
                        work.p.data());
    }
    work.count(state);
}
/// The same with 5 % of the cells missing, pairwise.
void BM_PearsonMatrixMissing(benchmark::State& state) {
    Work work(state, 0.05);
    for ([[maybe_unused]] auto _ : state) {
        VB_M_PearsonRho(work.data.data(), work.rows, work.columns, nullptr, nullptr, 0, work.r.data(),
                        work.p.data());
    }
    work.count(state);
}
/// Ranks of each column once, then products.
void BM_SpearmanMatrix(benchmark::State& state) {
    Work work(state, 0.0);
    for ([[maybe_unused]] auto _ : state) {
        VB_M_SpearmanRho(work.data.data(), work.rows, work.columns, nullptr, nullptr, 0, work.r.data(),
                         work.p.data());
    }
    work.count(state);
}
/// Every pair sorted.
void BM_KendallMatrix(benchmark::State& state) {
    Work work(state, 0.0);
    for ([[maybe_unused]] auto _ : state) {
        VB_M_KendallTau(work.data.data(), work.rows, work.columns, nullptr, nullptr, 0, 0, work.r.data(),
                        work.p.data());
    }
    work.count(state);
}
/// Weights with fractions: every pair of observations compared.
void BM_KendallWeighted(benchmark::State& state) {
    Work work(state, 0.0);
    const std::vector<double> weights(static_cast<std::size_t>(work.rows), 1.5);
    for ([[maybe_unused]] auto _ : state) {
        VB_M_KendallTau(work.data.data(), work.rows, work.columns, nullptr, weights.data(), 0, 0, work.r.data(),
                        work.p.data());
    }
    work.count(state);
}

void sizes(benchmark::internal::Benchmark* bench, const std::vector<std::pair<int, int>>& shapes) {
    bench->ArgNames({"rows", "columns", "threads"})->UseRealTime()->Unit(benchmark::kMillisecond);
    for (const int nThreads : {1, 2}) {
        for (const auto& [rows, columns] : shapes) bench->Args({rows, columns, nThreads});
    }
}

BENCHMARK(BM_PearsonMatrix)->Apply([](auto* b) { sizes(b, {{1000, 20}, {100000, 100}, {1000, 2000}}); });
BENCHMARK(BM_PearsonMatrixMissing)->Apply([](auto* b) { sizes(b, {{1000, 20}, {100000, 100}}); });
BENCHMARK(BM_SpearmanMatrix)->Apply([](auto* b) { sizes(b, {{100000, 20}}); });
BENCHMARK(BM_KendallMatrix)->Apply([](auto* b) { sizes(b, {{2000, 20}, {100000, 2}}); });
BENCHMARK(BM_KendallWeighted)->Apply([](auto* b) { sizes(b, {{20000, 2}}); });

}  // namespace
}  // namespace numcore::benchmarks
