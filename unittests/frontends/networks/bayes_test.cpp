// The bayes command: probabilities of published networks, evidence, queries, the tree, refusals.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "../csv_support.hpp"
#include "cli/errors.hpp"
#include "cli/networks/command.hpp"
#include "cli/networks/question.hpp"
#include "cli/output/writers.hpp"
#include "network_support.hpp"

namespace numcore::cli {
namespace {

using Json = nlohmann::json;

const ReportTable& tableOf(const Report& report, const std::string& id) {
    const auto found = std::ranges::find(report.tables, id, &ReportTable::id);
    if (found == report.tables.end()) throw std::out_of_range(id);
    return *found;
}

double numberIn(const Cell& cell) {
    return std::get<double>(cell);
}

/// "Node=state" of a pair of numbers from 1.
std::string finding(const Json& network, const Json& pair) {
    const auto node = pair[0].get<std::size_t>() - 1;
    const auto state = pair[1].get<std::size_t>() - 1;
    return network["nodes"][node].get<std::string>() + "=" + network["states"][node][state].get<std::string>();
}

std::vector<std::string> findings(const Json& network, const Json& pairs) {
    std::vector<std::string> out;
    for (const Json& pair : pairs) out.push_back(finding(network, pair));
    return out;
}

void expectMarginals(const ReportTable& table, std::size_t column, const Json& expected,
                     const std::string& what) {
    std::size_t row = 0;
    for (const Json& node : expected) {
        for (const Json& value : node) {
            ASSERT_LT(row, table.rows.size()) << what;
            EXPECT_NEAR(numberIn(table.rows[row][column]), value.get<double>(), 1e-12)
                << what << " row " << row;
            ++row;
        }
    }
    EXPECT_EQ(row, table.rows.size()) << what;
}

TEST(Bayes, AgreesWithReferencesOnPublishedNetworks) {
    for (const Json& network : referenceNetworks()) {
        const auto name = network["name"].get<std::string>();
        Options options = askAbout(networkFile(name));
        expectMarginals(tableOf(askNetwork(options), "marginals"), 2, network["marginals"], name);
        for (const Json& evidence : network["evidence"]) {
            options.network.evidence = findings(network, evidence["observed"]);
            const Report report = askNetwork(options);
            const ReportTable& marginals = tableOf(report, "marginals");
            expectMarginals(marginals, 2, network["marginals"], name + " before");
            expectMarginals(marginals, 3, evidence["marginals"], name + " " + evidence["observed"].dump());
            EXPECT_NEAR(numberIn(tableOf(report, "network").rows[0][4]), evidence["probability"].get<double>(),
                        1e-12);
        }
    }
}

TEST(Bayes, AnswersConditionalQueries) {
    for (const Json& network : referenceNetworks()) {
        for (const Json& query : network["conditionals"]) {
            const auto nameOf = [&](const Json& node) {
                return network["nodes"][node.get<std::size_t>() - 1].get<std::string>();
            };
            std::string text = nameOf(query["node"]) + "|";
            for (const Json& node : query["given"]) text += (text.back() == '|' ? "" : ",") + nameOf(node);
            Options options = askAbout(networkFile(network["name"]));
            options.output.format = Format::kJson;
            options.network.evidence = findings(network, query["evidence"]);
            options.network.queries = {text};
            const Report report = askNetwork(options);
            const ReportTable& table = tableOf(report, "query1");
            const std::size_t nStates = network["states"][query["node"].get<std::size_t>() - 1].size();
            ASSERT_EQ(table.rows.size(), query["rows"].size() * nStates) << text;
            for (std::size_t i = 0; i < table.rows.size(); ++i) {
                const Json& row = query["rows"][i / nStates];
                const Cell& got = table.rows[i].back();
                if (row.is_null()) {
                    EXPECT_EQ(got, Cell()) << text << " row " << i;
                } else {
                    EXPECT_NEAR(numberIn(got), row[i % nStates].get<double>(), 1e-12) << text << " row " << i;
                }
            }
        }
    }
}

// Expected: by hand from the tables of asia.
TEST(Bayes, LaysQueriesOut) {
    Options options = askAbout(networkFile("asia"));
    options.network.queries = {"lung|smoke", "lung , tub|either=yes", "tub"};
    options.network.joints = {"smoke,lung"};
    const Report people = askNetwork(options);
    const ReportTable& across = tableOf(people, "query1");
    EXPECT_EQ(across.title, "P(lung | smoke)");
    ASSERT_EQ(across.columns.size(), 3U);
    EXPECT_EQ(across.columns[1].title, "lung=yes");
    EXPECT_EQ(across.rows[0][0], Cell("yes"));
    EXPECT_NEAR(numberIn(across.rows[0][1]), 0.1, 1e-15);
    const ReportTable& tied = tableOf(people, "query2");
    EXPECT_EQ(tied.title, "P(lung, tub | either=yes)");
    ASSERT_EQ(tied.rows.size(), 2U) << "a row per state of lung";
    EXPECT_NEAR(numberIn(tied.rows[0][2]), 0.055 * 0.0104 / 0.064828, 1e-14);
    EXPECT_EQ(numberIn(tied.rows[1][3]), 0.0) << "one of them is there";
    EXPECT_EQ(tableOf(people, "query3").rows.size(), 2U);
    EXPECT_NEAR(numberIn(tableOf(people, "query4").rows[0][1]), 0.05, 1e-15);
    options.output.format = Format::kCsv;
    const Report machines = askNetwork(options);
    EXPECT_EQ(tableOf(machines, "query2").rows.size(), 4U);
    EXPECT_EQ(tableOf(machines, "query2").columns.back().id, "probability");
}

// Expected: Bayes' rule on the table of asia.
TEST(Bayes, WeighsUncertainEvidence) {
    Options options = askAbout(networkFile("asia"));
    options.network.likelihoods = {"smoke=3:1"};
    const Report soft = askNetwork(options);
    EXPECT_NEAR(numberIn(tableOf(soft, "marginals").rows[4][3]), 0.75, 1e-14);
    EXPECT_NEAR(numberIn(tableOf(soft, "marginals").rows[6][3]), 0.75 * 0.1 + 0.25 * 0.01, 1e-14);
    EXPECT_EQ(tableOf(soft, "marginals").rows[5][4], Cell("likelihood 1"));
    options.network.likelihoods = {"smoke=0:0.5"};
    const Report sure = askNetwork(options);
    EXPECT_NEAR(numberIn(tableOf(sure, "marginals").rows[6][3]), 0.01, 1e-14);
}

TEST(Bayes, MarksImpossibleEvidence) {
    for (const Json& network : referenceNetworks()) {
        if (network["impossible_evidence"].is_null()) continue;
        Options options = askAbout(networkFile(network["name"]));
        options.network.evidence = findings(network, network["impossible_evidence"]);
        options.network.queries = {network["nodes"][0].get<std::string>()};
        options.network.plot =
            (std::filesystem::temp_directory_path() / "numcore_impossible_evidence_test.svg").string();
        const Report report = askNetwork(options);
        std::filesystem::remove(options.network.plot);
        EXPECT_EQ(report.warnings.size(), 1U);
        EXPECT_EQ(numberIn(tableOf(report, "network").rows[0][4]), 0.0);
        for (const auto& row : tableOf(report, "marginals").rows) {
            EXPECT_EQ(row[3], Cell());
            EXPECT_NE(row[2], Cell()) << "what was before stays";
        }
        for (const auto& row : tableOf(report, "query1").rows) EXPECT_EQ(row.back(), Cell());
        EXPECT_EQ(writeText(report, {}).find("nan"), std::string::npos);
    }
}

TEST(Bayes, TellsATableOfZerosFromImpossibleEvidence) {
    const TemporaryFile zeros("variable a { type discrete { x y }; } probability (a) { table 0 0; }");
    const Report report = askNetwork(askAbout(zeros.path()));
    ASSERT_EQ(report.warnings.size(), 2U);
    EXPECT_NE(report.warnings[1].find("every joint state has weight 0"), std::string::npos);
    EXPECT_EQ(tableOf(report, "marginals").rows[0].back(), Cell());
}

TEST(Bayes, TellsTheJunctionTree) {
    for (const Json& network : referenceNetworks()) {
        const Json& structure = network["structure"];
        Options options = askAbout(networkFile(network["name"]));
        options.network.tree = true;
        const Json found = Json::parse(writeJson(askNetwork(options)));
        std::map<std::string, Json> tables;
        for (const Json& table : found["tables"]) tables[table["id"].get<std::string>()] = table["rows"];
        EXPECT_EQ(tables["tree"][0]["root"], structure["root"]);
        const auto namesOf = [&](const Json& nodes) {
            std::string out;
            for (const Json& node : nodes)
                out += (out.empty() ? "" : ", ") +
                       network["nodes"][node.get<std::size_t>() - 1].get<std::string>();
            return out;
        };
        ASSERT_EQ(tables["cliques"].size(), structure["cliques"].size());
        for (std::size_t c = 0; c < tables["cliques"].size(); ++c) {
            EXPECT_EQ(tables["cliques"][c]["members"], namesOf(structure["cliques"][c]));
            EXPECT_EQ(tables["cliques"][c]["cells"], structure["clique_weights"][c]);
        }
        for (std::size_t e = 0; e < structure["tree_edges"].size(); ++e) {
            const Json& edge = structure["tree_edges"][e];
            const Json& first = tables["cliques"][edge[0].get<std::size_t>() - 1];
            const Json& second = tables["cliques"][edge[1].get<std::size_t>() - 1];
            const Json& child = first["parent"] == edge[1] ? first : second;
            EXPECT_EQ(child["parent"], first["parent"] == edge[1] ? edge[1] : edge[0]);
            const Json& separator = structure["separators"][e];
            EXPECT_EQ(child["separator"], separator.empty() ? "(none)" : namesOf(separator));
        }
        for (std::size_t i = 0; i < tables["elimination"].size(); ++i) {
            EXPECT_EQ(tables["elimination"][i]["node"],
                      namesOf(Json::array({structure["elimination_order"][i]})));
            EXPECT_EQ(tables["elimination"][i]["fill"], structure["elimination_fills"][i]);
        }
    }
}

TEST(Bayes, ChecksBeforeAnythingElse) {
    Options options = askAbout(networkFile("asia"));
    options.network.check = true;
    const Report clean = askNetwork(options);
    ASSERT_EQ(clean.tables.size(), 1U) << "no probabilities unless they are asked for";
    EXPECT_EQ(clean.tables[0].rows[0][0], Cell("yes"));
    EXPECT_EQ(clean.tables[0].rows[0][2], Cell(std::int64_t{8}));
    const TemporaryFile ring(
        "variable a { type discrete { x y }; } variable b { type discrete { x y }; }"
        "probability (a b) { default 1 0; } probability (b a) { default 0 1; }");
    options.file = ring.path();
    const Report cyclic = askNetwork(options);
    EXPECT_EQ(tableOf(cyclic, "check").rows[0].back(), Cell(std::int64_t{0})) << "every node on a cycle";
    EXPECT_EQ(tableOf(cyclic, "cycle").rows.size(), 2U);
    ASSERT_EQ(cyclic.warnings.size(), 1U);
    // The check by an exponential, cubic in the nodes, is not asked of a large network.
    std::string text = "variable n0 { type discrete { x }; } probability (n0) { default 1; }";
    for (int i = 1; i <= 2000; ++i)
        text += "variable n" + std::to_string(i) + " { type discrete { x }; } probability (n" +
                std::to_string(i) + "|n" + std::to_string(i - 1) + ") { default 1; }";
    const TemporaryFile chain(text);
    Options large = askAbout(chain.path());
    large.network.check = true;
    EXPECT_EQ(tableOf(askNetwork(large), "check").rows[0][0], Cell("yes"));
    EXPECT_EQ(tableOf(askNetwork(large), "check").rows[0].back(), Cell());
    options.network.check = false;
    EXPECT_THROW(askNetwork(options), DataError);
}

TEST(Bayes, RefusesTablesBeyondTheMemoryAllowed) {
    Options options = askAbout(networkFile("child"));
    for (const auto& [memory, sentence] :
         {std::pair("99", "the graph alone takes more than the 99 bytes allowed"),
          std::pair("100", "more than the 100 bytes allowed; the largest clique has 216 cells")}) {
        options.network.memory = memory;
        try {
            askNetwork(options);
            ADD_FAILURE() << "must not fit";
        } catch (const DataError& error) {
            EXPECT_NE(std::string(error.what()).find(sentence), std::string::npos) << error.what();
        }
    }
    options.network.tree = true;
    const Report report = askNetwork(options);
    EXPECT_EQ(report.warnings.size(), 1U);
    EXPECT_FALSE(tableOf(report, "cliques").rows.empty());
    options.network.memory = "1M";
    EXPECT_TRUE(askNetwork(options).warnings.empty());
    EXPECT_EQ(parseBytes("1.5k"), 1536.0);
    EXPECT_EQ(parseBytes("2GiB"), 2.0 * 1024 * 1024 * 1024);
    for (const char* wrong : {"", "0", "-1", "1e400", "2X", "M"})
        EXPECT_THROW(parseBytes(wrong), UsageError) << wrong;
}

TEST(Bayes, TellsWhatTheNetworkDoesNotHave) {
    const Network network = readBif(networkFile("asia"), std::nullopt);
    using List = std::vector<std::string> NetworkRequest::*;
    const auto expect = [&](List list, const char* text, const char* message) {
        NetworkRequest request;
        request.*list = {text};
        try {
            readQuestion(request, network);
            ADD_FAILURE() << text;
        } catch (const UsageError& error) {
            EXPECT_NE(std::string(error.what()).find(message), std::string::npos) << error.what();
        }
    };
    constexpr List kEvidence = &NetworkRequest::evidence;
    constexpr List kLikely = &NetworkRequest::likelihoods;
    constexpr List kQuery = &NetworkRequest::queries;
    expect(kEvidence, "xrai=yes", "no node 'xrai'; did you mean 'xray'?\nnodes: asia, tub");
    expect(kEvidence, "xray=maybe", "'xray' has no state 'maybe'\nstates: yes, no");
    expect(kEvidence, "xray", "--evidence takes Node=state");
    expect(kEvidence, "xray=yes,xray=no", "'xray' stands twice");
    expect(kLikely, "xray=1", "1 number for 'xray', which has 2 states: yes, no");
    expect(kLikely, "xray=1:-1", "numbers of 0 or more");
    expect(kLikely, "xray=0:0", "every state of 'xray' is excluded");
    expect(kQuery, "lung|lung", "'lung' stands twice");
    expect(kQuery, "|lung", "no node ''");
    expect(&NetworkRequest::joints, "lung,", "no node ''");
    const Network odd = parseBif(
        "variable \"a,|=\" { type discrete { \"x,y\" >=2 }; } probability (\"a,|=\") { table 0.5 0.5; }",
        "n.bif");
    NetworkRequest request;
    request.evidence = {"\"a,|=\"=\"x,y\""};
    request.queries = {"\"a,|=\""};
    EXPECT_EQ(readQuestion(request, odd).question.observed.at(0), std::pair(std::size_t{0}, std::size_t{0}));
    request.evidence = {"\"a,|=\"=>=2"};
    EXPECT_EQ(readQuestion(request, odd).question.observed.at(0).second, 1U);
}

}  // namespace
}  // namespace numcore::cli
