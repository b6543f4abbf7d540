// Bayesian networks through the library's doors, with records as a foreign caller builds them.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "caller/bayesian_network.hpp"
#include "caller/data_set.hpp"
#include "numcore/host.h"

namespace numcore::caller {
namespace {

/// Rain makes the grass wet, and so does the sprinkler, which runs less when it rains.
std::vector<NetworkNode> lawn() {
    const std::vector<std::u16string> states = {u"yes", u"no"};
    return {{u"Rain", states, {}, {0.2, 0.8}},
            {u"Sprinkler", states, {0}, {0.01, 0.99, 0.4, 0.6}},
            {u"Wet", states, {1, 0}, {0.99, 0.01, 0.9, 0.1, 0.8, 0.2, 0.0, 1.0}}};
}

std::vector<NetworkNode> chain(std::size_t n, std::size_t nStates, bool withTables = true) {
    std::vector<NetworkNode> nodes(n);
    for (std::size_t i = 0; i < n; ++i) {
        nodes[i].states.assign(nStates, u"s");
        if (i > 0) nodes[i].parents = {i - 1};
        if (withTables)
            nodes[i].table.assign(i > 0 ? nStates * nStates : nStates, 1.0 / static_cast<double>(nStates));
    }
    return nodes;
}

TEST(NetworkDoors, AnswersWithEvidenceAndQueries) {
    const BayesianNetwork network(lawn());
    EXPECT_EQ(network.check(), 1);
    NetworkQuestion question;
    question.observed = {{2, 0}};
    question.queries = {{{0}, {}}, {{1, 0}, {}}, {{1}, {0}}, {{0}, {2}}, {{}, {1}}, {{1}, {1}}};
    question.familyTables = question.cliqueJoints = true;
    const NetworkAnswer answer = network.ask(question);
    ASSERT_EQ(answer.status, NUMCORE_BYN_DONE);
    // P(wet) = 0.2 (0.01 0.99 + 0.99 0.8) + 0.8 0.4 0.9, and P(rain | wet) its first part over it.
    const double wetAndRain = 0.2 * (0.01 * 0.99 + 0.99 * 0.8);
    const double wet = wetAndRain + 0.8 * 0.4 * 0.9;
    EXPECT_NEAR(answer.probability, wet, 1e-15);
    EXPECT_NEAR(answer.logProbability, std::log(wet), 1e-14);
    EXPECT_NEAR(answer.marginals[0][0], wetAndRain / wet, 1e-15);
    EXPECT_EQ(answer.marginals[2], (std::vector<double>{1.0, 0.0}));
    EXPECT_NEAR(answer.queries[0].cells[0], wetAndRain / wet, 1e-15);
    EXPECT_EQ(answer.queries[1].labels[1], u"Sprinkler=yes, Rain=no");
    EXPECT_NEAR(answer.queries[1].cells[1], 0.8 * 0.4 * 0.9 / wet, 1e-15);
    EXPECT_NEAR(answer.queries[2].cells[0], 0.01 * 0.99 / (0.01 * 0.99 + 0.99 * 0.8), 1e-15);
    // The grass is wet, so what holds when it is dry is not known.
    EXPECT_EQ(answer.queries[3].cells[2], NUMCORE_MISSING);
    EXPECT_EQ(answer.queries[4].status, NUMCORE_BYN_BAD_QUERY);
    EXPECT_EQ(answer.queries[5].status, NUMCORE_BYN_BAD_QUERY);
    EXPECT_EQ(answer.conditionals[1].labels, (std::vector<std::u16string>{u"Rain=yes", u"Rain=no"}));
    EXPECT_EQ(answer.families[2].labels[2], u"Sprinkler=yes, Rain=no, Wet=yes");
    EXPECT_EQ(answer.tree.cliques, (std::vector<NodeList>{{0, 1, 2}}));
    EXPECT_EQ(answer.forecast.cells, 8.0);
    const auto& joint = answer.cliqueJoints.at(0).cells;
    EXPECT_NEAR(std::accumulate(joint.begin(), joint.end(), 0.0), 1.0, 1e-15);

    // Soft evidence of 1 and 0 is hard evidence; a constant changes nothing but the probability.
    NetworkQuestion soft;
    soft.likelihoods = {{2, {0.5, 0.0}}};
    const NetworkAnswer softly = network.ask(soft);
    EXPECT_NEAR(softly.marginals[0][0], answer.marginals[0][0], 1e-15);
    EXPECT_NEAR(softly.probability, wet / 2.0, 1e-15);
}

TEST(NetworkDoors, LargeNumbersDoNotOverflow) {
    // Likelihoods and rows matter by their proportions only.
    auto nodes = lawn();
    for (NetworkNode& node : nodes)
        for (double& cell : node.table) cell *= 1e250;
    NetworkQuestion question;
    question.likelihoods = {{0, {3e300, 1e300}}, {1, {1e308, 1.7e308}}, {2, {2e200, 1e-200}}};
    question.queries = {{{0, 2}, {}}};
    question.familyTables = true;
    const NetworkAnswer large = BayesianNetwork(nodes).ask(question);
    question.likelihoods = {{0, {3.0, 1.0}}, {1, {1.0, 1.7}}, {2, {1.0, 0.0}}};
    const NetworkAnswer plain = BayesianNetwork(lawn()).ask(question);
    ASSERT_EQ(large.status, NUMCORE_BYN_DONE);
    for (std::size_t node = 0; node < 3; ++node) {
        EXPECT_NEAR(large.marginals[node][0], plain.marginals[node][0], 1e-14) << node;
        EXPECT_NEAR(large.families[node].cells[0], plain.families[node].cells[0], 1e-14) << node;
    }
    EXPECT_NEAR(large.queries[0].cells[0], plain.queries[0].cells[0], 1e-14);
    EXPECT_NEAR(large.logProbability,
                plain.logProbability + std::log(1e300) + std::log(1e308) + std::log(2e200), 1e-10);
    EXPECT_EQ(large.probability, std::numeric_limits<double>::infinity());
}

TEST(NetworkDoors, ImpossibleEvidenceIsMarked) {
    NetworkQuestion question;
    question.observed = {{0, 1}, {1, 1}, {2, 0}};
    question.queries = {{{0}, {}}};
    const NetworkAnswer answer = BayesianNetwork(lawn()).ask(question);
    EXPECT_EQ(answer.status, NUMCORE_BYN_IMPOSSIBLE);
    EXPECT_EQ(answer.probability, 0.0);
    EXPECT_EQ(answer.marginals[0][0], NUMCORE_MISSING);
    EXPECT_EQ(answer.queries[0].cells, (std::vector<double>(2, NUMCORE_MISSING)));
    EXPECT_EQ(answer.queries[0].labels, (std::vector<std::u16string>{u"Rain=yes", u"Rain=no"}));
}

TEST(NetworkDoors, RefusesWhatDoesNotFit) {
    // 100 nodes of 1000 states: 99 cliques of a million cells.
    const BayesianNetwork wide(chain(100, 1000, false));
    const NetworkForecast forecast = wide.forecast(1e8);
    EXPECT_EQ(forecast.status, NUMCORE_BYN_TOO_LARGE);
    EXPECT_EQ(forecast.cells, 99e6);
    EXPECT_EQ(forecast.largest, 1e6);
    EXPECT_EQ(forecast.bytes, 8.0 * (99e6 + 2.0 * 98e3));
    EXPECT_EQ(wide.structure(1e8).status, NUMCORE_BYN_TOO_LARGE);
    EXPECT_EQ(wide.forecast(1e9).status, NUMCORE_BYN_DONE);
    EXPECT_GT(wide.forecast(std::nan("")).bound, 1e8);
    // A query that joins nodes far apart has a table of its own to fit.
    NetworkQuestion question;
    question.memory = 10000.0;
    question.queries = {{{0, 3, 6, 9}, {}}, {{0, 9}, {}}, {{9, 8, 7, 6, 5, 4, 3, 2}, {1}}, {{1}, {8}}};
    const NetworkAnswer answer = BayesianNetwork(chain(10, 5)).ask(question);
    EXPECT_EQ(answer.status, NUMCORE_BYN_DONE);
    EXPECT_EQ(answer.queries[0].status, NUMCORE_BYN_TOO_LARGE);
    EXPECT_EQ(answer.queries[1].status, NUMCORE_BYN_DONE);
    EXPECT_NEAR(answer.queries[1].cells.at(0), 0.04, 1e-15);
    EXPECT_TRUE(answer.queries[2].cells.empty());
    EXPECT_NEAR(answer.queries[3].cells.at(24), 0.2, 1e-15);
    // Without a bound too there are tables that no array holds.
    question.memory = std::numeric_limits<double>::infinity();
    question.queries = {{{}, {}}};
    for (std::size_t node = 0; node < 40; ++node) question.queries[0].nodes.push_back(node);
    const NetworkAnswer unbound = BayesianNetwork(chain(40, 2)).ask(question);
    EXPECT_EQ(unbound.status, NUMCORE_BYN_DONE);
    EXPECT_EQ(unbound.queries[0].status, NUMCORE_BYN_TOO_LARGE);
}

TEST(NetworkDoors, RefusesMalformedNetworks) {
    const auto statusOf = [](std::vector<NetworkNode> nodes, const NetworkQuestion& question = {}) {
        return BayesianNetwork(std::move(nodes)).ask(question).status;
    };
    auto nodes = lawn();
    nodes[0].parents = {2};
    EXPECT_EQ(statusOf(nodes), NUMCORE_BYN_CYCLE);
    EXPECT_EQ(statusOf({}), NUMCORE_BYN_NO_DATA);
    nodes = lawn();
    nodes[1].states.clear();
    EXPECT_EQ(statusOf(nodes), NUMCORE_BYN_BAD_SIZE);
    for (const double cell : {-0.1, std::nan(""), std::numeric_limits<double>::infinity(), NUMCORE_MISSING}) {
        nodes = lawn();
        nodes[2].table[3] = cell;
        EXPECT_EQ(statusOf(nodes), NUMCORE_BYN_BAD_TABLE);
    }
    nodes = lawn();
    nodes[2].table.pop_back();
    EXPECT_EQ(statusOf(nodes), NUMCORE_BYN_BAD_TABLE);
    NetworkQuestion question;
    question.observed = {{1, 2}};
    EXPECT_EQ(statusOf(lawn(), question), NUMCORE_BYN_BAD_EVIDENCE);
    question = {};
    question.likelihoods = {{1, {1.0, -1.0}}};
    EXPECT_EQ(statusOf(lawn(), question), NUMCORE_BYN_BAD_EVIDENCE);
    question = {};
    question.observed = {{7, 0}};
    EXPECT_THROW(statusOf(lawn(), question), std::out_of_range);
}

/// Records by hand: a node of two states, its table in the data set's list.
struct Records {
    Records()
        : keys(1, 1),
          table(1, 2),
          sizes(Array::ints(1)),
          parents(Array::matrix(1, 1)),
          marginals(Array::doubles(2)) {
        keys.column(0).setText(0, u"NODE1");
        data.setStrings1(std::move(keys));
        table.column(0).asDoubles()[0] = 3.0;
        table.column(0).asDoubles()[1] = 1.0;
        data.record().nNumericTables = 1;
        data.record().numericTables = &table.record();
        sizes.asInts()[0] = 2;
        param.n = 1;
        param.sizes = sizes.get();
        param.parents = parents.get();
        results.marginals = marginals.get();
    }
    std::int32_t compute() {
        EXPECT_EQ(Cpp_BYNRun_Compute_ST(&data.record(), &param, &results, nullptr, nullptr), 0);
        return results.status;
    }

    TextTable keys;
    NumericTable table;
    DataSet data;
    Array sizes;
    Array parents;
    Array marginals;
    BYN_Param param{};
    BYN_Results results{};
};

TEST(NetworkDoors, HostileRecords) {
    EXPECT_EQ(Cpp_BYNRun_DAG_ST(nullptr, nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(Cpp_BYNRun_Compute_ST(nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(Cpp_BYNRun_Forecast_ST(nullptr, nullptr, nullptr), NUMCORE_BYN_NO_DATA);

    Records records;
    EXPECT_EQ(records.compute(), NUMCORE_BYN_DONE);
    // One number, the node's own table scaled to 1, and nothing written behind it.
    EXPECT_EQ(records.marginals.at(0), 0.75);
    // The total without evidence is what probability is told against.
    EXPECT_EQ(records.results.probability, 1.0);

    for (const double parent : {1.0, -3.0, 0.5, 2.0, 1e300, std::nan(""), NUMCORE_MISSING}) {
        records.parents.asDoubles()[0] = parent;
        EXPECT_EQ(records.compute(), NUMCORE_BYN_DONE) << parent;
    }
    for (const std::int32_t n : {0, -1, 2, 2147483647}) {
        records.param.n = n;
        EXPECT_EQ(records.compute(), NUMCORE_BYN_NO_DATA) << n;
        EXPECT_EQ(records.marginals.at(0), NUMCORE_MISSING);
        EXPECT_EQ(Cpp_BYNRun_DAG_ST(&records.data.record(), &records.param, nullptr, nullptr, nullptr),
                  n == 0 ? 0 : 1);
    }
    records.param.n = 1;
    records.sizes.asInts()[0] = 2147483647;
    EXPECT_NE(records.compute(), NUMCORE_BYN_DONE);
    records.sizes.asInts()[0] = 2;
    records.param.nQueries = 2147483647;
    EXPECT_EQ(records.compute(), NUMCORE_BYN_DONE);
    records.data.record().nNumericTables = -5;
    EXPECT_EQ(records.compute(), NUMCORE_BYN_BAD_TABLE);
}

const char16_t* hostText(void*, std::int32_t group, std::int32_t row) {
    if (group != 10) return nullptr;
    switch (row) {
        case 319:
            return u"0.000";
        case 7510:
            return u"Node";
        case 7511:
            return u"States of XXXX";
        case 7512:
            return u"Table XXXX";
        default:
            return nullptr;
    }
}

TEST(NetworkDoors, TitlesComeFromTheHost) {
    Records records;
    Array texts[6];
    for (Array& text : texts) text = Array::texts(1);
    records.results.headers = texts[0].get();
    records.results.marginalTitles = texts[1].get();
    records.results.conditionalTitles = texts[2].get();
    records.results.marginalFormats = texts[3].get();
    records.results.conditionalFormats = texts[4].get();
    records.results.familyFormats = texts[5].get();
    // The title names the label of the data set, whatever name the other tables give the node.
    Array names = Array::texts(1);
    names.setText(0, u"Rain");
    records.param.nodeNames = names.get();
    numcore_set_string_source(hostText, nullptr);
    records.compute();
    EXPECT_EQ(texts[0].text(0), u"Node");
    EXPECT_EQ(texts[1].text(0), u"States of NODE1");
    EXPECT_EQ(texts[2].text(0), u"Table 1");
    EXPECT_EQ(texts[3].text(0), u"0.000");
    EXPECT_EQ(texts[5].text(0), u"0.000");
    // A node of unknown size has no third table.
    texts[5].setText(0, u"");
    records.sizes.asInts()[0] = 0;
    records.compute();
    EXPECT_TRUE(texts[5].text(0).empty());
    numcore_set_string_source(nullptr, nullptr);
}

}  // namespace
}  // namespace numcore::caller
