#include "correlation/packed_panels.hpp"

#include <algorithm>

#include "numcore/markers.hpp"

namespace numcore::correlation {
namespace {

std::size_t paddedColumns(std::size_t n) {
    return (n + kAbsentStep - 1) / kAbsentStep * kAbsentStep;
}

}  // namespace

void CompletePanel::pack(const Block& block) {
    for (std::size_t c = 0; c < block.columns.size(); ++c) {
        kernels().packComplete(block.columns[c].cells.data() + block.row, block.n, block.columns[c].centre,
                               block.isFirst ? block.weights : nullptr, cells_.data() + c * kBlockRows);
    }
}

void CompletePanel::add(const CompletePanel& first, const CompletePanel& second, const PanelPair& pair,
                        double* sums) {
    kernels().addProducts({first.cells_.data(), pair.nFirst, second.cells_.data(), pair.nSecond, pair.diagonal},
                          sums);
}

void MaskedPanel::pack(const Block& block) {
    for (std::size_t c = 0; c < block.columns.size(); ++c) {
        kernels().packMasked(block.columns[c].cells.data() + block.row, block.n, block.columns[c].centre,
                             block.isFirst ? block.weights : nullptr,
                             cells_.data() + c * kMaskedArrays * kBlockRows);
    }
}

void MaskedPanel::add(const MaskedPanel& first, const MaskedPanel& second, const PanelPair& pair,
                      double* sums) {
    kernels().addMasked({first.cells_.data(), pair.nFirst, second.cells_.data(), pair.nSecond, pair.diagonal},
                        sums);
}

NearlyCompletePanel::NearlyCompletePanel(std::size_t nColumns)
    : nColumns_(nColumns),
      nPadded_(paddedColumns(nColumns)),
      values_(nColumns * kBlockRows),
      rows_(2 * nPadded_ * kBlockRows),
      missing_(nColumns * kBlockRows),
      nMissing_(nColumns) {}

void NearlyCompletePanel::pack(const Block& block) {
    std::size_t c = 0;
    for (; c + kAbsentStep <= nColumns_; c += kAbsentStep) packColumns<kAbsentStep>(block, c);
    for (; c < nColumns_; ++c) packColumns<1>(block, c);
}

/// Columns that are written together share the lines of the cache that their rows take.
template <std::size_t nTogether>
void NearlyCompletePanel::packColumns(const Block& block, std::size_t c) {
    const double* cells[nTogether];
    double centres[nTogether];
    std::size_t nMissing[nTogether] = {};
    for (std::size_t k = 0; k < nTogether; ++k) {
        cells[k] = block.columns[c + k].cells.data() + block.row;
        centres[k] = block.columns[c + k].centre;
    }
    double* values = values_.data() + c * kBlockRows;
    double* rows = rows_.data() + c;
    std::uint8_t* missing = missing_.data() + c * kBlockRows;
    for (std::size_t i = 0; i < block.n; ++i) {
        const double weight = block.weights == nullptr ? 1.0 : block.weights[i];
        const double factor = block.isFirst ? weight : 1.0;
        for (std::size_t k = 0; k < nTogether; ++k) {
            const double cell = cells[k][i];
            const bool isPresent = cell != kMissing;
            const double value = isPresent ? cell - centres[k] : 0.0;
            values[k * kBlockRows + i] = factor * value;
            rows[k] = isPresent ? weight : 0.0;
            rows[nPadded_ + k] = value;
            missing[k * kBlockRows + nMissing[k]] = static_cast<std::uint8_t>(i);
            nMissing[k] += isPresent ? 0 : 1;
        }
        rows += 2 * nPadded_;
    }
    for (std::size_t k = 0; k < nTogether; ++k) {
        std::fill(values + k * kBlockRows + block.n, values + (k + 1) * kBlockRows, 0.0);
        nMissing_[c + k] = nMissing[k];
    }
}

std::size_t NearlyCompletePanel::nSums(const PanelPair& pair) {
    const std::size_t ofFirst = pair.nSecond * kAbsentSums * paddedColumns(pair.nFirst);
    const std::size_t ofSecond = pair.diagonal ? 0 : pair.nFirst * kAbsentSums * paddedColumns(pair.nSecond);
    return pair.nPairs() + ofFirst + ofSecond;
}

void NearlyCompletePanel::add(const NearlyCompletePanel& first, const NearlyCompletePanel& second,
                              const PanelPair& pair, double* sums) {
    kernels().addProducts(
        {first.values_.data(), pair.nFirst, second.values_.data(), pair.nSecond, pair.diagonal}, sums);
    sums += pair.nPairs();
    second.addWhereMissing(first, sums);
    if (!pair.diagonal) first.addWhereMissing(second, sums + pair.nSecond * kAbsentSums * first.nPadded_);
}

/// Sums of the other panel's columns where each column of this one is missing.
void NearlyCompletePanel::addWhereMissing(const NearlyCompletePanel& other, double* sums) const {
    for (std::size_t c = 0; c < nColumns_; ++c) {
        if (nMissing_[c] == 0) continue;
        kernels().addAbsent(
            {other.rows_.data(), other.nPadded_, missing_.data() + c * kBlockRows, nMissing_[c]},
            sums + c * kAbsentSums * other.nPadded_);
    }
}

double NearlyCompletePanel::absentFirst(const PanelPair& pair, const std::vector<double>& sums, std::size_t i,
                                        std::size_t j, AbsentSum s) {
    return sums[pair.nPairs() + (j * kAbsentSums + s) * paddedColumns(pair.nFirst) + i];
}

double NearlyCompletePanel::absentSecond(const PanelPair& pair, const std::vector<double>& sums, std::size_t i,
                                         std::size_t j, AbsentSum s) {
    if (pair.diagonal) return absentFirst(pair, sums, j, i, s);
    const std::size_t from = pair.nPairs() + pair.nSecond * kAbsentSums * paddedColumns(pair.nFirst);
    return sums[from + (i * kAbsentSums + s) * paddedColumns(pair.nSecond) + j];
}

}  // namespace numcore::correlation
