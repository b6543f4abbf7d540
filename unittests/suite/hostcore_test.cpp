#include "suite/hostcore.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace numcore::hostcore;

// Rows 1 and 3 of one group; counts the calls in its context.
const char16_t* twoRows(void* context, std::int32_t group, std::int32_t row) {
    ++*static_cast<int*>(context);
    if (group != 7) return nullptr;
    return row == 1 ? u"first" : row == 3 ? u"third" : nullptr;
}

TEST(Hostcore, StringsComeFromTheHost) {
    EXPECT_EQ(Cpp_GetRessourceStrings(7, 2), (std::vector<std::u16string>{u"", u""}));
    int nCalls = 0;
    setStringSource(&twoRows, &nCalls);
    EXPECT_EQ(Cpp_GetRessourceStrings(7, 4), (std::vector<std::u16string>{u"first", u"", u"third", u""}));
    EXPECT_EQ(nCalls, 4);
    EXPECT_EQ(Cpp_GetRessourceStrings(8, 1), (std::vector<std::u16string>{u""}));
    EXPECT_TRUE(Cpp_GetRessourceStrings(7, -3).empty());
    EXPECT_EQ(Cpp_GetRessourceStrings(7, std::numeric_limits<std::int32_t>::max()).size(),
              static_cast<std::size_t>(kMaxStrings));
    setStringSource(nullptr, nullptr);
    EXPECT_EQ(Cpp_GetRessourceStrings(7, 1), (std::vector<std::u16string>{u""}));
}

}  // namespace
