// The engine's side of benchmarks/compare_correlation: one family of coefficients, with p-values and limits, on
// a file of raw doubles, several times; prints one line of JSON with the seconds of each time and the
// coefficients.
//
//   usage: numcore_correlations pearson|spearman|kendall FILE COLUMNS REPETITIONS THREADS
//
// FILE holds the columns one after another, NaN for a missing cell. The conversion of NaN to the library's
// missing value is not timed: a caller's cells are in that form already.
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

constexpr double kLevel = 0.05;
enum Family : std::int32_t { kPearson = 1, kSpearman = 2, kKendall = 3 };

struct Matrices {
    std::vector<double> r, p, lower, upper;
};

void compute(Family family, const std::vector<double>& cells, std::int32_t nColumns, Matrices& out) {
    const auto nRows = static_cast<std::int32_t>(cells.size() / static_cast<std::size_t>(nColumns));
    if (family == kPearson) {
        VB_M_PearsonRho(cells.data(), nRows, nColumns, nullptr, nullptr, 0, out.r.data(), out.p.data());
    } else if (family == kSpearman) {
        VB_M_SpearmanRho(cells.data(), nRows, nColumns, nullptr, nullptr, 0, out.r.data(), out.p.data());
    } else if (nColumns == 2) {
        const double* x = cells.data();
        double S = 0.0;
        std::int16_t exact = NUMCORE_FALSE;
        out.r = {1.0, 0.0, 0.0, 1.0};
        out.r[1] = out.r[2] =
            VB_V_KendallTau(x, nRows, x + nRows, nullptr, nullptr, &out.p[1], 0, &exact, NUMCORE_FALSE, &S);
    } else {
        VB_M_KendallTau(cells.data(), nRows, nColumns, nullptr, nullptr, 0, 0, out.r.data(), out.p.data());
    }
    for (std::size_t cell = 0; cell < out.r.size(); ++cell) {
        COR_ComputeCI_ST(out.r[cell], nRows, kLevel, family, &out.lower[cell], &out.upper[cell]);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 6) {
        std::fprintf(stderr,
                     "usage: numcore_correlations pearson|spearman|kendall FILE COLUMNS REPETITIONS THREADS\n");
        return 2;
    }
    const std::string_view name = argv[1];
    const Family family = name == "pearson" ? kPearson : name == "spearman" ? kSpearman : kKendall;
    const std::vector<double> cells = readCells(argv[2]);
    const std::int32_t nColumns = std::atoi(argv[3]);
    omp_set_num_threads(std::atoi(argv[5]));
    const auto nCells = static_cast<std::size_t>(nColumns) * static_cast<std::size_t>(nColumns);
    Matrices out{std::vector<double>(nCells), std::vector<double>(nCells), std::vector<double>(nCells),
                 std::vector<double>(nCells)};
    const auto seconds = timeWork(std::atoi(argv[4]), [&] { compute(family, cells, nColumns, out); });
    printLine(seconds, out.r);
    return 0;
}
