// Doors of the descriptive statistics, on automation arrays as a spreadsheet hands them over.
#include <benchmark/benchmark.h>
#include <omp.h>

#include <utility>
#include <vector>

#include "caller/forms.hpp"
#include "inputs.hpp"
#include "numcore/numcore.h"

namespace numcore::benchmarks {
namespace {

constexpr std::int64_t kBytesOfCell = sizeof(double);

void describe(benchmark::State& state, double missingShare, bool weighted) {
    const auto nRows = static_cast<std::size_t>(state.range(0));
    const auto nColumns = static_cast<std::size_t>(state.range(1));
    caller::DataSet data;
    data.setNumeric1(normalTable(nRows, nColumns, missingShare));
    if (weighted) data.setWeights(frequencyWeights(nRows));
    caller::DescStats out(nColumns);
    omp_set_num_threads(static_cast<int>(state.range(2)));
    for ([[maybe_unused]] auto _ : state) {
        Cpp_GetDescriptive_ST(&data.record(), NUMCORE_FALSE, &out.record(), nullptr);
        benchmark::DoNotOptimize(out.table().asDoubles().data());
        benchmark::ClobberMemory();
    }
    const std::int64_t nCells = state.range(0) * state.range(1);
    state.SetItemsProcessed(state.iterations() * nCells);
    state.SetBytesProcessed(state.iterations() * nCells * kBytesOfCell);
}

/// The summary table of a sheet without a missing cell.
void BM_GetDescriptive(benchmark::State& state) {
    describe(state, 0.0, false);
}
/// The same with 5 % of the cells missing.
void BM_GetDescriptiveMissing(benchmark::State& state) {
    describe(state, 0.05, false);
}
/// The same with frequency weights.
void BM_GetDescriptiveWeighted(benchmark::State& state) {
    describe(state, 0.05, true);
}

/// Rows 1e3 to 1e7 at 10 columns (1e7: 4, so that 1 GB holds it), columns 1 to 50, threads 1 and 2.
void growth(benchmark::internal::Benchmark* bench) {
    bench->ArgNames({"rows", "columns", "threads"})->UseRealTime()->Unit(benchmark::kMillisecond);
    for (const int nThreads : {1, 2}) {
        for (const int nRows : {1000, 10000, 100000, 1000000}) bench->Args({nRows, 10, nThreads});
        bench->Args({10000000, 4, nThreads});
        for (const int nColumns : {1, 2, 5, 20, 50}) bench->Args({200000, nColumns, nThreads});
    }
}

void oneSize(benchmark::internal::Benchmark* bench) {
    bench->ArgNames({"rows", "columns", "threads"})->UseRealTime()->Unit(benchmark::kMillisecond);
    for (const int nThreads : {1, 2}) bench->Args({1000000, 10, nThreads});
}

BENCHMARK(BM_GetDescriptive)->Apply(growth);
BENCHMARK(BM_GetDescriptiveMissing)->Apply(oneSize);
BENCHMARK(BM_GetDescriptiveWeighted)->Apply(oneSize);

/// One quantile of order 0.9 by each method, on cells in no order.
void BM_QuantileMethod(benchmark::State& state) {
    std::vector<double> cells(static_cast<std::size_t>(state.range(0)));
    fillNormal(cells, 0.0, 1);
    const auto method = static_cast<std::int32_t>(state.range(1));
    for ([[maybe_unused]] auto _ : state) {
        const double quantile =
            Cpp_V_QuantileMethod2(cells.data(), static_cast<std::int32_t>(cells.size()), method, 0.9);
        benchmark::DoNotOptimize(quantile);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_QuantileMethod)
    ->ArgNames({"n", "method"})
    ->ArgsProduct({{1000, 10000, 100000, 1000000, 10000000}, {NUMCORE_QUANTILE_LINEAR}})
    ->ArgsProduct({{1000000}, {0, 1, 2, 3, 4}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

/// The median of cells that hold ten different values only: ties everywhere.
void BM_QuantileTies(benchmark::State& state) {
    std::vector<double> cells(static_cast<std::size_t>(state.range(0)));
    for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = static_cast<double>(i * 7919 % 10);
    for ([[maybe_unused]] auto _ : state) {
        const double quantile = Cpp_V_QuantileMethod2(cells.data(), static_cast<std::int32_t>(cells.size()),
                                                      NUMCORE_QUANTILE_LINEAR, 0.5);
        benchmark::DoNotOptimize(quantile);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_QuantileTies)->ArgNames({"n"})->Arg(1000000)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace numcore::benchmarks
