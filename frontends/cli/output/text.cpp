#include <algorithm>
#include <cstddef>

#include "cli/errors.hpp"
#include "cli/output/writers.hpp"

namespace numcore::cli {

namespace {

constexpr const char* kMissingSign = ".";
constexpr int kGap = 2;

/// A column ready to print: every line as wide as the column.
struct Block {
    std::string header;
    std::vector<std::string> lines;
    int width = 0;
};

std::string spaces(int n) {
    return std::string(static_cast<std::size_t>(std::max(n, 0)), ' ');
}

/// Length of a number's text up to its decimal point, exponent or mark.
std::size_t wholeLength(const std::string& number) {
    const std::size_t at = number.find_first_of(".e*");
    // ".", "inf" and "nan" stand with their last character over the units.
    return at == std::string::npos || at == 0 ? number.size() : at;
}

/// Numbers aligned at the decimal point, the header at the right.
Block numberBlock(const std::string& header, const std::vector<std::string>& cells) {
    std::size_t whole = 0;
    std::size_t fraction = 0;
    for (const std::string& cell : cells) {
        whole = std::max(whole, wholeLength(cell));
        fraction = std::max(fraction, cell.size() - wholeLength(cell));
    }
    Block block{header, {}, std::max(static_cast<int>(whole + fraction), displayWidth(header))};
    const int lead = block.width - static_cast<int>(whole + fraction);
    for (const std::string& cell : cells) {
        const int before = lead + static_cast<int>(whole - wholeLength(cell));
        block.lines.push_back(spaces(before) + cell +
                              spaces(static_cast<int>(fraction - (cell.size() - wholeLength(cell)))));
    }
    block.header = spaces(block.width - displayWidth(header)) + header;
    return block;
}

Block textBlock(const std::string& header, const std::vector<std::string>& cells) {
    Block block{header, {}, displayWidth(header)};
    for (const std::string& cell : cells) block.width = std::max(block.width, displayWidth(cell));
    for (const std::string& cell : cells)
        block.lines.push_back(cell + spaces(block.width - displayWidth(cell)));
    block.header += spaces(block.width - displayWidth(header));
    return block;
}

/// Texts of a column; a key that repeats the one above, with all keys before it, is left empty.
std::vector<std::string> cellTexts(const ReportTable& table, std::size_t j, const TextStyle& style) {
    std::vector<std::string> texts;
    const std::vector<Cell>* above = nullptr;
    for (const auto& row : table.rows) {
        const bool key = j < table.nKeys;
        const auto end = static_cast<std::ptrdiff_t>(j + 1);
        const bool repeats =
            key && above != nullptr && std::equal(row.begin(), row.begin() + end, above->begin());
        if (repeats) {
            texts.emplace_back();
        } else if (std::holds_alternative<std::monostate>(row[j])) {
            texts.emplace_back(kMissingSign);
        } else {
            texts.push_back(printable(readableCell(row[j], table.columns[j].kind, style)));
        }
        above = &row;
    }
    return texts;
}

std::vector<Block> makeBlocks(const ReportTable& table, const TextStyle& style) {
    std::vector<Block> blocks;
    for (std::size_t j = 0; j < table.columns.size(); ++j) {
        const ReportColumn& column = table.columns[j];
        const auto texts = cellTexts(table, j, style);
        const std::string title = printable(column.title);
        blocks.push_back(column.kind == ColumnKind::kText ? textBlock(title, texts)
                                                          : numberBlock(title, texts));
    }
    return blocks;
}

std::string joined(std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

void appendPanel(const std::vector<const Block*>& blocks, std::size_t nRows, std::string& out) {
    std::string header;
    int width = 0;
    for (const Block* block : blocks) {
        if (!header.empty()) header += spaces(kGap);
        header += block->header;
        width += block->width + kGap;
    }
    out += joined(header);
    out += std::string(static_cast<std::size_t>(std::max(width - kGap, 0)), '-') + "\n";
    for (std::size_t i = 0; i < nRows; ++i) {
        std::string line;
        for (const Block* block : blocks) line += (block == blocks[0] ? "" : spaces(kGap)) + block->lines[i];
        out += joined(line);
    }
}

/// The columns of each panel: the keys, then as many others as fit the page, one at least.
std::vector<std::vector<const Block*>> makePanels(const std::vector<Block>& blocks, std::size_t nKeys,
                                                  int pageWidth) {
    std::vector<const Block*> keys;
    int keyWidth = -kGap;
    for (std::size_t j = 0; j < nKeys; ++j) {
        keys.push_back(&blocks[j]);
        keyWidth += blocks[j].width + kGap;
    }
    std::vector<std::vector<const Block*>> panels{keys};
    int width = keyWidth;
    for (std::size_t j = nKeys; j < blocks.size(); ++j) {
        const bool full = pageWidth > 0 && width + kGap + blocks[j].width > pageWidth;
        if (full && panels.back().size() > nKeys) {
            panels.push_back(keys);
            width = keyWidth;
        }
        panels.back().push_back(&blocks[j]);
        width += kGap + blocks[j].width;
    }
    return panels;
}

}  // namespace

std::string writeText(const Report& report, const TextStyle& style) {
    std::string out = titleLine(report) + "\n";
    for (const ReportTable& table : report.tables) {
        if (table.detail) continue;
        out += "\n" + table.title + "\n";
        const std::vector<Block> blocks = makeBlocks(table, style);
        bool first = true;
        for (const auto& panel : makePanels(blocks, table.nKeys, style.width)) {
            if (!first) out += "\n";
            first = false;
            appendPanel(panel, table.rows.size(), out);
        }
    }
    std::vector<std::string> lines = footerLines(report);
    const std::string legend = missingLegend(report, kMissingSign);
    if (!legend.empty()) lines.insert(lines.begin(), legend);
    if (!lines.empty()) out += "\n";
    for (const std::string& line : lines) out += line + "\n";
    return out;
}

}  // namespace numcore::cli
