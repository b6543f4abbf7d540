#include "caller/forms.hpp"

#include <utility>

namespace numcore::caller {

QualiInfo::QualiInfo(std::size_t nVariables)
    : nCategories_(Array::ints(nVariables)),
      names_(Array::texts(nVariables)),
      missing_(Array::doubles(nVariables)),
      labels_(nVariables, 0),
      counts_(nVariables, 0),
      frequencies_(nVariables, 0) {
    record_.nVariables = static_cast<std::int32_t>(nVariables);
    record_.nCategories = nCategories_.get();
    record_.names = names_.get();
    record_.missing = missing_.get();
    allocate(0);
}

void QualiInfo::allocate(std::size_t maxCategories) {
    const std::size_t nVariables = nCategories_.size();
    labels_ = TextTable(nVariables, maxCategories);
    counts_ = NumericTable(nVariables, maxCategories);
    frequencies_ = NumericTable(nVariables, maxCategories);
    record_.labels = labels_.record();
    record_.counts = counts_.record();
    record_.frequencies = frequencies_.record();
}

std::size_t QualiInfo::nCategories(std::size_t variable) const {
    const std::int32_t n = nCategories_.asInts()[variable];
    return n > 0 ? static_cast<std::size_t>(n) : 0;
}

TableFormats::TableFormats(std::size_t nRows, std::size_t nColumns)
    : numberFormats_(Array::texts(nColumns)),
      formatKinds_(Array::ints(nColumns)),
      formatDigits_(Array::ints(nColumns)),
      columnTable_(Array::ints(nColumns)),
      rowTable_(Array::ints(nRows)) {
    record_.numberFormats = numberFormats_.get();
    record_.formatKinds = formatKinds_.get();
    record_.formatDigits = formatDigits_.get();
    record_.columnTable = columnTable_.get();
    record_.rowTable = rowTable_.get();
}

}  // namespace numcore::caller
