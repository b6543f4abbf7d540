#include "cli/networks/bif.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "cli/csv/input.hpp"
#include "cli/errors.hpp"
#include "cli/networks/bif_blocks.hpp"
#include "cli/networks/bif_tables.hpp"
#include "cli/progress.hpp"
#include "cli/words.hpp"

namespace numcore::cli {

namespace {

/// The positions of names, each of which may stand once.
PositionsByName positionsOf(const BifSource& source, const std::vector<BifToken>& names,
                            const std::string& what) {
    PositionsByName positions;
    for (const BifToken& name : names) {
        if (!positions.emplace(name.text, positions.size()).second)
            source.fail(name.at, fmt::format("{} {} stands twice", what, shown(name)));
    }
    return positions;
}

std::vector<BifToken> variableNames(const BifBlocks& blocks) {
    std::vector<BifToken> names;
    names.reserve(blocks.variables.size());
    for (const BifVariable& variable : blocks.variables) names.push_back(variable.name);
    return names;
}

std::size_t lookUp(const BifSource& source, const PositionsByName& nodes, const BifToken& name) {
    const auto found = nodes.find(name.text);
    if (found != nodes.end()) return found->second;
    std::vector<std::string> names;
    names.reserve(nodes.size());
    for (const auto& [known, position] : nodes) names.emplace_back(known);
    std::ranges::sort(names);
    source.fail(name.at,
                fmt::format("no variable {} is declared{}", shown(name), didYouMean(name.text, names)));
}

std::vector<std::size_t> parentsOf(const BifSource& source, const PositionsByName& nodes,
                                   const BifProbability& block) {
    std::vector<std::size_t> parents;
    for (const BifToken& name : block.parents) {
        const std::size_t parent = lookUp(source, nodes, name);
        if (std::ranges::find(parents, parent) != parents.end())
            source.fail(name.at, fmt::format("parent {} of {} stands twice", shown(name), shown(block.node)));
        parents.push_back(parent);
    }
    return parents;
}

/// Each variable with its block, every one of which has to be there once.
std::vector<const BifProbability*> blocksOfNodes(const BifSource& source, const PositionsByName& nodes,
                                                 const BifBlocks& blocks) {
    std::vector<const BifProbability*> out(blocks.variables.size(), nullptr);
    for (const BifProbability& block : blocks.probabilities) {
        const BifProbability*& mine = out[lookUp(source, nodes, block.node)];
        if (mine != nullptr)
            source.fail(block.node.at, fmt::format("a second probability block for {}", shown(block.node)));
        mine = &block;
    }
    const auto missing = std::ranges::find(out, nullptr);
    if (missing != out.end()) {
        const BifToken& name = blocks.variables[static_cast<std::size_t>(missing - out.begin())].name;
        source.fail(name.at, fmt::format("variable {} has no probability block", shown(name)));
    }
    return out;
}

void noteFurther(const BifSource& source, Network& network) {
    const auto note = [&](std::size_t n, const char* what, const char* end) {
        if (n <= kMostWarnings) return;
        network.warnings.push_back(
            fmt::format("{}: {} more {}", source.file, counted(n - kMostWarnings, what), end));
    };
    note(network.nTablesTurned, "table", "whose own state varies fastest; read so");
    note(network.nRowsOff, "row", "that do not sum to 1; used as given");
}

}  // namespace

Network parseBif(std::string_view text, const std::string& file) {
    const BifSource source{file, text};
    const BifBlocks blocks = readBlocks(source);
    const PositionsByName nodes = positionsOf(source, variableNames(blocks), "variable");
    Network network;
    network.name = blocks.networkName;
    std::vector<PositionsByName> states;
    states.reserve(blocks.variables.size());
    for (const BifVariable& variable : blocks.variables) {
        states.push_back(positionsOf(source, variable.states, "in " + shown(variable.name) + " state"));
        NetworkNode node{std::string(variable.name.text), {}, {}, {}};
        for (const BifToken& state : variable.states) node.states.emplace_back(state.text);
        network.nodes.push_back(std::move(node));
    }
    const std::vector<const BifProbability*> blockOf = blocksOfNodes(source, nodes, blocks);
    for (std::size_t i = 0; i < blockOf.size(); ++i)
        network.nodes[i].parents = parentsOf(source, nodes, *blockOf[i]);
    for (std::size_t i = 0; i < blockOf.size(); ++i) fillTable(source, *blockOf[i], states, i, network);
    noteFurther(source, network);
    return network;
}

Network readBif(const std::string& file, std::optional<Encoding> encoding) {
    Progress progress(false);
    const std::string shownFile = file == "-" ? "standard input" : printable(file);
    Input input = Input::open(file, progress);
    std::vector<std::string> warnings;
    input.decode(encoding, warnings);
    Network network = parseBif(input.text(), shownFile);
    for (std::string& warning : warnings) warning.insert(0, shownFile + ": ");
    network.warnings.insert(network.warnings.begin(), warnings.begin(), warnings.end());
    return network;
}

}  // namespace numcore::cli
