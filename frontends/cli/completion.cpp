#include "cli/completion.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "cli/errors.hpp"

namespace numcore::cli {

namespace {

/// Values of the options that have a fixed set of them.
struct OptionValues {
    const char* command;  // empty: every one
    const char* option;
    const char* values;
};

constexpr OptionValues kValues[] = {
    {"", "format", "text csv tsv json markdown html"},
    {"", "encoding", "utf-8 utf-16le utf-16be latin-1 windows-1252"},
    {"", "separator", "comma semicolon tab bar space"},
    {"", "ragged", "error fill"},
    {"quantile", "method",
     "all linear weibull inverted_cdf averaged_inverted_cdf closest_observation interpolated_inverted_cdf"},
    {"cor", "method", "pearson spearman kendall polychoric polychoric-ml"},
    {"mantel", "method", "pearson spearman"},
    {"", "alternative", "two-sided less greater"},
    {"cor", "missing", "pairwise listwise"},
    {"", "layout", "matrix pairs"},
    {"", "scheme", "permutation bootstrap"},
    {"vartest", "test", "f chi2 bartlett levene"},
    {"vartest", "center", "median mean"},
    {"proptest", "interval", "wilson wald clopper agresti"},
};

/// Options that take a file.
constexpr std::string_view kFileOptions[] = {"output", "plot", "file"};

bool takesFile(const std::string& option) {
    return std::ranges::find(kFileOptions, option) != std::end(kFileOptions);
}

constexpr const char* kShells = "bash zsh fish";

std::string valuesOf(const std::string& command, const std::string& option) {
    for (const OptionValues& entry : kValues) {
        const bool here = *entry.command == '\0' || command == entry.command;
        if (here && option == entry.option) return entry.values;
    }
    return {};
}

/// Text within single quotes of a shell.
std::string quotedWord(const std::string& text) {
    std::string out = "'";
    for (const char c : text) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

std::string names(const std::vector<CompletionCommand>& commands) {
    std::string out;
    for (const CompletionCommand& command : commands) out += (out.empty() ? "" : " ") + command.name;
    return out;
}

std::string joined(const std::vector<std::string>& words) {
    std::string out;
    for (const std::string& word : words) out += (out.empty() ? "" : " ") + word;
    return out;
}

/// The first argument of the commands that take words for it, and files where they may stand too.
std::string bashWords(const std::vector<CompletionCommand>& commands) {
    std::string out;
    for (const CompletionCommand& command : commands) {
        if (command.words.empty()) continue;
        out += fmt::format(
            "    elif ((COMP_CWORD == 2)) && [[ ${{COMP_WORDS[1]}} == {} ]]; then\n"
            "        mapfile -t COMPREPLY < <(compgen -W '{}' -- \"$current\"{})\n",
            command.name, joined(command.words), command.takesFile ? "; compgen -f -- \"$current\"" : "");
    }
    return out;
}

std::string writeBash(const std::vector<CompletionCommand>& commands) {
    std::string out = fmt::format(R"(# bash completion of numcore
_numcore() {{
    local current=${{COMP_WORDS[COMP_CWORD]}} previous=${{COMP_WORDS[COMP_CWORD-1]}}
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W '{} --help --version' -- "$current")
        return
    fi
    case ${{COMP_WORDS[1]}}\ $previous in
)",
                                  names(commands));
    for (const OptionValues& entry : kValues) {
        out += fmt::format(
            "        {}\\ --{}) mapfile -t COMPREPLY < <(compgen -W '{}' -- \"$current\"); return ;;\n",
            *entry.command == '\0' ? "*" : entry.command, entry.option, entry.values);
    }
    for (const std::string_view option : kFileOptions) {
        out += fmt::format(
            "        *\\ --{}) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$current\"); "
            "return "
            ";;\n",
            option);
    }
    out += "    esac\n    if [[ $current == -* ]]; then\n        case ${COMP_WORDS[1]} in\n";
    for (const CompletionCommand& command : commands) {
        std::string options;
        for (const CompletionOption& option : command.options)
            options += (options.empty() ? "--" : " --") + option.name;
        out += fmt::format("            {}) mapfile -t COMPREPLY < <(compgen -W '{}' -- \"$current\") ;;\n",
                           command.name, options);
    }
    out += fmt::format(R"(        esac
    elif [[ ${{COMP_WORDS[1]}} == completion ]]; then
        mapfile -t COMPREPLY < <(compgen -W '{}' -- "$current")
{}    else
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}}
complete -F _numcore numcore
)",
                       kShells, bashWords(commands));
    return out;
}

std::string zshArgument(const CompletionCommand& command) {
    if (command.name == "completion") return fmt::format("shell:({})", kShells);
    if (command.words.empty()) return "file:_files";
    const std::string words = joined(command.words);
    return command.takesFile ? fmt::format("file or law:{{_files; compadd {}}}", words)
                             : fmt::format("law:({})", words);
}

std::string writeZsh(const std::vector<CompletionCommand>& commands) {
    const auto plain = [](std::string text) {
        for (char& c : text) {
            if (c == '[' || c == ']' || c == ':') c = ' ';
        }
        return text;
    };
    std::string out =
        "#compdef numcore\n\n_numcore() {\n    if ((CURRENT == 2)); then\n        local -a commands=(\n";
    for (const CompletionCommand& command : commands) {
        out += fmt::format("            {}\n", quotedWord(command.name + ":" + plain(command.help)));
    }
    out +=
        "        )\n        _describe command commands\n        return\n    fi\n    local command=$words[2]\n"
        "    shift words\n    ((CURRENT--))\n    case $command in\n";
    for (const CompletionCommand& command : commands) {
        out += fmt::format("        {})\n            _arguments", command.name);
        for (const CompletionOption& option : command.options) {
            std::string argument = fmt::format("--{}[{}]", option.name, plain(option.help));
            const std::string values = valuesOf(command.name, option.name);
            if (takesFile(option.name)) {
                argument += ":file:_files";
            } else if (!values.empty()) {
                argument += fmt::format(":{}:({})", option.name, values);
            } else if (option.takesValue) {
                argument += ":" + option.name + ":";
            }
            out += " \\\n                " + quotedWord(argument);
        }
        out += fmt::format(" \\\n                '1:{}'\n            ;;\n", zshArgument(command));
    }
    return out + "    esac\n}\n\n_numcore \"$@\"\n";
}

std::string writeFish(const std::vector<CompletionCommand>& commands) {
    std::string out = "# fish completion of numcore\n";
    const std::string all = names(commands);
    for (const CompletionCommand& command : commands) {
        out += fmt::format("complete -c numcore -n 'not __fish_seen_subcommand_from {}' -f -a {} -d {}\n", all,
                           command.name, quotedWord(command.help));
        for (const CompletionOption& option : command.options) {
            const std::string values = valuesOf(command.name, option.name);
            out += fmt::format("complete -c numcore -n '__fish_seen_subcommand_from {}' -l {} -d {}{}{}\n",
                               command.name, option.name, quotedWord(option.help),
                               takesFile(option.name) ? " -r -F"
                               : option.takesValue    ? " -r"
                                                      : "",
                               values.empty() ? "" : " -f -a " + quotedWord(values));
        }
    }
    for (const CompletionCommand& command : commands) {
        if (command.words.empty()) continue;
        out += fmt::format("complete -c numcore -n '__fish_seen_subcommand_from {}'{} -a '{}'\n", command.name,
                           command.takesFile ? "" : " -f", joined(command.words));
    }
    out += fmt::format("complete -c numcore -n '__fish_seen_subcommand_from completion' -f -a '{}'\n", kShells);
    return out;
}

}  // namespace

std::string writeCompletion(const std::string& shell, const std::vector<CompletionCommand>& commands) {
    if (shell == "bash") return writeBash(commands);
    if (shell == "zsh") return writeZsh(commands);
    if (shell == "fish") return writeFish(commands);
    throw UsageError(fmt::format("unknown shell {}; known are {}", quotedForMessage(shell), kShells));
}

}  // namespace numcore::cli
