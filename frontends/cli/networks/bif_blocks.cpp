#include "cli/networks/bif_blocks.hpp"

#include <fast_float/fast_float.h>
#include <fmt/format.h>

#include <cmath>
#include <optional>

namespace numcore::cli {

namespace {

constexpr std::size_t kMostNodes = 100'000;
constexpr std::size_t kMostStates = 10'000;
constexpr std::size_t kMostParents = 1'000;

/// A decimal number as the file writes it; infinite when it is too large.
std::optional<double> numberOf(std::string_view word) {
    if (word.starts_with('+')) word.remove_prefix(1);
    double value = 0.0;
    const auto [end, error] = fast_float::from_chars(word.data(), word.data() + word.size(), value);
    const bool whole = end == word.data() + word.size();
    if (!whole || error == std::errc::invalid_argument) return std::nullopt;
    return value;
}

double readProbability(BifReader& reader) {
    const BifToken word = reader.take();
    const std::optional<double> value = word.kind == BifKind::kWord ? numberOf(word.text) : std::nullopt;
    if (!value) reader.source().fail(word.at, fmt::format("expected a number, found {}", shown(word)));
    if (!std::isfinite(*value) || *value < 0.0)
        reader.source().fail(word.at, fmt::format("{} is no probability", shown(word)));
    return *value;
}

/// Names up to a closing sign.
std::vector<BifToken> readNames(BifReader& reader, char close, const char* what) {
    std::vector<BifToken> names;
    while (!reader.takeSign(close)) {
        names.push_back(reader.expectName(fmt::format("{} or '{}'", what, close)));
        reader.takeSign(',');
    }
    return names;
}

/// discrete [ n ] { state, ... };
std::vector<BifToken> readType(BifReader& reader, const BifToken& variable) {
    const BifToken kind = reader.take();
    if (!kind.isWord("discrete")) {
        reader.source().fail(kind.at, fmt::format("variable {} is of type {}; only discrete ones are known",
                                                  shown(variable), shown(kind)));
    }
    std::optional<double> count;
    const BifToken open = reader.peek();
    if (reader.takeSign('[')) {
        count = readProbability(reader);
        reader.expectSign(']', "the number of states");
    }
    reader.expectSign('{', "the type");
    std::vector<BifToken> states = readNames(reader, '}', "a state");
    if (count && *count != static_cast<double>(states.size())) {
        reader.source().fail(open.at, fmt::format("variable {} has {} states by its number and {} by its list",
                                                  shown(variable), *count, states.size()));
    }
    if (states.empty())
        reader.source().fail(variable.at, fmt::format("variable {} has no state", shown(variable)));
    if (states.size() > kMostStates) {
        reader.source().fail(variable.at,
                             fmt::format("variable {} has more than {} states", shown(variable), kMostStates));
    }
    reader.expectSign(';', "the states");
    return states;
}

BifVariable readVariable(BifReader& reader) {
    BifVariable variable{reader.expectName("the name of a variable"), {}};
    reader.expectSign('{', "the name of the variable");
    while (!reader.takeSign('}')) {
        const BifToken word = reader.take();
        if (word.isWord("property")) {
            reader.skipProperty();
        } else if (word.isWord("type")) {
            if (!variable.states.empty())
                reader.source().fail(word.at, fmt::format("variable {} has two types", shown(variable.name)));
            variable.states = readType(reader, variable.name);
        } else {
            reader.source().fail(word.at,
                                 fmt::format("expected type, property or '}}' in variable {}, found {}",
                                             shown(variable.name), shown(word)));
        }
    }
    if (variable.states.empty())
        reader.source().fail(variable.name.at, fmt::format("variable {} has no type", shown(variable.name)));
    return variable;
}

/// ( node | parent, ... ), where bar and commas may be left out.
void readFamily(BifReader& reader, BifProbability& block) {
    reader.expectSign('(', "probability");
    block.node = reader.expectName("the name of a variable");
    reader.takeSign(',');
    const bool bar = reader.takeSign('|');
    while (!reader.takeSign(')')) {
        if (!bar && reader.peek().isSign('|'))
            reader.source().fail(reader.peek().at, "one variable stands before the bar");
        block.parents.push_back(reader.expectName("the name of a parent or ')'"));
        reader.takeSign(',');
    }
    if (block.parents.size() > kMostParents)
        reader.source().fail(block.node.at,
                             fmt::format("{} has more than {} parents", shown(block.node), kMostParents));
}

std::vector<double> readNumbers(BifReader& reader) {
    std::vector<double> numbers;
    while (!reader.takeSign(';')) {
        if (reader.peek().isSign('}') || reader.peek().isSign('(') || reader.peek().kind == BifKind::kEnd)
            reader.source().fail(reader.peek().at, "expected a number or ';', found " + shown(reader.peek()));
        numbers.push_back(readProbability(reader));
        reader.takeSign(',');
    }
    return numbers;
}

BifProbability readProbabilityBlock(BifReader& reader) {
    BifProbability block;
    readFamily(reader, block);
    reader.expectSign('{', "the names");
    while (!reader.takeSign('}')) {
        const BifToken word = reader.take();
        if (word.isWord("property")) {
            reader.skipProperty();
            continue;
        }
        BifEntry entry{BifEntryKind::kRow, word.at, {}, {}};
        if (word.isSign('(')) {
            entry.states = readNames(reader, ')', "a state");
        } else if (word.isWord("table")) {
            entry.kind = BifEntryKind::kTable;
        } else if (word.isWord("default")) {
            entry.kind = BifEntryKind::kDefault;
        } else {
            reader.source().fail(
                word.at,
                fmt::format("expected table, default, a row such as (a, b), property or '}}' for {}, found {}",
                            shown(block.node), shown(word)));
        }
        entry.numbers = readNumbers(reader);
        block.entries.push_back(std::move(entry));
    }
    return block;
}

/// network NAME { property ...; }; the name may be missing.
std::string readNetwork(BifReader& reader) {
    std::string name;
    if (reader.peek().isName()) name = std::string(reader.take().text);
    reader.expectSign('{', "network");
    while (!reader.takeSign('}')) {
        const BifToken word = reader.take();
        if (!word.isWord("property"))
            reader.source().fail(word.at, "expected property or '}' in network, found " + shown(word));
        reader.skipProperty();
    }
    return name;
}

}  // namespace

BifBlocks readBlocks(const BifSource& source) {
    BifReader reader(source);
    BifBlocks blocks;
    bool named = false;
    while (reader.peek().kind != BifKind::kEnd) {
        const BifToken word = reader.take();
        if (word.isWord("network")) {
            if (named) source.fail(word.at, "a second network begins here; a file holds one");
            blocks.networkName = readNetwork(reader);
            named = true;
        } else if (word.isWord("variable")) {
            blocks.variables.push_back(readVariable(reader));
            if (blocks.variables.size() > kMostNodes)
                source.fail(word.at, fmt::format("more than {} variables", kMostNodes));
        } else if (word.isWord("probability")) {
            blocks.probabilities.push_back(readProbabilityBlock(reader));
        } else {
            source.fail(word.at, "expected network, variable or probability, found " + shown(word));
        }
    }
    if (blocks.variables.empty()) source.fail(0, "no variable block; is this a network in BIF format?");
    return blocks;
}

}  // namespace numcore::cli
