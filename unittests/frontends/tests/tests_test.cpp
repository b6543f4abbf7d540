// The commands ttest, ztest, vartest, proptest and anova: against R, samples, resampling, what cannot be
// computed.
#include <gtest/gtest.h>

#include <limits>

#include "cli/errors.hpp"
#include "cli/output/writers.hpp"
#include "csv_support.hpp"
#include "reference_table.hpp"
#include "tests/tests_support.hpp"

namespace numcore::cli {
namespace {

using numcore::testing::agrees;
using numcore::testing::readTable;
using numcore::testing::Row;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Tests, AgreeWithR) {
    for (const Row& row : readTable(NUMCORE_FRONTEND_REFERENCE_DIR "/tests.csv")) {
        const Report report =
            testReport(row.text("command"), dataFile(row.text("file")), row.text("arguments"));
        const double got = numberAt(tableOf(report, "test"), 0, row.text("column"));
        const std::string column = row.text("column");
        // Quantiles of the library's Student law are good to 2e-8, p-values are differences from 1.
        const bool isLimit = column == "lower" || column == "upper";
        EXPECT_TRUE(agrees(got, row["expected"], isLimit ? 1e-8 : 1e-11, isLimit ? 1e-8 : 1e-15))
            << "line " << row.line() << " " << column << ": " << got << ", expected " << row["expected"];
    }
}

TEST(Tests, SayWhatTheyCompare) {
    const Report groups = testReport("ttest", dataFile("toothgrowth.csv"), "--columns len --by supp");
    const ReportTable& samples = tableOf(groups, "samples");
    EXPECT_EQ(cellAt(samples, 0, "group"), Cell(std::string("OJ")));
    EXPECT_EQ(numberAt(samples, 1, "n"), 30.0);
    const ReportTable& test = tableOf(groups, "test");
    EXPECT_EQ(cellAt(test, 0, "first"), Cell(std::string("OJ")));
    EXPECT_EQ(cellAt(test, 0, "method"), Cell(std::string("Welch's two-sample t test")));
    EXPECT_TRUE(
        noted(groups, "difference: mean of 'OJ' less mean of 'VC', in the units of 'len'; limits of 95 %"));
    EXPECT_TRUE(noted(groups, "p: two-sided, hypothesis: a difference of 0"));
    const Report turned =
        testReport("ttest", dataFile("toothgrowth.csv"), "--columns len --by supp --groups VC:OJ");
    EXPECT_EQ(numberAt(tableOf(turned, "test"), 0, "t"), -numberAt(test, 0, "t"));
    const Report text = analyse([] {
        Options options = testOptions("ttest", dataFile("toothgrowth.csv"), "--columns len --by supp");
        options.output.format = Format::kText;
        return options;
    }());
    EXPECT_EQ(tableOf(text, "test").title, "Welch's two-sample t test");
    EXPECT_EQ(cellAt(tableOf(text, "test"), 0, "compared"), Cell(std::string("OJ - VC")));
}

TEST(Tests, CountWhatTheyUseAndDrop) {
    const TemporaryFile file("x,y,g,w\n1,2,a,1\n2,,a,1\n4,3,b,2\n,5,b,1\n5,5,c,1\n6,9,,1\n7,1,b,0\n8,6,a,3\n");
    const Report pairs = testReport("ttest", file.path(), "--columns x:y --paired");
    EXPECT_EQ(pairs.rows.used, 6U);
    EXPECT_EQ(pairs.droppedWhy, "2 with missing cells");
    const ReportTable& paired = tableOf(pairs, "samples");
    EXPECT_EQ(cellAt(paired, 2, "sample"), Cell(std::string("x - y")));
    EXPECT_EQ(numberAt(paired, 2, "n"), 6.0);
    const Report columns = testReport("ttest", file.path(), "--columns x:y");
    EXPECT_EQ(columns.rows.used, 8U);
    EXPECT_EQ(numberAt(tableOf(columns, "samples"), 0, "n"), 7.0);
    EXPECT_EQ(numberAt(tableOf(columns, "samples"), 0, "missing"), 1.0);
    const Report groups =
        testReport("ttest", file.path(), "--columns x --by g --groups a:b -w w --equal-variances");
    EXPECT_EQ(groups.rows.used, 5U);
    EXPECT_EQ(groups.droppedWhy, "1 without a weight above 0, 1 without a group, 1 in other groups");
    EXPECT_EQ(numberAt(tableOf(groups, "samples"), 0, "weight"), 5.0);
    EXPECT_EQ(numberAt(tableOf(groups, "samples"), 1, "missing"), 1.0);
    EXPECT_EQ(numberAt(tableOf(groups, "test"), 0, "df"), 5.0) << "weights 1, 1, 3 and 2";
}

TEST(Tests, TellHowTheyResample) {
    const std::string paired = "--columns drug1:drug2 --paired --resample 999 --seed 7";
    const Report exact = testReport("ttest", dataFile("sleep.csv"), paired);
    const ReportTable& all = tableOf(exact, "test");
    EXPECT_EQ(numberAt(all, 0, "exact"), 1.0);
    EXPECT_EQ(cellAt(all, 0, "seed"), Cell());
    EXPECT_TRUE(noted(exact, "p: exact, ")) << exact.notes.back();
    const Report drawn = testReport("ttest", dataFile("sleep.csv"), paired + " --exact-limit 0");
    const ReportTable& some = tableOf(drawn, "test");
    EXPECT_EQ(numberAt(some, 0, "resamples"), 999.0);
    EXPECT_EQ(numberAt(some, 0, "seed"), 7.0);
    EXPECT_EQ(numberAt(some, 0, "p"), (numberAt(some, 0, "extreme") + 1.0) / 1000.0);
    EXPECT_LT(numberAt(some, 0, "p_lower"), 4.0 / 1024.0);
    EXPECT_GT(numberAt(some, 0, "p_upper"), 4.0 / 1024.0);
    EXPECT_TRUE(noted(drawn, "--seed 7 draws them again"));
    const Report chance =
        testReport("ttest", dataFile("sleep.csv"), "--columns drug1:drug2 --resample 50 --exact-limit 0");
    const double seed = numberAt(tableOf(chance, "test"), 0, "seed");
    const Report again =
        testReport("ttest", dataFile("sleep.csv"),
                   "--columns drug1:drug2 --resample 50 --exact-limit 0 --seed " + exactNumber(seed));
    EXPECT_EQ(numberAt(tableOf(again, "test"), 0, "p"), numberAt(tableOf(chance, "test"), 0, "p"));
    for (const char* words :
         {"--by supp --columns len", "--by dose --columns len", "--by dose --columns len --test bartlett"}) {
        const Report variances = testReport("vartest", dataFile("toothgrowth.csv"),
                                            words + std::string(" --resample 199 --seed 1 --scheme bootstrap"));
        const double p = numberAt(tableOf(variances, "test"), 0, "p");
        EXPECT_GT(p, 0.0) << words;
        EXPECT_LE(p, 1.0) << words;
        EXPECT_TRUE(noted(variances, "bootstrap samples")) << words;
    }
    const Report one = testReport("ttest", dataFile("sleep.csv"), "--columns drug1 --resample 999 --seed 7");
    EXPECT_EQ(numberAt(tableOf(one, "test"), 0, "resamples"), 1024.0) << "all changes of sign";
    EXPECT_EQ(numberAt(tableOf(one, "test"), 0, "p"), 244.0 / 1024.0) << "counted in Python";
    const Report ones = testReport("ztest", dataFile("sleep.csv"),
                                   "--columns drug1:drug2 --mu 1 --resample 999 --exact-limit 0");
    EXPECT_TRUE(noted(ones, "p of 'drug2': ") && noted(ones, "999 drawn changes of sign"));
    for (const char* side : {"less", "greater"}) {
        const std::string asked = std::string("--resample 20000 --seed 3 --alternative ") + side;
        const Report few = testReport("proptest", "", "--success 3 --trials 60 --p 0.1 " + asked);
        const Report many = testReport("proptest", "", "--success 38 --trials 60 " + asked);
        const bool isLess = side == std::string("less");
        // R 4.2.2: pbinom(3, 60, 0.1), pbinom(38, 60, 0.5) and the upper tails from 3 and 38 on.
        for (const auto& [report, p] : {std::pair(&few, isLess ? 0.137398569419658 : 0.946954918184007),
                                        std::pair(&many, isLess ? 0.986329933065961 : 0.0259469479644608)}) {
            EXPECT_LT(numberAt(tableOf(*report, "test"), 0, "p_lower"), p);
            EXPECT_GT(numberAt(tableOf(*report, "test"), 0, "p_upper"), p);
        }
    }
    const Report counts = testReport("proptest", "", "--success 15:25 --trials 50:50 --resample 2000 --seed 3");
    EXPECT_NEAR(numberAt(tableOf(counts, "test"), 0, "p"), 0.05, 0.03) << "R: 0.0412 by the normal law";
    EXPECT_TRUE(noted(counts, "2000 drawn counts"));
    const Report anova = testReport("anova", dataFile("plantgrowth.csv"), "--by group --resample 499 --seed 2");
    EXPECT_TRUE(noted(anova, "499 drawn permutations"));
}

TEST(Tests, SayWhatCannotBeComputed) {
    const TemporaryFile file("x,y,c,g\n1,5,2,a\n2,5,2,a\n3,5,2,b\n,6,2,b\n");
    EXPECT_NE(refusal<DataError>("ttest", file.path(), "--columns x --by g")
                  .find("no test of 'x': too few values: 'a' has 2 values, 'b' has 1 value"),
              std::string::npos);
    EXPECT_NE(refusal<DataError>("ttest", file.path(), "--columns c --mu 1").find("the values do not vary"),
              std::string::npos);
    EXPECT_NE(refusal<DataError>("ztest", file.path(), "--columns c --by g").find("the values do not vary"),
              std::string::npos);
    EXPECT_NE(refusal<DataError>("anova", file.path(), "--columns c --by g").find("do not vary"),
              std::string::npos);
    EXPECT_NE(refusal<DataError>("proptest", "", "--success 3 --trials 9 --p 0").find("no variation"),
              std::string::npos);
    const Report both = testReport("ttest", file.path(), "--columns x:y --mu 4");
    EXPECT_EQ(numberAt(tableOf(both, "samples"), 0, "n"), 3.0);
    const Report some = testReport("ttest", file.path(), "--columns x:c --mu 4");
    EXPECT_EQ(cellAt(tableOf(some, "test"), 1, "p"), Cell());
    EXPECT_EQ(cellAt(tableOf(some, "test"), 1, "upper"), Cell());
    EXPECT_EQ(cellAt(tableOf(some, "test"), 1, "df"), Cell());
    EXPECT_TRUE(noted(some, "no test of 'c': the values do not vary"));
    const TemporaryFile infinite("a,b\n1,2\ninf,3\n3,5\n");
    EXPECT_NE(refusal<DataError>("ttest", infinite.path(), "").find("'a' holds an infinite value"),
              std::string::npos);
    const TemporaryFile constant("a,b\n1,2\n1,2\n1,2\n");
    const Report apart = testReport("ttest", constant.path(), "--columns a:b");
    EXPECT_EQ(numberAt(tableOf(apart, "test"), 0, "t"), -kInfinity);
    EXPECT_TRUE(noted(apart, "t is infinite"));
}

// The laws give 0 for p-values below some 1e-16; what is printed is their bound.
TEST(Tests, NeverPrintPAsZero) {
    const std::string words = "--columns drug1:drug2 --variances 0.0001:0.0001";
    const Report distant = testReport("ztest", dataFile("sleep.csv"), words);
    EXPECT_EQ(numberAt(tableOf(distant, "test"), 0, "p"), std::numeric_limits<double>::epsilon());
    EXPECT_EQ(numberAt(tableOf(distant, "test"), 0, "p_bound"), 1.0);
    EXPECT_EQ(cellAt(tableOf(testReport("ztest", dataFile("sleep.csv"), "--columns drug1:drug2"), "test"), 0,
                     "p_bound"),
              Cell());
    const Report proportions = testReport("proptest", "", "--success 10:5000:3000 --trials 5000:5000:5000");
    const ReportTable& pairs = tableOf(proportions, "pairs");
    EXPECT_EQ(numberAt(pairs, 0, "p"), std::numeric_limits<double>::epsilon());
    EXPECT_EQ(numberAt(pairs, 0, "p_bound"), 1.0);
}

TEST(Tests, OpenLimitsAreInfiniteOrNatural) {
    const auto limit = [](const char* command, const char* file, const std::string& words, const char* which) {
        return numberAt(tableOf(testReport(command, dataFile(file), words), "test"), 0, which);
    };
    EXPECT_EQ(limit("ttest", "sleep.csv", "--columns drug1 --alternative less", "lower"), -kInfinity);
    EXPECT_EQ(limit("ztest", "sleep.csv", "--columns drug1:drug2 --alternative greater", "upper"), kInfinity);
    EXPECT_EQ(limit("vartest", "sleep.csv", "--columns drug1:drug2 --alternative less", "lower"), 0.0);
    EXPECT_EQ(limit("proptest", "", "--success 3 --trials 9 --alternative less", "lower"), 0.0);
    EXPECT_EQ(limit("proptest", "", "--success 3:4 --trials 9:9 --alternative less", "lower"), -1.0);
    EXPECT_EQ(limit("proptest", "", "--success 3 --trials 9 --alternative greater", "upper"), 1.0);
}

// Expected: Marascuilo (1966) by hand: sqrt(qchisq(0.95, 2) * (p1 q1 / n1 + p2 q2 / n2)).
TEST(Tests, ComparePairsOfProportions) {
    const Report report = testReport("proptest", "", "--success 15:25:40 --trials 50:50:60");
    const ReportTable& pairs = tableOf(report, "pairs");
    ASSERT_EQ(pairs.rows.size(), 3U);
    EXPECT_NEAR(numberAt(pairs, 0, "difference"), -0.2, 1e-15);
    EXPECT_NEAR(numberAt(pairs, 0, "critical"), std::sqrt(5.991464547107979 * (0.21 + 0.25) / 50.0), 1e-12);
    EXPECT_EQ(numberAt(pairs, 0, "significant"), 0.0);
    EXPECT_EQ(numberAt(pairs, 1, "significant"), 1.0) << "0.3 and 0.667";
    const TemporaryFile file("x,g\n1,a\n0,a\n1,b\n,b\n0,b\n1,b\n");
    const Report column = testReport("proptest", file.path(), "--columns x --by g");
    EXPECT_EQ(numberAt(tableOf(column, "samples"), 1, "successes"), 2.0);
    EXPECT_EQ(numberAt(tableOf(column, "samples"), 1, "missing"), 1.0);
    EXPECT_TRUE(noted(column, "success: '1' in column 'x'"));
}

}  // namespace
}  // namespace numcore::cli
