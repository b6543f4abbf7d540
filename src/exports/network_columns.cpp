#include "exports/network_columns.hpp"

#include <algorithm>

#include "decision/networks/junction_tree.hpp"
#include "decision/networks/node_keys.hpp"

namespace numcore::networks {

void clearTo(cBYN_Table& table, std::int32_t rows, std::int32_t columns) {
    bool fits = table.columnCount() == columns && columns > 0;
    for (std::int32_t c = 0; fits && c < columns; ++c) fits = table.column(c).size() >= rows;
    if (!fits) {
        table = cBYN_Table(rows, columns, 0.0);
        return;
    }
    for (std::int32_t c = 0; c < columns; ++c) std::ranges::fill(table.column(c).span(), 0.0);
}

std::span<const double> vectorOf(const cBYN_Table& table) {
    return table.columnCount() > 0 ? table.column(0).span() : std::span<const double>();
}

void writeVector(std::span<const Number> numbers, std::int32_t n, cBYN_Table& out) {
    clearTo(out, n, 1);
    for (std::size_t i = 0; i < numbers.size(); ++i) out.at(static_cast<std::int32_t>(i), 0) = numbers[i] + 1;
}

void writeCells(std::span<const double> cells, cBYN_Table& out) {
    clearTo(out, static_cast<std::int32_t>(cells.size()), 1);
    for (std::size_t i = 0; i < cells.size(); ++i) out.at(static_cast<std::int32_t>(i), 0) = cells[i];
}

std::vector<Number> membersOf(std::span<const double> cells, std::int32_t n) {
    std::vector<Number> members;
    for (const double cell : cells) {
        const std::int32_t number = wholeNumber(cell);
        if (number >= 1 && number <= n) members.push_back(number - 1);
    }
    return members;
}

std::int32_t orderOf(std::int32_t n, const cBYN_Table& matrix) {
    return std::clamp(n, 0, matrix.columnCount());
}

Graph readGraph(std::int32_t n, const cBYN_Table& table) {
    Graph graph(static_cast<std::size_t>(n));
    for (std::int32_t j = 0; j < n; ++j)
        for (std::int32_t i = 0; i < n; ++i)
            if (table.column(j)[i] == 1.0) graph.join(i, j);
    return graph;
}

void writeGraph(const Graph& graph, cBYN_Table& table) {
    const auto n = static_cast<Number>(graph.n());
    clearTo(table, n, n);
    for (Number j = 0; j < n; ++j)
        for (Number i = 0; i < n; ++i)
            if (graph.hasEdge(i, j)) table.column(j)[i] = 1.0;
}

void writeNeighbours(const Graph& graph, cBYN_Table& table) {
    const auto n = static_cast<Number>(graph.n());
    clearTo(table, n, n);
    for (Number j = 0; j < n; ++j)
        for (Number i = 0; i < n; ++i)
            if (graph.hasEdge(i, j)) table.column(j)[i] = j + 1;
}

Lists readCliques(std::int32_t n, std::int32_t nCliques, const cBYN_Table& cliques) {
    Lists out;
    const std::int32_t nRows = cliques.columnCount() > 0 ? cliques.column(0).size() : 0;
    std::vector<double> row;
    for (std::int32_t i = 0; i < std::min(nCliques, nRows); ++i) {
        row.clear();
        for (std::int32_t j = 0; j < cliques.columnCount(); ++j) row.push_back(cliques.column(j)[i]);
        std::vector<Number> members = membersOf(row, n);
        std::ranges::sort(members);
        members.erase(std::unique(members.begin(), members.end()), members.end());
        out.append(members);
    }
    return out;
}

void writeCliques(const Lists& cliques, std::int32_t n, cBYN_Table& out) {
    clearTo(out, n, n);
    for (std::size_t i = 0; i < cliques.count(); ++i)
        for (const Number node : cliques[i]) out.column(node)[static_cast<std::int32_t>(i)] = node + 1;
}

std::vector<Number> readSizes(std::int32_t n, const matrix<std::int32_t>& sizes) {
    std::vector<Number> out(static_cast<std::size_t>(n), 0);
    for (std::int32_t i = 0; i < std::min(n, sizes.size()); ++i) out[static_cast<std::size_t>(i)] = sizes[i];
    return out;
}

bool ProbabilityTable::has(std::span<const Number> nodes) const {
    std::vector<Number> sorted(nodes.begin(), nodes.end());
    std::ranges::sort(sorted);
    return std::ranges::adjacent_find(sorted) == sorted.end() && std::ranges::all_of(nodes, [&](Number node) {
               return std::ranges::find(axes.nodes, node) != axes.nodes.end();
           });
}

std::optional<ProbabilityTable> readTable(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                          const cBYN_Table& table) {
    const std::vector<Number> nodes = membersOf(vectorOf(members), INT32_MAX);
    if (std::ranges::any_of(nodes, [&](Number node) { return node >= sizes.size(); })) return {};
    ProbabilityTable out{{}, readSizes(sizes.size(), sizes), vectorOf(table)};
    if (weightOf(nodes, out.sizes) > static_cast<double>(out.cells.size())) return {};
    out.axes = axesOf(nodes, out.sizes);
    if (!out.has(nodes)) return {};
    out.cells = out.cells.first(out.axes.nCells());
    return out;
}

}  // namespace numcore::networks
