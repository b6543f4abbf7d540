// Where the nodes of a drawn graph go, and the curves between them.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "cli/plot/svg.hpp"

namespace numcore::cli::plot {

struct GraphNode {
    double width;
    double height;
};

struct GraphArc {
    std::size_t from;
    std::size_t to;
    bool arrow = true;
};

/// Nodes and arcs without a directed cycle; arcs run downward.
struct Graph {
    std::vector<GraphNode> nodes;
    std::vector<GraphArc> arcs;
};

struct ArcCurve {
    std::vector<Point> points;  // a point, then three for each cubic Bezier piece
    std::optional<Point> tip;   // of the arrow that begins at the last point
};

/// Pixels from the upper left corner; arcs in the order of the graph's.
struct GraphLayout {
    double width = 0.0;
    double height = 0.0;
    std::vector<Box> nodes;
    std::vector<ArcCurve> arcs;
};

/// By Graphviz (engine dot) where it is part of the build and finds its plugins, otherwise by layers.
GraphLayout layOut(const Graph& graph);

/// By Graphviz alone; nothing when it fails. Only where it is part of the build.
std::optional<GraphLayout> layOutByGraphviz(const Graph& graph);

/// Layers by longest path, crossings reduced by barycentres: Sugiyama, Tagawa and Toda (1981), IEEE Trans.
/// Syst. Man Cybern. 11:109-125.
GraphLayout layOutByLayers(const Graph& graph);

}  // namespace numcore::cli::plot
