// What every record-based entry point builds, in this order, and releases in the reverse order: data set,
// results, messages, host text. Construction order is member order, so that destruction is its reverse also
// while an exception unwinds; a door lets exceptions pass.
//
// A door is then three lines:
//
//     int Cpp_X_Compute_ST(ST_DataSet* data, X_Param* param, X_Results* results, char16_t** messages,
//                          SystemInfo* system, QUORIXInfo* host) {
//         EntryFrame<cX_Results, 5900> frame(data, results, messages, system, host);
//         return frame.finish(X_Compute_ST(frame.data, *param, frame.results, frame.messages, frame.text,
//         frame.flag));
//     }
//
// A plain-array door copies each array into a matrix of the shape that the function needs and returns its
// double:
//
//     double VB_F(double p, double* table, int32_t n) {
//         matrix<double> copy(n, 2, table, false);
//         return F(p, copy, n);
//     }
#pragma once

#include <string>

#include "numcore/dataset.hpp"

namespace numcore {

using MessageTable = matrix<u16string>;

/// @tparam Results   the results object, built from the pointer given to the constructor
/// @tparam nMessages number of texts that the entry point copies from the caller's array; 0 for none
template <class Results, std::int32_t nMessages = 0>
struct EntryFrame {
    template <class ResultsRecord>
    EntryFrame(ST_DataSet* dataRecord, ResultsRecord* resultsRecord, char16_t** texts, SystemInfo* system,
               QUORIXInfo* host)
        : data(dataRecord),
          results(resultsRecord),
          messages(nMessages, texts == nullptr ? 0 : 1, texts),
          text(system == nullptr || system->text == nullptr ? u"" : system->text),
          flag(host == nullptr ? 0 : host->flag) {}

    /// Tells the data set's record what the analysis changed, and passes the status on.
    std::int32_t finish(std::int32_t status) const noexcept {
        data.writeBack();
        return status;
    }

    cST_DataSet data;
    Results results;
    MessageTable messages;  // without the caller's array every message is the spare element: empty
    std::u16string text;
    std::int32_t flag;
};

}  // namespace numcore
