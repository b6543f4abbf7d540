// Doors of the descriptive statistics.

#include "numcore/descriptive.h"

#include <algorithm>
#include <cmath>

#include "descriptive/quantile.hpp"
#include "descriptive/univariate.hpp"
#include "frame/entry_frame.hpp"
#include "numcore/descriptive.hpp"

using numcore::cST_DataSet;
using numcore::cST_DescStats;
using numcore::EntryFrame;
using numcore::matrix;
using numcore::u16string;

namespace {

constexpr std::int32_t kModelMessages = 7779;
constexpr ST_QuantileOptions kDefaultQuantile = {NUMCORE_QUANTILE_LINEAR, NUMCORE_FALSE, NUMCORE_FALSE,
                                                 NUMCORE_FALSE,           {0, 0, 0},     0.95};

std::span<const double> cellsOf(const double* x, std::int32_t n) {
    return x == nullptr || n < 1 ? std::span<const double>() : std::span(x, static_cast<std::size_t>(n));
}

}  // namespace

void Cpp_GetDescriptive_ST(ST_DataSet* data, int16_t weightsPerColumn, ST_DescStats* out, SystemInfo* system) {
    EntryFrame<cST_DescStats> frame(data, out, nullptr, system, nullptr);
    numcore::GetDescriptive_ST(frame.data, weightsPerColumn, frame.results, frame.text, frame.flag);
}

void Cpp_ComputeQuantiStats_ST(ST_DataSet* data, ST_DescStats* out, int16_t withSecondTable,
                               int16_t weightsPerColumn, SystemInfo* system) {
    EntryFrame<cST_DescStats> frame(data, out, nullptr, system, nullptr);
    numcore::ComputeQuantiStats_ST(frame.data, frame.results.labels, withSecondTable, weightsPerColumn,
                                   frame.results.table);
}

void Cpp_ComputeQualiStats_ST(ST_QualiInfo* info, ST_TableFormats* formats, ST_DataSet* out) {
    numcore::cST_QualiInfo from(info);
    numcore::cST_TableFormats shown(formats);
    cST_DataSet to(out);
    numcore::ComputeQualiStats_ST(from, shown, to);
    shown.writeBack();
    to.writeBack();
}

double Cpp_V_QuantileMethod(double* x, int32_t n, int16_t* flags, int16_t weighted, double* w, int32_t method,
                            double p) {
    matrix<double> cells(n, 1, x, false);
    matrix<double> weights(n, 1, w, false);
    return numcore::V_QuantileMethod(&cells, n, flags, weighted, &weights, method, p);
}

double Cpp_V_QuantileMethod2(double* x, int32_t n, int32_t method, double p) {
    matrix<double> cells(n, 1, x, false);
    return numcore::V_QuantileMethod2(&cells, n, method, p);
}

double Cpp_QuantileOpt(double* x, int32_t n, double* w, const ST_QuantileOptions* options, double p,
                       double* lower, double* upper) {
    const ST_QuantileOptions& chosen = options == nullptr ? kDefaultQuantile : *options;
    matrix<double> cells(n, 1, x, true);
    matrix<double> weights(n, 1, w, true);
    numcore::QuantileLimits limits;
    if (numcore::isTrue(chosen.interval)) {
        limits = numcore::isTrue(chosen.largeSample)
                     ? numcore::V_ConfQuantilesLargeSample(&cells, n, p, chosen.level)
                     : numcore::V_ConfQuantilesNonParam1(&cells, n, p, chosen.level);
    }
    if (lower != nullptr) *lower = limits.lower;
    if (upper != nullptr) *upper = limits.upper;
    return numcore::V_QuantileMethod(&cells, n, nullptr, chosen.weighted, &weights, chosen.method, p);
}

int32_t Cpp_GetQuantileTable(ST_DataSet* data, const double* p, int32_t nP, const ST_QuantileOptions* options,
                             SAFEARRAY* table, SAFEARRAY* labels) {
    if (data == nullptr || p == nullptr || nP < 1) return -1;
    cST_DataSet inside(data);
    const matrix<double> orders(nP, 1, const_cast<double*>(p), true);
    matrix<double> quantiles(table);
    matrix<u16string> names(labels);
    return numcore::GetQuantileTable(inside, orders, options == nullptr ? kDefaultQuantile : *options,
                                     quantiles, names);
}

double Cpp_Skewness(double* x, int32_t n, double* w, int32_t kind) {
    return numcore::descriptive::skewness(cellsOf(x, n), cellsOf(w, n), kind);
}

int32_t Cpp_UNI_Compute_Stats(ST_DataSet* data, int32_t method, SAFEARRAY* table, SAFEARRAY* labels) {
    if (data == nullptr) return -1;
    cST_DataSet inside(data);
    matrix<double> statistics(table);
    matrix<u16string> names(labels);
    for (std::int32_t c = 0; c < inside.numeric1->columnCount(); ++c) {
        const auto cells =
            numcore::descriptive::univariate(inside.numeric1->cells(c), inside.observationWeights(), method);
        for (std::size_t i = 0; i < cells.size(); ++i)
            statistics.at(static_cast<std::int32_t>(i), c) = cells[i];
        names[c] = u16string(inside.numeric1->label(c));
    }
    return 0;
}

int32_t Cpp_GetStatsAndRestructure2_ST(ST_DataSet* data, int32_t groupColumn, int16_t byGroup, ST_DataSet* out,
                                       char16_t** messages, SystemInfo* system, QUORIXInfo* host) {
    if (data == nullptr || out == nullptr) return -1;
    EntryFrame<cST_DataSet, kModelMessages> frame(data, out, messages, system, host);
    const int32_t nRows =
        numcore::GetStatsAndRestructure_ST(frame.data, groupColumn, byGroup, frame.results, frame.messages(1));
    frame.results.writeBack();
    return nRows;
}
