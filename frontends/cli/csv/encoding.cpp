#include "cli/csv/encoding.hpp"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace numcore::cli {

namespace {

constexpr std::string_view kMarkUtf8 = "\xEF\xBB\xBF";
constexpr std::string_view kMarkUtf16Le = "\xFF\xFE";
constexpr std::string_view kMarkUtf16Be = "\xFE\xFF";

// Windows-1252 where it differs from Latin-1; the five unassigned bytes keep their control character.
constexpr char16_t kWindows1252[32] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                       0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                       0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                       0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

unsigned byteAt(std::string_view bytes, std::size_t i) {
    return static_cast<unsigned char>(bytes[i]);
}

void appendUtf8(std::vector<char>& out, std::uint32_t character) {
    const auto put = [&out](std::uint32_t byte) {
        out.push_back(static_cast<char>(static_cast<std::uint8_t>(byte)));
    };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | (character >> 6));
        put(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        put(0xE0 | (character >> 12));
        put(0x80 | ((character >> 6) & 0x3F));
        put(0x80 | (character & 0x3F));
    } else {
        put(0xF0 | (character >> 18));
        put(0x80 | ((character >> 12) & 0x3F));
        put(0x80 | ((character >> 6) & 0x3F));
        put(0x80 | (character & 0x3F));
    }
}

/// Length of the well-formed character at position i; 0 when malformed.
std::size_t characterLength(std::string_view bytes, std::size_t i) {
    const unsigned lead = byteAt(bytes, i);
    if (lead < 0x80) return 1;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (bytes.size() - i < length) return 0;
    // The second byte is narrower after four leads: overlong forms, surrogates, beyond U+10FFFF.
    const unsigned second = byteAt(bytes, i + 1);
    const unsigned low = lead == 0xE0 ? 0xA0U : lead == 0xF0 ? 0x90U : 0x80U;
    const unsigned high = lead == 0xED ? 0x9FU : lead == 0xF4 ? 0x8FU : 0xBFU;
    if (second < low || second > high) return 0;
    for (std::size_t k = 2; k < length; ++k) {
        if ((byteAt(bytes, i + k) & 0xC0U) != 0x80U) return 0;
    }
    return length;
}

std::vector<char> fromUtf16(std::string_view bytes, bool bigEndian) {
    const std::size_t first = bigEndian ? 0 : 1;
    const auto unitAt = [&](std::size_t i) {
        return (byteAt(bytes, i + first) << 8) | byteAt(bytes, i + 1 - first);
    };
    std::vector<char> out;
    out.reserve(bytes.size() / 2 + bytes.size() / 16);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const std::uint32_t unit = unitAt(i);
        const std::uint32_t next = i + 3 < bytes.size() ? unitAt(i + 2) : 0;
        if ((unit & 0xFC00) == 0xD800 && (next & 0xFC00) == 0xDC00) {
            appendUtf8(out, 0x10000 + ((unit & 0x3FF) << 10) + (next & 0x3FF));
            i += 2;
        } else {
            appendUtf8(out, (unit & 0xF800) == 0xD800 ? 0xFFFD : unit);
        }
    }
    return out;
}

/// UTF-16 without a mark: text of Western scripts has a zero in every second byte, and no zero elsewhere.
std::optional<Encoding> guessUtf16(std::string_view bytes) {
    const std::string_view sample = bytes.substr(0, 4096);
    std::size_t nZeros[2] = {0, 0};
    for (std::size_t i = 0; i < sample.size(); ++i) nZeros[i % 2] += sample[i] == '\0';
    const std::size_t nPairs = sample.size() / 2;
    if (nPairs < 2) return std::nullopt;
    if (nZeros[1] * 2 > nPairs && nZeros[0] * 10 < nPairs) return Encoding::kUtf16Le;
    if (nZeros[0] * 2 > nPairs && nZeros[1] * 10 < nPairs) return Encoding::kUtf16Be;
    return std::nullopt;
}

}  // namespace

std::size_t byteOrderMark(std::string_view bytes, Encoding encoding) {
    const std::string_view mark = encoding == Encoding::kUtf8      ? kMarkUtf8
                                  : encoding == Encoding::kUtf16Le ? kMarkUtf16Le
                                  : encoding == Encoding::kUtf16Be ? kMarkUtf16Be
                                                                   : std::string_view();
    return bytes.starts_with(mark) ? mark.size() : 0;
}

std::size_t firstBadUtf8(std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        std::uint64_t word = 0;
        if (i + 8 <= bytes.size()) {
            std::memcpy(&word, bytes.data() + i, 8);
            if ((word & 0x8080808080808080U) == 0) {
                i += 8;
                continue;
            }
        }
        const std::size_t length = characterLength(bytes, i);
        if (length == 0) return i;
        i += length;
    }
    return bytes.size();
}

EncodingGuess guessEncoding(std::string_view bytes) {
    for (const Encoding encoding : {Encoding::kUtf8, Encoding::kUtf16Le, Encoding::kUtf16Be}) {
        if (const std::size_t length = byteOrderMark(bytes, encoding); length > 0)
            return {encoding, length, false};
    }
    if (const auto utf16 = guessUtf16(bytes)) return {*utf16, 0, false};
    if (firstBadUtf8(bytes) == bytes.size()) return {Encoding::kUtf8, 0, false};
    return {Encoding::kWindows1252, 0, true};
}

std::vector<char> convertToUtf8(std::string_view bytes, Encoding encoding) {
    if (encoding == Encoding::kUtf16Le || encoding == Encoding::kUtf16Be) {
        return fromUtf16(bytes, encoding == Encoding::kUtf16Be);
    }
    if (encoding == Encoding::kUtf8) return {bytes.begin(), bytes.end()};
    std::vector<char> out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const unsigned byte = byteAt(bytes, i);
        const bool special = encoding == Encoding::kWindows1252 && byte >= 0x80 && byte < 0xA0;
        appendUtf8(out, special ? kWindows1252[byte - 0x80] : byte);
    }
    return out;
}

}  // namespace numcore::cli
