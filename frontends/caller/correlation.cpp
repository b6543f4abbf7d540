#include "caller/correlation.hpp"

#include <algorithm>

#include "numcore/api.h"

namespace numcore::caller {

namespace {

/// A table that tells what the library did not write.
NumericTable missingTable(std::size_t nRows, std::size_t nColumns) {
    NumericTable table(nColumns, nRows);
    for (std::size_t j = 0; j < nColumns; ++j) std::ranges::fill(table.column(j).asDoubles(), NUMCORE_MISSING);
    return table;
}

}  // namespace

CorrelationResults::CorrelationResults(std::size_t nRows, std::size_t nColumns)
    : coefficients_(missingTable(nRows, nColumns)),
      pValues_(missingTable(nRows, nColumns)),
      squared_(missingTable(nRows, nColumns)),
      lower_(missingTable(nRows, nColumns)),
      upper_(missingTable(nRows, nColumns)),
      nPairs_(nColumns, nRows),
      formats_(nRows, nColumns) {
    record_.coefficients = coefficients_.record();
    record_.pValues = pValues_.record();
    record_.squared = squared_.record();
    record_.lower = lower_.record();
    record_.upper = upper_.record();
    record_.nPairs = nPairs_.record();
    record_.formats = formats_.record();
}

}  // namespace numcore::caller
