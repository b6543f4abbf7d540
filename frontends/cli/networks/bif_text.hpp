// Words and signs of a network file in the Bayesian-network interchange format.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace numcore::cli {

/// The text of a file, and how its faults are told.
struct BifSource {
    std::string file;  // for messages
    std::string_view text;

    /// "file:line:column" of a position; columns count characters.
    std::string place(std::size_t at) const;
    /// Throws DataError with the place in front.
    [[noreturn]] void fail(std::size_t at, const std::string& what) const;
};

enum class BifKind { kWord, kQuoted, kSign, kEnd };

struct BifToken {
    BifKind kind = BifKind::kEnd;
    std::string_view text;  // without quotes; a sign is one character
    std::size_t at = 0;

    bool isSign(char sign) const { return kind == BifKind::kSign && text[0] == sign; }
    bool isName() const { return kind == BifKind::kWord || kind == BifKind::kQuoted; }
    bool isWord(std::string_view word) const { return kind == BifKind::kWord && text == word; }
};

/// What a token is called in a message.
std::string shown(const BifToken& token);

/// Reads tokens one by one. A word is anything between blanks, quotes and the signs {}()[],;| so that states
/// such as <7.5 and Asy/Patch need no quotes. Comments are // to the end of the line and /* */.
class BifReader {
  public:
    explicit BifReader(const BifSource& source) : source_(source) {}

    const BifToken& peek();
    BifToken take();
    /// Takes a sign when it is the next token.
    bool takeSign(char sign);
    /// The sign that has to come; `after` is what stands before it, for the message.
    BifToken expectSign(char sign, std::string_view after);
    /// A name, quoted or not; `what` it names, for the message.
    BifToken expectName(std::string_view what);
    /// Skips the rest of a property, through its semicolon. Anything may stand there; semicolons in quotes do
    /// not end it.
    void skipProperty();

    const BifSource& source() const { return source_; }

  private:
    BifToken read();
    BifToken readQuoted();
    void skipBlanks();

    const BifSource& source_;
    std::size_t at_ = 0;
    // Read only when it is asked for: what follows the word property need not be tokens.
    std::optional<BifToken> next_;
};

}  // namespace numcore::cli
