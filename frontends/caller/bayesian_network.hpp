// Bayesian networks for callers: a network and a question in, probabilities and the junction tree out.
//
// Nodes, states and cliques are numbered from 0 here. In a table of several nodes the first one varies slowest.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "numcore/bayesian_network.h"

namespace numcore::caller {

using NodeList = std::vector<std::size_t>;

/// One variable. The table has a run of states.size() cells for each joint state of the parents.
struct NetworkNode {
    std::u16string name;
    std::vector<std::u16string> states;
    NodeList parents;
    std::vector<double> table;
};

/// P(nodes | given, evidence); without given a joint table.
struct NetworkQuery {
    NodeList nodes;
    NodeList given;
};

/// What is observed and what is asked.
struct NetworkQuestion {
    std::vector<std::pair<std::size_t, std::size_t>> observed;                  ///< node, state
    std::vector<std::pair<std::size_t, std::vector<double>>> likelihoods = {};  ///< node, a value per state
    std::vector<NetworkQuery> queries = {};
    double memory = 0.0;        ///< bytes that the tables may take; 0: half of the physical memory
    bool cliqueJoints = false;  ///< the table of every clique
    bool familyTables = false;  ///< conditional and joint table of every node with its parents
};

/// A table of probabilities: cells, and the text of each ("A=yes, B=no").
struct NetworkTable {
    std::int32_t status = NUMCORE_BYN_DONE;
    std::vector<double> cells;  ///< missing where it cannot be computed
    std::vector<std::u16string> labels;
};

struct NetworkJoin {
    std::size_t from = 0;  ///< the clique already in the tree
    std::size_t to = 0;    ///< the clique that joins it
    NodeList separator;
};

struct NetworkTree {
    NodeList order;  ///< of elimination
    std::vector<double> orderWeights;
    std::vector<double> orderFills;
    std::vector<std::pair<std::size_t, std::size_t>> fillEdges;
    std::vector<NodeList> cliques;
    std::vector<double> cliqueCells;
    std::vector<NetworkJoin> joins;
    std::size_t root = 0;
    std::vector<std::size_t> parents;  ///< of each clique in the rooted tree; the root is its own
    std::vector<std::size_t> preorder;
    std::vector<std::size_t> postorder;
    std::vector<std::size_t> familyCliques;  ///< of each node
};

/// Sizes of the tree's tables; `BYN_Forecast` tells the fields.
struct NetworkForecast {
    std::int32_t status = NUMCORE_BYN_NO_DATA;
    double cells = 0.0;
    double largest = 0.0;
    double separatorCells = 0.0;
    double bytes = 0.0;
    double bound = 0.0;
    std::size_t nCliques = 0;
    std::size_t nMoralEdges = 0;
    std::size_t nFillEdges = 0;
};

/// The answer. Tables stay empty when status is below 0, except NUMCORE_BYN_IMPOSSIBLE (cells missing); the
/// tree is there unless the network itself was refused (NO_DATA, BAD_SIZE, CYCLE).
struct NetworkAnswer {
    std::int32_t status = NUMCORE_BYN_NO_DATA;
    double probability = 0.0;  ///< of the evidence
    double logProbability = 0.0;
    std::vector<std::vector<double>> marginals;  ///< P(node | evidence)
    std::vector<NetworkTable> conditionals;      ///< P(node | parents, evidence), labels of the parents' states
    std::vector<NetworkTable> families;          ///< P(parents, node | evidence)
    std::vector<NetworkTable> cliqueJoints;      ///< P(clique | evidence)
    std::vector<NetworkTable> queries;           ///< given first, then nodes
    NetworkTree tree;
    NetworkForecast forecast;
};

/// A network as the library takes it; asks the library's doors.
class BayesianNetwork {
  public:
    explicit BayesianNetwork(std::vector<NetworkNode> nodes);

    const std::vector<NetworkNode>& nodes() const { return nodes_; }

    /// `Cpp_BYNRun_Compute_ST`: tree and probabilities. Throws std::out_of_range when the question names a node
    /// that is not there.
    NetworkAnswer ask(const NetworkQuestion& question) const;
    /// The tree alone: tables may be absent.
    NetworkAnswer structure(double memory = 0.0) const;
    /// `Cpp_BYNRun_Forecast_ST`.
    NetworkForecast forecast(double memory = 0.0) const;
    /// `Cpp_BYNRun_DAG_ST`: 0 when every node is on a cycle, otherwise 1.
    std::int32_t check() const;

  private:
    std::vector<NetworkNode> nodes_;
};

}  // namespace numcore::caller
