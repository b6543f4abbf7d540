// Doors of the Bayesian networks.
#include "frame/entry_frame.hpp"
#include "numcore/bayesian_network.hpp"
#include "suite/basecore.hpp"
#include "suite/hostcore.hpp"

namespace {

using namespace numcore;

constexpr std::int32_t kResourceGroup = 10;
constexpr std::int32_t kMessages = 7600;

/// Built in this order, released in the reverse one: parameters before the frame, the host's texts last.
struct NetworkFrame {
    NetworkFrame(ST_DataSet* data, BYN_Param* param, BYN_Results* results, SystemInfo* system, QUORIXInfo* host)
        : parameters(param), frame(data, results, nullptr, system, host), messages(kMessages, 1, u16string()) {
        const auto texts = hostcore::Cpp_GetRessourceStrings(kResourceGroup, kMessages);
        for (std::int32_t row = 0; row < kMessages; ++row)
            messages[row] = u16string(texts[static_cast<std::size_t>(row)]);
    }

    cBYN_Param parameters;
    EntryFrame<cBYN_Results> frame;
    MessageTable messages;
};

}  // namespace

int32_t Cpp_BYNRun_DAG_ST(ST_DataSet* data, BYN_Param* param, BYN_Results* results, SystemInfo* system,
                          QUORIXInfo* host) {
    if (param == nullptr) return 1;
    NetworkFrame call(data, param, results, system, host);
    return BYNRun_DAG_ST(call.frame.data, call.parameters, call.frame.results, call.messages, call.frame.text,
                         call.frame.flag);
}

int32_t Cpp_BYNRun_Compute_ST(ST_DataSet* data, BYN_Param* param, BYN_Results* results, SystemInfo* system,
                              QUORIXInfo* host) {
    NetworkFrame call(data, param, results, system, host);
    BYNRun_Compute_ST(call.frame.data, call.parameters, call.frame.results, call.messages, call.frame.text,
                      call.frame.flag);
    // Kept: 0 in every case; the results tell the status.
    return call.frame.finish(0);
}

int32_t Cpp_BYNRun_Forecast_ST(ST_DataSet* data, BYN_Param* param, BYN_Forecast* forecast) {
    cST_DataSet dataSet(data);
    const cBYN_Param parameters(param);
    cBYN_Forecast sizes(forecast);
    return BYNRun_Forecast_ST(dataSet, parameters, sizes);
}

double facto(int32_t n) {
    return basecore::Fact(n);
}
