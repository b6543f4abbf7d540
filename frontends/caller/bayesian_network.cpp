#include "caller/bayesian_network.hpp"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "caller/data_set.hpp"
#include "caller/forms.hpp"

namespace numcore::caller {

namespace {

std::size_t cellsOf(const std::vector<NetworkNode>& nodes, const NodeList& list) {
    std::size_t n = 1;
    for (const std::size_t node : list) n *= std::max<std::size_t>(nodes.at(node).states.size(), 1);
    return n;
}

NodeList familyOf(const std::vector<NetworkNode>& nodes, std::size_t node) {
    NodeList family = nodes.at(node).parents;
    family.push_back(node);
    return family;
}

/// The library's records of a network, with their arrays.
class Input {
  public:
    explicit Input(const std::vector<NetworkNode>& nodes, double memory) : nodes_(nodes) {
        const std::size_t n = nodes.size();
        std::size_t nParents = 0;
        for (const NetworkNode& node : nodes) {
            nStates_ += node.states.size();
            nParents = std::max(nParents, node.parents.size());
        }
        setKeys();
        names_ = Array::texts(n);
        sizes_ = Array::ints(n);
        states_ = Array::texts(nStates_);
        parents_ = Array::matrix(std::max<std::size_t>(nParents, 1), n);
        std::vector<double> cells;
        std::size_t state = 0;
        for (std::size_t i = 0; i < n; ++i) {
            names_.setText(i, nodes[i].name);
            sizes_.asInts()[i] = static_cast<std::int32_t>(nodes[i].states.size());
            for (const auto& text : nodes[i].states) states_.setText(state++, text);
            const std::size_t column = i * std::max<std::size_t>(nParents, 1);
            for (std::size_t p = 0; p < nodes[i].parents.size(); ++p)
                parents_.asDoubles()[column + p] = static_cast<double>(nodes[i].parents[p]) + 1.0;
            cells.insert(cells.end(), nodes[i].table.begin(), nodes[i].table.end());
        }
        tables_ = Array::doubles(cells);
        param_.nodeNames = names_.get();
        param_.sizes = sizes_.get();
        param_.stateNames = states_.get();
        param_.parents = parents_.get();
        param_.tables = tables_.get();
        param_.n = static_cast<std::int32_t>(n);
        param_.bounds.memory = memory;
    }

    void setQuestion(const NetworkQuestion& question) {
        observed_ = Array::ints(nodes_.size());
        for (const auto& [node, state] : question.observed)
            observed_.asInts()[checked(node)] = static_cast<std::int32_t>(state) + 1;
        param_.observed = observed_.get();
        if (!question.likelihoods.empty()) setLikelihoods(question);
        if (!question.queries.empty()) setQueries(question);
    }

    ST_DataSet* data() { return &data_.record(); }
    BYN_Param& param() { return param_; }
    std::size_t nStates() const { return nStates_; }

  private:
    std::size_t checked(std::size_t node) const {
        if (node >= nodes_.size()) throw std::out_of_range("numcore::caller::BayesianNetwork");
        return node;
    }

    void setKeys() {
        TextTable keys(1, nodes_.size());
        for (std::size_t i = 0; i < nodes_.size(); ++i) {
            const std::string number = std::to_string(i + 1);
            keys.column(0).setText(i, u"NODE" + std::u16string(number.begin(), number.end()));
        }
        data_.setStrings1(std::move(keys));
    }

    void setLikelihoods(const NetworkQuestion& question) {
        likelihoods_ = Array::doubles(nStates_);
        std::ranges::fill(likelihoods_.asDoubles(), 1.0);
        for (const auto& [node, values] : question.likelihoods) {
            std::size_t first = 0;
            for (std::size_t i = 0; i < checked(node); ++i) first += nodes_[i].states.size();
            for (std::size_t s = 0; s < std::min(values.size(), nodes_[node].states.size()); ++s)
                likelihoods_.asDoubles()[first + s] *= values[s];
        }
        param_.likelihoods = likelihoods_.get();
    }

    void setQueries(const NetworkQuestion& question) {
        const std::size_t n = question.queries.size();
        std::size_t nRows = 1;
        for (const NetworkQuery& query : question.queries)
            nRows = std::max({nRows, query.nodes.size(), query.given.size()});
        queries_ = Array::cube(n, nRows, 2);
        for (std::size_t q = 0; q < n; ++q) {
            const auto& [nodes, given] = question.queries[q];
            for (std::size_t r = 0; r < nodes.size(); ++r)
                queries_.asDoubles()[q + n * r] = static_cast<double>(checked(nodes[r])) + 1.0;
            for (std::size_t r = 0; r < given.size(); ++r)
                queries_.asDoubles()[q + n * (r + nRows)] = static_cast<double>(checked(given[r])) + 1.0;
        }
        param_.queries = queries_.get();
        param_.nQueries = static_cast<std::int32_t>(n);
    }

    const std::vector<NetworkNode>& nodes_;
    std::size_t nStates_ = 0;
    DataSet data_;
    Array names_;
    Array sizes_;
    Array states_;
    Array parents_;
    Array tables_;
    Array observed_;
    Array likelihoods_;
    Array queries_;
    BYN_Param param_{};
};

/// Reads an array of integers from 1 as numbers from 0.
class Numbers {
  public:
    explicit Numbers(const Array& array) : values_(array.asInts()) {}
    NodeList take(std::size_t n) {
        NodeList out;
        out.reserve(n);
        for (std::size_t i = 0; i < n; ++i) out.push_back(static_cast<std::size_t>(values_[at_++] - 1));
        return out;
    }

  private:
    std::span<std::int32_t> values_;
    std::size_t at_ = 0;
};

/// The arrays that receive a tree.
class TreeArrays {
  public:
    TreeArrays(std::size_t n, const BYN_Forecast& sizes, BYN_Results& results)
        : n_(n), nFill_(count(sizes.nFillEdges)) {
        const std::size_t nMembers = count(sizes.nCliqueMembers);
        cliqueCells_ = Array::doubles(n);
        results.forecast.cliqueCells = cliqueCells_.get();
        order_ = attach(results.order, Array::ints(n));
        weights_ = attach(results.orderWeights, Array::doubles(n));
        fills_ = attach(results.orderFills, Array::doubles(n));
        fillFrom_ = attach(results.fillFrom, Array::ints(nFill_));
        fillTo_ = attach(results.fillTo, Array::ints(nFill_));
        cliqueSizes_ = attach(results.cliqueSizes, Array::ints(n));
        members_ = attach(results.cliqueMembers, Array::ints(nMembers));
        joinFrom_ = attach(results.joinFrom, Array::ints(n));
        joinTo_ = attach(results.joinTo, Array::ints(n));
        separatorSizes_ = attach(results.separatorSizes, Array::ints(n));
        separatorMembers_ = attach(results.separatorMembers, Array::ints(count(sizes.nSeparatorMembers)));
        parents_ = attach(results.cliqueParents, Array::ints(n));
        preorder_ = attach(results.preorder, Array::ints(n));
        postorder_ = attach(results.postorder, Array::ints(n));
        families_ = attach(results.familyCliques, Array::ints(n));
    }

    NetworkTree read(const BYN_Results& results) const {
        NetworkTree tree;
        const std::size_t nCliques = count(results.forecast.nCliques);
        if (nCliques == 0) return tree;
        tree.order = Numbers(order_).take(n_);
        tree.orderWeights.assign(weights_.asDoubles().begin(), weights_.asDoubles().end());
        tree.orderFills.assign(fills_.asDoubles().begin(), fills_.asDoubles().end());
        const NodeList fillFrom = Numbers(fillFrom_).take(nFill_);
        const NodeList fillTo = Numbers(fillTo_).take(nFill_);
        for (std::size_t i = 0; i < nFill_; ++i) tree.fillEdges.emplace_back(fillFrom[i], fillTo[i]);
        Numbers members(members_);
        for (std::size_t c = 0; c < nCliques; ++c)
            tree.cliques.push_back(members.take(count(cliqueSizes_.asInts()[c])));
        const auto cells = cliqueCells_.asDoubles().first(nCliques);
        tree.cliqueCells.assign(cells.begin(), cells.end());
        Numbers from(joinFrom_);
        Numbers to(joinTo_);
        Numbers separators(separatorMembers_);
        for (std::size_t j = 0; j + 1 < nCliques; ++j)
            tree.joins.push_back(
                {from.take(1)[0], to.take(1)[0], separators.take(count(separatorSizes_.asInts()[j]))});
        tree.root = count(results.root) - 1;
        for (std::size_t c = 0; c < nCliques; ++c) {
            const std::int32_t parent = parents_.asInts()[c];
            tree.parents.push_back(parent == 0 ? tree.root : count(parent) - 1);
        }
        tree.preorder = Numbers(preorder_).take(nCliques);
        tree.postorder = Numbers(postorder_).take(nCliques);
        tree.familyCliques = Numbers(families_).take(n_);
        return tree;
    }

  private:
    static std::size_t count(std::int32_t n) { return static_cast<std::size_t>(std::max(n, 0)); }
    static Array attach(SAFEARRAY*& field, Array array) {
        field = array.get();
        return array;
    }

    std::size_t n_;
    std::size_t nFill_;
    Array cliqueCells_;
    Array order_;
    Array weights_;
    Array fills_;
    Array fillFrom_;
    Array fillTo_;
    Array cliqueSizes_;
    Array members_;
    Array joinFrom_;
    Array joinTo_;
    Array separatorSizes_;
    Array separatorMembers_;
    Array parents_;
    Array preorder_;
    Array postorder_;
    Array families_;
};

/// Cells and labels of several tables in one pair of arrays.
class TableArrays {
  public:
    TableArrays() = default;
    /// @param lengths       cells of each table
    /// @param labelLengths  labels of each table
    TableArrays(std::vector<std::size_t> lengths, std::vector<std::size_t> labelLengths)
        : lengths_(std::move(lengths)),
          labelLengths_(std::move(labelLengths)),
          cells_(Array::doubles(sumOf(lengths_))),
          labels_(Array::texts(sumOf(labelLengths_))) {}

    SAFEARRAY* cells() const { return cells_.get(); }
    SAFEARRAY* labels() const { return labels_.get(); }

    /// Leaves a table out: those behind it follow the ones before.
    void drop(std::size_t table) { lengths_[table] = labelLengths_[table] = 0; }

    std::vector<NetworkTable> read() const {
        std::vector<NetworkTable> out;
        out.reserve(lengths_.size());
        std::size_t cellAt = 0;
        std::size_t labelAt = 0;
        for (std::size_t t = 0; t < lengths_.size(); ++t) {
            NetworkTable& table = out.emplace_back();
            const auto cells = cells_.asDoubles().subspan(cellAt, lengths_[t]);
            table.cells.assign(cells.begin(), cells.end());
            table.labels.reserve(labelLengths_[t]);
            for (std::size_t i = 0; i < labelLengths_[t]; ++i)
                table.labels.emplace_back(labels_.text(labelAt + i));
            cellAt += lengths_[t];
            labelAt += labelLengths_[t];
        }
        return out;
    }

  private:
    static std::size_t sumOf(const std::vector<std::size_t>& lengths) {
        std::size_t n = 0;
        for (const std::size_t length : lengths) n += length;
        return n;
    }

    std::vector<std::size_t> lengths_;
    std::vector<std::size_t> labelLengths_;
    Array cells_;
    Array labels_;
};

NetworkForecast forecastFrom(const BYN_Forecast& record) {
    const auto count = [](std::int32_t n) { return static_cast<std::size_t>(n); };
    return {record.status,
            record.cells,
            record.largest,
            record.separatorCells,
            record.bytes,
            record.bound,
            count(record.nCliques),
            count(record.nMoralEdges),
            count(record.nFillEdges)};
}

/// Tables of each node's family: conditional on the parents, and joint.
struct FamilyArrays {
    TableArrays conditionals;
    TableArrays joints;
};

FamilyArrays familyArrays(const std::vector<NetworkNode>& nodes) {
    std::vector<std::size_t> cells;
    std::vector<std::size_t> rows;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        cells.push_back(cellsOf(nodes, familyOf(nodes, i)));
        rows.push_back(cellsOf(nodes, nodes[i].parents));
    }
    return {TableArrays(cells, rows), TableArrays(cells, cells)};
}

}  // namespace

BayesianNetwork::BayesianNetwork(std::vector<NetworkNode> nodes) : nodes_(std::move(nodes)) {}

NetworkForecast BayesianNetwork::forecast(double memory) const {
    Input input(nodes_, memory);
    BYN_Forecast record{};
    Cpp_BYNRun_Forecast_ST(input.data(), &input.param(), &record);
    return forecastFrom(record);
}

std::int32_t BayesianNetwork::check() const {
    Input input(nodes_, 0.0);
    return Cpp_BYNRun_DAG_ST(input.data(), &input.param(), nullptr, nullptr, nullptr);
}

NetworkAnswer BayesianNetwork::structure(double memory) const {
    Input input(nodes_, memory);
    BYN_Forecast sizes{};
    Cpp_BYNRun_Forecast_ST(input.data(), &input.param(), &sizes);
    BYN_Results results{};
    const TreeArrays arrays(nodes_.size(), sizes, results);
    input.param().mode = NUMCORE_BYN_STRUCTURE;
    Cpp_BYNRun_Compute_ST(input.data(), &input.param(), &results, nullptr, nullptr);
    NetworkAnswer answer;
    answer.status = results.status;
    answer.forecast = forecastFrom(results.forecast);
    answer.tree = arrays.read(results);
    return answer;
}

NetworkAnswer BayesianNetwork::ask(const NetworkQuestion& question) const {
    // The tree first: it tells the lengths of the tables.
    NetworkAnswer answer = structure(question.memory);
    if (answer.status != NUMCORE_BYN_DONE) return answer;
    Input input(nodes_, question.memory);
    input.setQuestion(question);
    BYN_Results results{};
    Array marginals = Array::doubles(input.nStates());
    results.marginals = marginals.get();

    FamilyArrays families;
    if (question.familyTables) families = familyArrays(nodes_);
    results.conditionals = families.conditionals.cells();
    results.conditionLabels = families.conditionals.labels();
    results.familyJoints = families.joints.cells();
    results.familyLabels = families.joints.labels();

    TableArrays joints;
    if (question.cliqueJoints) {
        std::vector<std::size_t> lengths;
        for (const NodeList& clique : answer.tree.cliques) lengths.push_back(cellsOf(nodes_, clique));
        joints = TableArrays(lengths, lengths);
        results.joints = joints.cells();
        results.jointLabels = joints.labels();
    }

    // Room for the tables that the library may answer with; one that it refuses takes none.
    Array queryStatus = Array::ints(question.queries.size());
    std::vector<std::size_t> lengths;
    for (const NetworkQuery& query : question.queries) {
        NodeList all = query.given;
        all.insert(all.end(), query.nodes.begin(), query.nodes.end());
        std::ranges::sort(all);
        const bool isUsable = !query.nodes.empty() && std::ranges::adjacent_find(all) == all.end();
        double cells = isUsable ? 1.0 : 0.0;
        for (const std::size_t node : all) cells *= static_cast<double>(nodes_.at(node).states.size());
        const bool fits =
            cells <= INT32_MAX && cells * static_cast<double>(sizeof(double)) <= answer.forecast.bound;
        lengths.push_back(fits ? static_cast<std::size_t>(cells) : 0);
    }
    TableArrays queries(lengths, lengths);
    results.queryStatus = queryStatus.get();
    results.queryTables = queries.cells();
    results.queryLabels = queries.labels();

    Cpp_BYNRun_Compute_ST(input.data(), &input.param(), &results, nullptr, nullptr);
    answer.status = results.status;
    answer.probability = results.probability;
    answer.logProbability = results.logProbability;
    if (results.status != NUMCORE_BYN_DONE && results.status != NUMCORE_BYN_IMPOSSIBLE) return answer;
    std::size_t at = 0;
    for (const NetworkNode& node : nodes_) {
        const auto states = marginals.asDoubles().subspan(at, node.states.size());
        answer.marginals.emplace_back(states.begin(), states.end());
        at += node.states.size();
    }
    answer.conditionals = families.conditionals.read();
    answer.families = families.joints.read();
    answer.cliqueJoints = joints.read();
    for (std::size_t q = 0; q < lengths.size(); ++q)
        if (queryStatus.asInts()[q] != NUMCORE_BYN_DONE) queries.drop(q);
    answer.queries = queries.read();
    for (std::size_t q = 0; q < answer.queries.size(); ++q) answer.queries[q].status = queryStatus.asInts()[q];
    return answer;
}

}  // namespace numcore::caller
