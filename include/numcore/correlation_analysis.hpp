// The correlation analysis inside the library; `numcore/correlation_analysis.h` tells what the records' fields
// are.
#pragma once

#include "numcore/correlation_analysis.h"
#include "numcore/dataset.hpp"

namespace numcore {

/// The inside of COR_Results: its tables over the caller's arrays.
class NUMCORE_API cCOR_Results {
  public:
    /// Without a record: tables get storage of their own when they are asked for.
    cCOR_Results() = default;
    explicit cCOR_Results(COR_Results* source);
    /// Copies status, counts, shapes and formats into the record it was built from, if any.
    void writeBack() const noexcept;

    COR_Results* record = nullptr;
    cST_MVect<double> coefficients;
    cST_MVect<double> pValues;
    cST_MVect<std::int32_t> significant;
    cST_MVect<double> squared;
    cST_MVect<double> lower;
    cST_MVect<double> upper;
    cST_MVect<std::int32_t> nPairs;
    cST_MVect<std::int32_t> colours;
    cST_TableFormats formats;
    std::int32_t status = NUMCORE_COR_DONE;
    std::int32_t coefficient = 0;
    std::int32_t nRowsUsed = 0;
    std::int32_t nRowsExcluded = 0;
    std::int32_t nMissing = 0;
    std::int32_t nNotComputed = 0;
    std::int32_t nNotExact = 0;
    std::int32_t nNotConverged = 0;
    std::int16_t complete = 0;
};

/// How the tables of a correlation analysis are shown.
class NUMCORE_API cCorr_Settings {
  public:
    explicit cCorr_Settings(const COR_Param& param);

    /// Formats of tables of the given shape: row and column labels, the header in bold, every column a
    /// number with the asked-for decimals ("0.000"; "General" without), highlight on when significant cells are
    /// to be bold or coloured.
    void FillTbF(cST_TableFormats& formats, std::int32_t rows, std::int32_t columns) const;

    /// Colour of each significant cell by the sign of its coefficient, -1 elsewhere; a variable with itself
    /// is never coloured (in a square table).
    void SetColors(const cST_MVect<double>& coefficients, const cST_MVect<std::int32_t>& significant,
                   bool square, cST_MVect<std::int32_t>& colours) const;

  private:
    std::int32_t decimals_;
    std::int32_t positiveColour_;
    std::int32_t negativeColour_;
    bool bold_;
};

/// `Cpp_COR_Compute_ST` inside the library. Messages, text and the host's flag are not used.
NUMCORE_API std::int32_t COR_Compute_ST(cST_DataSet& data, COR_Param& param, cCOR_Results& results,
                                        matrix<u16string>& messages, std::u16string& text, std::int32_t flag);

/// Categories of numeric variables: the distinct values of each of the first p columns among the rows that are
/// not excluded, ascending, as texts (the shortest that read back as the same number), with their rows and
/// weight. Info's arrays decide how many categories are kept; without arrays it gets its own.
///
/// @param weights   empty = unit weights
/// @param exclusion empty = use all
NUMCORE_API void M_InfoQuali_ST(const cST_MVect<double>& data, std::int32_t n, std::int32_t p,
                                const matrix<double>& weights, const matrix<std::int16_t>& exclusion,
                                cST_QualiInfo& info);

}  // namespace numcore
