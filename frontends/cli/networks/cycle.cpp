#include "cli/networks/cycle.hpp"

#include <algorithm>

namespace numcore::cli {

namespace {

/// Which nodes are left when nodes without parents are taken away as long as there are any.
std::vector<bool> nodesLeft(const Network& network) {
    const std::size_t n = network.nodes.size();
    std::vector<std::vector<std::size_t>> children(n);
    std::vector<std::size_t> nParents(n);
    std::vector<std::size_t> free;
    free.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        nParents[i] = network.nodes[i].parents.size();
        for (const std::size_t parent : network.nodes[i].parents) children[parent].push_back(i);
        if (nParents[i] == 0) free.push_back(i);
    }
    std::vector<bool> left(n, true);
    while (!free.empty()) {
        const std::size_t node = free.back();
        free.pop_back();
        left[node] = false;
        for (const std::size_t child : children[node]) {
            if (--nParents[child] == 0) free.push_back(child);
        }
    }
    return left;
}

}  // namespace

std::vector<std::size_t> findCycle(const Network& network) {
    const std::vector<bool> left = nodesLeft(network);
    const auto first = std::ranges::find(left, true);
    if (first == left.end()) return {};
    // Every node left has a parent left: going from parent to parent comes back to where it was.
    std::vector<std::size_t> path;
    std::vector<bool> visited(left.size(), false);
    auto node = static_cast<std::size_t>(first - left.begin());
    while (!visited[node]) {
        visited[node] = true;
        path.push_back(node);
        node = *std::ranges::find_if(network.nodes[node].parents,
                                     [&](std::size_t parent) { return left[parent]; });
    }
    path.erase(path.begin(), std::ranges::find(path, node));
    std::ranges::reverse(path);
    return path;
}

}  // namespace numcore::cli
