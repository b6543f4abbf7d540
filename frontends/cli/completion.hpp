// Shell completion scripts, written from the commands and options that the program has.
#pragma once

#include <string>
#include <vector>

namespace numcore::cli {

struct CompletionOption {
    std::string name;  // long name without dashes
    std::string help;
    bool takesValue = false;
};

struct CompletionCommand {
    std::string name;
    std::string help;
    std::vector<CompletionOption> options;
    std::vector<std::string> words;  // for the first argument
    bool takesFile = false;          // or a file
};

/// The script of a shell: bash, zsh or fish. Throws UsageError for another one.
std::string writeCompletion(const std::string& shell, const std::vector<CompletionCommand>& commands);

}  // namespace numcore::cli
