// What the engine's sides of the comparisons share: reading a file of raw doubles, timing, printing a line of
// JSON.
#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <vector>

#include "numcore/markers.hpp"

namespace numcore::benchmarks {

/// NaN becomes the library's missing value.
inline std::vector<double> readCells(const char* path) {
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    std::vector<double> cells(static_cast<std::size_t>(in.tellg()) / sizeof(double));
    in.seekg(0);
    in.read(reinterpret_cast<char*>(cells.data()), static_cast<std::streamsize>(cells.size() * sizeof(double)));
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", path);
        std::exit(1);
    }
    std::ranges::replace_if(
        cells, [](double cell) { return std::isnan(cell); }, kMissing);
    return cells;
}

inline std::vector<double> timeWork(int repetitions, const std::function<void()>& work) {
    std::vector<double> seconds;
    for (int i = 0; i < repetitions; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        seconds.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    return seconds;
}

inline void printList(const char* name, const std::vector<double>& values) {
    std::printf("\"%s\": [", name);
    for (std::size_t i = 0; i < values.size(); ++i) std::printf("%s%.17g", i == 0 ? "" : ", ", values[i]);
    std::printf("]");
}

inline void printLine(const std::vector<double>& seconds, const std::vector<double>& result) {
    std::printf("{");
    printList("seconds", seconds);
    std::printf(", ");
    printList("result", result);
    std::printf("}\n");
}

}  // namespace numcore::benchmarks
