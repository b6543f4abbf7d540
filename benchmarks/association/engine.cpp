// The engine's side of benchmarks/compare_association: one measure on a file of raw doubles, several times;
// prints one line of JSON with the seconds of each time, the coefficient and the p-value.
//
//   usage: numcore_associations MEASURE FILE COLUMNS REPETITIONS THREADS
//
// FILE holds the columns one after another. Two columns for point-biserial, rank-biserial, polychoric and
// polyserial; two sets of as many for rv; two square matrices, side by side, for mantel. The permutation tests
// draw kPermutations orders.
#include <omp.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "../workload.hpp"
#include "numcore/numcore.h"

namespace {

using namespace numcore::benchmarks;

constexpr std::int32_t kPermutations = 999;

std::vector<double> biserial(decltype(&BiserialCorrelation) member, const double* x, std::int32_t n,
                             const double* y) {
    ST_BiserialFit fit = {};
    member(x, n, y, nullptr, 0, &fit);
    return {fit.coefficient, fit.pValue};
}

std::vector<double> compute(std::string_view measure, const std::vector<double>& cells, std::int32_t nColumns) {
    const auto n = static_cast<std::int32_t>(cells.size() / static_cast<std::size_t>(nColumns));
    const double* first = cells.data();
    const double* second = first + cells.size() / 2;
    if (measure == "point-biserial") return biserial(BiserialCorrelation2, first, n, second);
    if (measure == "rank-biserial") return biserial(BiserialCorrelation3, first, n, second);
    if (measure == "polyserial") return biserial(BiserialCorrelation4, first, n, second);
    if (measure == "polychoric") {
        ST_PolychoricFit fit = {};
        V_PolychoricRho(first, n, second, nullptr, NUMCORE_POLYCHORIC_TWO_STEP, NUMCORE_MISSING, &fit);
        return {fit.rho, fit.normalityPValue};
    }
    if (measure == "rv") {
        const ST_RVOptions options{kPermutations, 1, NUMCORE_TRUE, NUMCORE_FALSE, 0};
        ST_RVResult result = {};
        RVcoefficient(first, n, nColumns / 2, second, nColumns / 2, nullptr, &options, &result);
        return {result.rv, result.pValue};
    }
    const ST_MantelOptions options{kPermutations, 1, NUMCORE_TRUE, NUMCORE_FALSE, 1};
    ST_MantelResult result = {};
    RunMantelTest(first, second, n, &options, &result);
    return {result.rho, result.pValue};
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 6) {
        std::fprintf(stderr, "usage: numcore_associations MEASURE FILE COLUMNS REPETITIONS THREADS\n");
        return 2;
    }
    const std::vector<double> cells = readCells(argv[2]);
    omp_set_num_threads(std::atoi(argv[5]));
    std::vector<double> result;
    const auto seconds =
        timeWork(std::atoi(argv[4]), [&] { result = compute(argv[1], cells, std::atoi(argv[3])); });
    printLine(seconds, result);
    return 0;
}
