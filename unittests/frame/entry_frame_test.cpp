#include "frame/entry_frame.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace {

/// Writes down when a part of a frame is built and released.
std::vector<std::string> history;

struct Tracked {
    explicit Tracked(std::string part) : name(std::move(part)) { history.push_back("+" + name); }
    ~Tracked() { history.push_back("-" + name); }
    std::string name;
};

struct TrackedResults : Tracked {
    explicit TrackedResults(const int* record) : Tracked("results"), value(record) {}
    const int* value;
};

using Frame = numcore::EntryFrame<TrackedResults, 3>;

int analysisThatThrows(Frame&) {
    throw std::runtime_error("from the analysis");
}

TEST(EntryFrame, MembersStandInTheOrderOfConstruction) {
    // Destruction is the reverse of member order, whatever ends the call.
    const Frame frame(nullptr, static_cast<const int*>(nullptr), nullptr, nullptr, nullptr);
    const auto address = [](const auto& member) { return reinterpret_cast<std::uintptr_t>(&member); };
    EXPECT_LT(address(frame.data), address(frame.results));
    EXPECT_LT(address(frame.results), address(frame.messages));
    EXPECT_LT(address(frame.messages), address(frame.text));
}

TEST(EntryFrame, ReleasesInReverseAlsoWhileAnExceptionUnwinds) {
    history.clear();
    const int record = 7;
    {
        const Tracked before("caller");
        Frame frame(nullptr, &record, nullptr, nullptr, nullptr);
        EXPECT_EQ(frame.results.value, &record);
        EXPECT_EQ(frame.finish(-3), -3);
    }
    EXPECT_EQ(history, (std::vector<std::string>{"+caller", "+results", "-results", "-caller"}));

    history.clear();
    EXPECT_THROW(
        {
            Frame frame(nullptr, &record, nullptr, nullptr, nullptr);
            analysisThatThrows(frame);
        },
        std::runtime_error);
    EXPECT_EQ(history, (std::vector<std::string>{"+results", "-results"}));
}

TEST(EntryFrame, PassesHostTextFlagAndMessages) {
    SystemInfo system{};
    QUORIXInfo host{};
    system.text = u"host text";
    host.flag = 42;
    BSTR first = SysAllocString(reinterpret_cast<const OLECHAR*>(u"first"));
    char16_t* texts[] = {reinterpret_cast<char16_t*>(first), nullptr, nullptr};
    Frame frame(nullptr, static_cast<const int*>(nullptr), texts, &system, &host);
    EXPECT_EQ(frame.text, u"host text");
    EXPECT_EQ(frame.flag, 42);
    EXPECT_EQ(frame.messages.rows(), 3);
    EXPECT_EQ(frame.messages(1), u"first");
    EXPECT_TRUE(frame.messages(2).empty());
    SysFreeString(first);

    system.text = nullptr;
    Frame empty(nullptr, static_cast<const int*>(nullptr), nullptr, &system, nullptr);
    EXPECT_TRUE(empty.text.empty());
    EXPECT_EQ(empty.flag, 0);
    EXPECT_TRUE(empty.messages(1).empty());
}

TEST(LockFamily, DoesNothing) {
    int anything = 5;
    for (const auto lock : {Cpp_Lock_ST, Cpp_Unlock_ST, Cpp_LockSafearray_ST, Cpp_LockDftResult,
                            Cpp_LockHisResult, Cpp_LockProResult}) {
        lock(nullptr);
        lock(&anything);
    }
    EXPECT_EQ(anything, 5);
}

}  // namespace
