// Reading tables from texts, for the tests of the reader.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "cli/csv/table.hpp"
#include "cli/errors.hpp"

namespace numcore::cli {

/// A file and what it holds; the texts of data are views into file.
struct ReadText {
    CsvFile file;
    CsvData data;
    std::vector<std::string> warnings;
};

inline ReadText readText(const std::string& text, const CsvOptions& options = {}, Want want = Want::kAsIs) {
    Progress progress(false);
    CsvFile file(Input::fromBytes(text), "t.csv", options);
    CsvData data = file.load(std::vector<Want>(file.names().size(), want), progress);
    std::vector<std::string> warnings = file.warnings();
    return {std::move(file), std::move(data), std::move(warnings)};
}

/// A file in the folder of temporary files that goes with its object.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string& bytes) {
        static int n = 0;
        path_ = std::filesystem::temp_directory_path() /
                ("numcore_" + std::to_string(std::random_device{}()) + "_" + std::to_string(n++) + ".csv");
        std::ofstream(path_, std::ios::binary) << bytes;
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { std::filesystem::remove(path_); }
    std::string path() const { return path_.string(); }

  private:
    std::filesystem::path path_;
};

/// The message with which reading fails; empty when it does not.
inline std::string failure(const std::string& text, const CsvOptions& options = {}) {
    try {
        readText(text, options);
    } catch (const DataError& error) {
        return error.what();
    }
    return {};
}

inline std::vector<double> numbers(const CsvColumn& column) {
    const auto cells = column.numbers.asDoubles();
    return {cells.begin(), cells.end()};
}

inline std::vector<std::string> texts(const CsvColumn& column) {
    return {column.texts.begin(), column.texts.end()};
}

}  // namespace numcore::cli
