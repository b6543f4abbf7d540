// Every door, with each of its allocations failing in turn: the exception leaves the door, nothing leaks, and
// the caller's arrays stay usable.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <new>
#include <vector>

#include "numcore/bayesian_network.hpp"
#include "numcore/numcore.h"

namespace {

std::atomic<long> allocationsLeft{-1};  // -1: none fails
std::atomic<long> liveAllocations{0};

// Not inlined: the compiler would see malloc behind new and free behind delete, and warn.
[[gnu::noinline]] void* allocateCounted(std::size_t size) noexcept {
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (memory != nullptr) ++liveAllocations;
    return memory;
}

bool failsNow() {
    if (allocationsLeft < 0 || allocationsLeft-- != 0) return false;
    allocationsLeft = -1;
    return true;
}

[[gnu::noinline]] void releaseCounted(void* memory) {
    if (memory == nullptr) return;
    --liveAllocations;
    std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) {
    if (!failsNow()) {
        if (void* memory = allocateCounted(size)) return memory;
    }
    throw std::bad_alloc();
}
// Those who ask for no exception have another way when memory is short, so failing here proves nothing.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocateCounted(size);
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocateCounted(size);
}
void operator delete(void* memory) noexcept {
    releaseCounted(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    releaseCounted(memory);
}
void operator delete[](void* memory) noexcept {
    releaseCounted(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    releaseCounted(memory);
}

namespace {

/// Arrays of a small data set, made by hand as a foreign caller would.
class Caller {
  public:
    Caller() {
        data_.numeric1Present.value = NUMCORE_TRUE;
        data_.numeric1 = numbers({{3.0, 1.0, NUMCORE_MISSING, 2.0}, {4.0, 4.0, 5.0, 6.0}});
        data_.strings1Present.value = NUMCORE_TRUE;
        data_.strings1 = texts({{u"a", u"b", u"a", nullptr}, {u"r1", u"r1", u"r2", u"r2"}});
        data_.strings3Present = NUMCORE_TRUE;
        data_.strings3 = texts({{u"x", u"y", nullptr, u"x"}});
        data_.weightsPresent = NUMCORE_TRUE;
        data_.weights = doubles({1.0, 2.0, 1.0, 0.5});
        data_.nRows = 4;
        out_.numeric1 = numbers({std::vector<double>(8), std::vector<double>(8), std::vector<double>(8)});
        out_.strings1 = texts({std::vector<const char16_t*>(8), std::vector<const char16_t*>(8)});
        out_.weights = doubles(std::vector<double>(8));
        info_.nCategories = ints({0, 0});
        info_.labels = texts({{nullptr, nullptr, nullptr}, {nullptr, nullptr, nullptr}});
        info_.counts = numbers({{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}});
        info_.frequencies = numbers({{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}});
        SAFEARRAYBOUND bounds[] = {{2, 1}, {7, 1}};
        stats_.table = keep(SafeArrayCreate(VT_R8, 2, bounds));
        stats_.labels = keep(SafeArrayCreateVector(VT_BSTR, 1, 2));
        makeNetwork();
    }
    ~Caller() {
        for (SAFEARRAY* array : arrays_) SafeArrayDestroy(array);
    }
    Caller(const Caller&) = delete;
    Caller& operator=(const Caller&) = delete;

    ST_DataSet data_{};
    ST_DataSet out_{};
    ST_QualiInfo info_{};
    ST_DescStats stats_{};
    /// Nodes 1 and 2 are the parents of 3, 3 is that of 4, and 4 was seen; P(1 | 4) is asked for.
    ST_DataSet keys_{};
    BYN_Param network_{};
    BYN_Results answers_{};

  private:
    void makeNetwork() {
        keys_.strings1Present.value = NUMCORE_TRUE;
        keys_.strings1 = texts({{u"NODE1", u"NODE2", u"NODE3", u"NODE4"}});
        network_.n = 4;
        network_.nQueries = 1;
        network_.sizes = ints({2, 2, 2, 2});
        network_.observed = ints({0, 0, 0, 1});
        network_.tables = doubles({.5, .5, .2, .8, .1, .9, .2, .8, .3, .7, .4, .6, .9, .1, .6, .4});
        SAFEARRAYBOUND bounds[] = {{2, 1}, {4, 1}};
        network_.parents = keep(SafeArrayCreate(VT_R8, 2, bounds));
        const double parents[] = {0.0, 0.0, 0.0, 0.0, 1.0, 2.0, 3.0, 0.0};
        std::ranges::copy(parents, static_cast<double*>(network_.parents->pvData));
        SAFEARRAYBOUND cube[] = {{1, 1}, {1, 1}, {2, 1}};
        network_.queries = keep(SafeArrayCreate(VT_R8, 3, cube));
        const double query[] = {1.0, 4.0};
        std::ranges::copy(query, static_cast<double*>(network_.queries->pvData));
        for (SAFEARRAY** texts : {&answers_.headers, &answers_.marginalTitles, &answers_.stateLabels,
                                  &answers_.familyLabels, &answers_.jointLabels, &answers_.queryLabels})
            *texts = strings(std::vector<const char16_t*>(16));
        for (SAFEARRAY** cells : {&answers_.marginals, &answers_.conditionals, &answers_.familyJoints,
                                  &answers_.joints, &answers_.queryTables, &answers_.forecast.cliqueCells})
            *cells = doubles(std::vector<double>(16));
        for (SAFEARRAY** numbers : {&answers_.order, &answers_.cliqueSizes, &answers_.cliqueMembers})
            *numbers = ints(std::vector<std::int32_t>(8));
    }
    SAFEARRAY* keep(SAFEARRAY* array) {
        arrays_.push_back(array);
        return array;
    }
    SAFEARRAY* doubles(const std::vector<double>& values) {
        SAFEARRAY* array = keep(SafeArrayCreateVector(VT_R8, 1, static_cast<std::uint32_t>(values.size())));
        std::copy(values.begin(), values.end(), static_cast<double*>(array->pvData));
        return array;
    }
    SAFEARRAY* ints(const std::vector<std::int32_t>& values) {
        SAFEARRAY* array = keep(SafeArrayCreateVector(VT_I4, 1, static_cast<std::uint32_t>(values.size())));
        std::copy(values.begin(), values.end(), static_cast<std::int32_t*>(array->pvData));
        return array;
    }
    SAFEARRAY* strings(const std::vector<const char16_t*>& values) {
        SAFEARRAY* array = keep(SafeArrayCreateVector(VT_BSTR, 1, static_cast<std::uint32_t>(values.size())));
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (values[i] == nullptr) continue;
            static_cast<BSTR*>(array->pvData)[i] = SysAllocString(reinterpret_cast<const OLECHAR*>(values[i]));
        }
        return array;
    }
    template <class Record>
    Record columnSet(const std::vector<SAFEARRAY*>& columns, std::int32_t nRows) {
        SAFEARRAY* records = nullptr;
        SafeArrayAllocDescriptor(1, &records);
        records->cbElements = sizeof(ST_Column);
        records->rgsabound[0].cElements = static_cast<std::uint32_t>(columns.size());
        SafeArrayAllocData(keep(records));
        for (std::size_t c = 0; c < columns.size(); ++c)
            static_cast<ST_Column*>(records->pvData)[c].cells = columns[c];
        Record record{};
        record.nColumns = static_cast<std::int32_t>(columns.size());
        record.nRows = record.nCells = nRows;
        record.columns = records;
        record.labels = strings(std::vector<const char16_t*>(columns.size(), u"name"));
        return record;
    }
    ST_MVectDbl numbers(const std::vector<std::vector<double>>& columns) {
        std::vector<SAFEARRAY*> cells;
        cells.reserve(columns.size());
        for (const auto& column : columns) cells.push_back(doubles(column));
        return columnSet<ST_MVectDbl>(cells, static_cast<std::int32_t>(columns[0].size()));
    }
    ST_MVectStr texts(const std::vector<std::vector<const char16_t*>>& columns) {
        std::vector<SAFEARRAY*> cells;
        cells.reserve(columns.size());
        for (const auto& column : columns) cells.push_back(strings(column));
        return columnSet<ST_MVectStr>(cells, static_cast<std::int32_t>(columns[0].size()));
    }

    std::vector<SAFEARRAY*> arrays_;
};

struct NamedDoor {
    const char* name;
    std::function<void(Caller&)> call;
};

void PrintTo(const NamedDoor& door, std::ostream* out) {
    *out << door.name;
}

class AllocationFailures : public ::testing::TestWithParam<NamedDoor> {};

TEST_P(AllocationFailures, LeaveTheDoorCleanly) {
    Caller caller;
    GetParam().call(caller);  // the run time allocates what it keeps for each thread once
    constexpr int kMaxAllocations = 5000;
    int iFailing = 0;
    for (; iFailing < kMaxAllocations; ++iFailing) {
        const long liveBefore = liveAllocations;
        allocationsLeft = iFailing;
        bool threw = false;
        try {
            GetParam().call(caller);
        } catch (const std::bad_alloc&) {
            threw = true;
        }
        const bool reached = allocationsLeft < 0;
        allocationsLeft = -1;
        ASSERT_EQ(liveAllocations, liveBefore) << "allocation " << iFailing << " failed and something leaked";
        if (!reached) break;
        ASSERT_TRUE(threw) << "the failure of allocation " << iFailing << " was swallowed";
    }
    EXPECT_GT(iFailing, 0);
    EXPECT_LT(iFailing, kMaxAllocations);
}

double kHalf = 0.5;

INSTANTIATE_TEST_SUITE_P(
    Doors, AllocationFailures,
    ::testing::Values(
        NamedDoor{"GetDescriptive", [](Caller& c) { Cpp_GetDescriptive_ST(&c.data_, 0, &c.stats_, nullptr); }},
        NamedDoor{"GetQualiDataInfo", [](Caller& c) { Cpp_GetQualiDataInfo_ST(&c.data_, &c.info_); }},
        NamedDoor{"ComputeQualiStats",
                  [](Caller& c) { Cpp_ComputeQualiStats_ST(&c.data_.quali, &c.data_.formats, &c.out_); }},
        NamedDoor{"Duplicate", [](Caller& c) { Cpp_Duplicate_STDataset(&c.data_, &c.out_, -1, 1, 1, 4); }},
        NamedDoor{"SortByGroup", [](Caller& c) { Cpp_SortSTDataSetByGroup_ST(&c.data_, 1); }},
        NamedDoor{"WideToLong", [](Caller& c) { Cpp_ReStructureData(&c.data_, &c.out_, 0); }},
        NamedDoor{"LongToWide", [](Caller& c) { Cpp_ReStructureData(&c.data_, &c.out_, 1); }},
        NamedDoor{"Univariate", [](Caller& c) { Cpp_UNI_Compute_Stats(&c.data_, 5, c.stats_.table, nullptr); }},
        NamedDoor{
            "QuantileTable",
            [](Caller& c) { Cpp_GetQuantileTable(&c.data_, &kHalf, 1, nullptr, c.stats_.table, nullptr); }},
        NamedDoor{"StatsByGroup",
                  [](Caller& c) {
                      Cpp_GetStatsAndRestructure2_ST(&c.data_, 1, 0, &c.out_, nullptr, nullptr, nullptr);
                  }},
        NamedDoor{"NetworkCheck",
                  [](Caller& c) { Cpp_BYNRun_DAG_ST(&c.keys_, &c.network_, &c.answers_, nullptr, nullptr); }},
        NamedDoor{"NetworkForecast",
                  [](Caller& c) { Cpp_BYNRun_Forecast_ST(&c.keys_, &c.network_, &c.answers_.forecast); }},
        NamedDoor{"NetworkCompute",
                  [](Caller& c) {
                      c.answers_.status = NUMCORE_BYN_NO_DATA;
                      Cpp_BYNRun_Compute_ST(&c.keys_, &c.network_, &c.answers_, nullptr, nullptr);
                      ASSERT_EQ(c.answers_.status, NUMCORE_BYN_DONE);
                  }},
        NamedDoor{"NetworkTree",
                  [](Caller& c) {
                      const numcore::cST_DataSet keys(&c.keys_);
                      const numcore::cBYN_Param network(&c.network_);
                      numcore::cBYN_Table out[8];
                      BYNRun_dag_Compute_ST(4, network.parents, *keys.strings1, out[0]);
                      BYNRun_jtree_inf_Compute_ST(4, out[0], network.parents, *keys.strings1, network.sizes,
                                                  out[1], out[2], out[3], out[4], out[5], out[6], out[7]);
                      numcore::cBYN_Potentials potentials;
                      numcore::matrix<std::int32_t> lengths;
                      BYNRun_Init_pot_ST(4, 2, network.sizes, out[2], potentials, lengths);
                  }}),
    [](const auto& param) { return std::string(param.param.name); });

// The tests of means and variances catch what fails and say so by their status; outputs stay as they were.
struct ParametricDoor {
    const char* name;
    std::function<std::int32_t(Caller&, ResamplingOptions&, double&)> call;
};

void PrintTo(const ParametricDoor& door, std::ostream* out) {
    *out << door.name;
}

class ParametricAllocationFailures : public ::testing::TestWithParam<ParametricDoor> {};

TEST_P(ParametricAllocationFailures, AreTheStatus) {
    Caller caller;
    ResamplingOptions options{};
    options.useResampling = NUMCORE_TRUE;
    options.seedGiven = NUMCORE_TRUE;
    options.nResamples = 20;
    options.maxArrangements = -1;
    const ResamplingOptions untouched = options;
    double out = 0.0;
    ASSERT_EQ(GetParam().call(caller, options, out), 0);
    constexpr int kMaxAllocations = 5000;
    int iFailing = 0;
    for (; iFailing < kMaxAllocations; ++iFailing) {
        options = untouched;
        out = 123.5;
        const long liveBefore = liveAllocations;
        allocationsLeft = iFailing;
        const std::int32_t status = GetParam().call(caller, options, out);
        const bool reached = allocationsLeft < 0;
        allocationsLeft = -1;
        ASSERT_EQ(liveAllocations, liveBefore) << "allocation " << iFailing << " failed and something leaked";
        if (!reached) break;
        ASSERT_EQ(status, -101) << "allocation " << iFailing;
        ASSERT_EQ(out, 123.5);
        ASSERT_EQ(options.nUsed, 0);
    }
    EXPECT_GT(iFailing, 0);
    EXPECT_LT(iFailing, kMaxAllocations);
}

const double kX[] = {3.0, 1.0, 4.0, 1.5, 5.0};
const double kY[] = {9.0, 2.0, 6.0, 5.5, 3.0};
const std::int32_t kGroups[] = {1, 2, 1, 2, 1};

INSTANTIATE_TEST_SUITE_P(
    Doors, ParametricAllocationFailures,
    ::testing::Values(ParametricDoor{"TZCompute",
                                     [](Caller& c, ResamplingOptions& options, double& out) {
                                         ST_TZParam param{};
                                         param.test = NUMCORE_MEAN_T;
                                         param.design = NUMCORE_MEAN_ONE_SAMPLE;
                                         param.alpha = 0.05;
                                         param.resampling = &options;
                                         ST_TZResults results{};
                                         results.nTests = -1;
                                         const std::int32_t status = Cpp_TZ_Compute(&c.data_, &param, &results);
                                         if (results.nTests >= 0) out = results.nTests;
                                         return status;
                                     }},
                      ParametricDoor{"TTest",
                                     [](Caller&, ResamplingOptions& options, double& out) {
                                         return Cpp_TTest2SamplesNew(kX, 5, kY, 5, nullptr, nullptr, 0, 0.05, 0,
                                                                     -1, 0, 0, &options, nullptr, nullptr,
                                                                     nullptr, nullptr, &out, nullptr, nullptr,
                                                                     nullptr);
                                     }},
                      ParametricDoor{"ZTestPaired",
                                     [](Caller&, ResamplingOptions& options, double& out) {
                                         return Cpp_ZTest2SamplesNew(kX, 5, kY, 5, kX, nullptr, 0, 0, 0, 0,
                                                                     0.05, 0, -1, &options, nullptr, nullptr,
                                                                     nullptr, &out, nullptr, nullptr, nullptr);
                                     }},
                      ParametricDoor{"FTest",
                                     [](Caller&, ResamplingOptions& options, double& out) {
                                         return Cpp_FTest2SamplesNew(kX, 5, kY, 5, nullptr, nullptr, 1, 0.05, 0,
                                                                     0, &options, nullptr, nullptr, nullptr,
                                                                     nullptr, nullptr, &out, nullptr, nullptr);
                                     }},
                      ParametricDoor{"Bartlett",
                                     [](Caller& c, ResamplingOptions& options, double& out) {
                                         return Cpp_BTestKSamplesNew(&c.data_, 1, 2, 0.05, &options, nullptr,
                                                                     nullptr, nullptr, &out);
                                     }},
                      ParametricDoor{"Levene",
                                     [](Caller& c, ResamplingOptions& options, double& out) {
                                         return Cpp_LTestKSamplesNew(&c.data_, 1, 2, 0.05, -1, &options,
                                                                     nullptr, nullptr, nullptr, nullptr, &out);
                                     }},
                      ParametricDoor{"WelchAnova",
                                     [](Caller&, ResamplingOptions& options, double& out) {
                                         return ComputeWelchANOVA(kX, kGroups, nullptr, 5, 2, 0.05, &options,
                                                                  nullptr, nullptr, nullptr, nullptr, &out);
                                     }},
                      ParametricDoor{"Proportions",
                                     [](Caller&, ResamplingOptions&, double& out) {
                                         return Test2ProportionsMonte(25, 30, 0.5, 0.4, 0, 0, 100, nullptr, -1,
                                                                      nullptr, &out, nullptr, nullptr);
                                     }}),
    [](const auto& param) { return std::string(param.param.name); });

}  // namespace
