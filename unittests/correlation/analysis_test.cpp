#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "numcore/correlation_analysis.hpp"
#include "reference_table.hpp"

namespace {

using numcore::cCOR_Results;
using numcore::cST_DataSet;
using numcore::cST_MVect;
using numcore::kMissing;
using numcore::matrix;
using numcore::u16string;

cST_MVect<double> columns(const std::vector<std::vector<double>>& cells) {
    cST_MVect<double> set(static_cast<std::int32_t>(cells.front().size()),
                          static_cast<std::int32_t>(cells.size()), kMissing);
    set.labels = matrix<u16string>(set.columnCount(), 1, u16string());
    for (std::int32_t c = 0; c < set.columnCount(); ++c) {
        std::ranges::copy(cells[static_cast<std::size_t>(c)], set.column(c).data());
        set.labels[c] = u16string(std::u16string(1, static_cast<char16_t>(u'a' + c)));
    }
    return set;
}

cST_DataSet dataSet(const std::vector<std::vector<double>>& cells) {
    cST_DataSet data;
    *data.numeric1 = columns(cells);
    data.numeric1Present = NUMCORE_TRUE;
    data.nRows = data.numeric1->rowCount();
    return data;
}

cST_DataSet airquality() {
    std::vector<std::vector<double>> cells;
    for (const char* name : {"Ozone", "Solar.R", "Wind", "Temp"})
        cells.push_back(numcore::testing::readDataColumn("airquality.csv", name));
    return dataSet(cells);
}

COR_Param everything(std::int32_t family) {
    COR_Param param = {};
    param.coefficient = family;
    param.alpha = 0.05;
    param.pValues = param.squared = param.intervals = NUMCORE_TRUE;
    return param;
}

std::int32_t run(cST_DataSet& data, COR_Param& param, cCOR_Results& results) {
    matrix<u16string> messages;
    std::u16string text;
    return COR_Compute_ST(data, param, results, messages, text, 0);
}

// R 4.2.2: cor.test(Ozone, Solar.R) and, of the rows without NA, cor.test(Wind, Temp), cov(Ozone, Temp).
TEST(CorrelationAnalysis, PearsonPairwiseAndListwise) {
    cST_DataSet data = airquality();
    COR_Param param = everything(NUMCORE_COR_FAMILY_PEARSON);
    cCOR_Results results;
    ASSERT_EQ(run(data, param, results), NUMCORE_COR_DONE);
    EXPECT_NEAR(results.coefficients.at(0, 1), 0.3483416929936027, 1e-14);
    EXPECT_NEAR(results.pValues.at(1, 0) / 0.0001793108571648854, 1.0, 1e-10);
    EXPECT_NEAR(results.lower.at(0, 1), 0.1731940011471259, 1e-12);
    EXPECT_NEAR(results.upper.at(1, 0), 0.502131962722811, 1e-12);
    EXPECT_NEAR(results.squared.at(0, 1), 0.3483416929936027 * 0.3483416929936027, 1e-14);
    EXPECT_EQ(results.nPairs.at(0, 1), 111);
    EXPECT_EQ(results.nPairs.at(2, 3), 153);
    EXPECT_EQ(results.significant.at(0, 1), 1);
    EXPECT_EQ(results.coefficients.label(3), u"d");
    EXPECT_EQ(results.nMissing, 44);
    EXPECT_EQ(results.complete, NUMCORE_FALSE);

    param.missing = NUMCORE_COR_LISTWISE;
    cCOR_Results listwise;
    ASSERT_EQ(run(data, param, listwise), NUMCORE_COR_DONE);
    EXPECT_NEAR(listwise.coefficients.at(2, 3), -0.497189716134619, 1e-14);
    EXPECT_NEAR(listwise.pValues.at(2, 3) / 2.84196554540116e-08, 1.0, 1e-8);
    EXPECT_NEAR(listwise.lower.at(2, 3), -0.6256060586642398, 1e-12);
    EXPECT_EQ(listwise.nRowsUsed, 111);
    EXPECT_EQ(listwise.nRowsExcluded, 42);
    EXPECT_EQ(listwise.complete, NUMCORE_TRUE);

    param.covariance = NUMCORE_TRUE;
    cCOR_Results covariances;
    ASSERT_EQ(run(data, param, covariances), NUMCORE_COR_DONE);
    EXPECT_NEAR(covariances.coefficients.at(0, 3), 221.5207207207207, 1e-11);
    EXPECT_EQ(covariances.squared.columnCount(), 0) << "a covariance has no square";
}

// R 4.2.2: cor(Ozone, Wind, method = "spearman"), cor(Ozone, Temp, method = "kendall"), pairwise.
TEST(CorrelationAnalysis, RankFamiliesAndRectangularTables) {
    cST_DataSet data = airquality();
    COR_Param param = everything(NUMCORE_COR_FAMILY_SPEARMAN);
    cCOR_Results spearman;
    ASSERT_EQ(run(data, param, spearman), NUMCORE_COR_DONE);
    EXPECT_NEAR(spearman.coefficients.at(0, 2), -0.5901551240670112, 1e-13);
    param.covariance = NUMCORE_TRUE;
    cCOR_Results again;
    ASSERT_EQ(run(data, param, again), NUMCORE_COR_DONE);
    ASSERT_EQ(again.lower.columnCount(), 4) << "the flag is one of Pearson's";
    EXPECT_EQ(again.lower.at(0, 2), spearman.lower.at(0, 2));
    EXPECT_EQ(again.squared.at(0, 2), spearman.squared.at(0, 2));

    param = everything(NUMCORE_COR_FAMILY_KENDALL);
    param.exact = NUMCORE_TRUE;
    param.rectangular = NUMCORE_TRUE;
    *data.numeric2 = columns({numcore::testing::readDataColumn("airquality.csv", "Temp")});
    cCOR_Results kendall;
    ASSERT_EQ(run(data, param, kendall), NUMCORE_COR_DONE);
    EXPECT_EQ(kendall.coefficients.columnCount(), 1);
    EXPECT_EQ(kendall.coefficients.rowCount(), 4);
    EXPECT_NEAR(kendall.coefficients.at(0, 0), 0.5862988215264409, 1e-13);
    EXPECT_EQ(kendall.coefficients.at(3, 0), 1.0);
    EXPECT_EQ(kendall.nNotExact, 4) << "ties leave no exact law";
}

TEST(CorrelationAnalysis, MarksWeightsAndConstantColumns) {
    cST_DataSet data =
        dataSet({{1.0, 2.0, 3.0, 9.0, kMissing}, {2.0, 4.0, 6.0, -5.0, 1.0}, {7.0, 7.0, 7.0, 7.0, 7.0}});
    *data.rowMarks = matrix<std::int16_t>(5, 1, NUMCORE_FALSE);
    (*data.rowMarks)[3] = NUMCORE_TRUE;
    data.rowMarksPresent = NUMCORE_TRUE;
    COR_Param param = everything(NUMCORE_COR_FAMILY_PEARSON);
    cCOR_Results results;
    ASSERT_EQ(run(data, param, results), NUMCORE_COR_DONE);
    EXPECT_DOUBLE_EQ(results.coefficients.at(0, 1), 1.0);
    EXPECT_EQ(results.coefficients.at(0, 2), kMissing);
    EXPECT_EQ(results.lower.at(0, 2), kMissing);
    EXPECT_EQ(results.nNotComputed, 3) << "the constant column with each, and with itself";
    EXPECT_EQ(results.nRowsExcluded, 1);

    data.weightsPresent = NUMCORE_TRUE;
    for (const double bad : {-1.0, kMissing, std::nan(""), std::numeric_limits<double>::infinity()}) {
        *data.weights = matrix<double>(5, 1, 1.0);
        (*data.weights)[2] = bad;
        cCOR_Results none;
        EXPECT_EQ(run(data, param, none), NUMCORE_COR_BAD_WEIGHTS) << bad;
        EXPECT_EQ(none.coefficients.columnCount(), 0);
    }
}

TEST(CorrelationAnalysis, PolychoricOfOrderedCategories) {
    // Two binary variables split at the median: sin(pi / 2 (a + d - b - c) / n), Sheppard (1899).
    std::vector<double> x;
    std::vector<double> y;
    for (int i = 0; i < 100; ++i) {
        x.push_back(i < 50 ? 0.0 : 1.0);
        y.push_back((i < 50) == (i % 50 < 40) ? 2.0 : 5.0);
    }
    cST_DataSet data = dataSet({x, y, x});
    COR_Param param = everything(NUMCORE_COR_FAMILY_POLYCHORIC);
    cCOR_Results results;
    ASSERT_EQ(run(data, param, results), NUMCORE_COR_DONE);
    const double expected = -std::sin(std::acos(-1.0) / 2.0 * 0.6);
    EXPECT_NEAR(std::abs(results.coefficients.at(0, 1)), std::abs(expected), 1e-7);
    EXPECT_EQ(results.coefficients.at(1, 1), 1.0);
    EXPECT_LT(results.pValues.at(0, 1), 1e-6);
    EXPECT_LT(results.lower.at(0, 1), results.coefficients.at(0, 1));
    EXPECT_GT(results.upper.at(0, 1), results.coefficients.at(0, 1));
    EXPECT_EQ(results.nPairs.at(0, 1), 100);

    // Rows beyond the weights take no part.
    data.weightsPresent = NUMCORE_TRUE;
    *data.weights = matrix<double>(75, 1, 1.0);
    cCOR_Results shorter;
    ASSERT_EQ(run(data, param, shorter), NUMCORE_COR_DONE);
    cST_DataSet first = dataSet({{x.begin(), x.begin() + 75}, {y.begin(), y.begin() + 75}});
    cCOR_Results expectedOnes;
    ASSERT_EQ(run(first, param, expectedOnes), NUMCORE_COR_DONE);
    EXPECT_EQ(shorter.coefficients.at(0, 1), expectedOnes.coefficients.at(0, 1));
    EXPECT_EQ(shorter.nPairs.at(0, 1), 75);

    data.numeric1->column(0)[7] = std::nan("");
    cCOR_Results withNaN;
    ASSERT_EQ(run(data, param, withNaN), NUMCORE_COR_DONE);
    EXPECT_EQ(withNaN.nPairs.at(0, 1), 74) << "NaN is no category";
}

TEST(CorrelationAnalysis, ParametersThatItCannotUse) {
    cST_DataSet data = dataSet({{1.0, 2.0}, {2.0, 1.0}});
    const auto statusOf = [&](std::int32_t family, double alpha, std::int32_t missing) {
        COR_Param param = everything(family);
        param.alpha = alpha;
        param.missing = missing;
        cCOR_Results results;
        const std::int32_t status = run(data, param, results);
        EXPECT_EQ(results.status, status);
        return status;
    };
    EXPECT_EQ(statusOf(0, 0.05, 0), NUMCORE_COR_BAD_FAMILY);
    EXPECT_EQ(statusOf(5, 0.05, 0), NUMCORE_COR_BAD_FAMILY);
    for (const double alpha : {0.0, 1.0, std::nan("")})
        EXPECT_EQ(statusOf(1, alpha, 0), NUMCORE_COR_BAD_OPTION);
    EXPECT_EQ(statusOf(1, 0.05, 2), NUMCORE_COR_BAD_OPTION);
    data.nRows = 0;
    EXPECT_EQ(statusOf(1, 0.05, 0), NUMCORE_COR_NO_DATA);
    data = cST_DataSet();
    EXPECT_EQ(statusOf(1, 0.05, 0), NUMCORE_COR_NO_DATA);
}

TEST(CorrelationAnalysis, FormatsAndColours) {
    cST_DataSet data =
        dataSet({{1.0, 2.0, 3.0, 4.0, 5.0, 6.0}, {6.0, 5.0, 4.0, 3.0, 2.0, 1.5}, {1, 5, 2, 4, 3, 3}});
    COR_Param param = everything(NUMCORE_COR_FAMILY_PEARSON);
    param.decimals = 3;
    param.positiveColour = 0x00FF00;
    param.negativeColour = 0x0000FF;
    cCOR_Results results;
    ASSERT_EQ(run(data, param, results), NUMCORE_COR_DONE);
    EXPECT_EQ(results.colours.at(0, 1), 0x0000FF);
    EXPECT_EQ(results.colours.at(0, 0), -1) << "a variable with itself";
    EXPECT_EQ(results.colours.at(0, 2), -1) << "not significant";
    EXPECT_EQ(results.formats.numberFormats.cells[2], u"0.000");
    EXPECT_EQ(results.formats.highlight, 65535);
}

TEST(InfoQuali, CategoriesAscendAsNumbers) {
    const cST_MVect<double> data =
        columns({{10.0, 2.0, kMissing, 2.0, -0.5, 3.0}, {1.0, 1.0, 1.0, 1.0, 1.0, 0.1}});
    matrix<double> weights(6, 1, 2.0);
    matrix<std::int16_t> exclusion(6, 1, NUMCORE_FALSE);
    exclusion[5] = NUMCORE_TRUE;
    numcore::cST_QualiInfo info;
    M_InfoQuali_ST(data, 6, 2, weights, exclusion, info);
    ASSERT_EQ(info.nCategories[0], 3);
    EXPECT_EQ(info.labels.at(0, 0), u"-0.5");
    EXPECT_EQ(info.labels.at(2, 0), u"10");
    EXPECT_EQ(info.counts.at(1, 0), 2.0);
    EXPECT_EQ(info.frequencies.at(1, 0), 4.0);
    EXPECT_EQ(info.nCategories[1], 1);
    EXPECT_EQ(info.missing[0], 2.0);
    EXPECT_EQ(info.totalWeight, 10.0);
    EXPECT_EQ(info.names[1], u"b");
}

}  // namespace
