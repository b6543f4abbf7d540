// Distance matrices from files.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/options.hpp"
#include "cli/report.hpp"

namespace numcore::cli {

/// A symmetric matrix, column after column. A distance that is not there is NUMCORE_MISSING.
struct Distances {
    std::string file;                // for messages
    std::vector<std::string> names;  // of the objects; empty when the file has none
    std::vector<double> cells;
    std::size_t nObjects = 0;
    std::size_t nMissing = 0;  // pairs without a distance

    double& at(std::size_t i, std::size_t j) { return cells[j * nObjects + i]; }
    double at(std::size_t i, std::size_t j) const { return cells[j * nObjects + i]; }
};

/// Reads a square table of numbers; its first column may hold names. Half a matrix is completed by its mirror
/// image. Throws DataError for what is not square, not symmetric, or holds texts.
Distances readDistances(const std::string& path, const Options& options, Report& report);

/// Puts a matrix into the order of the first one when both have names. Tells whether anything moved. Throws
/// DataError when they have not the same objects.
bool matchObjects(const Distances& first, Distances& other);

}  // namespace numcore::cli
