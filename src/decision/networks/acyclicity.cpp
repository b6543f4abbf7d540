// The check for cycles through the exponential of the matrix of arcs.
#include <algorithm>

#include "decision/networks/exponential.hpp"
#include "decision/networks/node_keys.hpp"
#include "numcore/bayesian_network.hpp"

namespace numcore {
namespace networks {
namespace {

/// Row child, column parent. Nodes beyond the given ones have no arcs and are left out.
matrix<double> arcMatrix(const cBYN_Param& param, const cST_MVect<u16string>& labels) {
    const std::int32_t nLabels = labels.columnCount() > 0 ? labels.column(0).size() : 0;
    const std::int32_t n = std::clamp(param.n, 0, std::max(nLabels, param.parents.columns()));
    const Lists parents = readParents(param.parents, NodeKeys(labels, n), n);
    matrix<double> arcs(n, n, 0.0);
    for (std::int32_t child = 0; child < n; ++child)
        for (const Number parent : parents[child]) arcs.at(child, parent) = 1.0;
    return arcs;
}

}  // namespace
}  // namespace networks

// 1. matrix of arcs, 2. and 3. its norm, 4. degree and exponential, 5. cells of its diagonal above 1, 6. all n?
std::int32_t BYNRun_DAG_ST(cST_DataSet& data, cBYN_Param& param, cBYN_Results& /*results*/,
                           matrix<u16string>& /*messages*/, std::u16string& /*text*/, std::int32_t /*flag*/) {
    const matrix<double> arcs = networks::arcMatrix(param, *data.strings1);
    const std::int32_t degree = networks::padeDegree(networks::oneNorm(arcs));
    const matrix<double> exponential = networks::padeApproximant(arcs, degree);
    std::int32_t nOnCycles = 0;
    for (std::int32_t i = 0; i < exponential.rows(); ++i)
        if (exponential.at(i, i) - 1.0 > 0.0) ++nOnCycles;
    // Kept: the number is compared with n, not with 0.
    return nOnCycles == param.n ? 0 : 1;
}

}  // namespace numcore
