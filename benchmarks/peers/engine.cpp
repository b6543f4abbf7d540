// The engine's side of benchmarks/compare: does a named piece of work on a file of raw doubles, several times,
// and prints one line of JSON with the seconds of each time and the result.
//
//   usage: numcore_workload describe|quantile FILE COLUMNS REPETITIONS
//
// FILE holds the columns one after another, NaN for a missing cell. The conversion of NaN to the library's
// missing value is not timed: a caller's cells are in that form already.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "../workload.hpp"
#include "caller/data_set.hpp"
#include "caller/forms.hpp"
#include "numcore/numcore.h"

namespace {

using namespace numcore::benchmarks;
using namespace numcore::caller;

constexpr double kOrders[] = {0.1, 0.5, 0.95};
constexpr std::int32_t kMethods = 6;

/// Result: per column missing, present, minimum, maximum, mean, deviation.
void describe(const std::vector<double>& cells, std::size_t nColumns, int repetitions) {
    const std::size_t nRows = cells.size() / nColumns;
    NumericTable table(nColumns, nRows);
    for (std::size_t j = 0; j < nColumns; ++j) {
        std::ranges::copy_n(cells.data() + j * nRows, static_cast<std::ptrdiff_t>(nRows),
                            table.column(j).asDoubles().begin());
    }
    DataSet data;
    data.setNumeric1(std::move(table));
    DescStats out(nColumns);
    const auto seconds = timeWork(
        repetitions, [&] { Cpp_GetDescriptive_ST(&data.record(), NUMCORE_FALSE, &out.record(), nullptr); });
    std::vector<double> result;
    for (std::size_t j = 0; j < nColumns; ++j) {
        for (std::size_t statistic = 1; statistic < DescStats::kNColumns; ++statistic) {
            result.push_back(out.table().at(j, statistic));
        }
    }
    printLine(seconds, result);
}

/// One line per method; result: the quantiles of the three orders.
void quantile(std::vector<double> cells, int repetitions) {
    for (std::int32_t method = 0; method < kMethods; ++method) {
        std::vector<double> result(std::size(kOrders));
        const auto seconds = timeWork(repetitions, [&] {
            std::ranges::transform(kOrders, result.begin(), [&](double p) {
                return Cpp_V_QuantileMethod2(cells.data(), static_cast<std::int32_t>(cells.size()), method, p);
            });
        });
        printLine(seconds, result);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fprintf(stderr, "usage: numcore_workload describe|quantile FILE COLUMNS REPETITIONS\n");
        return 2;
    }
    const auto nColumns = static_cast<std::size_t>(std::max(1, std::atoi(argv[3])));
    const int repetitions = std::max(1, std::atoi(argv[4]));
    std::vector<double> cells = readCells(argv[2]);
    if (std::string_view(argv[1]) == "describe") {
        describe(cells, nColumns, repetitions);
    } else {
        quantile(std::move(cells), repetitions);
    }
    return 0;
}
