// Texts of nodes, states and joint states.
#pragma once

#include <string>

#include "decision/networks/projection.hpp"
#include "numcore/containers.hpp"

namespace numcore::networks {

/// Names as the caller gave them; what is not there is the node's key and the state's number.
class Names {
  public:
    Names(const matrix<u16string>& nodes, const matrix<u16string>& states, std::span<const Number> sizes);

    std::u16string node(Number node) const;
    std::u16string state(Number node, Number state) const;
    /// "A=yes, B=no" for cell i of a table.
    std::u16string jointState(const Axes& axes, std::size_t cell) const;

  private:
    const matrix<u16string>& nodes_;
    const matrix<u16string>& states_;
    std::vector<std::int64_t> firstStates_;
};

}  // namespace numcore::networks
