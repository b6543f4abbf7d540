#include "cli/networks/drawing.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "cli/errors.hpp"
#include "cli/output/writers.hpp"
#include "cli/plot/graph_layout.hpp"
#include "cli/plot/label.hpp"
#include "cli/plot/svg.hpp"
#include "numcore/api.h"

namespace numcore::cli {

namespace {

using plot::Anchor;
using plot::ArcCurve;
using plot::Box;
using plot::Graph;
using plot::GraphLayout;
using plot::Point;
using plot::shortLabel;
using plot::Svg;

constexpr std::size_t kMostDrawn = 400;
constexpr std::size_t kMostStates = 10;  // lines in a node; the others are counted
constexpr int kLongestName = 26;
constexpr int kLongestState = 16;
constexpr double kMargin = 24.0;
constexpr double kTitleRoom = 54.0;
constexpr double kHeadingRoom = 40.0;
constexpr double kLegendRoom = 44.0;
constexpr double kPadding = 8.0;
constexpr double kNameHeight = 24.0;
constexpr double kLineHeight = 17.0;
constexpr double kNameCharacter = 7.8;  // bold
constexpr double kDetailCharacter = 6.6;
constexpr double kBarWidth = 62.0;
constexpr double kNumberWidth = 50.0;

enum class Known { kNothing, kLikelihood, kState };

/// A node as it is drawn.
struct NodePicture {
    std::string name;
    std::vector<std::string> states;
    std::string rest;  // "and 5 more states"
    Known known = Known::kNothing;
    double labelWidth = 0.0;

    std::string heading() const {
        return name + (known == Known::kNothing ? "" : known == Known::kState ? " ●" : " ◐");
    }
    std::size_t nLines() const { return states.size() + (rest.empty() ? 0 : 1); }
    double width() const {
        const double ofName = kNameCharacter * displayWidth(heading());
        return 2.0 * kPadding + std::max(ofName, labelWidth + kBarWidth + kNumberWidth);
    }
    double height() const { return kNameHeight + kLineHeight * static_cast<double>(nLines()) + kPadding; }
};

Known knownOf(const caller::NetworkQuestion& question, std::size_t node) {
    const auto names = [node](const auto& finding) { return finding.first == node; };
    if (std::ranges::any_of(question.observed, names)) return Known::kState;
    return std::ranges::any_of(question.likelihoods, names) ? Known::kLikelihood : Known::kNothing;
}

NodePicture pictureOf(const NetworkNode& node, Known known) {
    NodePicture picture{shortLabel(node.name, kLongestName), {}, {}, known, 0.0};
    const bool cut = node.states.size() > kMostStates;
    const std::size_t nShown = cut ? kMostStates - 1 : node.states.size();
    picture.states.reserve(nShown);
    for (std::size_t s = 0; s < nShown; ++s)
        picture.states.push_back(shortLabel(node.states[s], kLongestState));
    if (cut) picture.rest = fmt::format("and {} more states", node.states.size() - nShown);
    int widest = 0;
    for (const std::string& state : picture.states) widest = std::max(widest, displayWidth(state));
    picture.labelWidth = kDetailCharacter * widest + 8.0;
    return picture;
}

/// "12.3 %"; what rounds to an end without being it keeps its side.
std::string percentText(double probability) {
    const double percent = 100.0 * probability;
    if (percent > 0.0 && percent < 0.05) return "<0.1 %";
    if (percent < 100.0 - 1e-9 && percent >= 99.95) return ">99.9 %";
    return fmt::format("{:.1f} %", percent);
}

bool isProbability(double value) {
    return value != NUMCORE_MISSING && std::isfinite(value);
}

/// A bar for the probability and, with evidence, a tick for what it was before.
void drawState(Svg& svg, Point at, const NodePicture& picture, std::size_t state, double before, double after) {
    const double middle = at.y + kLineHeight / 2.0;
    const double left = at.x + picture.labelWidth;
    const Box track{left, at.y + 3.0, left + kBarWidth, at.y + kLineHeight - 3.0};
    svg.text({at.x, middle + 4.0}, picture.states[state], "detail");
    svg.rectangle(track, "track");
    if (isProbability(after)) {
        const double width = kBarWidth * std::clamp(after, 0.0, 1.0);
        if (width > 0.0)
            svg.rectangle({track.left, track.top, track.left + width, track.bottom},
                          picture.known == Known::kState ? "bar-asked" : "bar");
    }
    if (isProbability(before)) {
        const double x = track.left + kBarWidth * std::clamp(before, 0.0, 1.0);
        svg.line({x, track.top - 2.0}, {x, track.bottom + 2.0}, "tick");
    }
    svg.text({track.right + kNumberWidth, middle + 4.0}, isProbability(after) ? percentText(after) : "–",
             "detail", Anchor::kEnd);
}

Box shifted(const Box& box, Point by) {
    return {box.left + by.x, box.top + by.y, box.right + by.x, box.bottom + by.y};
}

void drawArrow(Svg& svg, Point base, Point tip) {
    const double length = std::hypot(tip.x - base.x, tip.y - base.y);
    if (length <= 0.0) return;
    constexpr double kHalfWidth = 3.2;
    const double dx = kHalfWidth * (tip.y - base.y) / length;
    const double dy = kHalfWidth * (base.x - tip.x) / length;
    const Point corners[] = {{base.x + dx, base.y + dy}, {base.x - dx, base.y - dy}, tip};
    svg.polygon(corners, "arrow");
}

void drawArcs(Svg& svg, const GraphLayout& layout, Point origin) {
    for (const ArcCurve& arc : layout.arcs) {
        std::vector<Point> points = arc.points;
        for (Point& point : points) point = {point.x + origin.x, point.y + origin.y};
        svg.bezier(points, "arc");
        if (arc.tip && !points.empty())
            drawArrow(svg, points.back(), {arc.tip->x + origin.x, arc.tip->y + origin.y});
    }
}

/// The network's part of the picture.
class NetworkPart {
  public:
    NetworkPart(const Network& network, const NetworkQuestionAsked& asked, const NetworkAnswers& answers)
        : asked_(asked), answers_(answers) {
        Graph graph;
        for (std::size_t i = 0; i < network.nodes.size(); ++i) {
            pictures_.push_back(pictureOf(network.nodes[i], knownOf(asked.question, i)));
            graph.nodes.push_back({pictures_[i].width(), pictures_[i].height()});
            for (const std::size_t parent : network.nodes[i].parents) graph.arcs.push_back({parent, i, true});
        }
        layout_ = plot::layOut(graph);
    }

    const GraphLayout& layout() const { return layout_; }

    void draw(Svg& svg, Point origin) const {
        drawArcs(svg, layout_, origin);
        for (std::size_t i = 0; i < pictures_.size(); ++i) drawNode(svg, shifted(layout_.nodes[i], origin), i);
    }

  private:
    void drawNode(Svg& svg, const Box& box, std::size_t node) const {
        const NodePicture& picture = pictures_[node];
        svg.rectangle(box, picture.known == Known::kNothing ? "node" : "node-strong");
        svg.text({box.left + kPadding, box.top + 17.0}, picture.heading(), "name");
        Point at{box.left + kPadding, box.top + kNameHeight};
        for (std::size_t s = 0; s < picture.states.size(); ++s) {
            const double before = asked_.hasEvidence() ? answers_.before.marginals[node][s] : NUMCORE_MISSING;
            drawState(svg, at, picture, s, before, answers_.after.marginals[node][s]);
            at.y += kLineHeight;
        }
        if (!picture.rest.empty()) svg.text({at.x, at.y + 12.5}, picture.rest, "detail");
    }

    const NetworkQuestionAsked& asked_;
    const NetworkAnswers& answers_;
    std::vector<NodePicture> pictures_;
    GraphLayout layout_;
};

/// The junction tree's part: cliques as boxes, separators as dashed boxes between them.
class TreePart {
  public:
    TreePart(const Network& network, const caller::NetworkTree& tree) : root_(tree.root) {
        Graph graph;
        for (std::size_t c = 0; c < tree.cliques.size(); ++c) {
            std::vector<std::string> lines{fmt::format("{}{}", c + 1, c == tree.root ? " (root)" : "")};
            for (const std::size_t node : tree.cliques[c])
                lines.push_back(shortLabel(network.nodes[node].name, kLongestName));
            addBox(std::move(lines), graph);
        }
        nCliques_ = boxes_.size();
        for (const caller::NetworkJoin& join : tree.joins) {
            std::vector<std::string> lines;
            for (const std::size_t node : join.separator)
                lines.push_back(shortLabel(network.nodes[node].name, kLongestName));
            if (lines.empty()) lines.emplace_back("∅");
            // Arcs run from parent to child, whichever way the join was made.
            const bool down = tree.parents[join.to] == join.from;
            const std::size_t between = boxes_.size();
            addBox(std::move(lines), graph);
            graph.arcs.push_back({down ? join.from : join.to, between, false});
            graph.arcs.push_back({between, down ? join.to : join.from, false});
        }
        layout_ = plot::layOut(graph);
    }

    const GraphLayout& layout() const { return layout_; }

    void draw(Svg& svg, Point origin) const {
        drawArcs(svg, layout_, origin);
        for (std::size_t i = 0; i < boxes_.size(); ++i) {
            const Box box = shifted(layout_.nodes[i], origin);
            const bool clique = i < nCliques_;
            svg.rectangle(box, !clique ? "node-between" : i == root_ ? "node-strong" : "node");
            double y = box.top + kLineHeight;
            for (const std::string& line : boxes_[i]) {
                const bool number = clique && &line == boxes_[i].data();
                svg.text({(box.left + box.right) / 2.0, y}, line, number ? "name" : "detail", Anchor::kMiddle);
                y += kLineHeight;
            }
        }
    }

  private:
    void addBox(std::vector<std::string> lines, Graph& graph) {
        int widest = 0;
        for (const std::string& line : lines) widest = std::max(widest, displayWidth(line));
        graph.nodes.push_back({2.0 * kPadding + kNameCharacter * widest,
                               kLineHeight * static_cast<double>(lines.size()) + kPadding});
        boxes_.push_back(std::move(lines));
    }

    std::size_t root_;
    std::size_t nCliques_ = 0;
    std::vector<std::vector<std::string>> boxes_;  // lines of the cliques, then of the separators
    GraphLayout layout_;
};

std::string legendText(const NetworkQuestionAsked& asked) {
    if (!asked.hasEvidence()) return "Bars: probabilities.";
    return "Bars: probabilities given the evidence; ticks: before it. Thick frames: ● observed, ◐ uncertain "
           "evidence.";
}

std::string descriptionOf(const Network& network, const NetworkQuestionAsked& asked,
                          const NetworkAnswers& answers) {
    std::string out =
        fmt::format("{} and {}.", counted(network.nodes.size(), "node"), counted(countArcs(network), "arc"));
    if (!asked.hasEvidence()) return out;
    return out + fmt::format(" Evidence: {}; its probability is {:.6g}.", evidenceText(network, asked.question),
                             answers.after.probability);
}

}  // namespace

void checkDrawing(const Network& network, const NetworkRequest& request) {
    if (request.plot.empty() || network.nodes.size() <= kMostDrawn) return;
    throw DataError(fmt::format("--plot draws up to {} nodes, here are {}", kMostDrawn, network.nodes.size()));
}

std::string drawNetwork(const Network& network, const NetworkQuestionAsked& asked,
                        const NetworkAnswers& answers, bool withTree, const std::string& file) {
    const NetworkPart part(network, asked, answers);
    std::string title = file;
    if (asked.hasEvidence()) title += ", evidence: " + shortLabel(evidenceText(network, asked.question), 60);
    const std::string legend = legendText(asked);
    double width = std::max({part.layout().width, 10.0 * displayWidth(title), 6.4 * displayWidth(legend)});
    double height = kTitleRoom + part.layout().height + kLegendRoom;
    std::optional<TreePart> tree;
    if (withTree) {
        tree.emplace(network, answers.after.tree);
        width = std::max(width, tree->layout().width);
        height += kHeadingRoom + tree->layout().height + kMargin;
    }
    Svg svg(width + 2.0 * kMargin, height, title, descriptionOf(network, asked, answers));
    svg.text({kMargin, 32.0}, title, "title");
    part.draw(svg, {kMargin, kTitleRoom});
    double y = kTitleRoom + part.layout().height + 28.0;
    svg.text({kMargin, y}, legend, "detail");
    if (tree) {
        y += kHeadingRoom + 12.0;
        svg.text({kMargin, y}, "Junction tree: cliques, separators dashed", "name");
        tree->draw(svg, {kMargin, y + 16.0});
    }
    return svg.finish();
}

}  // namespace numcore::cli
