#include "decision/networks/graph.hpp"

#include <algorithm>

namespace numcore::networks {

double weightOf(std::span<const Number> nodes, std::span<const Number> sizes) {
    double weight = 1.0;
    for (const Number node : nodes) {
        const Number size = sizes[static_cast<std::size_t>(node)];
        if (size > 0) weight *= size;
    }
    return weight;
}

bool Graph::join(Number a, Number b) {
    if (a == b || hasEdge(a, b)) return false;
    bits_[word(a, b)] |= std::uint64_t{1} << (static_cast<unsigned>(b) % 64);
    bits_[word(b, a)] |= std::uint64_t{1} << (static_cast<unsigned>(a) % 64);
    neighbours_[static_cast<std::size_t>(a)].push_back(b);
    neighbours_[static_cast<std::size_t>(b)].push_back(a);
    ++nEdges_;
    return true;
}

void Graph::withdraw(Number a) {
    for (const Number b : neighbours(a)) {
        auto& list = neighbours_[static_cast<std::size_t>(b)];
        *std::ranges::find(list, a) = list.back();
        list.pop_back();
    }
}

Graph moralGraph(const Network& network) {
    Graph graph(network.n());
    for (std::size_t node = 0; node < network.n(); ++node) {
        const auto parents = network.parents[node];
        for (std::size_t i = 0; i < parents.size(); ++i) {
            graph.join(parents[i], static_cast<Number>(node));
            for (std::size_t j = 0; j < i; ++j) graph.join(parents[i], parents[j]);
        }
    }
    return graph;
}

double graphBytes(double n) {
    return n * n / 8.0;
}

bool isAcyclic(const Network& network) {
    // Nodes whose parents are all taken are taken; on a cycle none ever is.
    const Lists children = listsHolding(network.parents, network.n());
    std::vector<std::size_t> nWaitingFor(network.n());
    std::vector<Number> ready;
    ready.reserve(network.n());
    for (std::size_t node = 0; node < network.n(); ++node) {
        nWaitingFor[node] = network.parents[node].size();
        if (nWaitingFor[node] == 0) ready.push_back(static_cast<Number>(node));
    }
    for (std::size_t taken = 0; taken < ready.size(); ++taken) {
        for (const Number child : children[ready[taken]])
            if (--nWaitingFor[static_cast<std::size_t>(child)] == 0) ready.push_back(child);
    }
    return ready.size() == network.n();
}

}  // namespace numcore::networks
