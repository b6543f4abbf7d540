// Door of the correlation analysis.
#include "numcore/correlation_analysis.hpp"
#include "frame/entry_frame.hpp"

namespace {

void writeNames(ST_MVectStr* record, const numcore::cST_MVect<double>& variables) {
    numcore::cST_MVect<numcore::u16string> names(record);
    if (names.columnCount() < 1) return;
    for (std::int32_t v = 0; v < std::min(variables.columnCount(), names.column(0).size()); ++v)
        names.column(0)[v] = numcore::u16string(variables.label(v));
}

}  // namespace

int32_t Cpp_COR_Compute_ST(ST_DataSet* data, ST_MVectStr* labels, COR_Param* param, COR_Results* results,
                           char16_t** messages, SystemInfo* system, QUORIXInfo* host) {
    if (param == nullptr) return NUMCORE_COR_NO_DATA;
    numcore::EntryFrame<numcore::cCOR_Results, 5900> frame(data, results, messages, system, host);
    const std::int32_t status =
        COR_Compute_ST(frame.data, *param, frame.results, frame.messages, frame.text, frame.flag);
    if (status == NUMCORE_COR_DONE) writeNames(labels, *frame.data.numeric1);
    return frame.finish(status);
}
