// Layout in layers, where Graphviz's library is not at hand.
#include <algorithm>
#include <cmath>
#include <numeric>

#include "cli/plot/graph_layout.hpp"

namespace numcore::cli::plot {

namespace {

constexpr double kNodeGap = 26.0;
constexpr double kLayerGap = 44.0;
constexpr double kArrow = 8.0;
constexpr double kBendWidth = 6.0;  // room of a long arc where it passes a layer
constexpr int kSweeps = 12;

/// A node, or a place where a long arc passes a layer.
struct Vertex {
    std::size_t layer = 0;
    double width = kBendWidth;
    double x = 0.0;  // centre
    std::vector<std::size_t> above;
    std::vector<std::size_t> below;
};

/// Plan: 1 layers by longest path; 2 long arcs cut at layers; 3 crossings reduced; 4 positions; 5 curves.
class Layers {
  public:
    explicit Layers(const Graph& graph) : graph_(graph) {
        assignLayers();
        cutLongArcs();
        for (int sweep = 0; sweep < kSweeps; ++sweep) orderLayers(sweep % 2 == 0);
        placeInitially();
        for (int sweep = 0; sweep < kSweeps; ++sweep) straighten(sweep % 2 == 0);
    }

    GraphLayout layout() const {
        GraphLayout out;
        std::vector<double> tops(layers_.size() + 1, 0.0);
        std::vector<double> heights(layers_.size(), 0.0);
        for (std::size_t v = 0; v < graph_.nodes.size(); ++v) {
            double& height = heights[vertices_[v].layer];
            height = std::max(height, graph_.nodes[v].height);
        }
        for (std::size_t i = 0; i < heights.size(); ++i) tops[i + 1] = tops[i] + heights[i] + kLayerGap;
        double left = 0.0;
        double right = 0.0;
        for (const Vertex& vertex : vertices_) {
            left = std::min(left, vertex.x - vertex.width / 2.0);
            right = std::max(right, vertex.x + vertex.width / 2.0);
        }
        out.width = right - left;
        out.height = tops.back() - kLayerGap;
        out.nodes.reserve(graph_.nodes.size());
        for (std::size_t v = 0; v < graph_.nodes.size(); ++v) {
            const GraphNode& node = graph_.nodes[v];
            const double x = vertices_[v].x - left;
            const double y = tops[vertices_[v].layer] + (heights[vertices_[v].layer] - node.height) / 2.0;
            out.nodes.push_back({x - node.width / 2.0, y, x + node.width / 2.0, y + node.height});
        }
        out.arcs.reserve(graph_.arcs.size());
        for (std::size_t a = 0; a < graph_.arcs.size(); ++a)
            out.arcs.push_back(curveOf(a, left, tops, out.nodes));
        return out;
    }

  private:
    void assignLayers() {
        vertices_.resize(graph_.nodes.size());
        std::vector<std::vector<std::size_t>> children(graph_.nodes.size());
        std::vector<std::size_t> nParents(graph_.nodes.size(), 0);
        for (const GraphArc& arc : graph_.arcs) {
            children[arc.from].push_back(arc.to);
            ++nParents[arc.to];
        }
        std::vector<std::size_t> ready;
        ready.reserve(graph_.nodes.size());
        for (std::size_t v = 0; v < nParents.size(); ++v) {
            vertices_[v].width = graph_.nodes[v].width;
            if (nParents[v] == 0) ready.push_back(v);
        }
        std::size_t nLayers = 1;
        while (!ready.empty()) {
            const std::size_t v = ready.back();
            ready.pop_back();
            nLayers = std::max(nLayers, vertices_[v].layer + 1);
            for (const std::size_t child : children[v]) {
                vertices_[child].layer = std::max(vertices_[child].layer, vertices_[v].layer + 1);
                if (--nParents[child] == 0) ready.push_back(child);
            }
        }
        layers_.resize(nLayers);
        for (std::size_t v = 0; v < vertices_.size(); ++v) layers_[vertices_[v].layer].push_back(v);
    }

    void join(std::size_t upper, std::size_t lower) {
        vertices_[upper].below.push_back(lower);
        vertices_[lower].above.push_back(upper);
    }

    void cutLongArcs() {
        for (const GraphArc& arc : graph_.arcs) {
            std::vector<std::size_t> chain{arc.from};
            for (std::size_t layer = vertices_[arc.from].layer + 1; layer < vertices_[arc.to].layer; ++layer) {
                const std::size_t bend = vertices_.size();
                vertices_.emplace_back();
                vertices_[bend].layer = layer;
                layers_[layer].push_back(bend);
                join(chain.back(), bend);
                chain.push_back(bend);
            }
            join(chain.back(), arc.to);
            chain.push_back(arc.to);
            chains_.push_back(std::move(chain));
        }
    }

    /// Sorts each layer by the mean place of its neighbours in the layer before.
    void orderLayers(bool downward) {
        std::vector<double> place(vertices_.size(), 0.0);
        const auto number = [&](const std::vector<std::size_t>& layer) {
            for (std::size_t i = 0; i < layer.size(); ++i) place[layer[i]] = static_cast<double>(i);
        };
        for (const auto& layer : layers_) number(layer);
        for (std::size_t i = 1; i < layers_.size(); ++i) {
            std::vector<std::size_t>& layer = layers_[downward ? i : layers_.size() - 1 - i];
            std::vector<double> mean(vertices_.size(), 0.0);
            for (const std::size_t v : layer) {
                const std::vector<std::size_t>& neighbours = downward ? vertices_[v].above : vertices_[v].below;
                mean[v] = place[v];
                if (neighbours.empty()) continue;
                double sum = 0.0;
                for (const std::size_t u : neighbours) sum += place[u];
                mean[v] = sum / static_cast<double>(neighbours.size());
            }
            std::ranges::stable_sort(layer, {}, [&](std::size_t v) { return mean[v]; });
            number(layer);
        }
    }

    double apart(std::size_t a, std::size_t b) const {
        return (vertices_[a].width + vertices_[b].width) / 2.0 + kNodeGap;
    }

    void placeInitially() {
        for (const auto& layer : layers_) {
            for (std::size_t i = 1; i < layer.size(); ++i)
                vertices_[layer[i]].x = vertices_[layer[i - 1]].x + apart(layer[i - 1], layer[i]);
            const double middle = layer.empty() ? 0.0 : vertices_[layer.back()].x / 2.0;
            for (const std::size_t v : layer) vertices_[v].x -= middle;
        }
    }

    /// Draws the vertices of each layer towards their neighbours' mean as far as their distances allow: the
    /// mean of the leftmost and the rightmost places that keep them.
    void straighten(bool downward) {
        for (std::size_t i = 1; i < layers_.size(); ++i) {
            const std::vector<std::size_t>& layer = layers_[downward ? i : layers_.size() - 1 - i];
            std::vector<double> wanted;
            wanted.reserve(layer.size());
            for (const std::size_t v : layer) {
                const std::vector<std::size_t>& neighbours = downward ? vertices_[v].above : vertices_[v].below;
                double sum = neighbours.empty() ? vertices_[v].x : 0.0;
                for (const std::size_t u : neighbours) sum += vertices_[u].x;
                wanted.push_back(sum / static_cast<double>(std::max<std::size_t>(neighbours.size(), 1)));
            }
            std::vector<double> fromLeft = wanted;
            for (std::size_t j = 1; j < layer.size(); ++j)
                fromLeft[j] = std::max(wanted[j], fromLeft[j - 1] + apart(layer[j - 1], layer[j]));
            std::vector<double> fromRight = wanted;
            for (std::size_t j = layer.size(); j-- > 1;)
                fromRight[j - 1] = std::min(wanted[j - 1], fromRight[j] - apart(layer[j - 1], layer[j]));
            for (std::size_t j = 0; j < layer.size(); ++j)
                vertices_[layer[j]].x = (fromLeft[j] + fromRight[j]) / 2.0;
        }
    }

    /// From the lower edge of the first node through the bends to the upper edge of the last, upright at each
    /// end.
    ArcCurve curveOf(std::size_t arc, double left, const std::vector<double>& tops,
                     const std::vector<Box>& boxes) const {
        const std::vector<std::size_t>& chain = chains_[arc];
        const bool arrow = graph_.arcs[arc].arrow;
        const Box& first = boxes[chain.front()];
        const Box& last = boxes[chain.back()];
        ArcCurve curve;
        curve.points.push_back({(first.left + first.right) / 2.0, first.bottom});
        const auto curveTo = [&](Point to) {
            const Point from = curve.points.back();
            const double bend = (to.y - from.y) / 2.0;
            curve.points.insert(curve.points.end(), {{from.x, from.y + bend}, {to.x, to.y - bend}, to});
        };
        const auto lineTo = [&](Point to) {
            const Point from = curve.points.back();
            curve.points.insert(curve.points.end(), {from, to, to});
        };
        for (std::size_t i = 1; i + 1 < chain.size(); ++i) {
            const Vertex& bend = vertices_[chain[i]];
            curveTo({bend.x - left, tops[bend.layer]});
            lineTo({bend.x - left, tops[bend.layer + 1] - kLayerGap});
        }
        const Point end{(last.left + last.right) / 2.0, last.top};
        curveTo({end.x, end.y - (arrow ? kArrow : 0.0)});
        if (arrow) curve.tip = end;
        return curve;
    }

    const Graph& graph_;
    std::vector<Vertex> vertices_;  // the nodes, then the bends
    std::vector<std::vector<std::size_t>> layers_;
    std::vector<std::vector<std::size_t>> chains_;  // of each arc: node, bends, node
};

}  // namespace

GraphLayout layOutByLayers(const Graph& graph) {
    if (graph.nodes.empty()) return {};
    return Layers(graph).layout();
}

}  // namespace numcore::cli::plot
