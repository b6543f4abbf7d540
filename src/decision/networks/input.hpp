// What an analysis reads from the caller's records, checked.
#pragma once

#include "decision/networks/propagation.hpp"
#include "numcore/bayesian_network.hpp"

namespace numcore::networks {

/// Number of nodes: as stated, if every node has a size; otherwise 0.
std::int32_t nodeCount(const cBYN_Param& param);

/// Sizes and parents of the first n nodes.
Network readNetwork(const cST_DataSet& data, const cBYN_Param& param, std::int32_t n);

/// True when every node has a known number of states.
bool hasKnownSizes(const Network& network);

/// Conditional tables, node after node; from the data set's list of numeric tables or, without one, from the
/// parameters.
/// @return DONE or BAD_TABLE
std::int32_t readTables(const cST_DataSet& data, const cBYN_Param& param, const Network& network,
                        std::vector<double>& out);

/// Likelihoods, node after node, observed states as 0 and 1; empty when nothing is known.
/// @return DONE or BAD_EVIDENCE
std::int32_t readEvidence(const cBYN_Param& param, const Network& network, std::vector<double>& out);

/// One question of the caller.
struct Query {
    std::vector<Number> given;
    std::vector<Number> nodes;
    bool isUsable = false;  ///< it asks for a node, and for none twice
};
Query readQuery(const cBYN_Param& param, const Network& network, std::int32_t query);

}  // namespace numcore::networks
