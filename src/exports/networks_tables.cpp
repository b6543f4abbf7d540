// Exported routines of Bayesian networks over column sets: tables of probabilities.
#include <algorithm>

#include "decision/networks/labels.hpp"
#include "decision/networks/queries.hpp"
#include "exports/network_columns.hpp"

namespace numcore {

using namespace networks;

namespace {

/// Sums of a table onto some of its members, in their order.
std::vector<double> sumsOnto(const ProbabilityTable& table, std::span<const Number> nodes) {
    const Projection projection(table.axes, nodes);
    std::vector<double> out(projection.partCells());
    projection.sum(table.cells.data(), out.data());
    return out;
}

void writeSums(const std::optional<ProbabilityTable>& table, std::span<const Number> nodes, cBYN_Table& out) {
    writeCells(table && table->has(nodes) ? sumsOnto(*table, nodes) : std::vector<double>(), out);
}

/// Members that are not among some nodes.
std::vector<Number> othersOf(std::span<const Number> members, std::span<const Number> nodes) {
    std::vector<Number> out;
    std::ranges::copy_if(members, std::back_inserter(out),
                         [&](Number member) { return std::ranges::find(nodes, member) == nodes.end(); });
    return out;
}

std::vector<Number> listOf(const cBYN_Table& nodes) {
    return membersOf(vectorOf(nodes), INT32_MAX);
}

/// Two tables that belong together: one over some members of the other. Nothing when they do not fit.
struct Pair {
    Projection projection;
    double* whole;
    const double* part;
};
std::optional<Pair> pairOf(const matrix<std::int32_t>& sizes, const cBYN_Table& members, cBYN_Table& table,
                           const cBYN_Table& partMembers, const cBYN_Table& partTable) {
    const auto whole = readTable(sizes, members, table);
    const auto part = readTable(sizes, partMembers, partTable);
    if (!whole || !part || !whole->has(part->axes.nodes)) return {};
    return Pair{Projection(whole->axes, part->axes.nodes), table.column(0).data(), part->cells.data()};
}

/// Where each joint state of some axes stands in the whole table, the others in their first state.
std::vector<std::size_t> positionsOf(const Axes& whole, std::span<const Number> nodes) {
    std::vector<std::size_t> positions{0};
    for (const Number node : nodes) {
        std::size_t stride = 1;
        std::size_t axis = whole.nodes.size() - 1;
        for (; whole.nodes[axis] != node; --axis) stride *= static_cast<std::size_t>(whole.extents[axis]);
        std::vector<std::size_t> finer;
        finer.reserve(positions.size() * static_cast<std::size_t>(whole.extents[axis]));
        for (const std::size_t position : positions)
            for (std::size_t state = 0; state < static_cast<std::size_t>(whole.extents[axis]); ++state)
                finer.push_back(position + state * stride);
        positions = std::move(finer);
    }
    return positions;
}

std::vector<double> conditionalTable(const std::optional<ProbabilityTable>& table, std::int32_t node,
                                     const cBYN_Table& given) {
    std::vector<Number> nodes = listOf(given);
    nodes.push_back(node - 1);
    if (node < 1 || !table || !table->has(nodes)) return {};
    std::vector<double> cells = sumsOnto(*table, nodes);
    conditionOn(
        cells, static_cast<std::size_t>(std::max<Number>(table->sizes[static_cast<std::size_t>(node - 1)], 1)));
    return cells;
}

void writeLabels(const std::vector<std::u16string>& texts, cST_MVect<u16string>& out) {
    out = cST_MVect<u16string>(static_cast<std::int32_t>(texts.size()), 1, u16string());
    for (std::size_t i = 0; i < texts.size(); ++i)
        out.column(0)[static_cast<std::int32_t>(i)] = u16string(texts[i]);
}

/// A label for each joint state of some nodes; none when there are too many or a node has no size.
std::vector<std::u16string> jointLabels(std::span<const Number> nodes, std::span<const Number> sizes,
                                        const Names& names) {
    std::vector<std::u16string> texts;
    const auto isUnknown = [&](Number node) { return static_cast<std::size_t>(node) >= sizes.size(); };
    if (std::ranges::any_of(nodes, isUnknown) || weightOf(nodes, sizes) > INT32_MAX) return texts;
    const Axes axes = axesOf(nodes, sizes);
    texts.reserve(axes.nCells());
    for (std::size_t cell = 0; cell < axes.nCells(); ++cell) texts.push_back(names.jointState(axes, cell));
    return texts;
}

}  // namespace

void BYNRun_Init_pot_ST(std::int32_t n, std::int32_t nCliques, const matrix<std::int32_t>& sizes,
                        const cBYN_Table& cliques, cBYN_Potentials& potentials, matrix<std::int32_t>& lengths) {
    const std::int32_t nNodes = orderOf(n, cliques);
    const Lists lists = readCliques(nNodes, nCliques, cliques);
    const std::vector<Number> known = readSizes(nNodes, sizes);
    const auto count = static_cast<std::int32_t>(lists.count());
    potentials = cBYN_Potentials(count);
    lengths = matrix<std::int32_t>(count, 1, 0);
    for (std::int32_t c = 0; c < count; ++c) {
        const double weight = weightOf(lists[c], known);
        if (weight > INT32_MAX) continue;
        lengths[c] = static_cast<std::int32_t>(weight);
        potentials.setSlice(c, std::make_unique<cBYN_Table>(lengths[c], 1, 1.0));
    }
}

void BYNRun_multiply_by_pot_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members, cBYN_Table& table,
                               const cBYN_Table& family, const cBYN_Table& conditional) {
    const auto pair = pairOf(sizes, members, table, family, conditional);
    if (pair) pair->projection.multiply(pair->whole, pair->part);
}

void BYNRun_Marginalize_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                           const cBYN_Table& table, const cBYN_Table& onto, cBYN_Table& out) {
    writeSums(readTable(sizes, members, table), listOf(onto), out);
}

void BYNRun_multiply_by_sep_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members, cBYN_Table& table,
                               const cBYN_Table& separator, const cBYN_Table& message,
                               std::int16_t /*collect*/) {
    BYNRun_multiply_by_pot_ST(sizes, members, table, separator, message);
}

void BYNRun_multiply_by_sep_BIS_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                   cBYN_Table& table, const cBYN_Table& separator, const cBYN_Table& message,
                                   std::int16_t /*collect*/) {
    const auto pair = pairOf(sizes, members, table, separator, message);
    if (!pair) return;
    const Axes axes = readTable(sizes, members, table)->axes;
    const std::vector<Number> nodes = listOf(separator);
    const std::vector<std::size_t> below = positionsOf(axes, othersOf(axes.nodes, nodes));
    const std::vector<std::size_t> cells = positionsOf(axes, nodes);
    for (std::size_t s = 0; s < cells.size(); ++s)
        for (const std::size_t position : below) pair->whole[cells[s] + position] *= pair->part[s];
}

void BYNRun_divide_by_sep_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members, cBYN_Table& table,
                             const cBYN_Table& separator, const cBYN_Table& old) {
    const auto pair = pairOf(sizes, members, table, separator, old);
    if (!pair) return;
    // Spread over the table's own cells, the old table divides them one by one.
    std::vector<double> spread(pair->projection.wholeCells(), 1.0);
    pair->projection.multiply(spread.data(), pair->part);
    const std::span cells(pair->whole, spread.size());
    divideInto(cells, spread);
    std::ranges::copy(spread, cells.begin());
}

void BYNRun_Sum2Nodes_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members, const cBYN_Table& table,
                         std::int32_t first, std::int32_t second, cBYN_Table& out) {
    const Number nodes[] = {std::max(first, 0) - 1, std::max(second, 0) - 1};
    writeSums(readTable(sizes, members, table), nodes, out);
}

void BYNRun_SumNodes_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members, const cBYN_Table& table,
                        const cBYN_Table& nodes, cBYN_Table& out) {
    writeSums(readTable(sizes, members, table), othersOf(listOf(members), listOf(nodes)), out);
}

void BYNRun_SumChildNode_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                            const cBYN_Table& table, std::int32_t child, cBYN_Table& out) {
    const Number node = std::max(child, 0) - 1;
    writeSums(readTable(sizes, members, table), othersOf(listOf(members), std::span(&node, 1)), out);
}

void BYNRun_Normalise_ST(std::int32_t nCliques, const matrix<std::int32_t>& lengths,
                         const cBYN_Potentials& tables, cBYN_Potentials& out) {
    double total = 0.0;
    for (std::int32_t c = 0; c < std::min({nCliques, tables.count(), out.count()}); ++c) {
        if (tables.slice(c) == nullptr || out.slice(c) == nullptr) continue;
        const auto all = vectorOf(*tables.slice(c));
        const auto length = static_cast<std::size_t>(c < lengths.size() ? std::max(lengths[c], 0) : 0);
        const auto cells = all.first(std::min(all.size(), length));
        for (const double cell : cells) total += cell;
        // Kept: a total that is not above 0 is not reset, and its table stays as it was.
        if (!(total > 0.0)) continue;
        for (std::size_t i = 0; i < cells.size(); ++i)
            out.slice(c)->at(static_cast<std::int32_t>(i), 0) = cells[i] / total;
        total = 0.0;
    }
}

void BYNRun_CondTable_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members, const cBYN_Table& table,
                         std::int32_t node, const cBYN_Table& given, cBYN_Table& out) {
    writeCells(conditionalTable(readTable(sizes, members, table), node, given), out);
}

double BYNRun_ProbConditional_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                 const cBYN_Table& table, std::int32_t node, std::int32_t state,
                                 const cBYN_Table& given, const cBYN_Table& givenStates) {
    const std::vector<double> cells = conditionalTable(readTable(sizes, members, table), node, given);
    const std::vector<Number> states = listOf(givenStates);
    std::vector<Number> nodes = listOf(given);
    if (cells.empty() || states.size() != nodes.size()) return kMissing;
    nodes.push_back(node - 1);
    std::size_t cell = 0;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const Number size = std::max(sizes[nodes[i]], 1);
        const Number chosen = i < states.size() ? states[i] : std::max(state, 0) - 1;
        if (chosen < 0 || chosen >= size) return kMissing;
        cell = cell * static_cast<std::size_t>(size) + static_cast<std::size_t>(chosen);
    }
    return cells[cell];
}

void BYNRun_Marg_Table_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members, const cBYN_Table& table,
                          std::int32_t node, cBYN_Table& out) {
    const Number nodes[] = {std::max(node, 0) - 1};
    writeSums(readTable(sizes, members, table), nodes, out);
    if (out.columnCount() > 0) normalise(out.column(0).span());
}

void BYNRun_CondLabels_ST(const matrix<std::int32_t>& sizes, std::int32_t node, const cBYN_Table& given,
                          const matrix<u16string>& nodeNames, const matrix<u16string>& stateNames,
                          cST_MVect<u16string>& rowLabels, cST_MVect<u16string>& columnLabels) {
    const std::vector<Number> known = readSizes(sizes.size(), sizes);
    const Names names(nodeNames, stateNames, known);
    std::vector<std::u16string> states;
    if (node >= 1 && node <= sizes.size())
        for (Number s = 0; s < std::max(sizes[node - 1], 1); ++s) states.push_back(names.state(node - 1, s));
    writeLabels(jointLabels(listOf(given), known, names), rowLabels);
    writeLabels(states, columnLabels);
}

void BYNRun_JPDLabels_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                         const matrix<u16string>& nodeNames, const matrix<u16string>& stateNames,
                         cST_MVect<u16string>& labels) {
    const std::vector<Number> known = readSizes(sizes.size(), sizes);
    writeLabels(jointLabels(listOf(members), known, Names(nodeNames, stateNames, known)), labels);
}

}  // namespace numcore
