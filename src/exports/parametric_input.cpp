#include "exports/parametric_input.hpp"

#include <algorithm>

namespace numcore::tests {

ArraySamples::ArraySamples(SAFEARRAY* x1, SAFEARRAY* x2, SAFEARRAY* weights)
    : first_(x1), second_(x2), weights_(weights), hasWeights_(weights != nullptr) {
    const bool sameLength =
        first_.size() == second_.size() && (!hasWeights_ || weights_.size() == first_.size());
    n_ = sameLength ? first_.size() : 0;
}

ArrayGroups::ArrayGroups(SAFEARRAY* data, SAFEARRAY* weights)
    : data_(data), weights_(weights), hasWeights_(weights != nullptr) {
    n_ = !hasWeights_ || weights_.size() == data_.rows() ? data_.rows() : 0;
}

std::vector<double> rowWeights(const cST_DataSet& data, std::span<const double> weights, std::size_t n) {
    std::vector<double> kept(weights.begin(), weights.end());
    if (!isTrue(data.rowMarksPresent)) return kept;
    // Rows beyond given weights have none.
    kept.resize(n, weights.empty() ? 1.0 : 0.0);
    for (std::size_t i = 0; i < n; ++i) {
        if (data.isMarked(static_cast<std::int32_t>(i))) kept[i] = 0.0;
    }
    return kept;
}

void Groups::reserve(std::size_t n) {
    samples.reserve(n);
    views.reserve(n);
}

void Groups::add(CompactSample sample) {
    samples.push_back(std::move(sample));
    views.push_back(samples.back().view());
}

Groups groupsOf(const cST_DataSet& data, std::span<const std::int32_t> columns) {
    const cST_MVect<double>& values = *data.numeric1;
    const cST_MVect<double>& weightTable = *data.numeric2;
    const std::int32_t nWeightColumns = isTrue(data.numeric2Present) ? weightTable.columnCount() : 0;
    Groups groups;
    groups.reserve(columns.size());
    for (const std::int32_t number : columns) {
        if (number < 1 || number > values.columnCount()) continue;
        const std::int32_t c = number - 1;
        const auto cells = values.cells(c);
        const auto weights =
            nWeightColumns > 0 ? weightTable.cells(c % nWeightColumns) : data.observationWeights();
        groups.add(compactSample(cells, rowWeights(data, weights, cells.size())));
    }
    return groups;
}

Groups groupsOf(const double* data, std::int32_t n, std::int32_t k, std::span<const double> weights) {
    Groups groups;
    if (data == nullptr || n < 1 || k < 1) return groups;
    groups.reserve(static_cast<std::size_t>(k));
    for (std::int64_t g = 0; g < k; ++g) groups.add(compactSample(cellsAt(data + g * n, n), weights));
    return groups;
}

Groups groupsByNumber(std::span<const double> values, std::span<const std::int32_t> numbers,
                      std::span<const double> weights, std::int32_t nGroups) {
    std::vector<std::size_t> rows;
    rows.reserve(values.size());
    for (std::size_t i = 0; i < std::min(values.size(), numbers.size()); ++i) {
        if (isPresent(values[i]) && hasWeight(weights, i) && numbers[i] >= 1 && numbers[i] <= nGroups)
            rows.push_back(i);
    }
    const auto numberOf = [&](std::size_t row) { return numbers[row]; };
    std::ranges::stable_sort(rows, {}, numberOf);
    std::vector<CompactSample> samples;
    for (std::size_t k = 0; k < rows.size(); ++k) {
        if (k == 0 || numberOf(rows[k]) != numberOf(rows[k - 1])) samples.emplace_back();
        samples.back().values.push_back(values[rows[k]]);
        if (!weights.empty()) samples.back().weights.push_back(weights[rows[k]]);
    }
    Groups groups;
    groups.reserve(samples.size());
    for (CompactSample& sample : samples) groups.add(std::move(sample));
    return groups;
}

std::int32_t GroupsOutputs::write(const GroupsTest& test) const {
    put(F, test.F);
    put(critical, test.critical);
    put(df1, test.df1);
    put(df2, test.df2);
    put(pValue, test.pValue);
    return test.status;
}

}  // namespace numcore::tests
