#include "decision/networks/node_keys.hpp"

#include <algorithm>
#include <charconv>

namespace numcore::networks {

std::int32_t wholeNumber(double cell) {
    return cell >= 1.0 && cell < 2147483648.0 ? static_cast<std::int32_t>(cell) : 0;
}

std::u16string nodeKey(std::int32_t number) {
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    std::u16string key = u"NODE";
    key.append(digits, end);
    return key;
}

NodeKeys::NodeKeys(const cST_MVect<u16string>& labels, std::int32_t n) {
    if (labels.columnCount() < 1) return;
    const matrix<u16string>& column = labels.column(0);
    // Kept: of labels that repeat the last one counts.
    for (std::int32_t i = 0; i < std::min(n, column.size()); ++i) positions_[column[i].view()] = i;
}

Number NodeKeys::find(double number) const {
    const std::int32_t whole = wholeNumber(number);
    if (whole == 0) return -1;
    const std::u16string key = nodeKey(whole);
    const auto found = positions_.find(key);
    return found == positions_.end() ? -1 : found->second;
}

Lists readParents(const matrix<double>& parents, const NodeKeys& keys, std::int32_t n) {
    Lists out;
    std::vector<Number> list;
    for (std::int32_t node = 0; node < n; ++node) {
        list.clear();
        for (std::int32_t row = 0; node < parents.columns() && row < parents.rows(); ++row) {
            const Number parent = keys.find(parents.at(row, node));
            // Without a key the arc is lost.
            if (parent >= 0 && parent != node && std::ranges::find(list, parent) == list.end())
                list.push_back(parent);
        }
        out.append(list);
    }
    return out;
}

}  // namespace numcore::networks
