// What an analysis writes into the caller's tables.
#pragma once

#include "decision/networks/input.hpp"
#include "decision/networks/labels.hpp"
#include "decision/networks/queries.hpp"

namespace numcore::networks {

/// Order of elimination, cliques, joins, separators and walks, from 1.
void writeTree(const JunctionTree& tree, cBYN_Results& results);

/// Sizes of the tables and the bound they were held against.
void writeForecast(const JunctionTree& tree, double bound, cBYN_Forecast& forecast);

/// Every probability missing.
void clearProbabilities(cBYN_Results& results);

/// Labels that were asked for: states, conditions, families, cliques.
void writeLabels(const Network& network, const JunctionTree& tree, const Names& names, cBYN_Results& results);

/// Tables that were asked for: marginals, conditionals, families, cliques.
void writeTables(const Model& model, cBYN_Results& results);

/// Status, length, labels and table of each query.
///
/// @param calibrated  null: no probability is there, cells stay missing
/// @param bound       bytes that all tables may take
void writeQueries(const Network& network, const JunctionTree& tree, const Calibrated* calibrated,
                  const cBYN_Param& param, double bound, const Names& names, cBYN_Results& results);

}  // namespace numcore::networks
