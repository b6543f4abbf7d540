#include "cli/networks/bif_tables.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "cli/errors.hpp"

namespace numcore::cli {

namespace {

/// A node's table while it is filled.
class TableFiller {
  public:
    TableFiller(const BifSource& source, const BifProbability& block,
                const std::vector<PositionsByName>& states, std::size_t node, Network& network)
        : source_(source), block_(block), states_(states), network_(network), node_(network.nodes[node]) {
        nStates_ = node_.states.size();
        nRows_ = countRows();
        node_.table.assign(nRows_ * nStates_, 0.0);
        rowPlaces_.assign(nRows_, kNotGiven);
    }

    void fill() {
        // The general before the particular, whatever their order in the file.
        for (const BifEntryKind kind : {BifEntryKind::kDefault, BifEntryKind::kTable, BifEntryKind::kRow}) {
            const BifEntry* first = nullptr;
            for (const BifEntry& entry : block_.entries) {
                if (entry.kind != kind) continue;
                if (kind == BifEntryKind::kRow) {
                    takeRow(entry);
                    continue;
                }
                if (first != nullptr)
                    source_.fail(entry.at, fmt::format("a second {} for {}", nameOf(kind), shown(block_.node)));
                first = &entry;
                if (kind == BifEntryKind::kDefault) {
                    takeDefault(entry);
                } else {
                    takeTable(entry);
                }
            }
        }
        checkComplete();
        checkSums();
    }

  private:
    static constexpr std::size_t kNotGiven = static_cast<std::size_t>(-1);

    static const char* nameOf(BifEntryKind kind) {
        return kind == BifEntryKind::kDefault ? "default" : "table";
    }

    /// Joint states of the parents, refused before they fill the memory.
    std::size_t countRows() const {
        std::size_t used = 0;
        for (const NetworkNode& node : network_.nodes) used += node.table.size();
        const std::size_t room = (kMostTableCells - std::min(used, kMostTableCells)) / nStates_;
        std::size_t n = 1;
        for (const std::size_t parent : node_.parents) {
            n *= network_.nodes[parent].states.size();
            if (n > room) break;
        }
        if (n > room) {
            source_.fail(
                block_.node.at,
                fmt::format("the table of {} with its {} is too large: the tables of a file "
                            "may hold {} numbers together",
                            shown(block_.node), counted(node_.parents.size(), "parent"), kMostTableCells));
        }
        return n;
    }

    void requireCount(const BifEntry& entry, std::size_t wanted, const char* why) const {
        if (entry.numbers.size() == wanted) return;
        source_.fail(entry.at,
                     fmt::format("{} for {}, which takes {}: {}", counted(entry.numbers.size(), "number"),
                                 shown(block_.node), wanted, why));
    }

    void setRow(std::size_t row, const BifEntry& entry) {
        std::ranges::copy(entry.numbers, node_.table.begin() + static_cast<std::ptrdiff_t>(row * nStates_));
        rowPlaces_[row] = entry.at;
    }

    void takeDefault(const BifEntry& entry) {
        requireCount(entry, nStates_, "one for each of its states");
        for (std::size_t row = 0; row < nRows_; ++row) setRow(row, entry);
    }

    void takeTable(const BifEntry& entry) {
        requireCount(entry, nRows_ * nStates_,
                     node_.parents.empty() ? "one for each of its states"
                                           : "one for each of its states and joint states of its parents");
        // Numbers that follow each other are `step` apart in the row of a joint parent state.
        const auto worst = [&](std::size_t rowStep, std::size_t stateStep) {
            double distance = 0.0;
            for (std::size_t row = 0; row < nRows_; ++row) {
                double sum = 0.0;
                for (std::size_t s = 0; s < nStates_; ++s) sum += entry.numbers[row * rowStep + s * stateStep];
                distance = std::max(distance, std::abs(sum - 1.0));
            }
            return distance;
        };
        const bool ownFastest = worst(1, nRows_) > kRowRounding && worst(nStates_, 1) <= kRowRounding;
        const std::size_t rowStep = ownFastest ? nStates_ : 1;
        const std::size_t stateStep = ownFastest ? 1 : nRows_;
        for (std::size_t row = 0; row < nRows_; ++row) {
            for (std::size_t s = 0; s < nStates_; ++s)
                node_.table[row * nStates_ + s] = entry.numbers[row * rowStep + s * stateStep];
            rowPlaces_[row] = entry.at;
        }
        if (ownFastest && ++network_.nTablesTurned <= kMostWarnings) {
            network_.warnings.push_back(
                fmt::format("{}: the table of {} sums to 1 only when its own state varies fastest; read so",
                            source_.place(entry.at), shown(block_.node)));
        }
    }

    std::size_t stateOf(std::size_t variable, const BifToken& token) const {
        const auto found = states_[variable].find(token.text);
        if (found != states_[variable].end()) return found->second;
        const NetworkNode& node = network_.nodes[variable];
        source_.fail(token.at, fmt::format("{} has no state {}; its states are {}", quotedForMessage(node.name),
                                           shown(token), listed(node.states)));
    }

    static std::string listed(const std::vector<std::string>& states) {
        constexpr std::size_t kMostListed = 12;
        std::string out;
        for (std::size_t i = 0; i < std::min(states.size(), kMostListed); ++i)
            out += (i == 0 ? "" : ", ") + quotedForMessage(states[i]);
        return out + (states.size() > kMostListed ? ", ..." : "");
    }

    void takeRow(const BifEntry& entry) {
        if (entry.states.size() != node_.parents.size()) {
            source_.fail(entry.at, fmt::format("a row of {} names {}, it has {}", shown(block_.node),
                                               counted(entry.states.size(), "state"),
                                               counted(node_.parents.size(), "parent")));
        }
        std::size_t row = 0;
        for (std::size_t i = 0; i < entry.states.size(); ++i) {
            const std::size_t parent = node_.parents[i];
            row = row * network_.nodes[parent].states.size() + stateOf(parent, entry.states[i]);
        }
        requireCount(entry, nStates_, "one for each of its states");
        if (rowsTaken_.empty()) rowsTaken_.assign(nRows_, false);
        if (rowsTaken_[row])
            source_.fail(entry.at, fmt::format("a second row {} for {}", rowName(row), shown(block_.node)));
        rowsTaken_[row] = true;
        setRow(row, entry);
    }

    /// "(yes, no)" of a row's number.
    std::string rowName(std::size_t row) const {
        std::string out;
        for (std::size_t i = node_.parents.size(); i-- > 0;) {
            const std::vector<std::string>& names = network_.nodes[node_.parents[i]].states;
            out.insert(0, (i == 0 ? "" : ", ") + printable(names[row % names.size()]));
            row /= names.size();
        }
        return "(" + out + ")";
    }

    void checkComplete() const {
        const auto nMissing = static_cast<std::size_t>(std::ranges::count(rowPlaces_, kNotGiven));
        if (nMissing == 0) return;
        if (node_.parents.empty())
            source_.fail(block_.node.at, fmt::format("no table for {}", shown(block_.node)));
        const auto first = std::ranges::find(rowPlaces_, kNotGiven) - rowPlaces_.begin();
        source_.fail(
            block_.node.at,
            fmt::format("{} of the {} of {} missing, the first is {}; give them, or a default", nMissing,
                        counted(nRows_, "row"), shown(block_.node), rowName(static_cast<std::size_t>(first))));
    }

    void checkSums() {
        for (std::size_t row = 0; row < nRows_; ++row) {
            double sum = 0.0;
            for (std::size_t s = 0; s < nStates_; ++s) sum += node_.table[row * nStates_ + s];
            const double distance = std::abs(sum - 1.0);
            network_.largestRowError = std::max(network_.largestRowError, distance);
            if (distance <= kRowRounding) continue;
            if (++network_.nRowsOff > kMostWarnings) continue;
            network_.warnings.push_back(fmt::format(
                "{}: {} of {} sums to {:.10g} instead of 1; used as given", source_.place(rowPlaces_[row]),
                node_.parents.empty() ? "the table" : "row " + rowName(row), shown(block_.node), sum));
        }
    }

    const BifSource& source_;
    const BifProbability& block_;
    const std::vector<PositionsByName>& states_;
    Network& network_;
    NetworkNode& node_;
    std::size_t nStates_ = 0;
    std::size_t nRows_ = 0;
    std::vector<std::size_t> rowPlaces_;  // where each row was given
    std::vector<bool> rowsTaken_;         // rows that stand by themselves
};

}  // namespace

void fillTable(const BifSource& source, const BifProbability& block, const std::vector<PositionsByName>& states,
               std::size_t node, Network& network) {
    TableFiller(source, block, states, node, network).fill();
}

}  // namespace numcore::cli
