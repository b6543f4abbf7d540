// What the command lines of the parametric tests refuse, and the pictures.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <utility>

#include "cli/errors.hpp"
#include "csv_support.hpp"
#include "picture_checks.hpp"
#include "tests/tests_support.hpp"

namespace numcore::cli {
namespace {

/// The picture that a command line draws.
std::string pictureOf(const std::string& command, const std::string& file, const std::string& words) {
    Options options = testOptions(command, file, words);
    const TemporaryFile picture("");
    options.test.plot = picture.path();
    analyse(options);
    std::ifstream in(picture.path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

TEST(TestOptions, RefusesWhatDoesNotFit) {
    const std::string iris = dataFile("iris.csv");
    const std::string sleep = dataFile("sleep.csv");
    const std::vector<std::vector<std::string>> wrong{
        {"ttest", iris, "--by Species --groups setosa:virginca", "no group 'virginca' in column 'Species'"},
        {"ttest", iris, "--by Species --groups setosa:setosa", "names 'setosa' twice"},
        {"ttest", iris, "--groups setosa:virginica", "--groups goes with --by"},
        {"ttest", iris, "--by Species --paired", "takes two columns, not groups"},
        {"ttest", iris, "--by Species --mu 3", "with --mu there is one"},
        {"ttest", sleep, "--columns drug1:drug2 --cochran-cox --resample 99", "does not go with --resample"},
        {"ttest", sleep, "--columns drug1 --difference 1", "--mu?"},
        {"ttest", sleep, "--columns drug1 --resample 9 --time-limit -1",
         "--time-limit takes seconds, 0 or more"},
        {"proptest", "", "--success 1:2:3 --trials 9:9:9 --resample 9", "does not go with the chi-square test"},
        {"ttest", sleep, "--columns drug1:drug2 --seed 1", "--seed goes with --resample"},
        {"ttest", sleep, "--columns drug1:drug2 --cochran-cox --alternative less", "--alternative two-sided"},
        {"ttest", sleep, "--columns drug1:drug2 --alpha 5", "--alpha takes a level between 0 and 1, not 5"},
        {"ttest", sleep, "--columns drug1:drug2 --alternative more", "two-sided, less, greater"},
        {"ztest", sleep, "--columns drug1:drug2 --variance 3", "--variances takes two numbers"},
        {"ztest", sleep, "--columns drug1 --variance 3:x", "--variance takes numbers, not 'x'"},
        {"ztest", sleep, "--columns drug1 --variance -3", "--variance takes numbers above 0"},
        {"vartest", sleep, "--columns drug1:drug2 --test chi2", "takes one --variance to test against"},
        {"vartest", iris, "--by Species --test bartlett --alternative less", "goes with --test f or chi2"},
        {"vartest", iris, "--by Species --alternative less", "--groups a,b chooses two"},
        {"vartest", iris, "--by Species --test levene --ratio 2", "--ratio goes with --test f"},
        {"proptest", "", "--success 3:4 --trials 9", "one of each for every sample"},
        {"proptest", "", "--success 10 --trials 9", "no more successes than trials"},
        {"proptest", iris, "--success 1 --trials 9", "one of them"},
        {"proptest", "", "--success 1:2:3 --trials 9:9:9 --continuity", "does not go with the chi-square test"},
        {"proptest", "", "--success 1 --trials 9 --p 2", "takes proportions from 0 to 1"}};
    for (const auto& line : wrong) {
        const std::string message = refusal<UsageError>(line[0], line[1], line[2]);
        EXPECT_NE(message.find(line[3]), std::string::npos) << line[0] << " " << line[2] << ": " << message;
    }
}

TEST(TestOptions, NamesWhatTheDataLack) {
    const std::string iris = dataFile("iris.csv");
    const TemporaryFile file("x,y,t,g\n1,2,a,u\n2,3,b,u\n4,1,c,u\n");
    const std::vector<std::vector<std::string>> wrong{
        {"ttest", iris, "--columns 1 --by Species",
         "column 'Species' has 3: 'setosa', 'versicolor', 'virginica'; choose two: --groups setosa,versicolor"},
        {"ttest", iris, "", "ttest compares two columns, here are 4"},
        {"ttest", file.path(), "--columns x --by g", "one group only to compare, 'u' of column 'g'"},
        {"ttest", file.path(), "--columns t --mu 1", "no numeric column to test"},
        {"anova", file.path(), "--columns x", "compares two samples or more, here is one column, 'x'"},
        {"proptest", file.path(), "--columns x", "holds 3 different values, not 0 and 1"},
        {"proptest", file.path(), "--columns t", "holds 3 different values, not two"},
        {"proptest", file.path(), "--columns t --event z", "holds no 'z'"},
        {"proptest", file.path(), "--columns x:y", "proptest counts one column, here are 2"},
        {"proptest", dataFile("warpbreaks.csv"), "--columns wool --weights breaks --event C", "holds no 'C'"}};
    for (const auto& line : wrong) {
        const std::string message = refusal<DataError>(line[0], line[1], line[2]);
        EXPECT_NE(message.find(line[3]), std::string::npos) << line[0] << " " << line[2] << ": " << message;
    }
}

TEST(TestPlot, DrawsEverySampleAndItsMean) {
    const std::string groups = pictureOf("anova", dataFile("insectsprays.csv"), "--by spray");
    EXPECT_TRUE(isWellFormed(groups));
    EXPECT_EQ(countOf(groups, "<rect class=\"bar\""), 6U);
    EXPECT_EQ(countOf(groups, "<polygon class=\"mean\""), 6U);
    EXPECT_NE(groups.find("<desc>by spray; boxes: quartiles"), std::string::npos);
    EXPECT_NE(groups.find(">A (12)</text>"), std::string::npos);
    EXPECT_EQ(groups, pictureOf("anova", dataFile("insectsprays.csv"), "--by spray"));
    const std::string paired = pictureOf("ttest", dataFile("sleep.csv"), "--columns drug1:drug2 --paired");
    EXPECT_TRUE(isWellFormed(paired));
    EXPECT_EQ(countOf(paired, "class=\"area\""), 1U) << "limits of the mean difference";
    EXPECT_GE(countOf(paired, "class=\"dot\""), 10U);
    EXPECT_NE(paired.find("-1.96 SD"), std::string::npos);
    const std::string several =
        pictureOf("ttest", dataFile("iris.csv"), "--by Species --groups setosa:virginica");
    EXPECT_EQ(countOf(several, "<rect class=\"bar\""), 8U);
    const std::string counts = pictureOf("proptest", "", "--success 15:25:40 --trials 50:50:60");
    EXPECT_TRUE(isWellFormed(counts));
    EXPECT_EQ(countOf(counts, "<polygon class=\"mean\""), 3U);
    EXPECT_EQ(countOf(counts, "<line class=\"mean\""), 9U) << "limits with their caps";
    EXPECT_NE(counts.find(">pooled 0.5</text>"), std::string::npos) << "80 of 160";
    EXPECT_NE(counts.find(">3 (60)</text>"), std::string::npos);
    const std::string given =
        pictureOf("proptest", "", "--success 0:9 --trials 50:9 --p 0.1:0.7 --interval clopper");
    EXPECT_EQ(countOf(given, "<line class=\"hint\""), 2U) << "a hypothesis for each";
    EXPECT_NE(given.find("limits of 95 % by Clopper-Pearson; dashed: hypothesis"), std::string::npos);
    const std::string apart = pictureOf("proptest", "", "--success 3:9 --trials 50:90 --difference 0.1");
    EXPECT_EQ(countOf(apart, "class=\"hint\""), 0U) << "no common proportion";
    const TemporaryFile odd("a,b,c\n1,2,1e308\n1,3,-1e308\n1,5,0\n");
    EXPECT_TRUE(isWellFormed(pictureOf("ttest", odd.path(), "--columns a:b"))) << "a box without height";
    EXPECT_THROW(pictureOf("ttest", odd.path(), "--columns b:c"), DataError);
}

}  // namespace
}  // namespace numcore::cli
