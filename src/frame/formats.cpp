#include <algorithm>

#include "numcore/dataset.hpp"

namespace numcore {

namespace {
constexpr std::int32_t kGeneralFormatKind = 3;
}

void Init_TableFormats(cST_TableFormats& formats) {
    // The lists keep their arrays, which may be the caller's; only their lengths go.
    cST_TableFormats fresh;
    fresh.record = formats.record;
    fresh.numberFormats.cells = std::move(formats.numberFormats.cells);
    fresh.formatKinds.cells = std::move(formats.formatKinds.cells);
    fresh.formatDigits.cells = std::move(formats.formatDigits.cells);
    fresh.columnTable.cells = std::move(formats.columnTable.cells);
    fresh.rowTable.cells = std::move(formats.rowTable.cells);
    formats = std::move(fresh);
}

void Init_TableFormats2(cST_TableFormats& formats, std::int16_t a, std::int16_t b, std::int32_t rows,
                        std::int32_t cols, std::int16_t general, std::int32_t n) {
    Init_TableFormats(formats);
    formats.highlight = static_cast<std::uint16_t>(b);
    formats.boldHeader = static_cast<std::uint16_t>(a);
    if (isTrue(general)) {
        const std::int32_t nFormats = std::max(cols, 1);
        formats.general = static_cast<std::uint16_t>(general);
        formats.numberFormats.resize(nFormats);
        formats.formatKinds.resize(nFormats);
        formats.formatDigits.resize(nFormats);
        for (std::int32_t c = 1; c <= nFormats; ++c) {
            formats.numberFormats.cells(c) = u16string(u"General");
            formats.formatKinds.cells(c) = kGeneralFormatKind;
            formats.formatDigits.cells(c) = n;
        }
    }
    if (cols >= 1) formats.columnTable.resize(cols);
    if (rows > 0) formats.rowTable.resize(rows);
}

}  // namespace numcore
