// The analysis: from records to a calibrated tree and its tables.
#include "decision/networks/input.hpp"
#include "decision/networks/node_keys.hpp"
#include "decision/networks/output.hpp"
#include "suite/basecore.hpp"

namespace numcore {
namespace networks {
namespace {

/// Rows of the host's texts, from 1.
constexpr std::int32_t kFormatRow = 319;
constexpr std::int32_t kHeaderRow = 7510;
constexpr std::int32_t kMarginalTitleRow = 7511;
constexpr std::int32_t kConditionalTitleRow = 7512;

/// Adjacency bits of the moral graph and of the graph that elimination works on.
bool fitsGraph(double n, double bound) {
    return 2.0 * graphBytes(n) <= bound;
}

/// A node's label in the data set; without one its name.
std::u16string_view titleName(const matrix<u16string>* labels, const matrix<u16string>& names, Number node) {
    if (labels != nullptr && node < labels->size() && !(*labels)[node].empty()) return (*labels)[node].view();
    return node < names.size() ? names[node].view() : std::u16string_view();
}

bool fitsTables(const Forecast& forecast, double bound) {
    return forecast.bytes <= bound && forecast.largest <= kMostCells;
}

/// 1. network, 2. tree and forecast, 3. conditional tables and evidence, 4. propagation, 5. tables and queries.
std::int32_t analyse(const cST_DataSet& data, const cBYN_Param& param, cBYN_Results& results) {
    clearProbabilities(results);
    const double bound = memoryBound(param.bounds.memory);
    results.forecast.values.bound = bound;
    const std::int32_t n = nodeCount(param);  // 1
    if (n == 0) return NUMCORE_BYN_NO_DATA;
    if (!fitsGraph(n, bound)) return NUMCORE_BYN_TOO_LARGE;
    const Network network = readNetwork(data, param, n);
    const bool isInference = param.mode != NUMCORE_BYN_STRUCTURE;
    if (isInference && !hasKnownSizes(network)) return NUMCORE_BYN_BAD_SIZE;
    if (!isAcyclic(network)) return NUMCORE_BYN_CYCLE;

    const JunctionTree tree = buildJunctionTree(network);  // 2
    writeTree(tree, results);
    writeForecast(tree, bound, results.forecast);
    if (!fitsTables(forecastOf(tree), bound)) return NUMCORE_BYN_TOO_LARGE;
    const Names names(param.nodeNames, param.stateNames, network.sizes);
    writeLabels(network, tree, names, results);
    if (!isInference) return NUMCORE_BYN_DONE;

    std::vector<double> conditionals;  // 3
    std::vector<double> likelihoods;
    if (const std::int32_t status = readTables(data, param, network, conditionals)) return status;
    if (const std::int32_t status = readEvidence(param, network, likelihoods)) return status;

    const Calibrated calibrated = propagate(network, tree, {conditionals, likelihoods});  // 4
    results.probability = calibrated.probability;
    results.logProbability = calibrated.logProbability;
    const bool isPossible = calibrated.isPossible();
    if (isPossible) writeTables({network, tree, calibrated}, results);  // 5
    writeQueries(network, tree, isPossible ? &calibrated : nullptr, param, bound, names, results);
    return isPossible ? NUMCORE_BYN_DONE : NUMCORE_BYN_IMPOSSIBLE;
}

std::int32_t forecast(const cST_DataSet& data, const cBYN_Param& param, cBYN_Forecast& out) {
    const double bound = memoryBound(param.bounds.memory);
    out.values.bound = bound;
    const std::int32_t n = nodeCount(param);
    if (n == 0) return NUMCORE_BYN_NO_DATA;
    if (!fitsGraph(n, bound)) return NUMCORE_BYN_TOO_LARGE;
    const Network network = readNetwork(data, param, n);
    const JunctionTree tree = buildJunctionTree(network);
    writeForecast(tree, bound, out);
    if (!hasKnownSizes(network)) return NUMCORE_BYN_BAD_SIZE;
    return fitsTables(forecastOf(tree), bound) ? NUMCORE_BYN_DONE : NUMCORE_BYN_TOO_LARGE;
}

}  // namespace
}  // namespace networks

void BYNRunmethod_Compute_ST(cST_DataSet& data, cBYN_Param& param, cBYN_Results& results,
                             matrix<u16string>& /*messages*/, std::u16string& /*text*/, std::int32_t /*flag*/) {
    results.status = networks::analyse(data, param, results);
    results.forecast.values.status = results.status == NUMCORE_BYN_NO_DATA ||
                                             results.status == NUMCORE_BYN_BAD_SIZE ||
                                             results.status == NUMCORE_BYN_TOO_LARGE
                                         ? results.status
                                         : NUMCORE_BYN_DONE;
    results.writeBack();
}

void BYNFillTbF_ST(cST_DataSet& data, cBYN_Param& param, cBYN_Results& results, matrix<u16string>& messages,
                   std::u16string& /*text*/, std::int32_t /*flag*/) {
    using namespace networks;
    const u16string& format = messages(kFormatRow);
    const matrix<u16string>* labels = data.strings1->columnCount() > 0 ? &data.strings1->column(0) : nullptr;
    for (std::int32_t node = 0; node < nodeCount(param); ++node) {
        const std::u16string_view name = titleName(labels, param.nodeNames, node);
        const std::u16string number = nodeKey(node + 1).substr(nodeKey(0).size() - 1);
        results.headers[node] = messages(kHeaderRow);
        results.marginalTitles[node] = u16string(basecore::Replace(messages(kMarginalTitleRow), u"XXXX", name));
        results.conditionalTitles[node] =
            u16string(basecore::Replace(messages(kConditionalTitleRow), u"XXXX", number));
        results.marginalFormats[node] = format;
        results.conditionalFormats[node] = format;
        if (param.sizes[node] > 0) results.familyFormats[node] = format;
    }
}

void BYNRun_Compute_ST(cST_DataSet& data, cBYN_Param& param, cBYN_Results& results, matrix<u16string>& messages,
                       std::u16string& text, std::int32_t flag) {
    BYNRunmethod_Compute_ST(data, param, results, messages, text, flag);
    BYNFillTbF_ST(data, param, results, messages, text, flag);
}

std::int32_t BYNRun_Forecast_ST(cST_DataSet& data, const cBYN_Param& param, cBYN_Forecast& forecast) {
    forecast.values.status = networks::forecast(data, param, forecast);
    forecast.writeBack();
    return forecast.values.status;
}

}  // namespace numcore
