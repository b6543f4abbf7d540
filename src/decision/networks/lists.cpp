#include "decision/networks/lists.hpp"

#include <algorithm>
#include <iterator>

namespace numcore::networks {

Lists listsHolding(const Lists& lists, std::size_t n) {
    std::vector<std::vector<Number>> holders(n);
    for (std::size_t i = 0; i < lists.count(); ++i)
        for (const Number member : lists[i])
            holders[static_cast<std::size_t>(member)].push_back(static_cast<Number>(i));
    Lists out;
    for (const auto& holder : holders) out.append(holder);
    return out;
}

std::vector<Number> sharedMembers(std::span<const Number> a, std::span<const Number> b) {
    std::vector<Number> out;
    std::ranges::set_intersection(a, b, std::back_inserter(out));
    return out;
}

bool isSubset(std::span<const Number> part, std::span<const Number> whole) {
    return std::ranges::includes(whole, part);
}

}  // namespace numcore::networks
