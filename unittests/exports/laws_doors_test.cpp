// The doors of the probability laws through the shared library: texts and arrays of a caller, null pointers,
// counts that no caller means.

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "caller/forms.hpp"
#include "numcore/numcore.h"

namespace {

using numcore::caller::Messages;

constexpr std::int32_t kCounts[] = {-1, 0, std::numeric_limits<std::int32_t>::min()};

TEST(GetDistCodeNParam, ReadsTheCallersNames) {
    Messages messages(6500);
    messages.set(371, u"Negative binomial");
    messages.set(289, u"Normal (Standard)");
    std::int32_t code = -5;
    std::int32_t nParameters = -5;
    Cpp_GetDistCodeNParam(u"Negative binomial1", messages.data(), &code, &nParameters);
    EXPECT_EQ(code, 2);
    EXPECT_EQ(nParameters, 3) << "announced with the name; the functions read two";
    Cpp_GetDistCodeNParam(u"Normal (Standard)", messages.data(), &code, &nParameters);
    EXPECT_EQ(code, 15);
    EXPECT_EQ(nParameters, 0);
}

TEST(GetDistCodeNParam, LeavesOutputsAloneWithoutAMatch) {
    Messages messages(6500);
    messages.set(360, u"Beta");
    std::int32_t code = -5;
    std::int32_t nParameters = -5;
    for (const char16_t* name : {u"beta", u"Beta1", u"", static_cast<const char16_t*>(nullptr)})
        Cpp_GetDistCodeNParam(name, messages.data(), &code, &nParameters);
    Cpp_GetDistCodeNParam(u"Beta", nullptr, &code, &nParameters);
    EXPECT_EQ(code, -5);
    EXPECT_EQ(nParameters, -5);
    Cpp_GetDistCodeNParam(u"Beta", messages.data(), nullptr, &nParameters);
    EXPECT_EQ(nParameters, 2);
    Cpp_GetDistCodeNParam(u"Beta4", messages.data(), &code, nullptr);
    EXPECT_EQ(code, 29);
}

TEST(CheckDistribConstraints, AnswersWithoutDataOrLaw) {
    const double data[] = {1.0, 2.0};
    ST_DistribSettings settings{17, 1, nullptr};
    ST_DistribCheck found{};
    EXPECT_EQ(Cpp_CheckDistribConstraints2(nullptr, data, 2, nullptr, &found), NUMCORE_FALSE);
    EXPECT_EQ(found.rule, -1);
    EXPECT_EQ(Cpp_CheckDistribConstraints2(&settings, nullptr, 2, nullptr, &found), NUMCORE_FALSE);
    EXPECT_EQ(found.rule, -1);
    EXPECT_EQ(Cpp_CheckDistribConstraints2(&settings, data, 2, nullptr, nullptr), NUMCORE_TRUE);
    for (const std::int32_t n : kCounts) {
        EXPECT_EQ(Cpp_CheckDistribConstraints2(&settings, nullptr, n, nullptr, &found), NUMCORE_TRUE) << n;
        const ST_DistribSettings noColumns{17, n, nullptr};
        EXPECT_EQ(Cpp_CheckDistribConstraints2(&noColumns, nullptr, 2, nullptr, &found), NUMCORE_TRUE) << n;
    }
    settings.code = 33;
    EXPECT_EQ(Cpp_CheckDistribConstraints2(&settings, data, 2, nullptr, &found), NUMCORE_FALSE);
    EXPECT_EQ(found.rule, -1);
}

TEST(EmpiricalDoors, AnswerNullPointersAndAbsurdCounts) {
    const double values[] = {1.0};
    double table[] = {-7.0, -7.0, -7.0, -7.0};
    std::int32_t nRows = -5;
    VB_BuildCDFEmpirical(nullptr, 1, nullptr, NUMCORE_TRUE, table, &nRows);
    EXPECT_EQ(nRows, 0);
    nRows = -5;
    VB_BuildCDFEmpirical(values, 1, nullptr, NUMCORE_TRUE, nullptr, &nRows);
    EXPECT_EQ(nRows, 0);
    VB_BuildCDFEmpirical(values, 1, nullptr, NUMCORE_TRUE, table, nullptr);
    for (const std::int32_t n : kCounts) {
        nRows = -5;
        VB_BuildCDFEmpirical(values, n, values, NUMCORE_TRUE, table, &nRows);
        EXPECT_EQ(nRows, 0) << n;
        EXPECT_EQ(VB_InvCDFEmpirical(0.5, table, n), 0.0) << n;
        EXPECT_EQ(Cpp_GetProbaVal(0.5, table, n), NUMCORE_MISSING) << n;
    }
    EXPECT_EQ(table[0], -7.0) << "left alone";
    EXPECT_EQ(VB_InvCDFEmpirical(0.5, nullptr, 4), 0.0);
    EXPECT_EQ(Cpp_GetProbaVal(0.5, nullptr, 4), NUMCORE_MISSING);
    EXPECT_EQ(Cpp_InvCDFUniformWDisc(0.5, nullptr, 4, 1.0, 4.0), 0.0);
    EXPECT_EQ(Cpp_InvCDFUniformWDisc(0.5, values, 1, 3.0, 5.0), 3.0);
    VB_BuildCDFEmpirical(values, 1, nullptr, NUMCORE_TRUE, table, &nRows);
    EXPECT_EQ(nRows, 2);
    EXPECT_EQ(VB_InvCDFEmpirical(0.5, table, nRows), 1.0);
    EXPECT_EQ(Cpp_GetProbaVal(0.5, table, nRows), 0.0);
}

}  // namespace
