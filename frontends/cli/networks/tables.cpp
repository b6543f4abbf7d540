#include "cli/networks/tables.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "cli/errors.hpp"

namespace numcore::cli {

namespace {

Cell wholeCell(std::size_t n) {
    return static_cast<std::int64_t>(n);
}

std::string namesOf(const Network& network, const caller::NodeList& nodes) {
    std::string out;
    for (const std::size_t node : nodes) out += (out.empty() ? "" : ", ") + network.nodes[node].name;
    return out;
}

/// What is known of a node's state: "observed", a likelihood, or nothing.
std::string finding(const caller::NetworkQuestion& question, std::size_t node, std::size_t state) {
    std::string text;
    for (const auto& [observed, seen] : question.observed) {
        if (observed == node && seen == state) text = "observed";
    }
    for (const auto& [likely, values] : question.likelihoods) {
        if (likely == node) text += fmt::format("{}likelihood {}", text.empty() ? "" : ", ", values[state]);
    }
    return text;
}

/// The probability of a state; none where the evidence is impossible.
Cell marginalOf(const caller::NetworkAnswer& answer, std::size_t node, std::size_t state) {
    return cellOf(answer.marginals[node][state]);
}

/// The cells of a query's table that its ties leave, in their order, with the states of each node.
struct JointState {
    std::vector<std::size_t> states;
    double probability;
};

/// The states of a cell of a table; the last node's varies fastest.
std::vector<std::size_t> statesOfCell(const Network& network, const std::vector<std::size_t>& nodes,
                                      std::size_t cell) {
    std::vector<std::size_t> states(nodes.size());
    for (std::size_t i = nodes.size(); i > 0; --i) {
        const std::size_t nStates = network.nodes[nodes[i - 1]].states.size();
        states[i - 1] = cell % nStates;
        cell /= nStates;
    }
    return states;
}

std::vector<JointState> jointStates(const Network& network, const NetworkQueryAsked& asked,
                                    const std::vector<std::size_t>& nodes, const caller::NetworkTable& answer) {
    std::vector<JointState> out;
    for (std::size_t cell = 0; cell < answer.cells.size(); ++cell) {
        JointState joint{statesOfCell(network, nodes, cell), answer.cells[cell]};
        bool wanted = true;
        for (std::size_t i = 0; i < asked.tied.size(); ++i)
            wanted = wanted && (!asked.tied[i] || *asked.tied[i] == joint.states[i]);
        if (wanted) out.push_back(std::move(joint));
    }
    return out;
}

std::string queryTitle(const Network& network, const NetworkQueryAsked& asked, bool underEvidence) {
    std::string given;
    for (std::size_t i = 0; i < asked.query.given.size(); ++i) {
        const NetworkNode& node = network.nodes[asked.query.given[i]];
        given += (given.empty() ? "" : ", ") + node.name;
        if (asked.tied[i]) given += "=" + node.states[*asked.tied[i]];
    }
    if (underEvidence) given += given.empty() ? "evidence" : ", evidence";
    return fmt::format("P({}{}{})", namesOf(network, asked.query.nodes), given.empty() ? "" : " | ", given);
}

/// An id for probabilities that no node's name takes away.
std::string probabilityId(const Network& network, const std::vector<std::size_t>& nodes) {
    std::string id = "probability";
    const auto taken = [&](std::size_t node) { return network.nodes[node].name == id; };
    while (std::ranges::any_of(nodes, taken)) id += "_";
    return id;
}

void addJoinOfParent(const caller::NetworkTree& tree, const Network& network, std::size_t clique,
                     std::vector<Cell>& row) {
    const std::size_t parent = tree.parents[clique];
    if (parent == clique) {
        row.insert(row.end(), {Cell(), Cell(), Cell()});
        return;
    }
    const auto joins = [&](const caller::NetworkJoin& join) {
        return (join.from == parent && join.to == clique) || (join.from == clique && join.to == parent);
    };
    const auto join = std::ranges::find_if(tree.joins, joins);
    double nCells = 1.0;
    std::string members;
    if (join != tree.joins.end()) {
        members = join->separator.empty() ? "(none)" : namesOf(network, join->separator);
        for (const std::size_t node : join->separator)
            nCells *= static_cast<double>(network.nodes[node].states.size());
    }
    row.insert(row.end(), {wholeCell(parent + 1), Cell(members), countOf(nCells)});
}

ReportTable sizesTable(const caller::NetworkAnswer& answer) {
    const caller::NetworkForecast& forecast = answer.forecast;
    ReportTable table{"tree",
                      "Junction tree",
                      {{"cliques", "Cliques", ColumnKind::kCount},
                       {"root", "Root", ColumnKind::kCount},
                       {"cells", "Cells", ColumnKind::kCount},
                       {"largest", "Largest clique", ColumnKind::kCount},
                       {"separatorCells", "In separators", ColumnKind::kCount},
                       {"bytes", "Bytes", ColumnKind::kCount},
                       {"bound", "Bytes allowed", ColumnKind::kCount},
                       {"moralEdges", "Moral edges", ColumnKind::kCount},
                       {"fillEdges", "Fill edges", ColumnKind::kCount}},
                      {},
                      0,
                      {}};
    table.rows.push_back({wholeCell(forecast.nCliques), wholeCell(answer.tree.root + 1),
                          countOf(forecast.cells), countOf(forecast.largest), countOf(forecast.separatorCells),
                          countOf(forecast.bytes), countOf(std::floor(forecast.bound)),
                          wholeCell(forecast.nMoralEdges), wholeCell(forecast.nFillEdges)});
    return table;
}

ReportTable cliqueTable(const Network& network, const caller::NetworkTree& tree) {
    ReportTable table{"cliques",
                      "Cliques",
                      {{"clique", "Clique", ColumnKind::kCount},
                       {"members", "Members", ColumnKind::kText},
                       {"cells", "Cells", ColumnKind::kCount},
                       {"parent", "Parent", ColumnKind::kCount},
                       {"separator", "Separator", ColumnKind::kText},
                       {"separatorCells", "Its cells", ColumnKind::kCount}},
                      {},
                      1,
                      {}};
    for (std::size_t c = 0; c < tree.cliques.size(); ++c) {
        std::vector<Cell> row{wholeCell(c + 1), namesOf(network, tree.cliques[c]),
                              countOf(tree.cliqueCells[c])};
        addJoinOfParent(tree, network, c, row);
        table.rows.push_back(std::move(row));
    }
    return table;
}

ReportTable eliminationTable(const Network& network, const caller::NetworkTree& tree) {
    ReportTable table{"elimination",
                      "Order of elimination",
                      {{"step", "Step", ColumnKind::kCount},
                       {"node", "Node", ColumnKind::kText},
                       {"weight", "Weight", ColumnKind::kCount},
                       {"fill", "Fill", ColumnKind::kCount}},
                      {},
                      1,
                      {}};
    for (std::size_t i = 0; i < tree.order.size(); ++i) {
        table.rows.push_back({wholeCell(i + 1), network.nodes[tree.order[i]].name,
                              countOf(tree.orderWeights[i]), countOf(tree.orderFills[i])});
    }
    return table;
}

/// What only JSON tells: walks, families, added edges.
void addTreeDetails(const Network& network, const caller::NetworkTree& tree, Report& report) {
    ReportTable walk{"walk",
                     "Walks through the cliques",
                     {{"step", "Step", ColumnKind::kCount},
                      {"preorder", "Preorder", ColumnKind::kCount},
                      {"postorder", "Postorder", ColumnKind::kCount}},
                     {},
                     1,
                     {},
                     true};
    for (std::size_t i = 0; i < tree.preorder.size(); ++i)
        walk.rows.push_back(
            {wholeCell(i + 1), wholeCell(tree.preorder[i] + 1), wholeCell(tree.postorder[i] + 1)});
    ReportTable families{"families",
                         "Cliques that take the tables",
                         {{"node", "Node", ColumnKind::kText}, {"clique", "Clique", ColumnKind::kCount}},
                         {},
                         1,
                         {},
                         true};
    for (std::size_t i = 0; i < tree.familyCliques.size(); ++i)
        families.rows.push_back({network.nodes[i].name, wholeCell(tree.familyCliques[i] + 1)});
    ReportTable fill{"fillEdges",
                     "Edges added by triangulation",
                     {{"from", "From", ColumnKind::kText}, {"to", "To", ColumnKind::kText}},
                     {},
                     1,
                     {},
                     true};
    for (const auto& [from, to] : tree.fillEdges)
        fill.rows.push_back({network.nodes[from].name, network.nodes[to].name});
    for (ReportTable* table : {&walk, &families, &fill}) report.tables.push_back(std::move(*table));
}

}  // namespace

std::size_t countArcs(const Network& network) {
    std::size_t n = 0;
    for (const NetworkNode& node : network.nodes) n += node.parents.size();
    return n;
}

std::string cycleText(const Network& network, const std::vector<std::size_t>& cycle) {
    std::string out;
    for (const std::size_t node : cycle) out += printable(network.nodes[node].name) + " -> ";
    return cycle.empty() ? out : out + printable(network.nodes[cycle.front()].name);
}

std::string evidenceText(const Network& network, const caller::NetworkQuestion& question) {
    std::vector<std::string> parts;
    for (const auto& [node, state] : question.observed)
        parts.push_back(network.nodes[node].name + "=" + network.nodes[node].states[state]);
    for (const auto& [node, values] : question.likelihoods)
        parts.push_back(fmt::format("{}={}", network.nodes[node].name, fmt::join(values, ":")));
    return fmt::format("{}", fmt::join(parts, ", "));
}

ReportTable summaryTable(const Network& network, const NetworkQuestionAsked& asked,
                         const NetworkAnswers& answers) {
    ReportTable table{"network",
                      network.name.empty() || network.name == "unknown" ? "Network" : "Network " + network.name,
                      {{"nodes", "Nodes", ColumnKind::kCount},
                       {"arcs", "Arcs", ColumnKind::kCount},
                       {"cliques", "Cliques", ColumnKind::kCount},
                       {"cells", "Cells", ColumnKind::kCount}},
                      {},
                      0,
                      {}};
    const caller::NetworkForecast& forecast = answers.after.forecast;
    table.rows.push_back({wholeCell(network.nodes.size()), wholeCell(countArcs(network)),
                          wholeCell(forecast.nCliques), countOf(forecast.cells)});
    if (asked.hasEvidence()) {
        table.columns.push_back({"probability", "P(evidence)", ColumnKind::kNumber});
        table.columns.push_back({"logProbability", "ln P(evidence)", ColumnKind::kNumber});
        table.rows[0].insert(table.rows[0].end(),
                             {cellOf(answers.after.probability), cellOf(answers.after.logProbability)});
    }
    return table;
}

ReportTable marginalTable(const Network& network, const NetworkQuestionAsked& asked,
                          const NetworkAnswers& answers) {
    ReportTable table{"marginals",
                      "Probabilities",
                      {{"node", "Node", ColumnKind::kText},
                       {"state", "State", ColumnKind::kText},
                       {"probability", "P", ColumnKind::kNumber}},
                      {},
                      1,
                      {}};
    const bool evidence = asked.hasEvidence();
    if (evidence) {
        table.columns.push_back({"givenEvidence", "P given evidence", ColumnKind::kNumber});
        table.columns.push_back({"evidence", "Evidence", ColumnKind::kText});
    }
    for (std::size_t i = 0; i < network.nodes.size(); ++i) {
        for (std::size_t s = 0; s < network.nodes[i].states.size(); ++s) {
            std::vector<Cell> row{network.nodes[i].name, network.nodes[i].states[s],
                                  marginalOf(answers.before, i, s)};
            if (evidence) {
                row.push_back(marginalOf(answers.after, i, s));
                row.emplace_back(finding(asked.question, i, s));
            }
            table.rows.push_back(std::move(row));
        }
    }
    return table;
}

ReportTable queryTable(const Network& network, const NetworkQueryAsked& asked,
                       const caller::NetworkTable& answer, std::size_t number, bool underEvidence,
                       bool forMachines) {
    std::vector<std::size_t> nodes = asked.query.given;
    nodes.insert(nodes.end(), asked.query.nodes.begin(), asked.query.nodes.end());
    const bool across = !forMachines && nodes.size() > 1;
    const std::size_t nKeys = nodes.size() - (across ? 1 : 0);
    ReportTable table{
        fmt::format("query{}", number), queryTitle(network, asked, underEvidence), {}, {}, nKeys, {}};
    for (std::size_t i = 0; i < nKeys; ++i) {
        const std::string& name = network.nodes[nodes[i]].name;
        table.columns.push_back({name, name, ColumnKind::kText});
    }
    const NetworkNode& last = network.nodes[nodes.back()];
    if (across) {
        for (const std::string& state : last.states)
            table.columns.push_back({state, last.name + "=" + state, ColumnKind::kNumber});
    } else {
        table.columns.push_back({probabilityId(network, nodes), "P", ColumnKind::kNumber});
    }
    std::size_t nInRow = 0;
    for (const JointState& joint : jointStates(network, asked, nodes, answer)) {
        if (nInRow == 0) {
            table.rows.emplace_back();
            for (std::size_t i = 0; i < nKeys; ++i)
                table.rows.back().emplace_back(network.nodes[nodes[i]].states[joint.states[i]]);
        }
        table.rows.back().push_back(cellOf(joint.probability));
        nInRow = across ? (nInRow + 1) % last.states.size() : 0;
    }
    return table;
}

void addTreeTables(const Network& network, const caller::NetworkAnswer& answer, Report& report) {
    report.tables.push_back(sizesTable(answer));
    report.tables.push_back(cliqueTable(network, answer.tree));
    report.tables.push_back(eliminationTable(network, answer.tree));
    addTreeDetails(network, answer.tree, report);
}

void addCheckTables(const Network& network, const std::vector<std::size_t>& cycle,
                    std::optional<std::int32_t> libraryCheck, Report& report) {
    std::size_t mostStates = 0;
    std::size_t mostParents = 0;
    std::size_t nRows = 0;
    std::size_t nNumbers = 0;
    for (const NetworkNode& node : network.nodes) {
        mostStates = std::max(mostStates, node.states.size());
        mostParents = std::max(mostParents, node.parents.size());
        nRows += node.nRows();
        nNumbers += node.table.size();
    }
    ReportTable table{"check",
                      "Check",
                      {{"acyclic", "Acyclic", ColumnKind::kText},
                       {"nodes", "Nodes", ColumnKind::kCount},
                       {"arcs", "Arcs", ColumnKind::kCount},
                       {"mostStates", "Most states", ColumnKind::kCount},
                       {"mostParents", "Most parents", ColumnKind::kCount},
                       {"rows", "Rows", ColumnKind::kCount},
                       {"numbers", "Numbers", ColumnKind::kCount},
                       {"rowsOff", "Rows off 1", ColumnKind::kCount},
                       {"largestRowError", "Largest error", ColumnKind::kNumber},
                       {"exponentialCheck", "Exponential", ColumnKind::kCount}},
                      {},
                      0,
                      {}};
    table.rows.push_back({std::string(cycle.empty() ? "yes" : "no"), wholeCell(network.nodes.size()),
                          wholeCell(countArcs(network)), wholeCell(mostStates), wholeCell(mostParents),
                          wholeCell(nRows), wholeCell(nNumbers), wholeCell(network.nRowsOff),
                          cellOf(network.largestRowError),
                          libraryCheck ? wholeCell(static_cast<std::size_t>(*libraryCheck)) : Cell()});
    report.tables.push_back(std::move(table));
    report.notes.emplace_back(
        libraryCheck
            ? "Exponential: the library's check by a matrix exponential, 0 when every node is on a cycle, else "
              "1"
            : fmt::format(
                  "Exponential: the library's check by a matrix exponential is not asked of more than {} "
                  "nodes",
                  kMostExponentialNodes));
    if (cycle.empty()) return;
    ReportTable path{
        "cycle", "A cycle", {{"step", "Step", ColumnKind::kCount}, {"node", "Node", ColumnKind::kText}},
        {},      1,         {}};
    for (std::size_t i = 0; i < cycle.size(); ++i)
        path.rows.push_back({wholeCell(i + 1), network.nodes[cycle[i]].name});
    report.tables.push_back(std::move(path));
}

}  // namespace numcore::cli
