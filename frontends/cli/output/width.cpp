#include <algorithm>
#include <cstdint>
#include <iterator>

#include "caller/text.hpp"
#include "cli/output/writers.hpp"
#ifdef NUMCORE_HAVE_UTF8PROC
#include <utf8proc.h>
#endif

namespace numcore::cli {

namespace {

#ifdef NUMCORE_HAVE_UTF8PROC

int characterWidth(char32_t character) {
    return utf8proc_charwidth(static_cast<utf8proc_int32_t>(character));
}

#else

struct Range {
    char32_t first;
    char32_t last;
};

// Where the Unicode tables are not at hand: the large blocks only. Ascending.
constexpr Range kZero[] = {{0x300, 0x36F},   {0x483, 0x489},   {0x591, 0x5BD},   {0x610, 0x61A},
                           {0x64B, 0x65F},   {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200B, 0x200F},
                           {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}};
constexpr Range kWide[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0x33FF},   {0x3400, 0x4DBF},
                           {0x4E00, 0x9FFF},   {0xA000, 0xA4CF},   {0xA960, 0xA97F},   {0xAC00, 0xD7A3},
                           {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},
                           {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

template <std::size_t N>
bool contains(const Range (&ranges)[N], char32_t character) {
    const Range* found = std::ranges::lower_bound(ranges, character, {}, &Range::last);
    return found != std::end(ranges) && character >= found->first;
}

int characterWidth(char32_t character) {
    if (contains(kZero, character)) return 0;
    return contains(kWide, character) ? 2 : 1;
}

#endif

}  // namespace

int displayWidth(std::string_view utf8) {
    const bool ascii = std::ranges::all_of(utf8, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (ascii) return static_cast<int>(utf8.size());
    const std::u16string text = caller::toUtf16(utf8);
    int width = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t character = text[i];
        if ((character & 0xFC00) == 0xD800 && i + 1 < text.size()) {
            character = 0x10000 + ((character & 0x3FF) << 10) + (text[++i] & 0x3FFU);
        }
        width += characterWidth(character);
    }
    return width;
}

}  // namespace numcore::cli
