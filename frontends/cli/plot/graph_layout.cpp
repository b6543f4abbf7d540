#include "cli/plot/graph_layout.hpp"

namespace numcore::cli::plot {

GraphLayout layOut(const Graph& graph) {
#ifdef NUMCORE_HAVE_GRAPHVIZ
    if (std::optional<GraphLayout> layout = layOutByGraphviz(graph)) return *layout;
#endif
    return layOutByLayers(graph);
}

}  // namespace numcore::cli::plot
