#include "decision/networks/output.hpp"

#include <algorithm>
#include <cmath>

namespace numcore::networks {
namespace {

/// Writes a table's cells one after another, as far as there is room.
template <class T>
class Writer {
  public:
    explicit Writer(matrix<T>& table) : table_(table) {}

    bool isWanted() const { return at_ < table_.size(); }
    template <class Value>
    void put(Value&& value) {
        if (at_ < table_.size()) table_[at_++] = std::forward<Value>(value);
    }
    template <class Values>
    void putAll(const Values& values) {
        for (const auto& value : values) put(value);
    }
    /// Room that is left for a table; passes over it.
    void skip(double n) {
        at_ = n < static_cast<double>(table_.size() - at_) ? at_ + static_cast<std::int32_t>(n) : table_.size();
    }

  private:
    matrix<T>& table_;
    std::int32_t at_ = 0;
};

void writeNumbers(std::span<const Number> numbers, matrix<std::int32_t>& out) {
    Writer writer(out);
    for (const Number number : numbers) writer.put(number + 1);
}

void writeLists(const Lists& lists, matrix<std::int32_t>& sizes, matrix<std::int32_t>& members) {
    Writer size(sizes);
    Writer member(members);
    for (std::size_t i = 0; i < lists.count(); ++i) {
        size.put(static_cast<std::int32_t>(lists[i].size()));
        for (const Number node : lists[i]) member.put(node + 1);
    }
}

void writeJointLabels(const Axes& axes, const Names& names, Writer<u16string>& out) {
    const std::size_t n = axes.nCells();
    for (std::size_t cell = 0; cell < n && out.isWanted(); ++cell)
        out.put(u16string(names.jointState(axes, cell)));
}

}  // namespace

void writeTree(const JunctionTree& tree, cBYN_Results& results) {
    writeNumbers(tree.order, results.order);
    Writer(results.orderWeights).putAll(tree.orderWeights);
    Writer(results.orderFills).putAll(tree.orderFills);
    Writer fillFrom(results.fillFrom);
    Writer fillTo(results.fillTo);
    for (const auto& [from, to] : tree.fillEdges) {
        fillFrom.put(from + 1);
        fillTo.put(to + 1);
    }
    writeLists(tree.cliques, results.cliqueSizes, results.cliqueMembers);
    Writer joinFrom(results.joinFrom);
    Writer joinTo(results.joinTo);
    for (const Join& join : tree.joins) {
        joinFrom.put(join.from + 1);
        joinTo.put(join.to + 1);
    }
    writeLists(tree.separators, results.separatorSizes, results.separatorMembers);
    writeNumbers(tree.rooted.parents, results.cliqueParents);
    writeNumbers(tree.rooted.preorder, results.preorder);
    writeNumbers(tree.rooted.postorder, results.postorder);
    writeNumbers(tree.familyCliques, results.familyCliques);
    results.root = tree.rooted.root + 1;
}

void writeForecast(const JunctionTree& tree, double bound, cBYN_Forecast& forecast) {
    const Forecast sizes = forecastOf(tree);
    Writer(forecast.cliqueCells).putAll(tree.cliqueCells);
    BYN_Forecast& values = forecast.values;
    values.cells = sizes.cells;
    values.largest = sizes.largest;
    values.separatorCells = sizes.separatorCells;
    values.bytes = sizes.bytes;
    values.bound = bound;
    values.nCliques = static_cast<std::int32_t>(tree.cliques.count());
    values.nCliqueMembers = static_cast<std::int32_t>(tree.cliques.totalItems());
    values.nSeparatorMembers = static_cast<std::int32_t>(tree.separators.totalItems());
    values.nMoralEdges = static_cast<std::int32_t>(tree.nMoralEdges);
    values.nFillEdges = static_cast<std::int32_t>(tree.fillEdges.size());
}

void clearProbabilities(cBYN_Results& results) {
    for (matrix<double>* table : {&results.marginals, &results.conditionals, &results.familyJoints,
                                  &results.joints, &results.queryTables})
        std::ranges::fill(table->span(), kMissing);
    results.probability = kMissing;
    results.logProbability = kMissing;
}

void writeLabels(const Network& network, const JunctionTree& tree, const Names& names, cBYN_Results& results) {
    Writer state(results.stateLabels);
    Writer condition(results.conditionLabels);
    Writer family(results.familyLabels);
    for (std::size_t node = 0; node < network.n(); ++node) {
        const auto number = static_cast<Number>(node);
        for (Number s = 0; s < network.sizes[node] && state.isWanted(); ++s)
            state.put(u16string(names.state(number, s)));
        writeJointLabels(axesOf(network.parents[node], network.sizes), names, condition);
        writeJointLabels(axesOf(familyOf(network, node), network.sizes), names, family);
    }
    Writer joint(results.jointLabels);
    for (std::size_t clique = 0; clique < tree.cliques.count() && joint.isWanted(); ++clique)
        writeJointLabels(axesOf(tree.cliques[clique], network.sizes), names, joint);
}

void writeTables(const Model& model, cBYN_Results& results) {
    Writer marginal(results.marginals);
    Writer conditional(results.conditionals);
    Writer family(results.familyJoints);
    std::vector<double> table;
    for (std::size_t node = 0; node < model.network.n(); ++node) {
        const auto size = static_cast<std::size_t>(model.network.sizes[node]);
        if (marginal.isWanted()) {
            table.resize(size);
            marginalOf(model, node, table);
            marginal.putAll(table);
        }
        if (family.isWanted() || conditional.isWanted()) {
            table.resize(axesOf(familyOf(model.network, node), model.network.sizes).nCells());
            familyJointOf(model, node, table);
            family.putAll(table);
            conditionOn(table, size);
            conditional.putAll(table);
        }
    }
    Writer joint(results.joints);
    for (std::size_t clique = 0; clique < model.tree.cliques.count() && joint.isWanted(); ++clique)
        joint.putAll(model.calibrated.cliques.table(clique));
}

void writeQueries(const Network& network, const JunctionTree& tree, const Calibrated* calibrated,
                  const cBYN_Param& param, double bound, const Names& names, cBYN_Results& results) {
    Writer status(results.queryStatus);
    Writer length(results.queryCells);
    Writer label(results.queryLabels);
    Writer cell(results.queryTables);
    const double treeBytes = forecastOf(tree).bytes;
    for (std::int32_t q = 0; q < std::min(param.nQueries, param.queries.count()); ++q) {
        const Query query = readQuery(param, network, q);
        if (!query.isUsable) {
            status.put(static_cast<std::int32_t>(NUMCORE_BYN_BAD_QUERY));
            length.put(0.0);
            continue;
        }
        std::vector<Number> all = query.given;
        all.insert(all.end(), query.nodes.begin(), query.nodes.end());
        const JointQuery joint(network, tree, all);
        const double bytes =
            treeBytes + static_cast<double>(sizeof(double)) * (joint.nWorkCells() + joint.nCells());
        const bool fits = bytes <= bound && std::isfinite(bytes) && joint.nCells() <= INT32_MAX;
        status.put(static_cast<std::int32_t>(fits ? NUMCORE_BYN_DONE : NUMCORE_BYN_TOO_LARGE));
        length.put(joint.nCells());
        if (!fits) continue;
        const Axes axes = axesOf(all, network.sizes);
        writeJointLabels(axes, names, label);
        if (!cell.isWanted()) continue;
        if (calibrated == nullptr) {
            cell.skip(joint.nCells());
            continue;
        }
        std::vector<double> table(axes.nCells());
        joint.answer(*calibrated, table);
        if (!query.given.empty()) conditionOn(table, axesOf(query.nodes, network.sizes).nCells());
        cell.putAll(table);
    }
}

}  // namespace numcore::networks
