// Summaries of columns: blocks by the lane kernels, merged pairwise in a fixed order.

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>

#include "suite/vmcore.hpp"
#include "suite/vmcore_kernels.hpp"

namespace numcore::vmcore {
namespace {

constexpr std::size_t kBlock =
    2048;  // 16 KiB of cells, twice that with weights: stays in the first-level cache
constexpr std::size_t kChunk = 32 * kBlock;    // rows that one thread takes at a time
constexpr std::size_t kParallelFrom = 131072;  // cells; below, starting threads costs more than it gains

// mean = base + step, with what the rounding of this sum loses: Knuth (1997), TAOCP 2, 4.2.2, theorem B.
void setMean(double base, double step, Summary& summary) {
    summary.mean = base + step;
    const double stepTaken = summary.mean - base;
    summary.meanLost = (base - (summary.mean - stepTaken)) + (step - stepTaken);
}

// Mean and squares of a block whose sum is not finite: scaled down so that it cannot overflow. Infinite and NaN
// cells keep their say.
void rescue(const double* cells, const double* weights, std::size_t n, Summary& summary) {
    constexpr double kScale = 0x1p-600;
    double weight = 0.0;
    double mean = 0.0;
    double squares = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const double w = weights == nullptr ? 1.0 : weights[i];
        if (IsMissingValue(cells[i]) || !(w > kWeightEpsilon)) continue;
        weight += w;
        const double x = cells[i] * kScale;
        if (!std::isfinite(x) || !std::isfinite(mean)) {
            mean += x;
            continue;
        }
        const double delta = x - mean;
        mean += delta * (w / weight);
        squares += w * delta * (x - mean);
    }
    summary.mean = mean / kScale;
    summary.meanLost = 0.0;
    summary.sumSquares =
        std::isfinite(mean) ? squares / kScale / kScale : std::numeric_limits<double>::quiet_NaN();
}

// Where to measure deviations from, when nothing better is known: the first cell used, so that a common offset
// of the cells does no harm.
double firstUsed(const double* cells, const double* weights, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        if (!IsMissingValue(cells[i]) && (weights == nullptr || weights[i] > kWeightEpsilon)) return cells[i];
    }
    return 0.0;
}

double squaresAboutMean(const BlockSums& sums) {
    return sums.squares - sums.deviations * (sums.deviations / sums.weight);
}

// True when so little cancels in squaresAboutMean that two bits are lost at most.
bool wellCentred(const BlockSums& sums) {
    return sums.squares <= 4.0 * squaresAboutMean(sums);
}

// Sums about a centre near the mean. The mean of the block before is near enough, as a rule; the cells are read
// again, from the cache, when it is not, and when there was none.
double sumCentred(const double* cells, const double* weights, std::size_t n, const double* guess,
                  BlockSums& sums) {
    const auto sumAbout = [&](double centre) { kernels().sumBlock(cells, weights, n, centre, sums); };
    double centre = guess == nullptr ? firstUsed(cells, weights, n) : *guess;
    const auto refine = [&] {
        centre += sums.deviations / sums.weight;
        if (std::isfinite(centre)) sumAbout(centre);
    };
    sumAbout(centre);
    if (sums.nUsed > 0 && (guess == nullptr || !wellCentred(sums))) refine();
    if (sums.nUsed > 0 && !wellCentred(sums)) {  // the guess was too far away to tell
        centre = firstUsed(cells, weights, n);
        sumAbout(centre);
        refine();
    }
    return centre;
}

// The largest of cells that all lie below the missing value.
double greatestBelowMarker(const double* cells, std::size_t n) {
    double greatest = -std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < n; ++i) {
        if (cells[i] < kMissing) greatest = std::max(greatest, cells[i]);
    }
    return greatest;
}

Summary summarizeBlock(const double* cells, const double* weights, std::size_t n, const double* guess) {
    BlockSums sums;
    const double centre = sumCentred(cells, weights, n, guess, sums);
    Summary summary;
    summary.nCells = static_cast<std::int64_t>(n);
    summary.nMissing = sums.nMissing;
    summary.nUsed = sums.nUsed;
    summary.weight = sums.weight;
    if (sums.minimum <= sums.maximum) {
        summary.minimum = sums.minimum;
        summary.maximum = IsMissingValue(sums.maximum) ? greatestBelowMarker(cells, n) : sums.maximum;
    }
    if (sums.nUsed == 0) return summary;
    setMean(centre, sums.deviations / sums.weight, summary);
    summary.sumSquares = std::max(squaresAboutMean(sums), 0.0);
    if (!std::isfinite(summary.mean) || !std::isfinite(sums.squares)) {
        rescue(cells, weights, n, summary);
    } else if (sums.minimum == sums.maximum) {
        summary.mean = sums.minimum;
        summary.meanLost = 0.0;
        summary.sumSquares = 0.0;
    }
    return summary;
}

Summary mergeRange(std::span<const Summary> parts) {
    if (parts.size() == 1) return parts.front();
    const std::size_t half = std::bit_ceil(parts.size()) / 2;
    return mergeSummaries(mergeRange(parts.first(half)), mergeRange(parts.subspan(half)));
}

Summary summarizeChunk(const double* cells, const double* weights, std::size_t n) {
    std::array<Summary, kChunk / kBlock> blocks;
    std::size_t nBlocks = 0;
    const double* guess = nullptr;
    for (std::size_t first = 0; first < n; first += kBlock) {
        const double* blockWeights = weights == nullptr ? nullptr : weights + first;
        Summary& block = blocks[nBlocks++];
        block = summarizeBlock(cells + first, blockWeights, std::min(kBlock, n - first), guess);
        if (block.nUsed > 0) guess = std::isfinite(block.mean) ? &block.mean : nullptr;
    }
    return mergeRange(std::span(blocks).first(nBlocks));
}

// Rows [first, first + n) of a column.
Summary summarizeRows(const ColumnView& column, std::size_t first, std::size_t n) {
    const double* cells = column.cells.data() + first;
    if (column.weights.empty()) return summarizeChunk(cells, nullptr, n);
    const std::size_t nAhead = column.weights.size() - std::min(first, column.weights.size());
    const std::size_t nWeighted = std::min(n, nAhead);
    if (nWeighted == n) return summarizeChunk(cells, column.weights.data() + first, n);
    Summary beyond = summarizeChunk(cells + nWeighted, nullptr, n - nWeighted);
    beyond.nUsed = 0;
    beyond.mean = kMissing;
    beyond.meanLost = 0.0;
    beyond.sumSquares = 0.0;
    beyond.weight = 0.0;
    if (nWeighted == 0) return beyond;
    return mergeSummaries(summarizeChunk(cells, column.weights.data() + first, nWeighted), beyond);
}

struct Chunk {
    std::size_t column;
    std::size_t firstRow;
    std::size_t nRows;
};

std::vector<Chunk> cutIntoChunks(std::span<const ColumnView> columns) {
    std::vector<Chunk> chunks;
    for (std::size_t c = 0; c < columns.size(); ++c) {
        const std::size_t nRows = columns[c].cells.size();
        for (std::size_t row = 0; row < nRows; row += kChunk)
            chunks.push_back({c, row, std::min(kChunk, nRows - row)});
    }
    return chunks;
}

double lesser(double a, double b) {
    return IsMissingValue(a) || (!IsMissingValue(b) && b < a) ? b : a;
}
double greater(double a, double b) {
    return IsMissingValue(a) || (!IsMissingValue(b) && b > a) ? b : a;
}

void mergeMoments(const Summary& a, const Summary& b, Summary& both) {
    const double weight = a.weight + b.weight;
    const double share = b.weight / weight;
    const double delta = (b.mean - a.mean) + (b.meanLost - a.meanLost);
    both.weight = weight;
    if (std::isfinite(delta)) {
        setMean(a.mean, delta * share + a.meanLost, both);
        both.sumSquares = a.sumSquares + b.sumSquares + delta * delta * (a.weight * share);
    } else if (std::isfinite(a.mean) && std::isfinite(b.mean)) {
        both.mean = a.mean * (a.weight / weight) + b.mean * share;
        both.sumSquares = std::numeric_limits<double>::infinity();
    } else {
        both.mean = a.mean + b.mean;
        both.sumSquares = std::numeric_limits<double>::quiet_NaN();
    }
}

}  // namespace

Summary mergeSummaries(const Summary& a, const Summary& b) {
    Summary both;
    if (a.nUsed == 0 || b.nUsed == 0) {
        both = a.nUsed == 0 ? b : a;
    } else {
        mergeMoments(a, b, both);
    }
    both.nCells = a.nCells + b.nCells;
    both.nMissing = a.nMissing + b.nMissing;
    both.nUsed = a.nUsed + b.nUsed;
    both.minimum = lesser(a.minimum, b.minimum);
    both.maximum = greater(a.maximum, b.maximum);
    return both;
}

Summary summarize(std::span<const double> cells, std::span<const double> weights) {
    const ColumnView column{cells, weights};
    std::vector<Summary> parts;
    for (const Chunk& chunk : cutIntoChunks({&column, 1})) {
        parts.push_back(summarizeRows(column, chunk.firstRow, chunk.nRows));
    }
    return parts.empty() ? Summary{} : mergeRange(parts);
}

void summarizeColumns(std::span<const ColumnView> columns, std::span<Summary> out) {
    columns = columns.first(std::min(columns.size(), out.size()));
    const std::vector<Chunk> chunks = cutIntoChunks(columns);
    std::vector<Summary> parts(chunks.size());
    std::size_t nCells = 0;
    for (const ColumnView& column : columns) nCells += column.cells.size();

    const auto nChunks = static_cast<std::int64_t>(chunks.size());
#pragma omp parallel for schedule(static) if (nCells >= kParallelFrom)
    for (std::int64_t i = 0; i < nChunks; ++i) {
        const auto k = static_cast<std::size_t>(i);
        parts[k] = summarizeRows(columns[chunks[k].column], chunks[k].firstRow, chunks[k].nRows);
    }

    std::size_t first = 0;
    for (std::size_t c = 0; c < columns.size(); ++c) {
        const std::size_t n = (columns[c].cells.size() + kChunk - 1) / kChunk;
        out[c] = n == 0 ? Summary{} : mergeRange(std::span(parts).subspan(first, n));
        first += n;
    }
}

double variance(const Summary& summary) {
    if (summary.nUsed == 0) return kMissing;
    if (summary.nUsed == 1) return std::isnan(summary.sumSquares) ? summary.sumSquares : 0.0;
    return summary.weight > 1.0 ? summary.sumSquares / (summary.weight - 1.0) : kMissing;
}

}  // namespace numcore::vmcore
