#include "cli/networks/bif_text.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "cli/errors.hpp"

namespace numcore::cli {

namespace {

constexpr std::string_view kSigns = "{}()[],;|";
constexpr std::string_view kBlanks = " \t\r\n\f\v";

bool isOneOf(char c, std::string_view set) {
    return set.find(c) != std::string_view::npos;
}

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
}

}  // namespace

std::string BifSource::place(std::size_t at) const {
    const std::string_view before = text.substr(0, std::min(at, text.size()));
    const auto nLines = static_cast<std::size_t>(std::ranges::count(before, '\n'));
    const std::size_t lineEnd = before.rfind('\n');
    const std::string_view line = lineEnd == std::string_view::npos ? before : before.substr(lineEnd + 1);
    const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
    const auto nContinuing = static_cast<std::size_t>(std::ranges::count_if(line, continues));
    return fmt::format("{}:{}:{}", file, nLines + 1, line.size() - nContinuing + 1);
}

void BifSource::fail(std::size_t at, const std::string& what) const {
    throw DataError(fmt::format("{}: {}", place(at), what));
}

std::string shown(const BifToken& token) {
    return token.kind == BifKind::kEnd ? "the end of the file" : quotedForMessage(token.text);
}

void BifReader::skipBlanks() {
    const std::string_view text = source_.text;
    while (at_ < text.size()) {
        if (isOneOf(text[at_], kBlanks)) {
            ++at_;
        } else if (text.substr(at_, 2) == "//") {
            at_ = std::min(text.find('\n', at_), text.size());
        } else if (text.substr(at_, 2) == "/*") {
            const std::size_t end = text.find("*/", at_ + 2);
            if (end == std::string_view::npos) source_.fail(at_, "this comment is not closed by */");
            at_ = end + 2;
        } else {
            return;
        }
    }
}

BifToken BifReader::readQuoted() {
    const std::size_t begin = at_;
    const std::size_t end = source_.text.find('"', begin + 1);
    const std::string_view inside = source_.text.substr(begin + 1, end - begin - 1);
    if (end == std::string_view::npos || std::ranges::any_of(inside, isControl))
        source_.fail(begin, "this quote is not closed on its line");
    at_ = end + 1;
    return {BifKind::kQuoted, inside, begin};
}

BifToken BifReader::read() {
    skipBlanks();
    const std::string_view text = source_.text;
    if (at_ >= text.size()) return {BifKind::kEnd, {}, text.size()};
    if (text[at_] == '"') return readQuoted();
    const std::size_t begin = at_;
    if (isOneOf(text[begin], kSigns)) {
        ++at_;
        return {BifKind::kSign, text.substr(begin, 1), begin};
    }
    if (isControl(text[begin]))
        source_.fail(begin,
                     fmt::format("character {} cannot stand here", quotedForMessage(text.substr(begin, 1))));
    const auto ends = [&] {
        const char c = text[at_];
        const bool comment = text.substr(at_, 2) == "//" || text.substr(at_, 2) == "/*";
        return isOneOf(c, kSigns) || isOneOf(c, kBlanks) || c == '"' || isControl(c) || comment;
    };
    while (at_ < text.size() && !ends()) ++at_;
    return {BifKind::kWord, text.substr(begin, at_ - begin), begin};
}

const BifToken& BifReader::peek() {
    if (!next_) next_ = read();
    return *next_;
}

BifToken BifReader::take() {
    const BifToken token = peek();
    next_.reset();
    return token;
}

bool BifReader::takeSign(char sign) {
    if (!peek().isSign(sign)) return false;
    next_.reset();
    return true;
}

BifToken BifReader::expectSign(char sign, std::string_view after) {
    if (!peek().isSign(sign))
        source_.fail(peek().at, fmt::format("expected '{}' after {}, found {}", sign, after, shown(peek())));
    return take();
}

BifToken BifReader::expectName(std::string_view what) {
    if (!peek().isName()) source_.fail(peek().at, fmt::format("expected {}, found {}", what, shown(peek())));
    if (peek().text.empty()) source_.fail(peek().at, fmt::format("{} is an empty text", what));
    return take();
}

void BifReader::skipProperty() {
    const std::string_view text = source_.text;
    const std::size_t begin = at_;
    while (at_ < text.size() && text[at_] != ';') {
        if (text[at_] == '"') at_ = std::min(text.find('"', at_ + 1), text.size());
        at_ = std::min(at_ + 1, text.size());
    }
    if (at_ == text.size()) source_.fail(begin, "this property is not ended by a semicolon");
    ++at_;
}

}  // namespace numcore::cli
