// A network's graph: parents of each node, the moral graph, and the search for a directed cycle.
#pragma once

#include <utility>

#include "decision/networks/lists.hpp"

namespace numcore::networks {

/// What the structure depends on: states of each node (below 1 unknown) and its parents, without the node
/// itself and without repetition, in the order of its conditional table.
struct Network {
    std::vector<Number> sizes;
    Lists parents;

    std::size_t n() const { return sizes.size(); }
};

/// Product of the sizes of some nodes; unknown sizes are left out, an empty product is 1.
double weightOf(std::span<const Number> nodes, std::span<const Number> sizes);

/// An undirected graph: adjacency as bits for questions, as lists (in no order) for walks.
class Graph {
  public:
    explicit Graph(std::size_t n) : nWords_((n + 63) / 64), bits_(n * nWords_), neighbours_(n) {}

    std::size_t n() const { return neighbours_.size(); }
    std::size_t nEdges() const { return nEdges_; }
    bool hasEdge(Number a, Number b) const {
        return (bits_[word(a, b)] >> (static_cast<unsigned>(b) % 64) & 1U) != 0;
    }
    const std::vector<Number>& neighbours(Number a) const { return neighbours_[static_cast<std::size_t>(a)]; }
    /// Adds an edge; false when it is there already or joins a node with itself.
    bool join(Number a, Number b);
    /// Takes a node out of the lists of its neighbours. Its own list and the bits stay.
    void withdraw(Number a);
    /// Calls visit(m) for each listed neighbour that two nodes share.
    template <class Visit>
    void forEachShared(Number a, Number b, const Visit& visit) const {
        if (neighbours(a).size() > neighbours(b).size()) std::swap(a, b);
        for (const Number m : neighbours(a))
            if (hasEdge(b, m)) visit(m);
    }

  private:
    std::size_t word(Number a, Number b) const {
        return static_cast<std::size_t>(a) * nWords_ + static_cast<std::size_t>(b) / 64;
    }

    std::size_t nWords_;
    std::size_t nEdges_ = 0;
    std::vector<std::uint64_t> bits_;
    std::vector<std::vector<Number>> neighbours_;
};

/// Parents and children joined, and the parents of each node with one another; no directions.
Graph moralGraph(const Network& network);

/// Bytes that a graph of n nodes takes in adjacency bits.
double graphBytes(double n);

/// True when the arcs form no directed cycle.
bool isAcyclic(const Network& network);

}  // namespace numcore::networks
