#include "decision/networks/propagation.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace numcore::networks {
namespace {

/// Products below 2^-511 are scaled up. Bits of several cells, or-ed, are below those of 2^-511 only if each
/// cell is: an exponent below 512 has no bit in common with those above.
constexpr double kTooLow = 0x1p-511;
/// Products of 2 and more are scaled down. Or-ed bits are those of 2 or more only if a cell's are: an exponent
/// up to 1023 has no bit in common with those above.
constexpr double kTooHigh = 2.0;

std::uint64_t bitsOfAll(std::span<const double> cells) {
    std::uint64_t bits = 0;
    for (const double cell : cells) bits |= std::bit_cast<std::uint64_t>(cell);
    return bits;
}

/// Powers of 2 taken out of a table.
class Scale {
  public:
    /// Scales a table so that its largest cell is in [1/2, 1); a table of zeros stays.
    void takeOut(std::span<double> table) {
        const double largest = table.empty() ? 0.0 : std::ranges::max(table);
        if (!(largest > 0.0)) return;
        int exponent = 0;
        std::frexp(largest, &exponent);
        if (exponent == 0) return;
        // In two steps, for one factor may be beyond the largest double.
        const double half = std::ldexp(1.0, -(exponent / 2));
        const double rest = std::ldexp(1.0, -(exponent - exponent / 2));
        for (double& cell : table) cell = cell * half * rest;
        exponent_ += exponent;
    }
    void keepInRange(std::span<double> table, std::uint64_t bits) {
        if (bits < std::bit_cast<std::uint64_t>(kTooLow) || bits >= std::bit_cast<std::uint64_t>(kTooHigh))
            takeOut(table);
    }
    std::int64_t exponent() const { return exponent_; }

  private:
    std::int64_t exponent_ = 0;
};

/// The ways to the separator above a clique: from itself and from its parent.
struct Link {
    std::size_t clique;
    std::size_t parent;
    std::size_t join;
    Projection fromClique;
    Projection fromParent;
};

/// What propagations in one tree have in common.
struct Walks {
    std::vector<Axes> axes;   ///< of the cliques
    std::vector<Link> links;  ///< children before parents

    Walks(const Network& network, const JunctionTree& tree) {
        axes.reserve(tree.cliques.count());
        for (std::size_t c = 0; c < tree.cliques.count(); ++c)
            axes.push_back(axesOf(tree.cliques[c], network.sizes));
        links.reserve(tree.joins.size());
        for (const Number clique : tree.rooted.postorder)
            if (clique != tree.rooted.root) links.push_back(linkAbove(tree, static_cast<std::size_t>(clique)));
    }

  private:
    Link linkAbove(const JunctionTree& tree, std::size_t clique) const {
        const auto parent = static_cast<std::size_t>(tree.rooted.parents[clique]);
        const auto join = static_cast<std::size_t>(tree.joinAbove[clique]);
        const auto separator = tree.separators[join];
        return {clique, parent, join, Projection(axes[clique], separator), Projection(axes[parent], separator)};
    }
};

class Propagation {
  public:
    Propagation(const Network& network, const JunctionTree& tree, const Walks& walks)
        : network_(network),
          tree_(tree),
          walks_(walks),
          cliques_(tree.cliqueCells),
          separators_(tree.separatorCells) {
        double longest = 1.0;
        for (const double cells : tree.separatorCells) longest = std::max(longest, cells);
        message_.resize(static_cast<std::size_t>(longest));
    }

    void load(const Inputs& inputs) {
        std::size_t tableAt = 0;
        std::size_t stateAt = 0;
        std::vector<Number> family;
        for (std::size_t node = 0; node < network_.n(); ++node) {
            const auto number = static_cast<Number>(node);
            const auto parents = network_.parents[node];
            family.assign(parents.begin(), parents.end());
            family.push_back(number);
            tableAt += multiplyIn(tree_.familyCliques[node], family, inputs.conditionals.data() + tableAt);
            if (!inputs.likelihoods.empty())
                stateAt += multiplyIn(tree_.lightestCliques[node], std::span(&number, 1),
                                      inputs.likelihoods.data() + stateAt);
        }
    }

    /// From the leaves to the root: each clique's separator table goes into its parent. The root's total is
    /// that of all joint states.
    Total collect() {
        for (const Link& link : walks_.links) {
            const auto separator = separators_.table(link.join);
            link.fromClique.sum(cliques_[link.clique], separator.data());
            scale_.takeOut(separator);
            scale_.keepInRange(cliques_.table(link.parent),
                               link.fromParent.multiply(cliques_[link.parent], separator.data()));
        }
        const auto root = cliques_.table(static_cast<std::size_t>(tree_.rooted.root));
        return {sumOf(root), scale_.exponent()};
    }

    /// From the root to the leaves: what the parent says of the separator now, against what it was told.
    void distribute() {
        for (auto link = walks_.links.rbegin(); link != walks_.links.rend(); ++link) {
            const auto separator = separators_.table(link->join);
            const auto message = std::span(message_).first(separator.size());
            Scale ignored;  // the tables are normalised
            link->fromParent.sum(cliques_[link->parent], message.data());
            ignored.takeOut(message);
            divideInto(message, separator);
            ignored.keepInRange(cliques_.table(link->clique),
                                link->fromClique.multiply(cliques_[link->clique], separator.data()));
            std::ranges::copy(message, separator.begin());
        }
    }

    /// Clique tables of sum 1; tables of sum 0 stay.
    Calibrated finish() && {
        for (std::size_t c = 0; c < tree_.cliques.count(); ++c) normalise(cliques_.table(c));
        return {std::move(cliques_), std::move(separators_)};
    }

  private:
    std::size_t multiplyIn(Number clique, std::span<const Number> nodes, const double* cells) {
        const auto c = static_cast<std::size_t>(clique);
        const Projection projection(walks_.axes[c], nodes);
        std::vector<double> scaled;
        if (bitsOfAll({cells, projection.partCells()}) >= std::bit_cast<std::uint64_t>(kTooHigh)) {
            scaled.assign(cells, cells + projection.partCells());
            scale_.takeOut(scaled);
            cells = scaled.data();
        }
        scale_.keepInRange(cliques_.table(c), projection.multiply(cliques_[c], cells));
        return projection.partCells();
    }

    const Network& network_;
    const JunctionTree& tree_;
    const Walks& walks_;
    Tables cliques_;
    Tables separators_;
    std::vector<double> message_;
    Scale scale_;
};

}  // namespace

Tables::Tables(std::span<const double> nCells) {
    starts_.reserve(nCells.size() + 1);
    for (const double n : nCells) starts_.push_back(starts_.back() + static_cast<std::size_t>(n));
    cells_.assign(starts_.back(), 1.0);
}

std::vector<Number> familyOf(const Network& network, std::size_t node) {
    const auto parents = network.parents[node];
    std::vector<Number> family;
    family.reserve(parents.size() + 1);
    family.assign(parents.begin(), parents.end());
    family.push_back(static_cast<Number>(node));
    return family;
}

double normalise(std::span<double> table) {
    const double total = sumOf(table);
    if (total > 0.0)
        for (double& cell : table) cell /= total;
    return total;
}

void divideInto(std::span<const double> numerator, std::span<double> denominator) {
    for (std::size_t i = 0; i < numerator.size(); ++i) {
        // A quotient beyond the largest double meets a cell that is as near to 0.
        const double quotient = numerator[i] / denominator[i];
        denominator[i] = denominator[i] > 0.0 ? std::min(quotient, std::numeric_limits<double>::max()) : 0.0;
    }
}

double Total::logarithm() const {
    return std::log(factor) + static_cast<double>(exponent) * std::numbers::ln2;
}

// 1. total without evidence, for rows of conditional tables need not have the sum 1 exactly, 2. load the
// tables,
// 3. collect, 4. probability of the evidence, 5. distribute, 6. normalise every clique.
Calibrated propagate(const Network& network, const JunctionTree& tree, const Inputs& inputs) {
    const bool hasEvidence = !inputs.likelihoods.empty();
    const Walks walks(network, tree);
    Total prior;
    if (hasEvidence) {
        Propagation withoutEvidence(network, tree, walks);  // 1
        withoutEvidence.load({inputs.conditionals, {}});
        prior = withoutEvidence.collect();
    }
    Propagation propagation(network, tree, walks);
    propagation.load(inputs);                   // 2
    const Total total = propagation.collect();  // 3
    if (!hasEvidence) prior = total;
    const double logProbability =
        total.factor > 0.0 ? total.logarithm() - prior.logarithm() : total.logarithm();  // 4
    if (total.factor > 0.0) propagation.distribute();                                    // 5
    Calibrated out = std::move(propagation).finish();                                    // 6
    const auto exponent = std::clamp<std::int64_t>(total.exponent - prior.exponent, -100000, 100000);
    out.probability =
        total.factor > 0.0 ? std::ldexp(total.factor / prior.factor, static_cast<int>(exponent)) : 0.0;
    out.logProbability = logProbability;
    return out;
}

}  // namespace numcore::networks
