// Columns packed for the kernels, a block of rows at a time, in three forms: complete columns, columns with
// missing cells, and columns that miss few.
#pragma once

#include <cstdint>
#include <vector>

#include "correlation/cross_sums.hpp"
#include "correlation/kernels.hpp"

namespace numcore::correlation {

/// A panel of columns with another one, or with itself on the diagonal.
struct PanelPair {
    std::size_t first, nFirst;
    std::size_t second, nSecond;
    bool diagonal;

    std::size_t nPairs() const { return nFirst * nSecond; }
};

class AlignedCells {
  public:
    explicit AlignedCells(std::size_t n) : lines_((n + 7) / 8) {}
    double* data() { return lines_.front().cells; }
    const double* data() const { return lines_.front().cells; }

  private:
    struct alignas(64) Line {
        double cells[8];
    };
    std::vector<Line> lines_;
};

/// Rows [row, row + n) of some columns.
struct Block {
    std::span<const CentredColumn> columns;
    std::size_t row, n;
    const double* weights;  ///< of these rows; null = 1
    bool isFirst;           ///< of the two panels; its values are multiplied by the weights
};

class CompletePanel {
  public:
    static constexpr std::size_t kColumns = 64;
    static std::size_t nSums(const PanelPair& pair) { return pair.nPairs(); }

    explicit CompletePanel(std::size_t nColumns) : cells_(nColumns * kBlockRows) {}
    void pack(const Block& block);
    static void add(const CompletePanel& first, const CompletePanel& second, const PanelPair& pair,
                    double* sums);
    /// Sums of pair (i, j); squares of the columns are found apart.
    static double product(const PanelPair& pair, const std::vector<double>& sums, std::size_t i,
                          std::size_t j) {
        return sums[i * pair.nSecond + j];
    }

  private:
    AlignedCells cells_;
};

class MaskedPanel {
  public:
    static constexpr std::size_t kColumns = 32;
    static std::size_t nSums(const PanelPair& pair) { return pair.nPairs() * kMaskedSums; }

    explicit MaskedPanel(std::size_t nColumns) : cells_(nColumns * kMaskedArrays * kBlockRows) {}
    void pack(const Block& block);
    static void add(const MaskedPanel& first, const MaskedPanel& second, const PanelPair& pair, double* sums);

  private:
    AlignedCells cells_;
};

/// Sums: the products of the pairs; for each second column, over the rows where it is missing, those of all
/// first columns; and the other way round, off the diagonal.
class NearlyCompletePanel {
  public:
    static constexpr std::size_t kColumns = 64;
    static std::size_t nSums(const PanelPair& pair);

    explicit NearlyCompletePanel(std::size_t nColumns);
    void pack(const Block& block);
    static void add(const NearlyCompletePanel& first, const NearlyCompletePanel& second, const PanelPair& pair,
                    double* sums);

    static double product(const PanelPair& pair, const std::vector<double>& sums, std::size_t i,
                          std::size_t j) {
        return sums[i * pair.nSecond + j];
    }
    /// Sum s of column i of the first panel where column j of the second is missing.
    static double absentFirst(const PanelPair& pair, const std::vector<double>& sums, std::size_t i,
                              std::size_t j, AbsentSum s);
    /// Sum s of column j of the second panel where column i of the first is missing.
    static double absentSecond(const PanelPair& pair, const std::vector<double>& sums, std::size_t i,
                               std::size_t j, AbsentSum s);

  private:
    template <std::size_t nTogether>
    void packColumns(const Block& block, std::size_t c);
    void addWhereMissing(const NearlyCompletePanel& other, double* sums) const;

    std::size_t nColumns_;
    std::size_t nPadded_;
    AlignedCells values_;
    AlignedCells rows_;
    std::vector<std::uint8_t> missing_;  ///< kBlockRows of each column, of which nMissing_ are used
    std::vector<std::size_t> nMissing_;
};

}  // namespace numcore::correlation
