// The command line of bayes.
#include <CLI/CLI.hpp>

#include "cli/options_parts.hpp"

namespace numcore::cli {

namespace {

constexpr const char* kGroup = "Network";

constexpr const char* kFooter =
    R"(Names that hold a comma, a bar or an equals sign stand in double quotes: '"a,b"=yes'.
Rows of the tables are used as given; those that do not sum to 1 are named. A state of the conditions that
cannot come about has no probabilities.

Examples:
  numcore bayes asia.bif
  numcore bayes asia.bif --evidence xray=yes,dysp=no
  numcore bayes asia.bif --likely xray=0.8:0.2 --joint lung,bronc
  numcore bayes asia.bif --query 'lung|smoke' --query 'lung,tub|either=yes'
  numcore bayes child.bif --tree --format json
  numcore bayes child.bif --evidence 'CO2Report=<7.5' --tree --plot child.svg
  numcore bayes drawn.bif --check)";

}  // namespace

void addNetworkCommand(CLI::App& app, Options& options, RawOptions& raw) {
    CLI::App* command = app.add_subcommand("bayes", "Probabilities in a Bayesian network, its junction tree");
    NetworkRequest& request = options.network;
    command
        ->add_option("NETWORK", options.file, "Network in the interchange format (BIF); - reads standard input")
        ->required();
    const auto add = [&](const char* name, auto& target, const char* help) {
        return command->add_option(name, target, help)->group(kGroup);
    };
    const auto addList = [&](const char* name, std::vector<std::string>& lists, const char* help) {
        add(name, lists, help)
            ->expected(1)
            ->allow_extra_args(false)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    };
    addList("-e,--evidence", request.evidence, "Observed states: Node=state,Node=state");
    addList("--likely", request.likelihoods,
            "Uncertain evidence: Node=l1:l2:..., the likelihood of what was seen under each state");
    addList("--query", request.queries,
            "Conditional probabilities A,B|C,D=state: of A and B together, for each state of C, with D known");
    addList("--joint", request.joints, "Joint probabilities of nodes: A,B");
    command->add_flag("--tree", request.tree, "The junction tree: cliques, separators, order, sizes")
        ->group(kGroup);
    command->add_flag("--check", request.check, "Only check the network: cycles, counts, sums of the rows")
        ->group(kGroup);
    add("--memory", request.memory,
        "Bytes that the tables may take, or 500M, 2G (half of the machine's memory)");
    add("--plot", request.plot, "SVG file to draw the network to, with --tree the junction tree too");
    add("--encoding", raw.encoding, "utf-8, utf-16le, utf-16be, latin-1 or windows-1252 (guessed)");
    addOutput(*command, options, raw);
    command->footer(kFooter);
    command->callback([&options] { options.command = Command::kBayes; });
}

}  // namespace numcore::cli
