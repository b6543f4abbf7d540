// Categories of numeric variables, for the coefficients that take values as ordered categories.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <vector>

#include "frame/categories.hpp"
#include "numcore/correlation_analysis.hpp"

namespace numcore {
namespace {

// The shortest text that reads back as the same number.
std::u16string textOf(double value) {
    char digits[32];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value == 0.0 ? 0.0 : value);
    return {digits, error == std::errc() ? end : digits};
}

// Values in ascending order, NaN last and once.
std::vector<double> distinctValues(std::span<const double> cells) {
    std::vector<double> values;
    std::ranges::copy_if(cells, std::back_inserter(values), [](double value) { return value != kMissing; });
    const auto less = [](double a, double b) { return a < b || (!std::isnan(a) && std::isnan(b)); };
    std::ranges::sort(values, less);
    const auto same = [&](double a, double b) { return !less(a, b) && !less(b, a); };
    values.erase(std::unique(values.begin(), values.end(), same), values.end());
    return values;
}

// The categories of a column, with the texts that their labels look at.
struct NumericCategories {
    std::vector<std::u16string> texts;
    frame::Categories categories;
};

NumericCategories categoriesOf(std::span<const double> cells) {
    NumericCategories found;
    const std::vector<double> values = distinctValues(cells);
    for (const double value : values) found.texts.push_back(textOf(value));
    for (const std::u16string& text : found.texts) found.categories.labels.emplace_back(text);
    const auto nNumbers = static_cast<std::size_t>(
        std::ranges::count_if(values, [](double value) { return !std::isnan(value); }));
    for (const double cell : cells) {
        const auto place =
            std::isnan(cell) ? static_cast<std::ptrdiff_t>(nNumbers)
                             : std::lower_bound(values.begin(),
                                                values.begin() + static_cast<std::ptrdiff_t>(nNumbers), cell) -
                                   values.begin();
        found.categories.ofRow.push_back(cell == kMissing ? -1 : static_cast<std::int32_t>(place));
    }
    return found;
}

// The rows that are not excluded, of a column or of weights; cells that a column lacks are missing.
std::vector<double> usedCells(std::span<const double> cells, std::int32_t n,
                              const matrix<std::int16_t>& exclusion, double beyond) {
    std::vector<double> used;
    for (std::int32_t i = 0; i < n; ++i) {
        if (i < exclusion.size() && exclusion[i] != 0) continue;
        const auto row = static_cast<std::size_t>(i);
        used.push_back(row < cells.size() ? cells[row] : beyond);
    }
    return used;
}

}  // namespace

void M_InfoQuali_ST(const cST_MVect<double>& data, std::int32_t n, std::int32_t p,
                    const matrix<double>& weights, const matrix<std::int16_t>& exclusion, cST_QualiInfo& info) {
    const std::int32_t nVariables = std::clamp(p, 0, data.columnCount());
    std::vector<NumericCategories> found;
    std::size_t most = 0;
    for (std::int32_t v = 0; v < nVariables; ++v) {
        found.push_back(categoriesOf(usedCells(data.cells(v), n, exclusion, kMissing)));
        most = std::max(most, found.back().categories.labels.size());
    }
    const std::vector<double> used =
        weights.size() == 0 ? std::vector<double>() : usedCells(weights.span(), n, exclusion, 0.0);
    const auto nSkipped =
        std::ranges::count_if(exclusion.span().first(std::min<std::size_t>(
                                  exclusion.span().size(), static_cast<std::size_t>(std::max(n, 0)))),
                              [](std::int16_t flag) { return flag != 0; });
    const std::int32_t nRows = std::max(n, 0) - static_cast<std::int32_t>(nSkipped);
    if (info.record == nullptr) info.maxCategories = static_cast<std::int32_t>(most);
    frame::sizeQualiInfo(info, nVariables, nRows);
    for (std::int32_t v = 0; v < nVariables; ++v) info.names[v] = u16string(data.label(v));
    frame::fillQualiInfo(info, used,
                         [&](std::int32_t v) { return found[static_cast<std::size_t>(v)].categories; });
}

}  // namespace numcore
