#include "cli/networks/question.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "cli/errors.hpp"
#include "cli/laws/values.hpp"
#include "cli/words.hpp"

namespace numcore::cli {

namespace {

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

/// Position of a sign outside double quotes; the end when there is none.
std::size_t findOutsideQuotes(std::string_view text, char sign) {
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"') quoted = !quoted;
        if (text[i] == sign && !quoted) return i;
    }
    return text.size();
}

/// The parts between commas outside double quotes.
std::vector<std::string_view> splitParts(std::string_view list) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t comma = findOutsideQuotes(list, ',');
        parts.push_back(trimmed(list.substr(0, comma)));
        if (comma == list.size()) return parts;
        list.remove_prefix(comma + 1);
    }
}

std::string nameOf(std::string_view word) {
    word = trimmed(word);
    const bool quoted = word.size() >= 2 && word.front() == '"' && word.back() == '"';
    return std::string(quoted ? word.substr(1, word.size() - 2) : word);
}

/// "node=rest" in two.
struct Equation {
    std::string node;
    std::string_view rest;
    bool hasRest;
};

Equation splitEquation(std::string_view part) {
    const std::size_t equals = findOutsideQuotes(part, '=');
    const bool hasRest = equals < part.size();
    return {nameOf(part.substr(0, equals)), hasRest ? trimmed(part.substr(equals + 1)) : std::string_view(),
            hasRest};
}

std::string listed(const std::vector<std::string>& names) {
    constexpr std::size_t kMost = 20;
    std::string out;
    for (std::size_t i = 0; i < std::min(names.size(), kMost); ++i)
        out += (i == 0 ? "" : ", ") + printable(names[i]);
    return out + (names.size() > kMost ? fmt::format(", ... ({})", names.size()) : "");
}

class QuestionReader {
  public:
    QuestionReader(const NetworkRequest& request, const Network& network)
        : request_(request), network_(network) {
        nodeNames_.reserve(network.nodes.size());
        for (const NetworkNode& node : network.nodes) nodeNames_.push_back(node.name);
    }

    NetworkQuestionAsked read() {
        NetworkQuestionAsked asked;
        for (const std::string& list : request_.evidence) readEvidence(list, asked.question);
        for (const std::string& list : request_.likelihoods) readLikelihoods(list, asked.question);
        for (const std::string& text : request_.queries) asked.queries.push_back(readQuery(text));
        for (const std::string& list : request_.joints) asked.queries.push_back(readJoint(list));
        for (const NetworkQueryAsked& query : asked.queries) asked.question.queries.push_back(query.query);
        if (!request_.memory.empty()) asked.question.memory = parseBytes(request_.memory);
        return asked;
    }

  private:
    std::size_t nodeNamed(const std::string& name, const char* option) const {
        const auto found = std::ranges::find(nodeNames_, name);
        if (found != nodeNames_.end()) return static_cast<std::size_t>(found - nodeNames_.begin());
        throw UsageError(fmt::format("{}: the network has no node {}{}\nnodes: {}", option,
                                     quotedForMessage(name), didYouMean(name, nodeNames_), listed(nodeNames_)));
    }

    std::size_t stateNamed(std::size_t node, const std::string& name, const char* option) const {
        const std::vector<std::string>& states = network_.nodes[node].states;
        const auto found = std::ranges::find(states, name);
        if (found != states.end()) return static_cast<std::size_t>(found - states.begin());
        throw UsageError(fmt::format("{}: {} has no state {}{}\nstates: {}", option,
                                     quotedForMessage(nodeNames_[node]), quotedForMessage(name),
                                     didYouMean(name, states), listed(states)));
    }

    void readEvidence(const std::string& list, caller::NetworkQuestion& question) const {
        for (const std::string_view part : splitParts(list)) {
            const Equation equation = splitEquation(part);
            if (!equation.hasRest)
                throw UsageError(fmt::format("--evidence takes Node=state, not {}", quotedForMessage(part)));
            const std::size_t node = nodeNamed(equation.node, "--evidence");
            const std::size_t state = stateNamed(node, nameOf(equation.rest), "--evidence");
            refuseTwice(question.observed, node, "--evidence");
            question.observed.emplace_back(node, state);
        }
    }

    void readLikelihoods(const std::string& list, caller::NetworkQuestion& question) const {
        for (const std::string_view part : splitParts(list)) {
            const Equation equation = splitEquation(part);
            const std::size_t node = nodeNamed(equation.node, "--likely");
            refuseTwice(question.likelihoods, node, "--likely");
            question.likelihoods.emplace_back(node, likelihoodsOf(node, equation.rest));
        }
    }

    std::vector<double> likelihoodsOf(std::size_t node, std::string_view text) const {
        std::vector<double> values;
        std::string_view rest = text;
        for (;;) {
            const std::size_t colon = std::min(rest.find(':'), rest.size());
            const std::optional<double> value = parseNumber(trimmed(rest.substr(0, colon)));
            if (!value || !std::isfinite(*value) || *value < 0.0) {
                throw UsageError(fmt::format("--likely takes Node=l1:l2:... with numbers of 0 or more, not {}",
                                             quotedForMessage(text)));
            }
            values.push_back(*value);
            if (colon == rest.size()) break;
            rest.remove_prefix(colon + 1);
        }
        const std::vector<std::string>& states = network_.nodes[node].states;
        if (values.size() != states.size()) {
            throw UsageError(fmt::format("--likely: {} for {}, which has {}: {}",
                                         counted(values.size(), "number"), quotedForMessage(nodeNames_[node]),
                                         counted(states.size(), "state"), listed(states)));
        }
        if (std::ranges::all_of(values, [](double value) { return value == 0.0; }))
            throw UsageError(
                fmt::format("--likely: every state of {} is excluded", quotedForMessage(nodeNames_[node])));
        return values;
    }

    template <class Finding>
    void refuseTwice(const std::vector<Finding>& findings, std::size_t node, const char* option) const {
        if (std::ranges::find(findings, node, &Finding::first) != findings.end())
            throw UsageError(fmt::format("{}: {} stands twice", option, quotedForMessage(nodeNames_[node])));
    }

    /// Adds a node of a query, which may stand in it once.
    void addNode(const std::string& name, const char* option, caller::NetworkQuery& query,
                 caller::NodeList& list) const {
        const std::size_t node = nodeNamed(name, option);
        const bool twice = std::ranges::find(query.nodes, node) != query.nodes.end() ||
                           std::ranges::find(query.given, node) != query.given.end();
        if (twice) throw UsageError(fmt::format("{}: {} stands twice", option, quotedForMessage(name)));
        list.push_back(node);
    }

    NetworkQueryAsked readQuery(std::string_view text) const {
        NetworkQueryAsked asked;
        const std::size_t bar = findOutsideQuotes(text, '|');
        for (const std::string_view part : splitParts(text.substr(0, bar)))
            addNode(nameOf(part), "--query", asked.query, asked.query.nodes);
        if (bar == text.size()) return asked;
        for (const std::string_view part : splitParts(text.substr(bar + 1))) {
            const Equation equation = splitEquation(part);
            addNode(equation.node, "--query", asked.query, asked.query.given);
            std::optional<std::size_t> state;
            if (equation.hasRest)
                state = stateNamed(asked.query.given.back(), nameOf(equation.rest), "--query");
            asked.tied.push_back(state);
        }
        return asked;
    }

    NetworkQueryAsked readJoint(std::string_view list) const {
        NetworkQueryAsked asked;
        for (const std::string_view part : splitParts(list))
            addNode(nameOf(part), "--joint", asked.query, asked.query.nodes);
        return asked;
    }

    const NetworkRequest& request_;
    const Network& network_;
    std::vector<std::string> nodeNames_;
};

}  // namespace

NetworkQuestionAsked readQuestion(const NetworkRequest& request, const Network& network) {
    return QuestionReader(request, network).read();
}

double parseBytes(const std::string& text) {
    static const std::map<std::string, double> units{{"", 0},    {"b", 0},  {"k", 1},   {"kb", 1}, {"kib", 1},
                                                     {"m", 2},   {"mb", 2}, {"mib", 2}, {"g", 3},  {"gb", 3},
                                                     {"gib", 3}, {"t", 4},  {"tb", 4},  {"tib", 4}};
    const std::size_t end = std::min(text.find_last_of("0123456789.") + 1, text.size());
    const std::optional<double> number = parseNumber(std::string_view(text).substr(0, end));
    const auto unit = units.find(lowerCase(trimmed(std::string_view(text).substr(end))));
    if (!number || !(*number > 0.0) || !std::isfinite(*number) || unit == units.end())
        throw UsageError(fmt::format("--memory takes bytes, or 500M, 2G, not {}", quotedForMessage(text)));
    return *number * std::pow(1024.0, unit->second);
}

}  // namespace numcore::cli
