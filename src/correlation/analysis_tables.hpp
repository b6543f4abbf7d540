// The result tables of the correlation analysis, filled pair by pair.
#pragma once

#include <atomic>

#include "correlation/observations.hpp"
#include "numcore/correlation_analysis.hpp"

namespace numcore::correlation {

class ResultTables {
  public:
    /// Shapes and labels the tables that are wanted. @param columns  the data behind their columns
    ResultTables(const COR_Param& param, const cST_MVect<double>& rows, const cST_MVect<double>& columns,
                 cCOR_Results& results);

    /// Takes the result of variables i and j, in a square table those of j and i too; from several threads at
    /// once for different pairs.
    void store(std::size_t i, std::size_t j, const Coefficient& found);
    /// Colours, formats and counts, once all pairs have been stored.
    void finish();

  private:
    template <class T>
    void shape(cST_MVect<T>& table, bool wanted, const T& nothing) const;
    template <class T>
    void put(cST_MVect<T>& table, std::size_t i, std::size_t j, T value) const;
    void putLimits(std::size_t i, std::size_t j, const Coefficient& found) const;

    const COR_Param& param_;
    const cST_MVect<double>& rows_;
    const cST_MVect<double>& columns_;
    cCOR_Results& results_;
    bool square_;
    bool withPValues_;
    bool withSquared_;
    bool withLimits_;
    std::atomic<std::int32_t> nNotComputed_{0};
    std::atomic<std::int32_t> nNotExact_{0};
    std::atomic<std::int32_t> nNotConverged_{0};
};

}  // namespace numcore::correlation
