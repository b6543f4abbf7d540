// The records of the correlation analysis with their arrays.
#pragma once

#include <cstddef>

#include "caller/forms.hpp"
#include "caller/table.hpp"
#include "numcore/correlation_analysis.h"

namespace numcore::caller {

/// Receives a correlation analysis: tables of a row per variable and a column per variable (or per variable of
/// the second table). Every table but the significance and the colours is asked for.
class CorrelationResults {
  public:
    CorrelationResults(std::size_t nRows, std::size_t nColumns);
    COR_Results& record() { return record_; }
    const COR_Results& record() const { return record_; }

    const NumericTable& coefficients() const { return coefficients_; }
    const NumericTable& pValues() const { return pValues_; }
    const NumericTable& squared() const { return squared_; }
    const NumericTable& lower() const { return lower_; }
    const NumericTable& upper() const { return upper_; }
    const IntegerTable& nPairs() const { return nPairs_; }

  private:
    NumericTable coefficients_;
    NumericTable pValues_;
    NumericTable squared_;
    NumericTable lower_;
    NumericTable upper_;
    IntegerTable nPairs_;
    TableFormats formats_;
    COR_Results record_{};
};

}  // namespace numcore::caller
