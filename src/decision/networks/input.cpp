#include "decision/networks/input.hpp"

#include <algorithm>
#include <cmath>

#include "decision/networks/node_keys.hpp"

namespace numcore::networks {
namespace {

bool isUsableCell(double cell) {
    return cell >= 0.0 && std::isfinite(cell);
}

/// Cells of a column set, column by column.
std::vector<double> cellsOf(const cST_MVect<double>& table) {
    std::vector<double> cells;
    for (std::int32_t c = 0; c < table.columnCount(); ++c) {
        const auto column = table.cells(c);
        cells.insert(cells.end(), column.begin(), column.end());
    }
    return cells;
}

/// The run of n cells from a position on; empty when they are not all there.
std::vector<double> runOf(const matrix<double>& cells, std::size_t start, double n) {
    const auto all = cells.span();
    if (start > all.size() || n > static_cast<double>(all.size() - start)) return {};
    const auto run = all.subspan(start, static_cast<std::size_t>(n));
    return {run.begin(), run.end()};
}

bool addNodes(const cBYN_Param& param, std::int32_t n, std::int32_t query, std::int32_t column,
              std::vector<Number>& nodes) {
    const matrix<double>* slice = param.queries.slice(query);
    for (std::int32_t row = 0; slice != nullptr && row < slice->rows() && column < slice->columns(); ++row) {
        const double cell = slice->at(row, column);
        if (!(cell >= 1.0)) continue;
        const std::int32_t node = wholeNumber(cell);
        if (node == 0 || node > n) return false;
        nodes.push_back(node - 1);
    }
    return true;
}

}  // namespace

std::int32_t nodeCount(const cBYN_Param& param) {
    return param.n >= 1 && param.n <= param.sizes.size() ? param.n : 0;
}

Network readNetwork(const cST_DataSet& data, const cBYN_Param& param, std::int32_t n) {
    Network network;
    const auto sizes = param.sizes.span().first(static_cast<std::size_t>(n));
    network.sizes.assign(sizes.begin(), sizes.end());
    network.parents = readParents(param.parents, NodeKeys(*data.strings1, n), n);
    return network;
}

bool hasKnownSizes(const Network& network) {
    return std::ranges::all_of(network.sizes, [](Number size) { return size >= 1; });
}

std::int32_t readTables(const cST_DataSet& data, const cBYN_Param& param, const Network& network,
                        std::vector<double>& out) {
    const auto& listed = data.numericTables.tables;
    out.clear();
    for (std::size_t node = 0; node < network.n(); ++node) {
        const double nCells = weightOf(familyOf(network, node), network.sizes);
        std::vector<double> cells;
        if (listed.empty()) {
            cells = runOf(param.tables, out.size(), nCells);
        } else if (node < listed.size()) {
            cells = cellsOf(*listed[node]);
        }
        if (static_cast<double>(cells.size()) != nCells || !std::ranges::all_of(cells, isUsableCell))
            return NUMCORE_BYN_BAD_TABLE;
        out.insert(out.end(), cells.begin(), cells.end());
    }
    return NUMCORE_BYN_DONE;
}

std::int32_t readEvidence(const cBYN_Param& param, const Network& network, std::vector<double>& out) {
    const auto isObserved = [](std::int32_t state) { return state > 0; };
    out.clear();
    if (param.likelihoods.size() == 0 && std::ranges::none_of(param.observed.span(), isObserved))
        return NUMCORE_BYN_DONE;
    for (std::size_t node = 0; node < network.n(); ++node) {
        const auto at = static_cast<std::int32_t>(node);
        const std::int32_t observed = at < param.observed.size() ? param.observed[at] : 0;
        if (observed > network.sizes[node]) return NUMCORE_BYN_BAD_EVIDENCE;
        for (std::int32_t state = 1; state <= network.sizes[node]; ++state) {
            const std::size_t cell = out.size();
            double likelihood = 1.0;
            if (cell < param.likelihoods.span().size() && param.likelihoods.span()[cell] != kMissing)
                likelihood = param.likelihoods.span()[cell];
            if (!isUsableCell(likelihood)) return NUMCORE_BYN_BAD_EVIDENCE;
            out.push_back(observed <= 0 || observed == state ? likelihood : 0.0);
        }
    }
    return NUMCORE_BYN_DONE;
}

Query readQuery(const cBYN_Param& param, const Network& network, std::int32_t query) {
    Query out;
    const auto n = static_cast<std::int32_t>(network.n());
    out.isUsable = addNodes(param, n, query, 0, out.nodes) && addNodes(param, n, query, 1, out.given);
    std::vector<Number> all = out.given;
    all.insert(all.end(), out.nodes.begin(), out.nodes.end());
    std::ranges::sort(all);
    out.isUsable = out.isUsable && !out.nodes.empty() && std::ranges::adjacent_find(all) == all.end();
    return out;
}

}  // namespace numcore::networks
