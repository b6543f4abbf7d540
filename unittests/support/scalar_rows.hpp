// Rows of expected values of plain scalar functions: the function's name, its arguments, the value.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "reference_table.hpp"

namespace numcore::testing {

/// A scalar function by its arguments as doubles.
class ScalarFunction {
  public:
    template <class Result, class... Arguments>
    ScalarFunction(Result (*function)(Arguments...))  // NOLINT(google-explicit-constructor): a table of names
        : call_([function](const double* a) {
              return invoke(function, a, std::index_sequence_for<Arguments...>());
          }),
          nArguments_(sizeof...(Arguments)) {}

    double operator()(const Row& row) const {
        double arguments[8] = {};
        for (std::size_t i = 0; i < nArguments_; ++i) arguments[i] = row["a" + std::to_string(i + 1)];
        return call_(arguments);
    }

  private:
    template <class Result, class... Arguments, std::size_t... I>
    static double invoke(Result (*function)(Arguments...), const double* a, std::index_sequence<I...>) {
        return static_cast<double>(function(static_cast<Arguments>(a[I])...));
    }

    std::function<double(const double*)> call_;
    std::size_t nArguments_;
};

using ScalarFunctions = std::map<std::string, ScalarFunction>;

/// Compares each row of the file (columns function, a1 to a8, expected, rel_tol, abs_tol) with the named
/// function.
inline void expectScalarRows(const std::string& file, const ScalarFunctions& functions) {
    expectTable(file, [&](const Row& row) {
        const auto found = functions.find(row.text("function"));
        if (found != functions.end()) return found->second(row);
        ADD_FAILURE() << file << ": no function " << row.text("function");
        return 0.0;
    });
}

}  // namespace numcore::testing

/// An entry of ScalarFunctions.
#define NUMCORE_SCALAR(name) \
    { #name, name }
