// Descriptive statistics inside the library, for callers that hold a cST_DataSet; `numcore/descriptive.h` tells
// what each computes.
#pragma once

#include "numcore/dataset.hpp"
#include "numcore/descriptive.h"

namespace numcore {

/// Labels and table of a summary, over the caller's arrays.
class NUMCORE_API cST_DescStats {
  public:
    explicit cST_DescStats(ST_DescStats* source)
        : labels(source == nullptr ? nullptr : source->labels),
          table(source == nullptr ? nullptr : source->table) {}

    matrix<u16string> labels;
    matrix<double> table;
};

/// Summary table of numeric table 1 and, when withSecondTable is true, of numeric table 2 after it.
///
/// @param labels           a cell per variable: its name
/// @param weightsPerColumn flag: variable c (from 0) of table 1 is weighted by column c modulo the number of
/// columns
///                         of numeric table 2; otherwise by the observation weights
/// @param table            a row per variable, seven columns; what does not fit is dropped
NUMCORE_API void ComputeQuantiStats_ST(cST_DataSet& data, matrix<u16string>& labels,
                                       std::int16_t withSecondTable, std::int16_t weightsPerColumn,
                                       matrix<double>& table);

/// `Cpp_GetDescriptive_ST` inside the library; the text and the host's flag are not used.
NUMCORE_API void GetDescriptive_ST(cST_DataSet& data, std::int16_t weightsPerColumn, cST_DescStats& out,
                                   std::u16string& text, std::int32_t flag);

/// Sizes a data set without a record for the summary of the quantitative variables of another: text table 1 for
/// the labels, numeric table 1 for the statistics, with their column names.
NUMCORE_API void PrepareQuantiStats_ST(const cST_DataSet& data, std::int16_t withSecondTable, cST_DataSet& out);

/// Sizes a data set without a record for the qualitative summary, with the column names; a row per category.
NUMCORE_API void PrepareQualiStats_ST(const cST_QualiInfo& info, cST_DataSet& out);

/// Qualitative summary: `Cpp_ComputeQualiStats_ST` inside the library. Out's row count becomes info's.
NUMCORE_API void ComputeQualiStats_ST(cST_QualiInfo& info, cST_TableFormats& formats, cST_DataSet& out);

/// One row per variable: text table 1 gets name and mode (the category of the largest frequency, the first one
/// of equals); numeric table 1 categories, rows with a text, weight with a text, frequency of the mode, its
/// percentage of the total weight, and the entropy of the frequencies in bits (the missing value when their sum
/// is not above 0). A data set without a record gets tables of the needed shape. Shannon (1948), Bell System
/// Technical Journal 27:379-423.
NUMCORE_API void ComputeQualiStats2_ST(cST_QualiInfo& info, cST_DataSet& out);

/// Summary by group: `Cpp_GetStatsAndRestructure2_ST` inside the library. allRows names the group of all rows,
/// used when the data set has no text table 3. @return number of rows; -1 unknown group column
NUMCORE_API std::int32_t GetStatsAndRestructure_ST(cST_DataSet& data, std::int32_t groupColumn,
                                                   std::int16_t byGroup, cST_DataSet& out,
                                                   std::u16string_view allRows);

/// `Cpp_V_QuantileMethod` over containers. NUMCORE_API functions of this name never change x or w.
NUMCORE_API double V_QuantileMethod(matrix<double>* x, std::int32_t n, std::int16_t* flags,
                                    std::int16_t weighted, matrix<double>* w, std::int32_t method, double p);

/// `Cpp_V_QuantileMethod2` over containers.
NUMCORE_API double V_QuantileMethod2(matrix<double>* x, std::int32_t n, std::int32_t method, double p);

/// Limits of a quantile: both the missing value when they do not exist.
struct QuantileLimits {
    double lower = kMissing;
    double upper = kMissing;
};

/// Distribution-free limits of the quantile of order p of the first n cells of x: order statistics X(l) and
/// X(u) whose ranks, counted out from the quantile, each leave at most (1 - level)/2 of the binomial law of m
/// values outside (conservative, so that coverage is at least level). A rank below 1 or above m does not exist:
/// that limit is the missing value.
///
/// @param level confidence level, in (0, 1); p in (0, 1); otherwise, and without a value, both are missing
/// Conover (1999), Practical Nonparametric Statistics, 3rd ed., section 3.2.
NUMCORE_API QuantileLimits V_ConfQuantilesNonParam1(const matrix<double>* x, std::int32_t n, double p,
                                                    double level);

/// The same with ranks from the normal approximation: l = floor(mp - z s), u = ceil(mp + z s) + 1, s =
/// sqrt(mp(1-p)), z the normal quantile of (1 + level)/2. Hahn and Meeker (1991), Statistical Intervals,
/// section 5.2.
NUMCORE_API QuantileLimits V_ConfQuantilesLargeSample(const matrix<double>* x, std::int32_t n, double p,
                                                      double level);

/// Interquartile range: quantile of order 3/4 minus quantile of order 1/4, both by the same method; the missing
/// value when they do not exist.
NUMCORE_API double V_InterQuartileMethod(matrix<double>* x, std::int32_t n, std::int16_t weighted,
                                         matrix<double>* w, std::int32_t method);

/// `Cpp_GetQuantileTable` inside the library, over the same options.
NUMCORE_API std::int32_t GetQuantileTable(cST_DataSet& data, const matrix<double>& p,
                                          const ST_QuantileOptions& options, matrix<double>& table,
                                          matrix<u16string>& labels);

}  // namespace numcore
