#include "cli/errors.hpp"

#include <fmt/format.h>

#include <string_view>

namespace numcore::cli {

std::string atLine(const std::string& file, std::size_t line, const std::string& text) {
    return fmt::format("{}:{}: {}", file, line, text);
}

std::string counted(std::size_t n, std::string_view noun) {
    return fmt::format("{} {}{}", n, noun, n == 1 ? "" : "s");
}

std::string printable(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const auto next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0;
        // U+0080..U+009F are control characters too.
        const bool control2 = byte == 0xC2 && next >= 0x80 && next < 0xA0;
        if (byte == '\n') {
            out += "\\n";
        } else if (byte == '\t') {
            out += "\\t";
        } else if (byte == '\r') {
            out += "\\r";
        } else if (byte < 0x20 || byte == 0x7F) {
            out += fmt::format("\\x{:02x}", byte);
        } else if (control2) {
            out += fmt::format("\\x{:02x}", next);
            ++i;
        } else {
            out.push_back(text[i]);
        }
    }
    return out;
}

std::string quotedForMessage(std::string_view text) {
    constexpr std::size_t kLongest = 40;
    if (text.size() <= kLongest) return fmt::format("'{}'", printable(text));
    std::size_t cut = kLongest;
    // Not in the middle of a character.
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0U) == 0x80U) --cut;
    return fmt::format("'{}...'", printable(text.substr(0, cut)));
}

}  // namespace numcore::cli
