#include "descriptive/univariate.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "numcore/api.h"
#include "reference_table.hpp"

namespace {

using numcore::descriptive::univariate;
using numcore::testing::Row;

const std::map<std::string, int> kStatistics = {
    {"COUNT", NUMCORE_UNI_COUNT},
    {"MISSING", NUMCORE_UNI_MISSING},
    {"WEIGHT", NUMCORE_UNI_WEIGHT},
    {"MINIMUM", NUMCORE_UNI_MINIMUM},
    {"MAXIMUM", NUMCORE_UNI_MAXIMUM},
    {"AT_MINIMUM", NUMCORE_UNI_AT_MINIMUM},
    {"AT_MAXIMUM", NUMCORE_UNI_AT_MAXIMUM},
    {"RANGE", NUMCORE_UNI_RANGE},
    {"FIRST_QUARTILE", NUMCORE_UNI_FIRST_QUARTILE},
    {"MEDIAN", NUMCORE_UNI_MEDIAN},
    {"THIRD_QUARTILE", NUMCORE_UNI_THIRD_QUARTILE},
    {"SUM", NUMCORE_UNI_SUM},
    {"MEAN", NUMCORE_UNI_MEAN},
    {"VARIANCE_N", NUMCORE_UNI_VARIANCE_N},
    {"VARIANCE", NUMCORE_UNI_VARIANCE},
    {"DEVIATION_N", NUMCORE_UNI_DEVIATION_N},
    {"DEVIATION", NUMCORE_UNI_DEVIATION},
    {"VARIATION", NUMCORE_UNI_VARIATION},
    {"SKEWNESS_N", NUMCORE_UNI_SKEWNESS_N},
    {"SKEWNESS", NUMCORE_UNI_SKEWNESS},
    {"SKEWNESS_BOWLEY", NUMCORE_UNI_SKEWNESS_BOWLEY},
    {"KURTOSIS_N", NUMCORE_UNI_KURTOSIS_N},
    {"KURTOSIS", NUMCORE_UNI_KURTOSIS},
    {"SE_MEAN", NUMCORE_UNI_SE_MEAN},
    {"MEAN_ABS_DEVIATION", NUMCORE_UNI_MEAN_ABS_DEVIATION},
    {"MEDIAN_ABS_DEVIATION", NUMCORE_UNI_MEDIAN_ABS_DEVIATION},
    {"GEOMETRIC_MEAN", NUMCORE_UNI_GEOMETRIC_MEAN},
    {"GEOMETRIC_DEVIATION", NUMCORE_UNI_GEOMETRIC_DEVIATION},
    {"HARMONIC_MEAN", NUMCORE_UNI_HARMONIC_MEAN},
};

TEST(Univariate, MatchesReference) {
    numcore::testing::expectTable("descriptive/univariate.csv", [](const Row& row) {
        const auto values = numcore::testing::readDataColumn(row.text("dataset") + ".csv", row.text("column"));
        const auto weights =
            row.text("weights").empty()
                ? std::vector<double>()
                : numcore::testing::readDataColumn(row.text("dataset") + ".csv", row.text("weights"));
        return univariate(values, weights, 5)[static_cast<std::size_t>(kStatistics.at(row.text("statistic")))];
    });
}

TEST(Univariate, StatisticsThatDoNotExistAreMissing) {
    const auto none = univariate(std::vector<double>{NUMCORE_MISSING}, {}, 5);
    EXPECT_EQ(none[NUMCORE_UNI_COUNT], 1.0);
    EXPECT_EQ(none[NUMCORE_UNI_MISSING], 1.0);
    for (const int statistic :
         {NUMCORE_UNI_MEAN, NUMCORE_UNI_MINIMUM, NUMCORE_UNI_MEDIAN, NUMCORE_UNI_VARIANCE}) {
        EXPECT_EQ(none[static_cast<std::size_t>(statistic)], NUMCORE_MISSING);
    }
    const auto one = univariate(std::vector<double>{4.0, NUMCORE_MISSING}, {}, 5);
    EXPECT_EQ(one[NUMCORE_UNI_DEVIATION], 0.0);
    EXPECT_EQ(one[NUMCORE_UNI_SKEWNESS_N], NUMCORE_MISSING) << "no spread";
    EXPECT_EQ(one[NUMCORE_UNI_HARMONIC_MEAN], 4.0);
}

TEST(Univariate, StandardErrorsOfShape) {
    // SPSS algorithms, as in Cramer (1997): n = 10 gives 0.687 and 1.334.
    const std::vector<double> ten = {1, 2, 3, 4, 5, 6, 7, 8, 9, 11};
    const auto statistics = univariate(ten, {}, 5);
    EXPECT_NEAR(statistics[NUMCORE_UNI_SE_SKEWNESS], 0.687, 5e-4);
    EXPECT_NEAR(statistics[NUMCORE_UNI_SE_KURTOSIS], 1.334, 5e-4);
}

TEST(Skewness, KindsAndBadInput) {
    double cells[] = {1.0, 2.0, 10.0, NUMCORE_MISSING};
    // SciPy 1.10.1: skew([1, 2, 10]) and bias=False; the third is g1 (2/3)^1.5.
    EXPECT_NEAR(Cpp_Skewness(cells, 4, nullptr, 0), 0.6745555, 1e-7);
    EXPECT_NEAR(Cpp_Skewness(cells, 4, nullptr, 1), 1.6523167, 1e-7);
    EXPECT_NEAR(Cpp_Skewness(cells, 4, nullptr, 2), 0.6745555 * std::pow(2.0 / 3.0, 1.5), 1e-7);
    EXPECT_EQ(Cpp_Skewness(cells, 4, nullptr, 3), NUMCORE_MISSING);
    EXPECT_EQ(Cpp_Skewness(cells, 2, nullptr, 1), NUMCORE_MISSING);
    EXPECT_EQ(Cpp_Skewness(cells, 1, nullptr, 0), NUMCORE_MISSING);
    EXPECT_EQ(Cpp_Skewness(nullptr, 4, nullptr, 0), NUMCORE_MISSING);
}

}  // namespace
