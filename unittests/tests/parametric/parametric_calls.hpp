// The parametric tests called with vectors, their outputs by name.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "numcore/parametric_tests.h"
#include "reference_table.hpp"

namespace numcore::testing {

using Values = std::vector<double>;

inline constexpr double kNone = NUMCORE_MISSING;
inline constexpr double kHuge = NUMCORE_OVERFLOW;
inline constexpr double kUntouched = 123.5;

inline std::int32_t size(const Values& values) {
    return static_cast<std::int32_t>(values.size());
}

inline const double* orNull(const Values& values) {
    return values.empty() ? nullptr : values.data();
}

/// Outputs of any of the tests; those that a test does not have stay untouched.
struct Outcome {
    std::int32_t status = 99;
    double estimate = kUntouched;  // difference, variance or ratio
    double ratio = kUntouched;
    double statistic = kUntouched;
    double critical = kUntouched;
    double df = kUntouched;
    double df2 = kUntouched;
    double p = kUntouched;
    double lower = kUntouched;
    double upper = kUntouched;
};

struct MeanOptions {
    double hypothesised = 0.0;
    double alpha = 0.05;
    std::int32_t alternative = 0;
    std::int16_t equal = 0;
    std::int16_t cochran = 0;
    std::int16_t paired = 0;
    std::int16_t given = 0;
    double variance1 = 0.0;
    double variance2 = 0.0;
    Values weights{};
    Values weights2{};
    ResamplingOptions* resampling = nullptr;
    ST_PairOutput* pairs = nullptr;
};

inline Outcome tTest(const Values& x, const Values& y, const MeanOptions& o = {}) {
    Outcome r;
    r.status =
        Cpp_TTest2SamplesNew(x.data(), size(x), y.data(), size(y), orNull(o.weights), orNull(o.weights2),
                             o.hypothesised, o.alpha, o.alternative, o.equal, o.cochran, o.paired, o.resampling,
                             &r.estimate, &r.statistic, &r.critical, &r.df, &r.p, &r.lower, &r.upper, o.pairs);
    return r;
}

inline Outcome zTest(const Values& x, const Values& y, const MeanOptions& o = {}) {
    Outcome r;
    r.status = Cpp_ZTest2SamplesNew(x.data(), size(x), y.data(), size(y), orNull(o.weights), orNull(o.weights2),
                                    o.hypothesised, o.variance1, o.variance2, o.given, o.alpha, o.alternative,
                                    o.paired, o.resampling, &r.estimate, &r.statistic, &r.critical, &r.p,
                                    &r.lower, &r.upper, o.pairs);
    return r;
}

inline Outcome tTestOne(const Values& x, const MeanOptions& o = {}) {
    Outcome r;
    r.status =
        Cpp_TTestTheoreticalMean(x.data(), size(x), orNull(o.weights), o.hypothesised, o.alpha, o.alternative,
                                 &r.estimate, &r.statistic, &r.critical, &r.df, &r.p, &r.lower, &r.upper);
    return r;
}

inline Outcome zTestOne(const Values& x, const MeanOptions& o = {}) {
    Outcome r;
    r.status = Cpp_ZTestTheoreticalMean(x.data(), size(x), orNull(o.weights), o.hypothesised, o.variance1,
                                        o.given, o.alpha, o.alternative, &r.estimate, &r.statistic, &r.critical,
                                        &r.p, &r.lower, &r.upper);
    return r;
}

inline Outcome fTest(const Values& x, const Values& y, double R = 1.0, double alpha = 0.05, int alternative = 0,
                     const Values& weights = {}, std::int16_t weightedDf = 0) {
    Outcome r;
    r.status = Cpp_FTest2SamplesNew(x.data(), size(x), y.data(), size(y), orNull(weights), orNull(weights), R,
                                    alpha, alternative, weightedDf, nullptr, &r.ratio, &r.statistic,
                                    &r.critical, &r.df, &r.df2, &r.p, &r.lower, &r.upper);
    return r;
}

/// Compares the columns of a row that are not blank.
inline void expectCells(const Row& row, const std::vector<std::pair<const char*, double>>& cells) {
    for (const auto& [name, got] : cells) {
        if (row.text(name).empty()) continue;
        EXPECT_TRUE(agrees(got, row[name], row["rel_tol"], row["abs_tol"]))
            << row.text("id") << ' ' << name << ": " << got << ", not " << row.text(name);
    }
}

/// Number of a cell; 0 when blank.
inline double orZero(const Row& row, const char* name) {
    return row.text(name).empty() ? 0.0 : row[name];
}

inline std::int16_t flag(const Row& row, const char* name) {
    return static_cast<std::int16_t>(orZero(row, name));
}

/// The rows of a file whose column "test" has the name.
inline std::vector<Row> rowsOf(const std::string& file, const std::string& test) {
    std::vector<Row> rows = readTable(file);
    std::erase_if(rows, [&](const Row& row) { return row.text("test") != test; });
    EXPECT_FALSE(rows.empty()) << file << ": " << test;
    return rows;
}

/// Compares outputs with the list in column "expected" of a row of more_tests.csv.
inline void expectList(const Row& row, const Values& got) {
    const Values expected = row.list("expected");
    ASSERT_EQ(got.size(), expected.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
        EXPECT_TRUE(agrees(got[i], expected[i], row["tol"], 1e-14))
            << row.text("test") << " line " << row.line() << " number " << i << ": " << got[i] << ", not "
            << expected[i];
    }
}

}  // namespace numcore::testing
