#include "cli/correlation/remarks.hpp"

#include <fmt/format.h>

#include <cstddef>

#include "cli/errors.hpp"
#include "numcore/api.h"

namespace numcore::cli {

namespace {

enum class Spread { kNone, kEmpty, kSome };

Spread spreadOf(const NumberColumn& column) {
    double first = NUMCORE_MISSING;
    for (const double cell : column.cells.asDoubles()) {
        if (cell == NUMCORE_MISSING) continue;
        if (first == NUMCORE_MISSING) first = cell;
        if (cell != first) return Spread::kSome;
    }
    return first == NUMCORE_MISSING ? Spread::kEmpty : Spread::kNone;
}

/// Pairs of all groups that have a property.
template <class Property>
std::size_t countPairs(const std::vector<GroupedCorrelations>& groups, Property property) {
    std::size_t n = 0;
    for (const auto& [group, found] : groups) {
        for (std::size_t i = 0; i < found.rows.size(); ++i) {
            for (std::size_t j = 0; j < found.lastColumn(i); ++j) n += property(found.at(i, j));
        }
    }
    return n;
}

template <class Count>
std::size_t sum(const std::vector<GroupedCorrelations>& groups, Count count) {
    std::size_t n = 0;
    for (const auto& group : groups) n += group.found.*count;
    return n;
}

bool exists(const CorrelatedPair& pair) {
    return pair.coefficient != NUMCORE_MISSING;
}

}  // namespace

void noteConstantColumns(const Sample& sample, const std::string& group, std::vector<std::string>& notes) {
    const std::string where = group.empty() ? "" : fmt::format(" in group {}", quotedForMessage(group));
    for (const NumberColumn& column : sample.numbers) {
        const Spread spread = spreadOf(column);
        if (spread == Spread::kSome) continue;
        notes.push_back(fmt::format("{} {}{}: it has no correlation", quotedForMessage(column.name),
                                    spread == Spread::kNone ? "is constant" : "has no value", where));
    }
}

void noteShortcomings(const std::vector<GroupedCorrelations>& groups, const CorrelationRequest& request,
                      bool weighted, bool forMachines, std::vector<std::string>& notes) {
    const std::size_t nWithout = countPairs(groups, [](const auto& pair) { return !exists(pair); });
    if (nWithout > 0) {
        const char* why = request.coefficient == Coefficient::kPolychoric
                              ? "a polychoric correlation takes variables of 2 to 200 ordered categories"
                              : "two rows at least with different finite values in both variables are needed";
        notes.push_back(fmt::format("{} cannot be computed: {}", counted(nWithout, "coefficient"), why));
    }
    if (request.covariance) return;
    if (request.intervals || forMachines) {
        const std::size_t n =
            countPairs(groups, [](const auto& pair) { return exists(pair) && pair.lower == NUMCORE_MISSING; });
        if (n > 0) {
            const int fewest = request.coefficient == Coefficient::kKendall ? 5 : 4;
            notes.push_back(fmt::format(
                "{} without limits: those take {} rows or more and a coefficient above -1", n, fewest));
        }
    }
    if (request.coefficient == Coefficient::kPearson) {
        const std::size_t n =
            countPairs(groups, [](const auto& pair) { return exists(pair) && pair.pValue == NUMCORE_MISSING; });
        if (n > 0) notes.push_back(fmt::format("{} without p-value: too few rows", n));
    }
    if (const std::size_t n = sum(groups, &Correlations::nNotExact); n > 0) {
        notes.push_back(fmt::format(
            "{} the p-value of the normal law instead of the exact one, which takes values without ties and "
            "fewer than 50 rows",
            n == 1 ? "1 pair has" : fmt::format("{} pairs have", n)));
    }
    if (const std::size_t n = sum(groups, &Correlations::nNotConverged); n > 0) {
        notes.push_back(
            fmt::format("{}: the iteration ended early, the last value is shown", counted(n, "coefficient")));
    }
    if (weighted && request.coefficient == Coefficient::kPearson)
        notes.emplace_back("p-values and limits count rows, not their weights");
}

}  // namespace numcore::cli
