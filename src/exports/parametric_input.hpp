// What the doors of the parametric tests share: memory that runs short, outputs, arrays and data sets.
#pragma once

#include <cstdint>
#include <new>
#include <span>
#include <vector>

#include "exports/caller_cells.hpp"
#include "numcore/dataset.hpp"
#include "numcore/parametric_tests.h"
#include "tests/parametric/means.hpp"
#include "tests/parametric/variances.hpp"

namespace numcore::tests {

using exports::cellsAt;

/// The status of a test; -101 when memory runs short in it.
template <class Test>
std::int32_t withinMemory(const Test& test) {
    try {
        return test();
    } catch (const std::bad_alloc&) {
        return NUMCORE_TEST_NO_MEMORY;
    }
}

/// Writes to an output that may be null.
inline void put(double* out, double value) {
    if (out != nullptr) *out = value;
}

/// The record when it asks for resampling, else null.
inline ResamplingOptions* askedFor(ResamplingOptions* options) {
    return options != nullptr && isTrue(options->useResampling) ? options : nullptr;
}

/// A copy of the caller's record to work on.
class OptionsCopy {
  public:
    explicit OptionsCopy(ResamplingOptions* caller) : caller_(caller) {
        if (caller != nullptr) copy_ = *caller;
    }
    ResamplingOptions* get() { return caller_ == nullptr ? nullptr : &copy_; }
    void giveBack() const {
        if (caller_ != nullptr) *caller_ = copy_;
    }

  private:
    ResamplingOptions* caller_;
    ResamplingOptions copy_{};
};

/// Runs a test with a copy of the caller's options, which goes back whole after it.
template <class Test>
std::int32_t withCopy(ResamplingOptions* options, const Test& test) {
    OptionsCopy copy(options);
    const std::int32_t status = test(copy.get());
    if (status != NUMCORE_TEST_NO_MEMORY) copy.giveBack();
    return status;
}

/// Two samples of one length and their weights, from automation arrays.
class ArraySamples {
  public:
    ArraySamples(SAFEARRAY* x1, SAFEARRAY* x2, SAFEARRAY* weights);

    /// Observations; 0 when the lengths differ.
    std::int32_t n() const { return n_; }
    const double* first() const { return first_.data(); }
    const double* second() const { return second_.data(); }
    const double* weights() const { return hasWeights_ ? weights_.data() : nullptr; }

  private:
    matrix<double> first_;
    matrix<double> second_;
    matrix<double> weights_;
    bool hasWeights_;
    std::int32_t n_;
};

/// A table of groups and its weights, from automation arrays.
class ArrayGroups {
  public:
    ArrayGroups(SAFEARRAY* data, SAFEARRAY* weights);

    /// Rows; 0 when there are not as many weights.
    std::int32_t n() const { return n_; }
    std::int32_t nGroups() const { return data_.columns(); }
    const double* data() const { return data_.data(); }
    const double* weights() const { return hasWeights_ ? weights_.data() : nullptr; }

  private:
    matrix<double> data_;
    matrix<double> weights_;
    bool hasWeights_;
    std::int32_t n_;
};

/// Weights of n rows of a data set: 0 for marked rows; empty when all are 1.
std::vector<double> rowWeights(const cST_DataSet& data, std::span<const double> weights, std::size_t n);

/// Compact samples together with views of them.
struct Groups {
    std::vector<CompactSample> samples;
    std::vector<Sample> views;

    void reserve(std::size_t n);
    void add(CompactSample sample);
};

/// Columns of numeric table 1, counted from 1, as groups; columns that do not exist are left out.
Groups groupsOf(const cST_DataSet& data, std::span<const std::int32_t> columns);

/// The columns of an n x k table as groups.
Groups groupsOf(const double* data, std::int32_t n, std::int32_t k, std::span<const double> weights);

/// Observations split by group number: the numbers from 1 to nGroups that occur, ascending.
Groups groupsByNumber(std::span<const double> values, std::span<const std::int32_t> numbers,
                      std::span<const double> weights, std::int32_t nGroups);

/// Writes the results of a test of several groups; outputs may be null.
struct GroupsOutputs {
    double* F;
    double* critical;
    double* df1;
    double* df2;
    double* pValue;

    std::int32_t write(const GroupsTest& test) const;
};

}  // namespace numcore::tests
