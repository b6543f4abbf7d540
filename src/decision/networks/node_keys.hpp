// Nodes by key: the text "NODE" and a number, looked up among the labels of a data set.
#pragma once

#include <string>
#include <unordered_map>

#include "decision/networks/graph.hpp"
#include "numcore/containers.hpp"

namespace numcore::networks {

/// The whole number that a cell holds, by truncation; 0 for what is not a number from 1 to the largest integer.
std::int32_t wholeNumber(double cell);

/// "NODE7" for 7.
std::u16string nodeKey(std::int32_t number);

/// Positions of the first n labels of the first column.
class NodeKeys {
  public:
    NodeKeys(const cST_MVect<u16string>& labels, std::int32_t n);

    /// The position, from 0, of the last label that is the key of a number; -1 without one.
    Number find(double number) const;

  private:
    std::unordered_map<std::u16string_view, Number> positions_;
};

/// Parents of each of the first n nodes, by key, in the order of their lists: each once, never the node itself,
/// and none whose key is not there.
Lists readParents(const matrix<double>& parents, const NodeKeys& keys, std::int32_t n);

}  // namespace numcore::networks
