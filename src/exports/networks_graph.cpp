// Exported routines of Bayesian networks over column sets: sets, graphs, trees, cliques.
#include <algorithm>
#include <numeric>

#include "decision/networks/elimination.hpp"
#include "decision/networks/exponential.hpp"
#include "decision/networks/junction_tree.hpp"
#include "decision/networks/node_keys.hpp"
#include "decision/networks/triangulation.hpp"
#include "exports/network_columns.hpp"

namespace numcore {

using namespace networks;

namespace {

std::span<const double> firstCells(const cBYN_Table& x, std::int32_t n) {
    const auto cells = vectorOf(x);
    return cells.first(std::min(cells.size(), static_cast<std::size_t>(std::max(n, 0))));
}

std::vector<Number> setOf(std::span<const double> cells) {
    return membersOf(cells, INT32_MAX);
}

bool holds(std::span<const Number> set, Number node) {
    return std::ranges::find(set, node) != set.end();
}

/// Nodes that lists of parents and keys can speak of: n of them, or fewer.
std::int32_t nodesOf(std::int32_t n, const matrix<double>& parents, const cST_MVect<u16string>& labels) {
    const std::int32_t nLabels = labels.columnCount() > 0 ? labels.column(0).size() : 0;
    return std::clamp(n, 0, std::max(nLabels, parents.columns()));
}

Lists parentsOf(std::int32_t n, const matrix<double>& parents, const cST_MVect<u16string>& labels) {
    return readParents(parents, NodeKeys(labels, n), n);
}

/// Numbers of a list that are below n, each once.
std::vector<Number> differentOf(std::span<const double> cells, std::int32_t n) {
    std::vector<Number> out;
    std::vector<char> isThere(static_cast<std::size_t>(n), 0);
    for (const Number number : membersOf(cells, n))
        if (std::exchange(isThere[static_cast<std::size_t>(number)], 1) == 0) out.push_back(number);
    return out;
}

void writeEdges(std::span<const std::pair<Number, Number>> edges, std::int32_t n, cBYN_Table& out) {
    clearTo(out, n, n);
    for (const auto& [a, b] : edges) out.column(a)[b] = out.column(b)[a] = 1.0;
}

std::vector<double> weightsOf(const Lists& cliques, std::span<const Number> sizes) {
    std::vector<double> weights;
    weights.reserve(cliques.count());
    for (std::size_t i = 0; i < cliques.count(); ++i) weights.push_back(weightOf(cliques[i], sizes));
    return weights;
}

void writeTree(std::span<const Join> joins, std::int32_t nCliques, cBYN_Table& out) {
    clearTo(out, nCliques, nCliques);
    for (const Join& join : joins) out.column(join.from)[join.to] = out.column(join.to)[join.from] = 1.0;
}

/// Neighbours of each clique in a tree matrix: row and column together.
Lists readTree(std::int32_t nCliques, const cBYN_Table& tree) {
    Lists out;
    std::vector<Number> list;
    for (std::int32_t i = 0; i < nCliques; ++i) {
        list.clear();
        for (std::int32_t j = 0; j < nCliques; ++j)
            if (i != j && (tree.column(j)[i] == 1.0 || tree.column(i)[j] == 1.0)) list.push_back(j);
        out.append(list);
    }
    return out;
}

std::vector<Number> rowOf(std::int32_t n, const cBYN_Table& cliques, std::int32_t row) {
    const Lists lists = readCliques(n, row, cliques);
    if (row < 1 || lists.count() < static_cast<std::size_t>(row)) return {};
    const auto members = lists[row - 1];
    return {members.begin(), members.end()};
}

/// Positions, from 0, of some nodes in a list.
std::vector<Number> positionsIn(std::span<const Number> list, std::span<const Number> nodes) {
    std::vector<Number> out;
    out.reserve(nodes.size());
    for (const Number node : nodes)
        out.push_back(static_cast<Number>(std::ranges::find(list, node) - list.begin()));
    return out;
}

void padeOf(const matrix<double>& a, std::int32_t degree, matrix<double>& u, matrix<double>& v) {
    if (a.rows() >= 1 && a.rows() == a.columns()) padeParts(a, degree, u, v);
}

}  // namespace

std::int32_t GetCorrelatedIndex_ST(const std::u16string& key, const cST_MVect<u16string>& labels,
                                   std::int32_t count) {
    if (labels.columnCount() < 1) return 0;
    // Kept: of labels that repeat the last one counts.
    for (std::int32_t i = std::min(count, labels.column(0).size()); i >= 1; --i)
        if (labels.column(0)[i - 1] == key) return i;
    return 0;
}

void Myunion_ST(const cBYN_Table& a, const cBYN_Table& b, cBYN_Table& out) {
    std::vector<Number> members;
    for (const cBYN_Table* set : {&a, &b})
        for (const Number node : setOf(vectorOf(*set)))
            if (!holds(members, node)) members.push_back(node);
    const std::size_t n = std::max({vectorOf(a).size(), vectorOf(b).size(), members.size()});
    writeVector(members, static_cast<std::int32_t>(n), out);
}

void Myintersect_ST(std::int32_t n, const cBYN_Table& a, const cBYN_Table& b, cBYN_Table& out) {
    const std::vector<Number> others = setOf(firstCells(b, n));
    std::vector<Number> members;
    for (const Number node : setOf(firstCells(a, n)))
        if (holds(others, node)) members.push_back(node);
    writeVector(members, static_cast<std::int32_t>(firstCells(a, n).size()), out);
}

std::int16_t Mysubset_ST(std::int32_t n, const cBYN_Table& a, const cBYN_Table& b) {
    const auto cells = firstCells(a, n);
    // Kept: entries that cancel out are an empty set too.
    if (std::accumulate(cells.begin(), cells.end(), 0.0) == 0.0) return NUMCORE_FALSE;
    const std::vector<Number> first = setOf(cells);
    const std::vector<Number> second = setOf(firstCells(b, n));
    const std::size_t fewer = std::min(first.size(), second.size());
    if (fewer < 1) return NUMCORE_FALSE;
    std::size_t nShared = 0;
    for (const Number node : first) nShared += static_cast<std::size_t>(std::ranges::count(second, node));
    // Kept: it does not matter which of the two holds the other.
    return nShared == fewer ? NUMCORE_TRUE : NUMCORE_FALSE;
}

std::int32_t V_MinPos_ST(const cBYN_Table& x, std::int32_t n) {
    const auto cells = firstCells(x, n);
    return cells.empty() ? 0 : static_cast<std::int32_t>(std::ranges::min_element(cells) - cells.begin()) + 1;
}

std::int32_t V_NonZeroNb_ST(const cBYN_Table& x, std::int32_t n) {
    return static_cast<std::int32_t>(
        std::ranges::count_if(firstCells(x, n), [](double cell) { return cell > 0.0; }));
}

std::int32_t V_NbValue(const matrix<double>& x, std::int32_t n, double value) {
    const auto cells = x.span().first(static_cast<std::size_t>(std::clamp(n, 0, x.size())));
    return static_cast<std::int32_t>(std::ranges::count(cells, value));
}

void F_3(const matrix<double>& a, matrix<double>& u, matrix<double>& v) {
    padeOf(a, 3, u, v);
}
void F_5(const matrix<double>& a, matrix<double>& u, matrix<double>& v) {
    padeOf(a, 5, u, v);
}
void F_7(const matrix<double>& a, matrix<double>& u, matrix<double>& v) {
    padeOf(a, 7, u, v);
}
void F_9(const matrix<double>& a, matrix<double>& u, matrix<double>& v) {
    padeOf(a, 9, u, v);
}

void PadeApproximantOfDegree(const matrix<double>& a, std::int32_t degree, matrix<double>& out) {
    out = padeApproximant(a, degree);
}

void BYNRun_dag_Compute_ST(std::int32_t n, const matrix<double>& parents, const cST_MVect<u16string>& labels,
                           cBYN_Table& dag) {
    const std::int32_t nNodes = nodesOf(n, parents, labels);
    const Lists lists = parentsOf(nNodes, parents, labels);
    clearTo(dag, nNodes, nNodes);
    for (std::int32_t child = 0; child < nNodes; ++child)
        for (const Number parent : lists[child]) dag.column(child)[parent] = 1.0;
}

void BYNRun_moralize_ST(std::int32_t n, const cBYN_Table& dag, const matrix<double>& parents,
                        const cST_MVect<u16string>& labels, cBYN_Table& moral) {
    const std::int32_t nNodes = orderOf(n, dag);
    Graph graph = readGraph(nNodes, dag);
    const Lists lists = parentsOf(nNodes, parents, labels);
    for (std::int32_t node = 0; node < nNodes; ++node)
        for (const Number a : lists[node])
            for (const Number b : lists[node]) graph.join(a, b);
    writeGraph(graph, moral);
}

void BYNRun_best_first_elim_order_Compute_ST(std::int32_t n, const cBYN_Table& graph,
                                             const matrix<std::int32_t>& sizes, const cBYN_Table& stage,
                                             cBYN_Table& rows, cBYN_Table& columns, cBYN_Table& order) {
    const std::int32_t nNodes = orderOf(n, graph);
    const std::vector<Number> candidates = differentOf(vectorOf(stage), nNodes);
    std::vector<double> stages(static_cast<std::size_t>(nNodes), 1.0);
    for (const Number node : candidates) stages[static_cast<std::size_t>(node)] = 0.0;
    const Elimination elimination =
        bestFirstOrder(readGraph(nNodes, graph), readSizes(nNodes, sizes), candidates.size(), stages);
    writeVector(elimination.order, nNodes, order);
    writeNeighbours(elimination.graph, rows);
    writeNeighbours(elimination.graph, columns);
}

void BYNRun_strong_elim_order_Compute_ST(std::int32_t n, const cBYN_Table& graph,
                                         const matrix<std::int32_t>& sizes, const cBYN_Table& stages,
                                         cBYN_Table& order) {
    const std::int32_t nNodes = orderOf(n, graph);
    std::vector<double> numbers(static_cast<std::size_t>(nNodes), 0.0);
    for (std::size_t i = 0; i < std::min(numbers.size(), vectorOf(stages).size()); ++i)
        if (vectorOf(stages)[i] == vectorOf(stages)[i]) numbers[i] = vectorOf(stages)[i];
    const Elimination elimination =
        bestFirstOrder(readGraph(nNodes, graph), readSizes(nNodes, sizes), numbers.size(), numbers);
    writeVector(elimination.order, nNodes, order);
}

void BYNRun_triangulate_Compute_ST(std::int32_t n, const cBYN_Table& moral, const cBYN_Table& order,
                                   cBYN_Table& rows, cBYN_Table& columns, cBYN_Table& cliques,
                                   cBYN_Table& fill) {
    const std::int32_t nNodes = orderOf(n, moral);
    const Triangulation found = triangulate(readGraph(nNodes, moral), differentOf(vectorOf(order), nNodes));
    writeCliques(found.cliques, nNodes, cliques);
    writeEdges(found.fillEdges, nNodes, fill);
    writeNeighbours(found.graph, rows);
    writeNeighbours(found.graph, columns);
}

std::int32_t BYNRun_clq_size_ST(std::int32_t n, const cBYN_Table& cliques) {
    const Lists lists = readCliques(orderOf(n, cliques), n, cliques);
    std::int32_t nCliques = 0;
    for (std::size_t i = 0; i < lists.count(); ++i) nCliques += lists[i].empty() ? 0 : 1;
    return nCliques;
}

void BYNRun_cliques_to_jtree_ST(std::int32_t n, std::int32_t nCliques, const matrix<std::int32_t>& sizes,
                                const cBYN_Table& cliques, cBYN_Table& tree, cBYN_Table& closest,
                                cBYN_Table& joined) {
    const std::int32_t nNodes = orderOf(n, cliques);
    const Lists lists = readCliques(nNodes, nCliques, cliques);
    const auto count = static_cast<std::int32_t>(lists.count());
    const auto joins =
        joinCliques(lists, weightsOf(lists, readSizes(nNodes, sizes)), static_cast<std::size_t>(nNodes));
    writeTree(joins, count, tree);
    clearTo(closest, count, 1);
    clearTo(joined, count, 1);
    if (count > 0) joined.at(0, 0) = 1.0;
    for (std::size_t j = 0; j < joins.size(); ++j) {
        closest.at(joins[j].to, 0) = joins[j].from + 1;
        joined.at(static_cast<std::int32_t>(j) + 1, 0) = joins[j].to + 1;
    }
}

void BYNRun_dagtojtree_Compute_ST(std::int32_t n, const cBYN_Table& dag, const matrix<double>& parents,
                                  const cST_MVect<u16string>& labels, const matrix<std::int32_t>& sizes,
                                  cBYN_Table& order, cBYN_Table& cliques, cBYN_Table& fill, cBYN_Table& tree) {
    const std::int32_t nNodes = orderOf(n, dag);
    std::vector<Number> all(static_cast<std::size_t>(nNodes));
    for (std::int32_t i = 0; i < nNodes; ++i) all[static_cast<std::size_t>(i)] = i;
    cBYN_Table moral;
    cBYN_Table stage;
    cBYN_Table rows;
    cBYN_Table columns;
    cBYN_Table closest;
    cBYN_Table joined;
    BYNRun_moralize_ST(nNodes, dag, parents, labels, moral);
    writeVector(all, nNodes, stage);
    // The greedy order is the one in use; the constraints of the strong one would all be 0.
    BYNRun_best_first_elim_order_Compute_ST(nNodes, moral, sizes, stage, rows, columns, order);
    BYNRun_triangulate_Compute_ST(nNodes, moral, order, rows, columns, cliques, fill);
    BYNRun_cliques_to_jtree_ST(nNodes, BYNRun_clq_size_ST(nNodes, cliques), sizes, cliques, tree, closest,
                               joined);
}

void BYNRun_clq_contain_node_ST(std::int32_t n, std::int32_t nCliques, const cBYN_Table& cliques,
                                cBYN_Table& nodeClique) {
    const std::int32_t nNodes = orderOf(n, cliques);
    const Lists holding =
        listsHolding(readCliques(nNodes, nCliques, cliques), static_cast<std::size_t>(nNodes));
    clearTo(nodeClique, nNodes, 1);
    for (std::int32_t node = 0; node < nNodes; ++node)
        if (!holding[node].empty()) nodeClique.at(node, 0) = holding[node].front() + 1;
}

void BYNRun_mk_rooted_tree_ST(std::int32_t root, std::int32_t nCliques, const cBYN_Table& tree,
                              cBYN_Table& rooted, cBYN_Table& preorder, cBYN_Table& postorder) {
    const std::int32_t count = orderOf(nCliques, tree);
    clearTo(rooted, count, count);
    clearTo(preorder, count, 1);
    clearTo(postorder, count, 1);
    BYNRun_dfs2(root, 0, count, tree, rooted, preorder, postorder);
}

void BYNRun_dfs2(std::int32_t clique, std::int32_t from, std::int32_t nCliques, const cBYN_Table& tree,
                 cBYN_Table& rooted, cBYN_Table& preorder, cBYN_Table& postorder) {
    const std::int32_t count = orderOf(nCliques, tree);
    if (clique < 1 || clique > count) return;
    const Lists around = readTree(count, tree);
    // The way back is cut: the walk does not see the clique it came from.
    Lists reachable;
    for (std::int32_t i = 0; i < count; ++i) {
        std::vector<Number> list(around[i].begin(), around[i].end());
        std::erase(list, from - 1);
        reachable.append(list);
    }
    const RootedTree walk = walkFrom(clique - 1, reachable);
    for (const auto& [list, out] :
         {std::pair(&walk.preorder, &preorder), std::pair(&walk.postorder, &postorder)}) {
        std::int32_t at = V_NonZeroNb_ST(*out, count);
        for (const Number c : *list) out->at(at++, 0) = c + 1;
    }
    for (std::int32_t c = 0; c < count; ++c)
        if (walk.parents[static_cast<std::size_t>(c)] >= 0)
            rooted.at(walk.parents[static_cast<std::size_t>(c)], c) = 1.0;
}

std::int32_t BYNRun_jtree_inf_Compute_ST(std::int32_t n, const cBYN_Table& dag, const matrix<double>& parents,
                                         const cST_MVect<u16string>& labels, const matrix<std::int32_t>& sizes,
                                         cBYN_Table& order, cBYN_Table& cliques, cBYN_Table& tree,
                                         cBYN_Table& nodeClique, cBYN_Table& rooted, cBYN_Table& preorder,
                                         cBYN_Table& postorder) {
    const std::int32_t nNodes = orderOf(n, dag);
    cBYN_Table fill;
    BYNRun_dagtojtree_Compute_ST(nNodes, dag, parents, labels, sizes, order, cliques, fill, tree);
    const std::int32_t nCliques = BYNRun_clq_size_ST(nNodes, cliques);
    BYNRun_clq_contain_node_ST(nNodes, nCliques, cliques, nodeClique);
    const std::int32_t root = nNodes > 0 ? static_cast<std::int32_t>(nodeClique.at(nNodes - 1, 0)) : 0;
    BYNRun_mk_rooted_tree_ST(root, nCliques, tree, rooted, preorder, postorder);
    return nCliques;
}

void BYNRun_SeparatorNode(std::int32_t n, const cBYN_Table& cliques, std::int32_t a, std::int32_t b,
                          cBYN_Table& separator) {
    const std::int32_t nNodes = orderOf(n, cliques);
    writeVector(sharedMembers(rowOf(nNodes, cliques, a), rowOf(nNodes, cliques, b)), nNodes, separator);
}

void BYNRun_GetNodeposbetweenclq_ST(std::int32_t n, const cBYN_Table& cliques, std::int32_t a, std::int32_t b,
                                    cBYN_Table& positions) {
    const std::int32_t nNodes = orderOf(n, cliques);
    const std::vector<Number> first = rowOf(nNodes, cliques, a);
    writeVector(positionsIn(first, sharedMembers(first, rowOf(nNodes, cliques, b))), nNodes, positions);
}

void BYNRun_GetCommunNodeposbetweenclq_ST(std::int32_t n, const cBYN_Table& cliques, std::int32_t a,
                                          std::int32_t b, cBYN_Table& positions) {
    const std::int32_t nNodes = orderOf(n, cliques);
    const std::vector<Number> first = rowOf(nNodes, cliques, a);
    const std::vector<Number> second = rowOf(nNodes, cliques, b);
    const std::vector<Number> shared = sharedMembers(first, second);
    clearTo(positions, nNodes, 2);
    for (std::size_t i = 0; i < shared.size(); ++i) {
        const auto row = static_cast<std::int32_t>(i);
        positions.at(row, 0) = positionsIn(first, shared)[i] + 1;
        positions.at(row, 1) = positionsIn(second, shared)[i] + 1;
    }
}

std::int32_t BYNRun_ConvertID_ST(std::int32_t n, const cST_MVect<u16string>& labels, std::int32_t node) {
    return node < 1 ? 0 : GetCorrelatedIndex_ST(nodeKey(node), labels, n);
}

void BYNRun_Convert_fam_ST(std::int32_t n, const matrix<double>& parents, const cST_MVect<u16string>& labels,
                           std::int32_t node, cBYN_Table& family) {
    const std::int32_t nNodes = nodesOf(n, parents, labels);
    std::vector<Number> members;
    if (node >= 1 && node <= nNodes) {
        const Lists lists = parentsOf(nNodes, parents, labels);
        members.assign(lists[node - 1].begin(), lists[node - 1].end());
        members.push_back(node - 1);
    }
    writeVector(members, nNodes, family);
}

void BYNRun_clq_fam_ST(std::int32_t n, std::int32_t nCliques, const cBYN_Table& cliques,
                       const matrix<double>& parents, const cST_MVect<u16string>& labels,
                       cBYN_Table& familyClique) {
    const std::int32_t nNodes = orderOf(n, cliques);
    const Lists lists = readCliques(nNodes, nCliques, cliques);
    const Lists holding = listsHolding(lists, static_cast<std::size_t>(nNodes));
    const Network network{{}, parentsOf(nNodes, parents, labels)};
    clearTo(familyClique, nNodes, 1);
    for (std::int32_t node = 0; node < nNodes; ++node) {
        std::vector<Number> family(network.parents[node].begin(), network.parents[node].end());
        family.push_back(node);
        familyClique.at(node, 0) = firstCliqueWith(family, lists, holding) + 1;
    }
}

void BYNRun_clq_Pos_ST(std::int32_t n, std::int32_t nCliques, const cBYN_Table& cliques,
                       matrix<std::int32_t>& positions) {
    const std::int32_t nNodes = orderOf(n, cliques);
    const Lists lists = readCliques(nNodes, nCliques, cliques);
    positions = matrix<std::int32_t>(static_cast<std::int32_t>(lists.count()), nNodes, 0);
    for (std::size_t c = 0; c < lists.count(); ++c) {
        std::int32_t position = 0;
        for (const Number node : lists[c]) positions.at(static_cast<std::int32_t>(c), node) = ++position;
    }
}

}  // namespace numcore
