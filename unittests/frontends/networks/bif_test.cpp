// Reading networks: every legal form, every fault with its place.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "../csv_support.hpp"
#include "cli/errors.hpp"
#include "cli/networks/bif.hpp"
#include "cli/networks/cycle.hpp"
#include "network_support.hpp"

namespace numcore::cli {
namespace {

using Numbers = std::vector<double>;

std::string failureOf(const std::string& text) {
    try {
        parseBif(text, "n.bif");
    } catch (const DataError& error) {
        return error.what();
    }
    return {};
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

TEST(Bif, ReadsEveryLegalForm) {
    const std::string plain = chainText();
    const std::size_t firstProbability = plain.find("probability");
    const std::string texts[] = {
        plain,
        replaced(plain, "\n", "\r\n"),
        "\xEF\xBB\xBF" + plain,
        replaced(plain, ",", ""),
        replaced(replaced(plain, " | ", " "), ", ", " "),
        replaced(replaced(plain, "( b | a )", "( \"b\" \"a\" )"), "variable b", "variable \"b\""),
        replaced(plain, "{ yes, no }", "{ \"yes\", /* what else; } */ \"no\" // no\n }"),
        replaced(plain, "[ 2 ]", ""),
        replaced(plain, "[ 2 ] {", "[2]{"),
        replaced(plain, "type",
                 "property \"position; = { (1, 2)\" ;\n property \"two\nlines\" 5 } ( // ; type"),
        plain.substr(firstProbability) + plain.substr(0, firstProbability),
        chainText("table 0.9, 0.2, 0.1, 0.8;"),
        chainText("default 0.2 0.8; (yes) 0.9, 0.1;"),
        chainText("(yes) 9e-1, .1; property p; default 2.E-1 0.8;"),
        chainText("table 0.5 0.5 0.5 0.5; (no) 0.2, 0.8; (\"yes\") +0.9, 0.1;"),
    };
    for (const std::string& text : texts) {
        const TemporaryFile file(text);
        const Network network = readBif(file.path(), std::nullopt);
        ASSERT_EQ(network.nodes.size(), 3U) << text;
        EXPECT_TRUE(network.warnings.empty()) << text;
        EXPECT_EQ(network.name, "chain");
        EXPECT_EQ(network.nodes[0].states, (std::vector<std::string>{"yes", "no"})) << text;
        EXPECT_EQ(network.nodes[1].parents, (std::vector<std::size_t>{0})) << text;
        EXPECT_EQ(network.nodes[0].table, (Numbers{0.3, 0.7})) << text;
        EXPECT_EQ(network.nodes[1].table, (Numbers{0.6, 0.4, 0.1, 0.9})) << text;
        EXPECT_EQ(network.nodes[2].table, (Numbers{0.9, 0.1, 0.2, 0.8})) << text;
    }
}

TEST(Bif, KeepsNamesAsTheyAre) {
    const Network network = parseBif(
        "variable \"a b,|=\" { type discrete [ 3 ] { <7.5, >=7.5, Asy/Patch }; }"
        "variable größe { type discrete [ 2 ] { \"5-12\", 12+ }; }"
        "probability ( \"a b,|=\" ) { table 0.2 0.3 0.5; }"
        "probability ( größe, \"a b,|=\" ) { (<7.5) 1 0; (Asy/Patch) 0 1; (>=7.5) .5 .5; }",
        "n.bif");
    EXPECT_EQ(network.nodes[0].name, "a b,|=");
    EXPECT_EQ(network.nodes[0].states, (std::vector<std::string>{"<7.5", ">=7.5", "Asy/Patch"}));
    EXPECT_EQ(network.nodes[1].name, "größe");
    EXPECT_EQ(network.nodes[1].table, (Numbers{1, 0, 0.5, 0.5, 0, 1}));
}

TEST(Bif, TellsEveryFaultWithItsPlace) {
    struct Case {
        std::string text;
        std::string message;
    };
    const std::string plain = chainText();
    const Case cases[] = {
        {"", "n.bif:1:1: no variable block"},
        {"variable a {\n  typo", "n.bif:2:3: expected type, property or '}' in variable 'a', found 'typo'"},
        {replaced(plain, "( b | a )", "( b | aa )"),
         "n.bif:6:19: no variable 'aa' is declared; did you mean 'a'?"},
        {replaced(plain, "variable c", "variable b"), "n.bif:4:10: variable 'b' stands twice"},
        {replaced(plain, "{ low, high }", "{ low, low }"), "n.bif:4:41: in 'c' state 'low' stands twice"},
        {replaced(plain, "{ low, high }", "{ }"),
         "4:28: variable 'c' has 2 states by its number and 0 by its list"},
        {replaced(plain, "discrete", "continuous"), "2:19: variable 'a' is of type 'continuous'"},
        {chainText("(yes) 0.9, 0.1; (maybe) 0.2, 0.8;"),
         "n.bif:7:42: 'b' has no state 'maybe'; its states are 'yes', 'no'"},
        {chainText("(yes) 0.9, 0.1;"), "n.bif:7:15: 1 of the 2 rows of 'c' missing, the first is (no)"},
        {chainText("(yes) 0.9, 0.1; (yes) 0.9, 0.1;"), "n.bif:7:41: a second row (yes) for 'c'"},
        {chainText("(yes, no) 0.9, 0.1;"), "n.bif:7:25: a row of 'c' names 2 states, it has 1 parent"},
        {chainText("(yes) 0.9; (no) 0.2, 0.8;"), "n.bif:7:25: 1 number for 'c', which takes 2"},
        {chainText("table 0.9, 0.1;"), "n.bif:7:25: 2 numbers for 'c', which takes 4"},
        {chainText("default 1 0; default 0 1;"), "n.bif:7:38: a second default for 'c'"},
        {chainText("(yes) -0.1, 1.1; (no) 0.2, 0.8;"), "n.bif:7:31: '-0.1' is no probability"},
        {chainText("(yes) nan, 1; (no) 0.2, 0.8;"), "n.bif:7:31: 'nan' is no probability"},
        {chainText("(yes) 1e999, 1; (no) 0.2, 0.8;"), "n.bif:7:31: '1e999' is no probability"},
        {chainText("(yes) 0.9 x; (no) 0.2, 0.8;"), "n.bif:7:35: expected a number, found 'x'"},
        {chainText("(yes) 0.9, 0.1 (no) 0.2, 0.8;"), "n.bif:7:40: expected a number or ';', found '('"},
        {replaced(plain, "( c | b )", "( c | b, b )"), "n.bif:7:22: parent 'b' of 'c' stands twice"},
        {replaced(plain, "( c | b )", "( c, b | a )"), "n.bif:7:20: one variable stands before the bar"},
        {replaced(plain, "( c | b )", "( a )"), "n.bif:7:15: a second probability block for 'a'"},
        {plain.substr(0, plain.rfind("probability")), "n.bif:4:10: variable 'c' has no probability block"},
        {plain + "/* open", "n.bif:8:1: this comment is not closed by */"},
        {plain + "\"ü", "n.bif:8:1: this quote is not closed on its line"},
        {plain + "network again { }", "n.bif:8:1: a second network"},
        {"variable größe { type discrete [ 1 ] { a }; } x",
         "n.bif:1:47: expected network, variable or probability"},
        {replaced(plain, "[ 2 ] { low", "[ 3 ] { low"), "3 states by its number and 2 by its list"},
        {plain.substr(0, plain.size() - 4), "the end of the file"},
        {"variable a { type discrete [ 2 ] { x, y }; property \"open; }", "not ended by a semicolon"},
    };
    for (const Case& wrong : cases)
        EXPECT_NE(failureOf(wrong.text).find(wrong.message), std::string::npos) << wrong.message << "\n"
                                                                                << failureOf(wrong.text);
}

TEST(Bif, NamesRowsThatMissOne) {
    const Network network = parseBif(chainText("(yes) 0.9, 0.2; (no) 0.1999999, 0.8;"), "n.bif");
    ASSERT_EQ(network.warnings.size(), 1U) << "rounding is no fault";
    EXPECT_EQ(network.warnings[0], "n.bif:7:25: row (yes) of 'c' sums to 1.1 instead of 1; used as given");
    EXPECT_EQ(network.nodes[2].table[1], 0.2);
    EXPECT_NEAR(network.largestRowError, 0.1, 1e-15);
    const Network turned = parseBif(chainText("table 0.9, 0.1, 0.2, 0.8;"), "n.bif");
    EXPECT_EQ(turned.nodes[2].table, (Numbers{0.9, 0.1, 0.2, 0.8}));
    ASSERT_EQ(turned.warnings.size(), 1U);
    EXPECT_NE(turned.warnings[0].find("only when its own state varies fastest"), std::string::npos);
    std::string many =
        "variable p { type discrete { 1 2 3 4 5 6 7 8 }; } probability (p) { table 1 0 0 0 0 0 0 0; }"
        "variable q { type discrete { x y }; } probability (q p) { default 0.5 0.6; }";
    EXPECT_EQ(parseBif(many, "n.bif").warnings.back(),
              "n.bif: 3 rows more that do not sum to 1; used as given");
}

TEST(Bif, RefusesTablesBeyondReason) {
    std::string text;
    std::string parents;
    for (int i = 0; i < 40; ++i) {
        const std::string name = "p" + std::to_string(i);
        text += "variable ";
        text += name;
        text += " { type discrete { x y }; } probability (";
        text += name;
        text += ") { table 1 0; }\n";
        parents += ' ';
        parents += name;
    }
    text += "variable q { type discrete { x y }; } probability (q" + parents + ") { default 1 0; }";
    EXPECT_NE(failureOf(text).find("the table of 'q' with its 40 parents is too large"), std::string::npos);
}

TEST(Bif, ReadsPublishedNetworks) {
    for (const auto& expected : referenceNetworks()) {
        const Network network = readBif(networkFile(expected.at("name")), std::nullopt);
        ASSERT_EQ(network.nodes.size(), expected.at("nodes").size());
        EXPECT_TRUE(network.warnings.empty()) << expected.at("name");
        for (std::size_t i = 0; i < network.nodes.size(); ++i) {
            const NetworkNode& node = network.nodes[i];
            EXPECT_EQ(node.name, expected.at("nodes")[i]);
            EXPECT_EQ(node.states, expected.at("states")[i].get<std::vector<std::string>>());
            EXPECT_EQ(node.table, expected.at("tables")[i].get<Numbers>()) << node.name;
            auto parents = expected.at("parents")[i].get<std::vector<std::size_t>>();
            for (std::size_t& parent : parents) --parent;
            EXPECT_EQ(node.parents, parents) << node.name;
        }
    }
}

TEST(Cycle, IsNamedInTheDirectionOfItsArcs) {
    const auto cycleOf = [](const std::vector<std::vector<std::size_t>>& parents) {
        Network network;
        for (const auto& list : parents) network.nodes.push_back({"", {}, list, {}});
        return findCycle(network);
    };
    using List = std::vector<std::size_t>;
    EXPECT_EQ(cycleOf({}), List{});
    EXPECT_EQ(cycleOf({{}, {0}, {0, 1}}), List{});
    EXPECT_EQ(cycleOf({{0}}), List{0});
    EXPECT_EQ(cycleOf({{}, {0, 3}, {1}, {2}, {3}}).size(), 3U)
        << "neither what leads to it nor what it leads to";
    // Twenty nodes on one cycle: beyond what the matrix exponential tells from rounding.
    std::vector<std::vector<std::size_t>> ring;
    for (std::size_t i = 0; i < 20; ++i) ring.push_back({(i + 19) % 20});
    const List cycle = cycleOf(ring);
    ASSERT_EQ(cycle.size(), 20U);
    for (std::size_t i = 0; i < 20; ++i) EXPECT_EQ(cycle[(i + 1) % 20], (cycle[i] + 1) % 20);
    std::vector<std::vector<std::size_t>> chain{{}};
    for (std::size_t i = 1; i < 100'000; ++i) chain.push_back({i - 1});
    EXPECT_TRUE(cycleOf(chain).empty());
}

}  // namespace
}  // namespace numcore::cli
