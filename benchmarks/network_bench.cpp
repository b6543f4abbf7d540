// Bayesian networks: compile and propagate networks of the size of well-known ones, the walks over tables
// against a plain loop, and growth with the number of nodes.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "decision/networks/queries.hpp"

namespace numcore::benchmarks {
namespace {

using namespace numcore::networks;

/// What a random network is like: nodes, parents on average and at most, states, how far back a parent lies.
struct Shape {
    std::size_t n;
    double meanParents;
    std::size_t maxParents;
    Number minSize;
    Number maxSize;
    std::size_t reach;
    std::uint32_t seed;
};

struct Input {
    Network network;
    std::vector<double> tables;
};

Input randomInput(const Shape& shape) {
    std::mt19937 random(shape.seed);
    std::poisson_distribution<std::size_t> nParents(shape.meanParents);
    std::uniform_int_distribution<Number> size(shape.minSize, shape.maxSize);
    std::uniform_real_distribution<double> uniform(0.05, 1.0);
    Input out;
    for (std::size_t node = 0; node < shape.n; ++node) {
        const std::size_t nCandidates = std::min(shape.reach, node);
        std::vector<Number> parents(nCandidates);
        std::iota(parents.begin(), parents.end(), static_cast<Number>(node - nCandidates));
        std::shuffle(parents.begin(), parents.end(), random);
        parents.resize(std::min({nParents(random), shape.maxParents, nCandidates}));
        out.network.parents.append(parents);
        out.network.sizes.push_back(size(random));
        const std::size_t nStates = static_cast<std::size_t>(out.network.sizes.back());
        std::vector<double> row(nStates);
        for (std::size_t r = axesOf(parents, out.network.sizes).nCells(); r > 0; --r) {
            for (double& cell : row) cell = uniform(random);
            normalise(row);
            out.tables.insert(out.tables.end(), row.begin(), row.end());
        }
    }
    return out;
}

void allMarginals(const Input& input, const JunctionTree& tree) {
    const Calibrated calibrated = propagate(input.network, tree, {input.tables, {}});
    std::vector<double> marginal;
    for (std::size_t node = 0; node < input.network.n(); ++node) {
        marginal.resize(static_cast<std::size_t>(input.network.sizes[node]));
        marginalOf({input.network, tree, calibrated}, node, marginal);
        benchmark::DoNotOptimize(marginal.data());
    }
}

void noteForecast(benchmark::State& state, const JunctionTree& tree) {
    const Forecast forecast = forecastOf(tree);
    state.counters["cells"] = forecast.cells;
    state.counters["largest"] = forecast.largest;
    state.counters["cliques"] = static_cast<double>(tree.cliques.count());
}

/// Tree, propagation and every marginal, from the bare network.
void BM_AllMarginals(benchmark::State& state, const Shape& shape) {
    const Input input = randomInput(shape);
    for (auto _ : state) allMarginals(input, buildJunctionTree(input.network));
    noteForecast(state, buildJunctionTree(input.network));
}
BENCHMARK_CAPTURE(BM_AllMarginals, like_alarm, Shape{37, 1.3, 4, 2, 4, 8, 1})->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_AllMarginals, like_insurance, Shape{27, 2.0, 3, 2, 5, 9, 2})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_AllMarginals, like_hailfinder, Shape{56, 1.25, 4, 2, 11, 6, 3})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_AllMarginals, like_win95pts, Shape{76, 1.5, 7, 2, 2, 16, 4})
    ->Unit(benchmark::kMicrosecond);

/// Growth with the number of nodes: parents among the 6 nodes before.
void BM_Growth(benchmark::State& state) {
    const Input input = randomInput({static_cast<std::size_t>(state.range(0)), 1.5, 3, 2, 3, 6, 5});
    for (auto _ : state) allMarginals(input, buildJunctionTree(input.network));
    noteForecast(state, buildJunctionTree(input.network));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_Growth)->RangeMultiplier(3)->Range(10, 2000)->Unit(benchmark::kMicrosecond)->Complexity();

/// Growth with the children of one node, which every clique holds: the tree alone.
void BM_Star(benchmark::State& state) {
    Network network;
    const Number middle = 0;
    for (std::int64_t node = 0; node < state.range(0); ++node) {
        network.sizes.push_back(2);
        network.parents.append(std::span(&middle, node == 0 ? 0U : 1U));
    }
    for (auto _ : state) benchmark::DoNotOptimize(buildJunctionTree(network));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_Star)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMicrosecond)->Complexity();

/// Propagation in a chain of tables of 3 nodes: cells of clique tables a second, each counted when a
/// conditional table goes in, twice for each message that leaves or enters its clique, and twice when it is
/// normalised.
void BM_PropagationCells(benchmark::State& state) {
    const auto size = static_cast<Number>(state.range(0));
    const Input input = randomInput({60, 2.0, 2, size, size, 2, 6});
    const JunctionTree tree = buildJunctionTree(input.network);
    const auto cellsOf = [&](Number clique) { return tree.cliqueCells[static_cast<std::size_t>(clique)]; };
    double nCells = 2.0 * forecastOf(tree).cells;
    for (const Number clique : tree.familyCliques) nCells += cellsOf(clique);
    for (const Join& join : tree.joins) nCells += 2.0 * (cellsOf(join.from) + cellsOf(join.to));
    for (auto _ : state) benchmark::DoNotOptimize(propagate(input.network, tree, {input.tables, {}}));
    state.SetItemsProcessed(static_cast<std::int64_t>(nCells * static_cast<double>(state.iterations())));
}
BENCHMARK(BM_PropagationCells)->Arg(2)->Arg(4)->Arg(12)->Arg(40)->Unit(benchmark::kMicrosecond);

/// A table of `axes` nodes of `size` states, and every second node or the first half of them.
struct TablePair {
    explicit TablePair(const benchmark::State& state) {
        const auto nAxes = static_cast<Number>(state.range(0));
        std::vector<Number> nodes(static_cast<std::size_t>(nAxes));
        std::iota(nodes.begin(), nodes.end(), 0);
        axes = axesOf(nodes, std::vector<Number>(nodes.size(), static_cast<Number>(state.range(1))));
        for (const Number node : nodes) {
            if (state.range(2) == 0   ? node % 2 == 1
                : state.range(2) == 1 ? node < nAxes / 2
                                      : node >= nAxes / 2)
                part.push_back(node);
        }
        const Projection projection(axes, part);
        whole.assign(projection.wholeCells(), 1.0);
        factors.assign(projection.partCells(), 1.0);
    }

    Axes axes;
    std::vector<Number> part;
    std::vector<double> whole;
    std::vector<double> factors;
};

void BM_Multiply(benchmark::State& state) {
    TablePair tables(state);
    const Projection projection(tables.axes, tables.part);
    for (auto _ : state)
        benchmark::DoNotOptimize(projection.multiply(tables.whole.data(), tables.factors.data()));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(tables.whole.size()));
}
void BM_Sum(benchmark::State& state) {
    TablePair tables(state);
    const Projection projection(tables.axes, tables.part);
    for (auto _ : state) {
        projection.sum(tables.whole.data(), tables.factors.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(tables.whole.size()));
}
/// The same number of cells, one after another, by one factor each.
void BM_PlainLoop(benchmark::State& state) {
    TablePair tables(state);
    const std::vector<double> factors(tables.whole.size(), 1.0);
    for (auto _ : state) {
        for (std::size_t i = 0; i < factors.size(); ++i) tables.whole[i] *= factors[i];
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(tables.whole.size()));
}
void shapes(benchmark::internal::Benchmark* bench) {
    for (const int part : {0, 1, 2})
        for (const auto& [axes, size] :
             {std::pair(10, 2), std::pair(6, 3), std::pair(4, 6), std::pair(20, 2), std::pair(3, 100)})
            bench->Args({axes, size, part});
}
BENCHMARK(BM_Multiply)->Apply(shapes);
BENCHMARK(BM_Sum)->Apply(shapes);
BENCHMARK(BM_PlainLoop)
    ->Args({10, 2, 0})
    ->Args({6, 3, 0})
    ->Args({4, 6, 0})
    ->Args({20, 2, 0})
    ->Args({3, 100, 0});

}  // namespace
}  // namespace numcore::benchmarks
