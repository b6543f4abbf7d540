// The samples that a test compares.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cli/options.hpp"
#include "cli/report.hpp"
#include "cli/sample.hpp"

namespace numcore::cli {

/// The values of one sample that are present, with their weights.
struct TestSample {
    std::string name;
    std::vector<double> values;
    std::vector<double> weights;  // empty: 1 each
    std::size_t nMissing = 0;

    std::int32_t n() const { return static_cast<std::int32_t>(values.size()); }
    const double* weightData() const { return weights.empty() ? nullptr : weights.data(); }
};

/// What one test compares: groups of a column, columns, or one column alone.
struct Comparison {
    std::string variable;  // empty when the samples are columns of their own
    std::vector<TestSample> samples;

    /// For messages: the variable, or the samples.
    std::string name() const;
    bool weighted() const { return !samples.front().weights.empty(); }
};

/// How the columns of a file become samples.
enum class Design {
    kOneSample,  // each column alone
    kColumns,    // each column a sample of one comparison
    kPairs,      // the same, rows with a missing cell left out
    kGroups      // each column, by group
};

/// Takes the comparisons of a design out of the columns of numbers. Columns of texts are left out and named in
/// a note; so are the rows of groups that are not asked for, and incomplete pairs, which count as dropped.
/// Throws DataError when there is nothing to compare, UsageError for a group that is not there.
std::vector<Comparison> takeComparisons(Sample sample, Design design, const TestRequest& request,
                                        Report& report);

/// The groups to compare in the order asked for; other rows count as dropped. Throws UsageError for a group
/// that is not there, DataError for fewer than two.
std::vector<Group> groupsToCompare(const Sample& sample, const TestRequest& request, Report& report);

/// Throws DataError unless a comparison has two samples.
void requireTwo(const Comparison& comparison, const std::string& groupsName, const char* test,
                const Report& report);

}  // namespace numcore::cli
