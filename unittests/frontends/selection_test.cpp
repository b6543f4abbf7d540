#include "cli/selection.hpp"

#include <gtest/gtest.h>

#include "cli/errors.hpp"
#include "cli/quantile.hpp"

namespace numcore::cli {
namespace {

using Places = std::vector<std::size_t>;

const std::vector<std::string> kNames{"Ozone", "Solar.R", "Wind", "Temp", "2", "a-b", "c,d"};

TEST(Selection, ResolvesNamesNumbersAndRanges) {
    const std::pair<const char*, Places> cases[] = {
        {"Ozone", {0}},     {"Ozone,3", {0, 2}},      {"2", {4}},  // a name goes before a number
        {"1-3", {0, 1, 2}}, {"3-1", {2, 1, 0}},       {"Solar.R-Temp,1", {1, 2, 3, 0}},
        {"a-b", {5}},       {"a-b-7", {5, 6}},        {"6-", {5, 6}},
        {"c,d", {6}},       {"\"c,d\",Wind", {6, 2}},
    };
    for (const auto& [list, places] : cases) EXPECT_EQ(resolveColumns(list, kNames), places) << list;
    for (const char* list : {"ozone", "0", "8", "1-8", "-", "1,,2", "\"c", "99999999999999999999"}) {
        EXPECT_THROW(resolveColumns(list, kNames), UsageError) << list;
    }
}

TEST(Selection, SeparatesWeightsGroupsAndAnalysedColumns) {
    SelectionOptions options;
    options.weights = "Wind";
    options.by = "c,d";
    options.text = {"Temp"};
    const Selection all = selectColumns(options, kNames);
    EXPECT_EQ(all.analysed, (Places{0, 1, 3, 4, 5}));
    EXPECT_EQ(all.wants[2], Want::kNumbers);
    EXPECT_EQ(all.wants[3], Want::kTexts);
    EXPECT_EQ(all.wants[6], Want::kTexts);
    options.columns = {"Temp,Ozone", "1"};
    const Selection some = selectColumns(options, kNames);
    EXPECT_EQ(some.analysed, (Places{3, 0})) << "in the order asked for, once each";
    EXPECT_EQ(some.wants[1], Want::kSkip);
    options.columns = {"Wind"};
    EXPECT_THROW(selectColumns(options, kNames), UsageError);
}

TEST(Selection, HelpsWithAMisspeltName) {
    try {
        resolveColumns("Ozon", kNames);
        FAIL();
    } catch (const UsageError& error) {
        EXPECT_NE(std::string(error.what()).find("did you mean 'Ozone'?"), std::string::npos) << error.what();
    }
}

TEST(QuantileRequest, KnowsMethodsByNumberAndName) {
    EXPECT_EQ(parseMethods("all"), (std::vector<int>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(parseMethods("Linear,r7,type7,excel.inc,5"), (std::vector<int>{5, 5, 5, 5, 5}));
    EXPECT_EQ(parseMethods("r1,r2,r3,r4,r6"), (std::vector<int>{2, 4, 1, 0, 3}));
    EXPECT_EQ(parseMethods("sas1,sas2,sas3,sas4,sas5"), (std::vector<int>{0, 1, 2, 3, 4}));
    for (const char* word : {"6", "-1", "", "r5", "median_unbiased", "linear,"}) {
        EXPECT_THROW(parseMethods(word), UsageError) << word;
    }
}

TEST(QuantileRequest, ReadsOrders) {
    EXPECT_EQ(parseOrders("0,0.1,50%,1"), (std::vector<double>{0.0, 0.1, 0.5, 1.0}));
    for (const char* word : {"", "1.1", "-0.1", "101%", "x", "0.5x", "nan", "%"}) {
        EXPECT_THROW(parseOrders(word), UsageError) << word;
    }
}

}  // namespace
}  // namespace numcore::cli
