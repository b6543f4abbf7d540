// Layouts of graphs, and networks drawn.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "../csv_support.hpp"
#include "../picture_checks.hpp"
#include "cli/errors.hpp"
#include "cli/networks/command.hpp"
#include "cli/plot/graph_layout.hpp"
#include "network_support.hpp"

namespace numcore::cli {
namespace {

using plot::ArcCurve;
using plot::Box;
using plot::Graph;
using plot::GraphLayout;
using plot::Point;

/// Arcs from lower to higher numbers, boxes of many sizes.
Graph randomGraph(std::size_t nNodes, std::size_t nArcs, unsigned seed) {
    std::mt19937 random(seed);
    Graph graph;
    for (std::size_t i = 0; i < nNodes; ++i)
        graph.nodes.push_back(
            {40.0 + static_cast<double>(random() % 150), 30.0 + static_cast<double>(random() % 100)});
    for (std::size_t i = 0; i < nArcs; ++i) {
        const std::size_t a = random() % nNodes;
        const std::size_t b = random() % nNodes;
        if (a != b) graph.arcs.push_back({std::min(a, b), std::max(a, b), i % 3 != 0});
    }
    return graph;
}

bool overlap(const Box& a, const Box& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

double distance(Point at, const Box& box) {
    const double dx = std::max({box.left - at.x, 0.0, at.x - box.right});
    const double dy = std::max({box.top - at.y, 0.0, at.y - box.bottom});
    return std::hypot(dx, dy);
}

void expectSound(const Graph& graph, const GraphLayout& layout) {
    constexpr double kHair = 1.0;
    ASSERT_EQ(layout.nodes.size(), graph.nodes.size());
    ASSERT_EQ(layout.arcs.size(), graph.arcs.size());
    for (std::size_t i = 0; i < layout.nodes.size(); ++i) {
        const Box& box = layout.nodes[i];
        EXPECT_NEAR(box.right - box.left, graph.nodes[i].width, 1e-6);
        EXPECT_NEAR(box.bottom - box.top, graph.nodes[i].height, 1e-6);
        EXPECT_TRUE(box.left > -kHair && box.top > -kHair && box.right < layout.width + kHair &&
                    box.bottom < layout.height + kHair);
        for (std::size_t j = 0; j < i; ++j) EXPECT_FALSE(overlap(box, layout.nodes[j])) << i << " " << j;
    }
    for (std::size_t a = 0; a < layout.arcs.size(); ++a) {
        const ArcCurve& curve = layout.arcs[a];
        ASSERT_EQ(curve.points.size() % 3, 1U);
        EXPECT_EQ(curve.tip.has_value(), graph.arcs[a].arrow);
        EXPECT_LT(distance(curve.points.front(), layout.nodes[graph.arcs[a].from]), 3.0);
        EXPECT_LT(distance(curve.tip.value_or(curve.points.back()), layout.nodes[graph.arcs[a].to]), 3.0);
        EXPECT_LT(layout.nodes[graph.arcs[a].from].top, layout.nodes[graph.arcs[a].to].top)
            << "arcs run downward";
    }
}

TEST(GraphLayout, KeepsNodesApartAndArcsAtTheirEnds) {
    for (const unsigned seed : {1U, 2U, 3U}) {
        const Graph graph = randomGraph(25, 35, seed);
        expectSound(graph, plot::layOutByLayers(graph));
        expectSound(graph, plot::layOut(graph));
    }
    const Graph single = randomGraph(1, 0, 4);
    expectSound(single, plot::layOutByLayers(single));
    expectSound(single, plot::layOut(single));
    EXPECT_TRUE(plot::layOutByLayers({}).nodes.empty());
}

std::string drawing(Options options) {
    options.network.plot = (std::filesystem::temp_directory_path() /
                            ("numcore_drawing_" + std::to_string(std::random_device{}()) + ".svg"))
                               .string();
    askNetwork(options);
    std::ifstream in(options.network.plot, std::ios::binary);
    std::string svg{std::istreambuf_iterator<char>(in), {}};
    in.close();
    std::filesystem::remove(options.network.plot);
    return svg;
}

TEST(NetworkDrawing, ShowsEveryStateAndWhatIsKnown) {
    Options options = askAbout(networkFile("child"));
    const std::string plain = drawing(options);
    EXPECT_TRUE(isWellFormed(plain));
    EXPECT_EQ(countOf(plain, "class=\"node\""), 20U);
    EXPECT_EQ(countOf(plain, "class=\"arc\""), 25U);
    EXPECT_EQ(countOf(plain, "class=\"tick\""), 0U);
    EXPECT_EQ(countOf(plain, "class=\"track\""), 60U) << "a bar for each state";
    EXPECT_NE(plain.find(">&lt;7.5<"), std::string::npos);
    EXPECT_NE(plain.find("<desc>20 nodes and 25 arcs.</desc>"), std::string::npos);
    options.network.evidence = {"CO2Report=<7.5"};
    options.network.likelihoods = {"Disease=1:1:0.5:0:0:0"};
    options.network.tree = true;
    const std::string known = drawing(options);
    EXPECT_TRUE(isWellFormed(known));
    EXPECT_EQ(countOf(known, "class=\"tick\""), 60U);
    EXPECT_EQ(countOf(known, "class=\"node-strong\""), 3U) << "two nodes with evidence, and the root";
    EXPECT_EQ(countOf(known, "class=\"node-between\""), countOf(known, "class=\"node\"") - 18)
        << "18 other nodes; of the cliques all but the root have a separator";
    EXPECT_NE(known.find("Evidence: CO2Report=&lt;7.5, Disease=1:1:0.5:0:0:0"), std::string::npos);
}

TEST(NetworkDrawing, CopesWithManyStatesLongNamesAndParts) {
    const TemporaryFile file(
        "variable \"a name that is very much longer than a box should be & <wide>\" { type discrete { a b c d "
        "e f g h i j "
        "k l }; } variable apart { type discrete { x }; }"
        "probability (\"a name that is very much longer than a box should be & <wide>\") { default .1 .1 .1 .1 "
        ".1 .1 .1 .1 "
        ".1 .1 0 0; } probability (apart) { table 1; }");
    Options options = askAbout(file.path());
    options.network.tree = true;
    const std::string svg = drawing(options);
    EXPECT_TRUE(isWellFormed(svg));
    EXPECT_NE(svg.find("and 3 more states"), std::string::npos);
    EXPECT_NE(svg.find("…"), std::string::npos);
    EXPECT_NE(svg.find("∅"), std::string::npos) << "separate parts meet in an empty separator";
    std::string many;
    for (int i = 0; i < 401; ++i) {
        const std::string name = "v" + std::to_string(i);
        many += "variable ";
        many += name;
        many += " { type discrete { x }; } probability (";
        many += name;
        many += ") { table 1; }\n";
    }
    const TemporaryFile large(many);
    options.file = large.path();
    EXPECT_THROW(drawing(options), DataError);
}

}  // namespace
}  // namespace numcore::cli
