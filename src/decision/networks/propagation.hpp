// Tables of a junction tree: loading, and the two passes of messages that make them agree.
#pragma once

#include <limits>

#include "decision/networks/junction_tree.hpp"
#include "decision/networks/projection.hpp"

namespace numcore::networks {

/// Tables of cliques or separators, one after another.
class Tables {
  public:
    Tables() = default;
    /// Every cell is 1.
    explicit Tables(std::span<const double> nCells);

    double* operator[](std::size_t i) { return cells_.data() + starts_[i]; }
    const double* operator[](std::size_t i) const { return cells_.data() + starts_[i]; }
    std::span<double> table(std::size_t i) { return {(*this)[i], starts_[i + 1] - starts_[i]}; }
    std::span<const double> table(std::size_t i) const { return {(*this)[i], starts_[i + 1] - starts_[i]}; }

  private:
    std::vector<std::size_t> starts_{0};
    std::vector<double> cells_;
};

/// What the tables are loaded with: node after node.
struct Inputs {
    std::span<const double> conditionals;  ///< a cell per joint state of the parents and the node, node fastest
    std::span<const double> likelihoods;   ///< a cell per state, >= 0; empty: no evidence
};

/// A positive number far beyond the range of doubles, or 0.
struct Total {
    double factor = 0.0;
    std::int64_t exponent = 0;  ///< of 2

    double logarithm() const;  ///< natural; -infinity for 0
};

/// A tree whose clique and separator tables agree. Clique tables have the sum 1 unless the evidence is
/// impossible.
struct Calibrated {
    Tables cliques;
    Tables separators;            ///< of the joins; each in a scale of its own
    double probability = 0.0;     ///< of the evidence: the tables' total with it over that without
    double logProbability = 0.0;  ///< -infinity when it is impossible
    bool isPossible() const { return logProbability > -std::numeric_limits<double>::infinity(); }
};

/// Loads every clique with the conditional tables of its families and the evidence on its nodes, and
/// propagates. Every size must be known.
Calibrated propagate(const Network& network, const JunctionTree& tree, const Inputs& inputs);

/// Nodes of a conditional table in the order of its axes: the parents, then the node.
std::vector<Number> familyOf(const Network& network, std::size_t node);

/// Divides a table by its sum if that is above 0; returns the sum.
double normalise(std::span<double> table);

/// old = new / old cell by cell, 0 / 0 being 0.
void divideInto(std::span<const double> numerator, std::span<double> denominator);

}  // namespace numcore::networks
