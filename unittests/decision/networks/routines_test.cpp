// The exported routines over column sets, and the rules that are kept as they are.
#include <gtest/gtest.h>

#include <cmath>

#include "decision/networks/exponential.hpp"
#include "decision/networks/test_networks.hpp"
#include "numcore/bayesian_network.hpp"

namespace numcore::networks::testing {
namespace {

cBYN_Table vectorOf(const std::vector<double>& cells) {
    cBYN_Table out(static_cast<std::int32_t>(cells.size()), 1, 0.0);
    for (std::size_t i = 0; i < cells.size(); ++i) out.at(static_cast<std::int32_t>(i), 0) = cells[i];
    return out;
}

std::vector<double> cellsOf(const cBYN_Table& table) {
    if (table.columnCount() < 1) return {};
    const auto cells = table.column(0).span();
    return {cells.begin(), cells.end()};
}

matrix<std::int32_t> sizesOf(const std::vector<std::int32_t>& sizes) {
    matrix<std::int32_t> out(static_cast<std::int32_t>(sizes.size()), 1, 0);
    for (std::size_t i = 0; i < sizes.size(); ++i) out[static_cast<std::int32_t>(i)] = sizes[i];
    return out;
}

cST_MVect<u16string> labelsOf(const std::vector<std::u16string>& texts) {
    cST_MVect<u16string> out(static_cast<std::int32_t>(texts.size()), 1, u16string());
    for (std::size_t i = 0; i < texts.size(); ++i)
        out.column(0)[static_cast<std::int32_t>(i)] = u16string(texts[i]);
    return out;
}

cST_MVect<u16string> keysOf(std::size_t n) {
    std::vector<std::u16string> keys;
    for (std::size_t i = 1; i <= n; ++i) {
        const std::string number = std::to_string(i);
        keys.push_back(u"NODE" + std::u16string(number.begin(), number.end()));
    }
    return labelsOf(keys);
}

/// Lists of parents as they stand in the file, with what is no node.
matrix<double> parentsOf(const Json& lists) {
    std::size_t nRows = 1;
    for (const Json& list : lists) nRows = std::max(nRows, list.size());
    matrix<double> out(static_cast<std::int32_t>(nRows), static_cast<std::int32_t>(lists.size()), 0.0);
    for (std::size_t node = 0; node < lists.size(); ++node)
        for (std::size_t row = 0; row < lists[node].size(); ++row)
            out.at(static_cast<std::int32_t>(row), static_cast<std::int32_t>(node)) =
                lists[node][row].get<double>();
    return out;
}

std::int32_t checkOf(std::int32_t n, matrix<double> parents, cST_MVect<u16string> labels) {
    cST_DataSet data;
    *data.strings1 = std::move(labels);
    cBYN_Param param;
    param.n = n;
    param.parents = std::move(parents);
    cBYN_Results results;
    matrix<u16string> messages;
    std::u16string text;
    return BYNRun_DAG_ST(data, param, results, messages, text, 0);
}

TEST(NetworkRoutines, CheckMatchesTheReference) {
    for (const Json& entry : reference()["acyclicity"]) {
        if (!entry["sturdy"].get<bool>()) continue;
        const auto n = entry["n"].get<std::int32_t>();
        EXPECT_EQ(checkOf(n, parentsOf(entry["parents"]), keysOf(static_cast<std::size_t>(n))), entry["result"])
            << entry["name"];
    }
}

TEST(NetworkRoutines, CheckComparesWithTheNumberOfNodes) {
    const auto twoCycle = [] { return parentsOf(Json{{2}, {1}}); };
    EXPECT_EQ(checkOf(2, twoCycle(), keysOf(2)), 0);
    // A node that is on no cycle, even one without any entry, makes the check pass.
    EXPECT_EQ(checkOf(3, twoCycle(), keysOf(3)), 1);
    EXPECT_EQ(checkOf(2000000000, twoCycle(), keysOf(2)), 1);
    // Without nodes all of them are on a cycle.
    EXPECT_EQ(checkOf(0, {}, {}), 0);
    // Keys decide who a parent is: the later of two equal ones.
    EXPECT_EQ(checkOf(2, twoCycle(), labelsOf({u"NODE1", u"node2"})), 1);
    EXPECT_EQ(checkOf(3, parentsOf(Json{{2}, {3}, {1}}), labelsOf({u"NODE1", u"NODE2", u"NODE2"})), 1);
}

TEST(NetworkRoutines, PadeApproximantsMatchTheSeries) {
    EXPECT_EQ(padeCoefficients(3), (std::vector<double>{120, 60, 12, 1}));
    // Higham (2005), the coefficients of degree 13.
    EXPECT_EQ(padeCoefficients(13),
              (std::vector<double>{64764752532480000, 32382376266240000, 7771770303897600, 1187353796428800,
                                   129060195264000, 10559470521600, 670442572800, 33522128640, 1323241920,
                                   40840800, 960960, 16380, 182, 1}));
    const double limits[] = {0.014, 0.25, 0.95, 2.0, 5.3};
    for (const double scale : limits) {
        // exp of {{0, s}, {s, 0}}: cosh and sinh.
        matrix<double> a(2, 2, 0.0);
        a.at(0, 1) = a.at(1, 0) = scale;
        matrix<double> e;
        PadeApproximantOfDegree(a, padeDegree(oneNorm(a)), e);
        EXPECT_NEAR(e.at(0, 0) / std::cosh(scale), 1.0, 1e-13) << scale;
        EXPECT_NEAR(e.at(1, 0) / std::sinh(scale), 1.0, 1e-12) << scale;
    }
    matrix<double> u;
    matrix<double> v;
    matrix<double> one(1, 1, 0.5);
    F_3(one, u, v);
    EXPECT_EQ(u[0], 0.5 * (60 + 0.25));
    EXPECT_EQ(v[0], 120 + 12 * 0.25);
    EXPECT_EQ(padeDegree(5.371920351148152), 13);
    EXPECT_EQ(padeDegree(5.371920351148153), 0);
    EXPECT_EQ(padeApproximant(one, 0)[0], 0.0);
}

TEST(NetworkRoutines, Sets) {
    const cBYN_Table a = vectorOf({0, 2, 0, 4});
    const cBYN_Table b = vectorOf({4, 0, 2, 1});
    cBYN_Table out;
    Myunion_ST(a, b, out);
    EXPECT_EQ(cellsOf(out), (std::vector<double>{2, 4, 1, 0}));
    Myintersect_ST(4, a, b, out);
    EXPECT_EQ(cellsOf(out), (std::vector<double>{2, 4, 0, 0}));
    // Either may hold the other; an empty set holds nothing and is in nothing.
    EXPECT_EQ(Mysubset_ST(4, a, b), NUMCORE_TRUE);
    EXPECT_EQ(Mysubset_ST(4, b, a), NUMCORE_TRUE);
    EXPECT_EQ(Mysubset_ST(4, a, vectorOf({1, 2})), NUMCORE_FALSE);
    EXPECT_EQ(Mysubset_ST(4, vectorOf({0, 0}), b), NUMCORE_FALSE);
    EXPECT_EQ(Mysubset_ST(4, b, vectorOf({0, 0})), NUMCORE_FALSE);
    EXPECT_EQ(Mysubset_ST(-1, a, b), NUMCORE_FALSE);
    EXPECT_EQ(Mysubset_ST(2, vectorOf({2, -2}), vectorOf({2, 0})), NUMCORE_FALSE);
    EXPECT_EQ(V_MinPos_ST(vectorOf({3, 1, 1}), 3), 2);
    EXPECT_EQ(V_MinPos_ST(vectorOf({3}), 0), 0);
    EXPECT_EQ(V_NonZeroNb_ST(vectorOf({1, -1, 0, kMissing, 2}), 99), 2);
    const matrix<double> x(3, 1, 7.0);
    EXPECT_EQ(V_NbValue(x, 2, 7.0), 2);
    EXPECT_EQ(facto(5), 120.0);
    const auto labels = labelsOf({u"NODE1", u"NODE2", u"NODE1"});
    EXPECT_EQ(GetCorrelatedIndex_ST(u"NODE1", labels, 3), 3);
    EXPECT_EQ(GetCorrelatedIndex_ST(u"NODE1", labels, 2), 1);
    EXPECT_EQ(GetCorrelatedIndex_ST(u"node1", labels, 3), 0);
    EXPECT_EQ(BYNRun_ConvertID_ST(3, labels, 2), 2);
}

TEST(NetworkRoutines, TreeFromColumnSets) {
    for (const Json& entry : reference()["networks"]) {
        SCOPED_TRACE(entry["name"].get<std::string>());
        const Json& expected = entry["structure"];
        const auto n = entry["n"].get<std::int32_t>();
        const auto labels = keysOf(static_cast<std::size_t>(n));
        const auto parents = parentsOf(entry["parents"]);
        const auto sizes = sizesOf(entry["sizes"].get<std::vector<std::int32_t>>());
        cBYN_Table dag;
        cBYN_Table order;
        cBYN_Table cliques;
        cBYN_Table tree;
        cBYN_Table nodeClique;
        cBYN_Table rooted;
        cBYN_Table preorder;
        cBYN_Table postorder;
        cBYN_Table out;
        BYNRun_dag_Compute_ST(n, parents, labels, dag);
        const std::int32_t nCliques = BYNRun_jtree_inf_Compute_ST(
            n, dag, parents, labels, sizes, order, cliques, tree, nodeClique, rooted, preorder, postorder);
        ASSERT_EQ(static_cast<std::size_t>(nCliques), expected["cliques"].size());
        EXPECT_EQ(cellsOf(order), expected["elimination_order"].get<std::vector<double>>());
        EXPECT_EQ(cellsOf(preorder), expected["preorder"].get<std::vector<double>>());
        EXPECT_EQ(cellsOf(postorder), expected["postorder"].get<std::vector<double>>());
        for (const Json& arc : expected["rooted_arcs"])
            EXPECT_EQ(rooted.at(arc[0].get<std::int32_t>() - 1, arc[1].get<std::int32_t>() - 1), 1.0);
        BYNRun_clq_fam_ST(n, nCliques, cliques, parents, labels, out);
        EXPECT_EQ(cellsOf(out), expected["family_clique"].get<std::vector<double>>());
        for (std::size_t j = 0; j < expected["tree_edges"].size(); ++j) {
            const auto from = expected["tree_edges"][j][0].get<std::int32_t>();
            const auto to = expected["tree_edges"][j][1].get<std::int32_t>();
            BYNRun_SeparatorNode(n, cliques, from, to, out);
            auto separator = expected["separators"][j].get<std::vector<double>>();
            separator.resize(static_cast<std::size_t>(n), 0.0);
            EXPECT_EQ(cellsOf(out), separator);
            // Positions in the cliques lead back to the nodes of the separator.
            matrix<std::int32_t> places;
            BYNRun_clq_Pos_ST(n, nCliques, cliques, places);
            cBYN_Table positions;
            BYNRun_GetCommunNodeposbetweenclq_ST(n, cliques, from, to, positions);
            BYNRun_GetNodeposbetweenclq_ST(n, cliques, from, to, out);
            for (std::int32_t i = 0; i < n && separator[static_cast<std::size_t>(i)] > 0.0; ++i) {
                const auto node = static_cast<std::int32_t>(separator[static_cast<std::size_t>(i)]);
                EXPECT_EQ(positions.at(i, 0), places.at(from - 1, node - 1));
                EXPECT_EQ(positions.at(i, 1), places.at(to - 1, node - 1));
                EXPECT_EQ(out.at(i, 0), positions.at(i, 0));
            }
        }
    }
}

TEST(NetworkRoutines, TablesOfProbabilities) {
    // Nodes 1 (2 states), 2 (3 states) and 3 (2 states): cells 1 to 12, node 3 fastest.
    const auto sizes = sizesOf({2, 3, 2});
    const cBYN_Table members = vectorOf({1, 2, 3});
    std::vector<double> cells;
    for (int i = 1; i <= 12; ++i) cells.push_back(i);
    const cBYN_Table table = vectorOf(cells);
    cBYN_Table out;
    const auto fresh = [&]() -> cBYN_Table& { return out = cBYN_Table(); };
    BYNRun_Marginalize_ST(sizes, members, table, vectorOf({2}), fresh());
    EXPECT_EQ(cellsOf(out), (std::vector<double>{18, 26, 34}));
    BYNRun_Sum2Nodes_ST(sizes, members, table, 3, 1, fresh());
    EXPECT_EQ(cellsOf(out), (std::vector<double>{9, 27, 12, 30}));
    BYNRun_SumNodes_ST(sizes, members, table, vectorOf({1, 2}), fresh());
    EXPECT_EQ(cellsOf(out), (std::vector<double>{36, 42}));
    BYNRun_SumChildNode_ST(sizes, members, table, 3, fresh());
    EXPECT_EQ(cellsOf(out), (std::vector<double>{3, 7, 11, 15, 19, 23}));
    BYNRun_Marg_Table_ST(sizes, members, table, 1, fresh());
    EXPECT_EQ(cellsOf(out), (std::vector<double>{21.0 / 78.0, 57.0 / 78.0}));
    BYNRun_CondTable_ST(sizes, members, table, 1, vectorOf({3}), fresh());
    EXPECT_EQ(cellsOf(out), (std::vector<double>{9.0 / 36.0, 27.0 / 36.0, 12.0 / 42.0, 30.0 / 42.0}));
    EXPECT_EQ(BYNRun_ProbConditional_ST(sizes, members, table, 1, 2, vectorOf({3}), vectorOf({2})),
              30.0 / 42.0);
    EXPECT_EQ(BYNRun_ProbConditional_ST(sizes, members, table, 1, 3, vectorOf({3}), vectorOf({2})), kMissing);

    // Both walks of a message give the same product, and division undoes it; 0 / 0 is 0.
    cBYN_Table first = vectorOf(cells);
    cBYN_Table second = vectorOf(cells);
    const cBYN_Table separator = vectorOf({1, 3});
    const cBYN_Table message = vectorOf({2, 4, 0, 8});
    BYNRun_multiply_by_sep_ST(sizes, members, first, separator, message, -1);
    BYNRun_multiply_by_sep_BIS_ST(sizes, members, second, separator, message, 0);
    EXPECT_EQ(cellsOf(first), (std::vector<double>{2, 8, 6, 16, 10, 24, 0, 64, 0, 80, 0, 96}));
    EXPECT_EQ(cellsOf(first), cellsOf(second));
    BYNRun_divide_by_sep_ST(sizes, members, first, separator, message);
    EXPECT_EQ(cellsOf(first), (std::vector<double>{1, 2, 3, 4, 5, 6, 0, 8, 0, 10, 0, 12}));

    // What does not fit: a strange node, one twice, a short table, a size that is not there.
    BYNRun_Marginalize_ST(sizes, members, table, vectorOf({4}), fresh());
    EXPECT_TRUE(cellsOf(out).empty());
    BYNRun_Marginalize_ST(sizes, vectorOf({1, 1}), table, vectorOf({1}), fresh());
    EXPECT_TRUE(cellsOf(out).empty());
    BYNRun_Marginalize_ST(sizes, members, vectorOf({1, 2}), vectorOf({1}), fresh());
    EXPECT_TRUE(cellsOf(out).empty());
    BYNRun_Sum2Nodes_ST(sizes, members, table, 0, -5, fresh());
    EXPECT_TRUE(cellsOf(out).empty());
}

TEST(NetworkRoutines, NormaliseLetsATotalThatIsNotPositiveRunOn) {
    const auto potentials = [](const std::vector<std::vector<double>>& tables) {
        cBYN_Potentials out(static_cast<std::int32_t>(tables.size()));
        for (std::size_t c = 0; c < tables.size(); ++c)
            out.setSlice(static_cast<std::int32_t>(c), std::make_unique<cBYN_Table>(vectorOf(tables[c])));
        return out;
    };
    const auto lengths = sizesOf({2, 2, 2});
    auto out = potentials({{7, 7}, {7, 7}, {7, 7}});
    BYNRun_Normalise_ST(3, lengths, potentials({{0, 0}, {1, 3}, {2, 2}}), out);
    EXPECT_EQ(cellsOf(out(1)), (std::vector<double>{7, 7}));
    EXPECT_EQ(cellsOf(out(2)), (std::vector<double>{0.25, 0.75}));
    EXPECT_EQ(cellsOf(out(3)), (std::vector<double>{0.5, 0.5}));
    out = potentials({{7, 7}, {7, 7}, {7, 7}});
    BYNRun_Normalise_ST(3, lengths, potentials({{1, 1}, {std::nan(""), 1}, {2, 2}}), out);
    EXPECT_EQ(cellsOf(out(1)), (std::vector<double>{0.5, 0.5}));
    EXPECT_EQ(cellsOf(out(2)), (std::vector<double>{7, 7}));
    EXPECT_EQ(cellsOf(out(3)), (std::vector<double>{7, 7}));
}

TEST(NetworkRoutines, PotentialsAndLabels) {
    const auto sizes = sizesOf({2, 0, 3});
    cBYN_Table cliques(3, 3, 0.0);
    cliques.at(0, 0) = 1.0;
    cliques.at(0, 2) = 3.0;
    cliques.at(1, 1) = 2.0;
    cBYN_Potentials potentials;
    matrix<std::int32_t> lengths;
    BYNRun_Init_pot_ST(3, BYNRun_clq_size_ST(3, cliques), sizes, cliques, potentials, lengths);
    ASSERT_EQ(potentials.count(), 2);
    EXPECT_EQ(lengths[0], 6);
    EXPECT_EQ(lengths[1], 1);
    EXPECT_EQ(cellsOf(potentials(1)), std::vector<double>(6, 1.0));

    matrix<u16string> names(3, 1, u16string());
    names[0] = u16string(u"Rain");
    cST_MVect<u16string> rows;
    cST_MVect<u16string> columns;
    BYNRun_CondLabels_ST(sizes, 3, vectorOf({1}), names, {}, rows, columns);
    ASSERT_EQ(rows.column(0).size(), 2);
    EXPECT_EQ(rows.column(0)[1].view(), u"Rain=2");
    ASSERT_EQ(columns.column(0).size(), 3);
    BYNRun_JPDLabels_ST(sizes, vectorOf({1, 3}), names, {}, rows);
    ASSERT_EQ(rows.column(0).size(), 6);
    EXPECT_EQ(rows.column(0)[4].view(), u"Rain=2, NODE3=2");
}

}  // namespace
}  // namespace numcore::networks::testing
