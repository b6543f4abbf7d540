// Any bytes as a file of separated values, under options that the first byte chooses: the reader must either
// give columns of one length or say what is wrong with the file.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "cli/csv/table.hpp"
#include "cli/errors.hpp"

namespace {

using namespace numcore::cli;

CsvOptions optionsFrom(unsigned choice) {
    CsvOptions options;
    options.header = (choice & 1U) == 0;
    options.fillRagged = (choice & 2U) != 0;
    options.skip = (choice >> 2) & 1U;
    if ((choice & 8U) != 0) options.separator = ';';
    if ((choice & 16U) != 0) options.decimalMark = ',';
    if ((choice & 32U) != 0) options.quote = '\'';
    if ((choice & 64U) != 0) options.missingWords = {"-1", "x"};
    if ((choice & 128U) != 0) options.encoding = (choice & 1U) != 0 ? Encoding::kUtf16Le : Encoding::kLatin1;
    return options;
}

void require(bool condition) {
    if (!condition) std::abort();
}

/// Reads every cell once, so that a view of what is gone shows.
void checkColumn(const CsvColumn& column, std::size_t nRows, std::string_view text) {
    if (column.kind == Target::kNumbers) {
        require(column.numbers.size() == nRows);
    } else if (column.kind == Target::kTexts) {
        require(column.texts.size() == nRows);
        std::size_t nBytes = 0;
        for (const std::string_view cell : column.texts)
            nBytes += static_cast<std::size_t>(std::ranges::count(cell, 'a'));
        require(nBytes <= text.size());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string bytes(data + 1, data + size);
    try {
        Progress progress(false);
        CsvFile file(Input::fromBytes(bytes), "input", optionsFrom(data[0]));
        const CsvData table = file.load(std::vector<Want>(file.names().size(), Want::kAsIs), progress);
        require(table.columns.size() == file.names().size());
        require(file.lineOfRow(table.nRows - 1) >= 1);
        for (const CsvColumn& column : table.columns) checkColumn(column, table.nRows, file.input().text());
    } catch (const DataError&) {
    }
    return 0;
}
