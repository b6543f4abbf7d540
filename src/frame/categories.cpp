#include "frame/categories.hpp"

#include <algorithm>
#include <limits>
#include <numeric>
#include <unordered_map>

#include "numcore/dataset.hpp"

namespace numcore {
namespace frame {

Categories numberTexts(std::span<const u16string> cells) {
    Categories found;
    found.ofRow.reserve(cells.size());
    std::unordered_map<std::u16string_view, std::int32_t> numbers;
    for (const u16string& cell : cells) {
        const std::u16string_view text = cell.view();
        if (text.empty()) {
            found.ofRow.push_back(-1);
            continue;
        }
        const auto [entry, isNew] = numbers.try_emplace(text, static_cast<std::int32_t>(found.labels.size()));
        if (isNew) found.labels.push_back(text);
        found.ofRow.push_back(entry->second);
    }
    return found;
}

Categories findCategories(std::span<const u16string> cells) {
    Categories found = numberTexts(cells);
    std::vector<std::int32_t> byLabel(found.labels.size());
    std::iota(byLabel.begin(), byLabel.end(), 0);
    std::sort(byLabel.begin(), byLabel.end(), [&](std::int32_t a, std::int32_t b) {
        return found.labels[static_cast<std::size_t>(a)] < found.labels[static_cast<std::size_t>(b)];
    });
    std::vector<std::u16string_view> sorted(byLabel.size());
    std::vector<std::int32_t> place(byLabel.size());
    for (std::size_t k = 0; k < byLabel.size(); ++k) {
        sorted[k] = found.labels[static_cast<std::size_t>(byLabel[k])];
        place[static_cast<std::size_t>(byLabel[k])] = static_cast<std::int32_t>(k);
    }
    found.labels = std::move(sorted);
    for (std::int32_t& category : found.ofRow) {
        if (category >= 0) category = place[static_cast<std::size_t>(category)];
    }
    return found;
}

namespace {

/// Sums of one variable, a cell per category.
struct CategoryTotals {
    std::vector<double> counts;
    std::vector<double> frequencies;
    std::int32_t nMissing = 0;
    double missingWeight = 0.0;
};

/// A row counts with its weight only when that is above the double epsilon.
double weightOf(std::span<const double> weights, std::size_t row) {
    if (weights.empty()) return 1.0;
    return row < weights.size() && weights[row] > std::numeric_limits<double>::epsilon() ? weights[row] : 0.0;
}

CategoryTotals totalsOf(const Categories& categories, std::span<const double> weights) {
    CategoryTotals totals;
    totals.counts.resize(categories.labels.size());
    totals.frequencies.resize(categories.labels.size());
    for (std::size_t row = 0; row < categories.ofRow.size(); ++row) {
        const std::int32_t category = categories.ofRow[row];
        const double weight = weightOf(weights, row);
        if (category < 0) {
            ++totals.nMissing;
            totals.missingWeight += weight;
        } else {
            totals.counts[static_cast<std::size_t>(category)] += 1.0;
            totals.frequencies[static_cast<std::size_t>(category)] += weight;
        }
    }
    return totals;
}

double totalWeight(std::span<const double> weights, std::int32_t nRows) {
    if (weights.empty()) return std::max(nRows, 0);
    double total = 0.0;
    const std::size_t n = std::min(weights.size(), static_cast<std::size_t>(std::max(nRows, 0)));
    for (std::size_t row = 0; row < n; ++row) total += weightOf(weights, row);
    return total;
}

/// Writes one variable's categories into column v of the information; returns how many did not fit.
std::int32_t writeCategories(cST_QualiInfo& info, std::int32_t v, const Categories& categories,
                             const CategoryTotals& totals) {
    const auto n = static_cast<std::int32_t>(categories.labels.size());
    std::int32_t room = n;
    if (v < info.labels.columnCount()) room = std::min(room, info.labels.column(v).size());
    if (v < info.counts.columnCount()) room = std::min(room, info.counts.column(v).size());
    if (v < info.frequencies.columnCount()) room = std::min(room, info.frequencies.column(v).size());
    for (std::int32_t k = 0; k < room; ++k) {
        const auto category = static_cast<std::size_t>(k);
        info.labels.at(k, v) = u16string(categories.labels[category]);
        info.counts.at(k, v) = totals.counts[category];
        info.frequencies.at(k, v) = totals.frequencies[category];
    }
    info.nCategories[v] = room;
    info.missing[v] = totals.missingWeight;
    return n - room;
}

}  // namespace

void sizeQualiInfo(cST_QualiInfo& info, std::int32_t nVariables, std::int32_t nRows) {
    const std::int32_t n = nVariables;
    info.nVariables = n;
    info.nRows = nRows;
    info.totalWeight = 0.0;
    info.nMissing = 0;
    info.status = 0;
    info.nDropped = 0;
    if (info.record == nullptr) {
        info.nCategories = matrix<std::int32_t>(n, 1, 0);
        info.names = matrix<u16string>(n, 1, u16string());
        info.missing = matrix<double>(n, 1, 0.0);
        info.labels = cST_MVect<u16string>(info.maxCategories, n, u16string());
        info.counts = cST_MVect<double>(info.maxCategories, n, 0.0);
        info.frequencies = cST_MVect<double>(info.maxCategories, n, 0.0);
    }
    for (std::int32_t v = 0; v < n; ++v) {
        info.nCategories[v] = 0;
        info.missing[v] = 0.0;
    }
}

void fillQualiInfo(cST_QualiInfo& info, std::span<const double> weights,
                   const std::function<Categories(std::int32_t)>& categoriesOf) {
    info.totalWeight = totalWeight(weights, info.nRows);
    info.hasWeights = weights.empty() ? NUMCORE_FALSE : NUMCORE_TRUE;
    info.sorted = NUMCORE_TRUE;
    info.maxCategories = 0;
    for (std::int32_t v = 0; v < info.nVariables; ++v) {
        const Categories categories = categoriesOf(v);
        const CategoryTotals totals = totalsOf(categories, weights);
        info.nDropped += writeCategories(info, v, categories, totals);
        info.nMissing += totals.nMissing;
        info.maxCategories = std::max(info.maxCategories, static_cast<std::int32_t>(categories.labels.size()));
    }
    info.status = info.nDropped > 0 ? -1 : 0;
}

}  // namespace frame

void InitQualiInfo_ST(cST_QualiInfo& info, const cST_MVect<u16string>& table, std::int32_t nVariables,
                      std::int32_t nRows) {
    frame::sizeQualiInfo(info, std::clamp(nVariables, 0, table.columnCount()), nRows);
    for (std::int32_t v = 0; v < info.nVariables; ++v) info.names[v] = u16string(table.label(v));
}

void GetMaxCat_ST(const cST_MVect<u16string>& table, std::int32_t nVariables, cST_QualiInfo& info) {
    const std::int32_t n = std::max(nVariables, 0);
    info.maxCategories = 0;
    if (info.record == nullptr && info.nCategories.size() < n) info.nCategories = matrix<std::int32_t>(n, 1, 0);
    for (std::int32_t v = 0; v < std::min(n, table.columnCount()); ++v) {
        const auto nFound = static_cast<std::int32_t>(frame::numberTexts(table.cells(v)).labels.size());
        info.nCategories[v] = nFound;
        info.maxCategories = std::max(info.maxCategories, nFound);
    }
    for (std::int32_t v = 0; v < std::min(n, info.nCategories.size()); ++v) {
        info.maxCategories = std::max(info.maxCategories, info.nCategories[v]);
    }
}

std::int32_t GetQualiDataInfo_ST(cST_DataSet& data, cST_QualiInfo& info) {
    const cST_MVect<u16string> none;
    const cST_MVect<u16string>& table = isTrue(data.strings1Present) ? *data.strings1 : none;
    const std::span<const double> weights = data.observationWeights();
    if (info.record == nullptr) GetMaxCat_ST(table, table.columnCount(), info);
    InitQualiInfo_ST(info, table, table.columnCount(), data.nRows);
    frame::fillQualiInfo(info, weights, [&](std::int32_t v) { return frame::findCategories(table.cells(v)); });
    return info.status;
}

}  // namespace numcore
