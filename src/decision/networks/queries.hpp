// Probabilities of nodes from a calibrated tree.
#pragma once

#include "decision/networks/propagation.hpp"

namespace numcore::networks {

/// What answers questions about a calibrated tree.
struct Model {
    const Network& network;
    const JunctionTree& tree;
    const Calibrated& calibrated;
};

/// P(node | evidence), into a cell per state.
void marginalOf(const Model& model, std::size_t node, std::span<double> out);

/// P(family | evidence), into a cell per joint state of the parents and the node, the node fastest.
void familyJointOf(const Model& model, std::size_t node, std::span<double> out);

/// Divides each run of a joint table by its sum: P(asked for | conditioned on), a run for each joint state of
/// the condition. Where the condition has probability 0 the run is missing.
void conditionOn(std::span<double> joint, std::size_t runLength);

/// Joint table of any nodes: nodes that no clique holds together are brought together along the tree.
class JointQuery {
  public:
    /// @param nodes  different nodes; the first varies slowest
    JointQuery(const Network& network, const JunctionTree& tree, std::span<const Number> nodes);

    /// Cells of the result.
    double nCells() const { return nCells_; }
    /// Cells of the tables on the way: all that are sent and the largest product; infinite when that has too
    /// many.
    double nWorkCells() const { return nWorkCells_; }
    /// P(nodes | evidence), into nCells() cells.
    void answer(const Calibrated& calibrated, std::span<double> out) const;

  private:
    /// A table that a clique sends to its parent: the sum of the product of its own table and what its children
    /// sent, onto the separator and the nodes asked for.
    struct Step {
        std::size_t clique;
        std::vector<Number> scope;       ///< nodes of the product
        std::vector<Number> kept;        ///< nodes of the sum
        std::vector<std::size_t> below;  ///< steps of its children
        Number joinAbove;                ///< whose separator table is divided out; -1 at the top
    };

    Number highestCliqueWith(Number node) const;
    void planSteps();
    void planStep(std::size_t clique, bool isTop, std::vector<std::size_t> below);

    const Network& network_;
    const JunctionTree& tree_;
    std::vector<Number> nodes_;
    std::vector<Step> steps_;  ///< children before parents; the last gives the result
    double nCells_ = 1.0;
    double nWorkCells_ = 0.0;
};

}  // namespace numcore::networks
