// What a test found, and the tables that tell it.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "cli/options.hpp"
#include "cli/report.hpp"
#include "cli/tests/samples.hpp"
#include "numcore/api.h"
#include "numcore/resampling.h"

namespace numcore::cli {

/// A p-value that the library's laws cannot tell from 0 is below this. Texts say "<0.0001"; machines get this
/// number, and a 1 in the column of bounds.
inline constexpr double kFinestP = std::numeric_limits<double>::epsilon();
inline const ReportColumn kBoundColumn{"p_bound", "p bound", ColumnKind::kCount};

/// Numbers as the library gives them, with its markers.
struct TestOutcome {
    std::string method;
    std::int32_t status = 0;
    double estimate = NUMCORE_MISSING;
    double lower = NUMCORE_MISSING;
    double upper = NUMCORE_MISSING;
    double statistic = NUMCORE_MISSING;
    double critical = NUMCORE_MISSING;
    double df = NUMCORE_MISSING;
    double df2 = NUMCORE_MISSING;
    double pValue = NUMCORE_MISSING;
    ResamplingOptions resampling{};
    bool twoTails = false;                     // resamples count one tail, and p doubles it
    const char* drawn = "drawn permutations";  // what its resamples are, but for the bootstrap

    bool computed() const { return status == 0 && pValue != NUMCORE_MISSING; }
    bool resampled() const { return (resampling.outcome & NUMCORE_RESAMPLED) != 0; }
};

/// Which columns the results of a test have, and what its texts say.
struct TestKind {
    const char* estimateId;  // null: no estimate
    const char* estimateTitle;
    const char* statisticId;
    const char* statisticTitle;
    int nDf;               // degrees of freedom: 0, 1 or 2
    double openLower;      // an open lower limit
    const char* between;   // of two samples: "OJ - VC"; null: samples are not named in the results
    const char* noSpread;  // why a test of enough values has no result
};

struct TestedComparison {
    Comparison comparison;
    TestOutcome outcome;
};

/// Adds the table "samples": n, missing cells, mean and deviation, or variance, of each sample. groupsName is
/// the heading of the samples' names when they are groups.
void addSamplesTable(const std::vector<Comparison>& comparisons, const std::string& groupsName,
                     bool withVariance, Report& report);

/// Adds the table "test", a row a comparison; machines get the method, the resamples and the seed as well.
void addResultsTable(const std::vector<TestedComparison>& tested, const TestKind& kind, bool forMachines,
                     Report& report);

/// Says which tests could not be computed, and which statistics are infinite. Throws DataError when there is no
/// result at all.
void noteFailures(const std::vector<TestedComparison>& tested, const TestKind& kind, Report& report);

/// Settings of the title line that are not what they are by default.
void noteTestSettings(const TestRequest& request, Report& report);

/// What p is about, "p: two-sided, hypothesis: a difference of 0", and where resamples gave it.
void notePValue(const std::vector<TestedComparison>& tested, const TestRequest& request,
                const std::string& hypothesis, Report& report);

/// "limits of 95 %".
std::string limitsOf(double alpha);

}  // namespace numcore::cli
