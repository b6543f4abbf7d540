// A discrete Bayesian network, as a file tells it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace numcore::cli {

struct NetworkNode {
    std::string name;
    std::vector<std::string> states;
    std::vector<std::size_t> parents;  // positions among the nodes
    std::vector<double> table;         // first parent slowest, own state fastest: a row per joint parent state

    std::size_t nRows() const { return states.empty() ? 0 : table.size() / states.size(); }
};

struct Network {
    std::string name;
    std::vector<NetworkNode> nodes;
    double largestRowError = 0.0;   // distance of a row's sum from 1
    std::size_t nRowsOff = 0;       // rows that miss 1 by more than rounding
    std::size_t nTablesTurned = 0;  // full tables whose own state varies fastest
    std::vector<std::string> warnings;
};

/// A row that misses 1 by no more is taken for rounded.
inline constexpr double kRowRounding = 5e-6;
/// Nodes of a network that the check by a matrix exponential is asked of: its time grows with their cube.
inline constexpr std::size_t kMostExponentialNodes = 500;
/// Warnings of one kind that are spelled out.
inline constexpr std::size_t kMostWarnings = 5;

}  // namespace numcore::cli
