#include "cli/moments.hpp"

#include <cstddef>
#include <utility>
#include <vector>

#include "caller/data_set.hpp"
#include "caller/forms.hpp"
#include "numcore/descriptive.h"
#include "numcore/host.h"

namespace numcore::cli {

Moments momentsOf(std::span<const double> values, std::span<const double> weights) {
    constexpr std::size_t kMean = 5;
    constexpr std::size_t kDeviation = 6;
    std::vector<caller::Array> cells;
    cells.push_back(caller::Array::doubles(values));
    caller::DataSet data;
    data.setNumeric1(caller::NumericTable(std::move(cells)));
    if (!weights.empty()) data.setWeights(caller::Array::doubles(weights));
    caller::DescStats stats(1);
    caller::Host host;
    Cpp_GetDescriptive_ST(&data.record(), NUMCORE_FALSE, &stats.record(), host.system());
    return {stats.table().at(0, kMean), stats.table().at(0, kDeviation)};
}

}  // namespace numcore::cli
