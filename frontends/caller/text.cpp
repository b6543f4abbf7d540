#include "caller/text.hpp"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>

namespace numcore::caller {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

unsigned byteAt(std::string_view text, std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
}

/// The character at position i of UTF-8 text; i moves behind it.
char32_t nextCharacter(std::string_view text, std::size_t& i) {
    const unsigned lead = byteAt(text, i++);
    if (lead < 0x80) return lead;
    const int nFollowing = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4) return kReplacement;
    char32_t character = lead & (0x3FU >> nFollowing);
    std::size_t at = i;
    for (int k = 0; k < nFollowing; ++k, ++at) {
        const unsigned byte = byteAt(text, at);
        if ((byte & 0xC0U) != 0x80U) return kReplacement;
        character = (character << 6) | (byte & 0x3FU);
    }
    constexpr char32_t kSmallest[4] = {0, 0x80, 0x800, 0x10000};
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < kSmallest[nFollowing] || character > 0x10FFFF || surrogate) return kReplacement;
    i = at;
    return character;
}

/// Hands the 16-bit units of UTF-8 text to a function, one after another.
template <class Take>
void forEachUnit(std::string_view utf8, Take take) {
    for (std::size_t i = 0; i < utf8.size();) {
        const char32_t character = nextCharacter(utf8, i);
        if (character < 0x10000) {
            take(static_cast<char16_t>(character));
        } else {
            take(static_cast<char16_t>(0xD7C0 + (character >> 10)));
            take(static_cast<char16_t>(0xDC00 + (character & 0x3FF)));
        }
    }
}

void appendUtf8(std::string& out, char32_t character) {
    const auto put = [&out](char32_t byte) {
        out.push_back(static_cast<char>(static_cast<unsigned char>(byte)));
    };
    if (character < 0x80) return put(character);
    if (character < 0x800) {
        put(0xC0 | (character >> 6));
    } else {
        if (character < 0x10000) {
            put(0xE0 | (character >> 12));
        } else {
            put(0xF0 | (character >> 18));
            put(0x80 | ((character >> 12) & 0x3F));
        }
        put(0x80 | ((character >> 6) & 0x3F));
    }
    put(0x80 | (character & 0x3F));
}

BSTR newEmptyText(std::size_t nUnits) {
    if (nUnits > std::numeric_limits<std::int32_t>::max()) throw std::bad_alloc();
    BSTR text = SysAllocStringLen(nullptr, static_cast<std::uint32_t>(nUnits));
    if (text == nullptr) throw std::bad_alloc();
    return text;
}

}  // namespace

std::u16string toUtf16(std::string_view utf8) {
    std::u16string out;
    out.reserve(utf8.size());
    forEachUnit(utf8, [&out](char16_t unit) { out.push_back(unit); });
    return out;
}

std::string toUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        const bool high = unit >= 0xD800 && unit <= 0xDBFF;
        const bool low = unit >= 0xDC00 && unit <= 0xDFFF;
        const char16_t next = i + 1 < text.size() ? text[i + 1] : u'\0';
        if (high && next >= 0xDC00 && next <= 0xDFFF) {
            appendUtf8(out, 0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) + (next - 0xDC00U));
            ++i;
        } else {
            appendUtf8(out, high || low ? kReplacement : unit);
        }
    }
    return out;
}

BSTR newText(std::u16string_view text) {
    BSTR out = newEmptyText(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) out[i] = static_cast<OLECHAR>(text[i]);
    return out;
}

BSTR newText(std::string_view utf8) {
    std::size_t nUnits = 0;
    forEachUnit(utf8, [&nUnits](char16_t) { ++nUnits; });
    BSTR out = newEmptyText(nUnits);
    OLECHAR* at = out;
    forEachUnit(utf8, [&at](char16_t unit) { *at++ = static_cast<OLECHAR>(unit); });
    return out;
}

std::u16string_view textView(BSTR text) {
    if (text == nullptr) return {};
    // OLECHAR is wchar_t on Windows: 16 bits there, the same text under another name.
    static_assert(sizeof(OLECHAR) == sizeof(char16_t));
    return {reinterpret_cast<const char16_t*>(text), SysStringLen(text)};
}

}  // namespace numcore::caller
