#include "decision/networks/labels.hpp"

#include <algorithm>

#include "decision/networks/node_keys.hpp"

namespace numcore::networks {

Names::Names(const matrix<u16string>& nodes, const matrix<u16string>& states, std::span<const Number> sizes)
    : nodes_(nodes), states_(states) {
    firstStates_.reserve(sizes.size());
    std::int64_t first = 0;
    for (const Number size : sizes) {
        firstStates_.push_back(first);
        first += std::max<Number>(size, 0);
    }
}

std::u16string Names::node(Number node) const {
    return node < nodes_.size() && !nodes_[node].empty() ? nodes_[node].str() : nodeKey(node + 1);
}

std::u16string Names::state(Number node, Number state) const {
    const std::int64_t at = firstStates_[static_cast<std::size_t>(node)] + state;
    if (at < states_.size() && !states_[static_cast<std::int32_t>(at)].empty())
        return states_[static_cast<std::int32_t>(at)].str();
    return nodeKey(state + 1).substr(nodeKey(0).size() - 1);
}

std::u16string Names::jointState(const Axes& axes, std::size_t cell) const {
    std::vector<Number> states(axes.nodes.size());
    for (std::size_t axis = axes.nodes.size(); axis-- > 0;) {
        const auto extent = static_cast<std::size_t>(axes.extents[axis]);
        states[axis] = static_cast<Number>(cell % extent);
        cell /= extent;
    }
    std::u16string text;
    for (std::size_t axis = 0; axis < axes.nodes.size(); ++axis) {
        if (axis > 0) text += u", ";
        text += node(axes.nodes[axis]) + u"=" + state(axes.nodes[axis], states[axis]);
    }
    return text;
}

}  // namespace numcore::networks
