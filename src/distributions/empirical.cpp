// The empirical distribution on containers, and a sample as a distribution.

#include "numcore/empirical.hpp"

#include <algorithm>
#include <cmath>

#include "distributions/step_table.hpp"
#include "numcore/special.h"
#include "suite/basecore.hpp"
#include "suite/vmcore.hpp"

namespace numcore {

namespace {

std::span<const double> firstCells(const matrix<double>& cells, std::int32_t n) {
    return cells.span().first(static_cast<std::size_t>(std::clamp(n, 0, cells.size())));
}

/// The first nRows rows of a table; none when it has fewer than two columns.
distributions::StepColumns columnsOf(const matrix<double>& table, std::int32_t nRows) {
    if (table.columns() < 2) return {};
    const auto n = static_cast<std::size_t>(std::clamp(nRows, 0, table.rows()));
    return {table.span().first(n), table.span().subspan(static_cast<std::size_t>(table.rows()), n)};
}

}  // namespace

void BuildCDFEmpirical(const matrix<double>& values, std::int32_t n, const matrix<double>& weights,
                       std::int16_t sort, matrix<double>& table, std::int32_t& nRows) {
    const auto rows = distributions::stepRows(firstCells(values, n), weights.span(), isTrue(sort));
    if (table.size() == 0) table = matrix<double>(static_cast<std::int32_t>(rows.size()), 2, 0.0);
    nRows = std::min(static_cast<std::int32_t>(rows.size()), table.rows());
    for (std::int32_t i = 0; i < nRows; ++i) {
        const distributions::StepRow& row = rows[static_cast<std::size_t>(i)];
        table.at(i, 0) = row.value;
        table.at(i, 1) = row.probability;
    }
}

double InvCDFEmpirical(double p, const matrix<double>& table, std::int32_t nRows) {
    return distributions::quantileOfSteps(p, columnsOf(table, nRows));
}

double SearchForProbInEmpCDF(double x, const matrix<double>& table, std::int32_t nRows) {
    return distributions::probabilityOfSteps(x, columnsOf(table, nRows));
}

std::int32_t EmpDist::insert(double x) {
    if (vmcore::IsMissingValue(x)) return 0;
    values_.push_back(x);
    described_ = false;
    return 0;
}

std::int32_t EmpDist::DoSort() {
    vmcore::SortQVector(values_);
    return 0;
}

double EmpDist::CDF(double x) const {
    if (values_.empty() || std::isnan(x)) return kMissing;
    const auto above = std::upper_bound(values_.begin(), values_.end(), x);
    return static_cast<double>(above - values_.begin()) / static_cast<double>(values_.size());
}

double EmpDist::InvCDF(double p) const {
    if (!(p >= 0.0 && p <= 1.0)) return -1.0;
    if (values_.empty()) return kMissing;
    const auto position = static_cast<std::size_t>(static_cast<double>(values_.size()) * p);
    return values_[std::min(position, values_.size() - 1)];
}

void EmpDist::calcDescStat() {
    if (described_) return;
    const vmcore::Summary summary = vmcore::summarize(values_);
    mu_ = summary.mean;
    sigma_ = summary.nUsed == 0 ? kMissing : basecore::sqr(basecore::Max(vmcore::variance(summary), 0.0));
    described_ = true;
}

double EmpDist::getDescMu() {
    calcDescStat();
    return mu_;
}

double EmpDist::getDescSigma() {
    calcDescStat();
    return sigma_;
}

double EmpDist::biasCorr(double x) const {
    const double share = CDF(x);
    return share == kMissing ? kMissing : InvCDFNormalStd(share);
}

double EmpDist::accelerator() {
    const double mean = getDescMu();
    double squares = 0.0;
    double cubes = 0.0;
    for (const double value : values_) {
        const double distance = mean - value;
        squares += distance * distance;
        cubes += distance * distance * distance;
    }
    return squares > 0.0 ? cubes / (6.0 * squares * basecore::sqr(squares)) : kMissing;
}

void EmpDist::print(std::FILE* out) const {
    for (const double value : values_) std::fprintf(out, "%.17g\n", value);
}

}  // namespace numcore
