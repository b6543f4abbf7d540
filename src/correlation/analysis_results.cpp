// Results of the correlation analysis over the caller's arrays, and how the host shows them.
#include <string>

#include "numcore/correlation_analysis.hpp"

namespace numcore {
namespace {

constexpr std::int32_t kNumberFormatKind = 3;
constexpr std::int32_t kMostDecimals = 15;
constexpr std::int32_t kNoColour = -1;

std::u16string numberFormat(std::int32_t decimals) {
    if (decimals < 0) return u"General";
    if (decimals == 0) return u"0";
    return u"0." + std::u16string(static_cast<std::size_t>(decimals), u'0');
}

// A set without arrays of the caller has no columns.
template <class Record>
Record* orNull(COR_Results* source, Record COR_Results::*set) {
    return source == nullptr ? nullptr : &(source->*set);
}

}  // namespace

cCOR_Results::cCOR_Results(COR_Results* source)
    : record(source),
      coefficients(orNull(source, &COR_Results::coefficients)),
      pValues(orNull(source, &COR_Results::pValues)),
      significant(orNull(source, &COR_Results::significant)),
      squared(orNull(source, &COR_Results::squared)),
      lower(orNull(source, &COR_Results::lower)),
      upper(orNull(source, &COR_Results::upper)),
      nPairs(orNull(source, &COR_Results::nPairs)),
      colours(orNull(source, &COR_Results::colours)),
      formats(orNull(source, &COR_Results::formats)) {}

void cCOR_Results::writeBack() const noexcept {
    if (record == nullptr) return;
    coefficients.writeBack();
    pValues.writeBack();
    significant.writeBack();
    squared.writeBack();
    lower.writeBack();
    upper.writeBack();
    nPairs.writeBack();
    colours.writeBack();
    formats.writeBack();
    record->status = status;
    record->coefficient = coefficient;
    record->nRowsUsed = nRowsUsed;
    record->nRowsExcluded = nRowsExcluded;
    record->nMissing = nMissing;
    record->nNotComputed = nNotComputed;
    record->nNotExact = nNotExact;
    record->nNotConverged = nNotConverged;
    record->complete = complete;
}

cCorr_Settings::cCorr_Settings(const COR_Param& param)
    : decimals_(param.decimals > kMostDecimals ? kMostDecimals : param.decimals),
      positiveColour_(param.positiveColour),
      negativeColour_(param.negativeColour),
      bold_(isTrue(param.boldSignificant)) {}

void cCorr_Settings::FillTbF(cST_TableFormats& formats, std::int32_t rows, std::int32_t columns) const {
    const bool coloured = positiveColour_ != kNoColour || negativeColour_ != kNoColour;
    Init_TableFormats2(formats, NUMCORE_TRUE, bold_ || coloured ? NUMCORE_TRUE : NUMCORE_FALSE, rows, columns,
                       NUMCORE_TRUE, decimals_);
    formats.nRows = rows;
    formats.nColumns = columns;
    formats.decimals = decimals_ < 0 ? -1 : decimals_;
    const u16string format(numberFormat(decimals_));
    for (std::int32_t c = 0; c < formats.numberFormats.length; ++c) {
        formats.numberFormats.cells[c] = format;
        formats.formatKinds.cells[c] = kNumberFormatKind;
    }
}

void cCorr_Settings::SetColors(const cST_MVect<double>& coefficients,
                               const cST_MVect<std::int32_t>& significant, bool square,
                               cST_MVect<std::int32_t>& colours) const {
    for (std::int32_t c = 0; c < colours.columnCount(); ++c) {
        const bool known = c < coefficients.columnCount() && c < significant.columnCount();
        for (std::int32_t i = 0; i < colours.column(c).size(); ++i) {
            const bool isItself = square && i == c;
            const bool marked = known && !isItself && i < significant.column(c).size() &&
                                i < coefficients.column(c).size() && significant.column(c)[i] == 1;
            colours.column(c)[i] = !marked                           ? kNoColour
                                   : coefficients.column(c)[i] < 0.0 ? negativeColour_
                                                                     : positiveColour_;
        }
    }
}

}  // namespace numcore
