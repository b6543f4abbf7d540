// Layout by Graphviz's library.
#include <fmt/format.h>
#include <gvc.h>

#include <memory>
#include <string>

#include "cli/plot/graph_layout.hpp"

#ifdef __SANITIZE_ADDRESS__
// Graphviz loses the text of its configuration; our own leaks still show.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() {
    return "leak:libgvc.so";
}
#endif

namespace numcore::cli::plot {

namespace {

constexpr double kPointsPerInch = 72.0;

struct CloseGraph {
    void operator()(Agraph_t* graph) const { agclose(graph); }
};
struct FreeContext {
    void operator()(GVC_t* context) const { gvFreeContext(context); }
};

// The library takes its texts without const, and copies them.
void setDefault(Agraph_t* graph, int kind, const char* name, const std::string& value) {
    agattr(graph, kind, const_cast<char*>(name), const_cast<char*>(value.c_str()));
}

void setValue(void* object, const char* name, const std::string& value) {
    agset(object, const_cast<char*>(name), const_cast<char*>(value.c_str()));
}

std::string inches(double pixels) {
    return fmt::format("{:.4f}", pixels / kPointsPerInch);
}

/// A graph of fixed boxes without text.
std::vector<Agnode_t*> addNodes(Agraph_t* target, const Graph& graph) {
    setDefault(target, AGRAPH, "nodesep", "0.35");
    setDefault(target, AGRAPH, "ranksep", "0.5");
    setDefault(target, AGNODE, "shape", "box");
    setDefault(target, AGNODE, "fixedsize", "true");
    setDefault(target, AGNODE, "label", "");
    setDefault(target, AGNODE, "width", "1");
    setDefault(target, AGNODE, "height", "1");
    std::vector<Agnode_t*> nodes;
    nodes.reserve(graph.nodes.size());
    for (const GraphNode& node : graph.nodes) {
        nodes.push_back(agnode(target, nullptr, 1));
        setValue(nodes.back(), "width", inches(node.width));
        setValue(nodes.back(), "height", inches(node.height));
    }
    return nodes;
}

std::vector<Agedge_t*> addArcs(Agraph_t* target, const Graph& graph, const std::vector<Agnode_t*>& nodes) {
    setDefault(target, AGEDGE, "dir", "forward");
    setDefault(target, AGEDGE, "arrowsize", "0.7");
    std::vector<Agedge_t*> arcs;
    arcs.reserve(graph.arcs.size());
    for (const GraphArc& arc : graph.arcs) {
        arcs.push_back(agedge(target, nodes[arc.from], nodes[arc.to], nullptr, 1));
        if (!arc.arrow) setValue(arcs.back(), "dir", "none");
    }
    return arcs;
}

/// Results, whose y runs upward.
class Reader {
  public:
    explicit Reader(Agraph_t* graph) : box_(GD_bb(graph)) {}

    double width() const { return box_.UR.x - box_.LL.x; }
    double height() const { return box_.UR.y - box_.LL.y; }

    Box boxOf(Agnode_t* node, const GraphNode& size) const {
        const Point centre = point(ND_coord(node));
        return {centre.x - size.width / 2.0, centre.y - size.height / 2.0, centre.x + size.width / 2.0,
                centre.y + size.height / 2.0};
    }

    ArcCurve curveOf(Agedge_t* arc) const {
        ArcCurve curve;
        const splines* lines = ED_spl(arc);
        if (lines == nullptr || lines->size == 0) return curve;
        const bezier& line = lines->list[0];
        curve.points.reserve(static_cast<std::size_t>(line.size));
        for (std::size_t i = 0; i < static_cast<std::size_t>(line.size); ++i)
            curve.points.push_back(point(line.list[i]));
        if (line.eflag != 0) curve.tip = point(line.ep);
        return curve;
    }

  private:
    Point point(pointf at) const { return {at.x - box_.LL.x, box_.UR.y - at.y}; }

    boxf box_;
};

}  // namespace

std::optional<GraphLayout> layOutByGraphviz(const Graph& graph) {
    agseterr(AGMAX);
    const std::unique_ptr<GVC_t, FreeContext> context(gvContext());
    char name[] = "graph";
    const std::unique_ptr<Agraph_t, CloseGraph> target(agopen(name, Agdirected, nullptr));
    if (!context || !target) return std::nullopt;
    const std::vector<Agnode_t*> nodes = addNodes(target.get(), graph);
    const std::vector<Agedge_t*> arcs = addArcs(target.get(), graph, nodes);
    if (gvLayout(context.get(), target.get(), "dot") != 0) return std::nullopt;
    const Reader reader(target.get());
    GraphLayout layout{reader.width(), reader.height(), {}, {}};
    layout.nodes.reserve(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i)
        layout.nodes.push_back(reader.boxOf(nodes[i], graph.nodes[i]));
    layout.arcs.reserve(arcs.size());
    for (Agedge_t* arc : arcs) layout.arcs.push_back(reader.curveOf(arc));
    gvFreeLayout(context.get(), target.get());
    return layout;
}

}  // namespace numcore::cli::plot
