// Plan:
//   1. The pairs are cut into pairs of panels of columns.
//   2. The rows are cut into chunks. A chunk of a pair of panels is summed block by block: pack both, add
//   their sums.
//   3. The sums of the chunks are added in their order. Either the chunks are shared among threads, and their
//      sums are kept until all are there, or the pairs of panels are, where keeping them would take too much
//      room.

#include "correlation/cross_sums.hpp"

#include <algorithm>

#include "correlation/packed_panels.hpp"
#include "correlation/table.hpp"
#include "suite/parallel.hpp"

namespace numcore::correlation {
namespace {

constexpr std::size_t kChunkRows = 16 * kBlockRows;
constexpr std::size_t kLargestSinglePanel = 128;
constexpr std::size_t kPairsVisitedAlone = 4096;  // a p-value each

std::size_t ceilingOf(std::size_t a, std::size_t b) {
    return (a + b - 1) / b;
}

/// @tparam Panel  one of packed_panels.hpp
template <class Panel>
class Summing {
  public:
    explicit Summing(const ColumnPairs& pairs)
        : pairs_(pairs),
          nRows_(pairs.first.empty() ? 0 : pairs.first.front().cells.size()),
          nChunks_(std::max<std::size_t>(1, ceilingOf(nRows_, kChunkRows))) {}

    /// Sums of a pair of panels over all rows.
    using Sums = std::vector<double>;

    /// Calls done(pair, sums) for each pair of panels.
    template <class Done>
    void run(const std::vector<PanelPair>& panelPairs, const Done& done) const {
        if (panelPairs.empty()) return;
        const std::size_t nColumns = pairs_.first.size() + pairs_.second.size();
        const bool isLarge = nRows_ * nColumns > kParallelFrom;
        if (nChunks_ == 1 || !canKeepChunks(panelPairs)) {
            parallelFor(std::ssize(panelPairs), isLarge || panelPairs.size() > 1, [&](std::int64_t t) {
                const PanelPair& pair = panelPairs[static_cast<std::size_t>(t)];
                Sums total(Panel::nSums(pair), 0.0);
                for (std::size_t chunk = 0; chunk < nChunks_; ++chunk) add(sumsOfChunk(pair, chunk), total);
                done(pair, total);
            });
            return;
        }
        std::vector<Sums> parts(nChunks_ * panelPairs.size());
        parallelFor(std::ssize(parts), isLarge, [&](std::int64_t i) {
            const auto part = static_cast<std::size_t>(i);
            parts[part] = sumsOfChunk(panelPairs[part % panelPairs.size()], part / panelPairs.size());
        });
        for (std::size_t t = 0; t < panelPairs.size(); ++t) {
            Sums total(parts[t].size(), 0.0);
            for (std::size_t chunk = 0; chunk < nChunks_; ++chunk)
                add(parts[chunk * panelPairs.size() + t], total);
            done(panelPairs[t], total);
        }
    }

  private:
    static void add(const Sums& part, Sums& total) {
        for (std::size_t i = 0; i < total.size(); ++i) total[i] += part[i];
    }

    /// Whether the sums of all chunks take less room than half of the rows' cells.
    bool canKeepChunks(const std::vector<PanelPair>& panelPairs) const {
        std::size_t nSums = 0;
        for (const PanelPair& pair : panelPairs) nSums += Panel::nSums(pair);
        return nSums <= kChunkRows / 2 * pairs_.first.size();
    }

    Sums sumsOfChunk(const PanelPair& pair, std::size_t chunk) const {
        Sums sums(Panel::nSums(pair), 0.0);
        const bool packOnce = pair.diagonal && pairs_.weights.empty();
        Panel first(pair.nFirst);
        Panel second(packOnce ? 0 : pair.nSecond);
        const auto firstColumns = pairs_.first.subspan(pair.first, pair.nFirst);
        const auto secondColumns = pairs_.second.subspan(pair.second, pair.nSecond);
        const std::size_t end = std::min(nRows_, (chunk + 1) * kChunkRows);
        for (std::size_t row = chunk * kChunkRows; row < end; row += kBlockRows) {
            const std::size_t n = std::min(kBlockRows, end - row);
            const double* weights = pairs_.weights.empty() ? nullptr : pairs_.weights.data() + row;
            first.pack({firstColumns, row, n, weights, true});
            if (!packOnce) second.pack({secondColumns, row, n, weights, false});
            Panel::add(first, packOnce ? first : second, pair, sums.data());
        }
        return sums;
    }

    ColumnPairs pairs_;
    std::size_t nRows_;
    std::size_t nChunks_;
};

std::vector<PanelPair> onDiagonal(std::size_t n, std::size_t width) {
    std::vector<PanelPair> found;
    found.reserve(ceilingOf(n, width));
    for (std::size_t i = 0; i < n; i += width) {
        const std::size_t nColumns = std::min(width, n - i);
        found.push_back({i, nColumns, i, nColumns, true});
    }
    return found;
}

std::vector<PanelPair> offDiagonal(const ColumnPairs& pairs, std::size_t width) {
    std::vector<PanelPair> found;
    found.reserve(ceilingOf(pairs.first.size(), width) * ceilingOf(pairs.second.size(), width));
    for (std::size_t i = 0; i < pairs.first.size(); i += width) {
        for (std::size_t j = pairs.symmetric ? i + width : 0; j < pairs.second.size(); j += width) {
            found.push_back({i, std::min(width, pairs.first.size() - i), j,
                             std::min(width, pairs.second.size() - j), false});
        }
    }
    return found;
}

/// Calls visit(i, j) for the columns of a pair of panels; rows of it, long and short ones in turn, are shared
/// among threads.
template <class Visit>
void visitPanels(const PanelPair& pair, const Visit& visit) {
    parallelFor(static_cast<std::int64_t>(pair.nFirst), pair.nPairs() > kPairsVisitedAlone,
                [&](std::int64_t k) {
                    const auto place = static_cast<std::size_t>(k) / 2;
                    const std::size_t i = k % 2 == 0 ? place : pair.nFirst - 1 - place;
                    for (std::size_t j = pair.diagonal ? i : 0; j < pair.nSecond; ++j) visit(i, j);
                });
}

std::size_t panelWidth(const ColumnPairs& pairs, std::size_t usual) {
    return pairs.symmetric && pairs.first.size() <= kLargestSinglePanel ? kLargestSinglePanel : usual;
}

/// Sums of squares of each column.
template <class Panel>
std::vector<double> squaresOf(std::span<const CentredColumn> columns, std::span<const double> weights) {
    std::vector<double> squares(columns.size());
    const Summing<Panel> summing({columns, columns, true, weights});
    summing.run(onDiagonal(columns.size(), 4), [&](const PanelPair& pair, const std::vector<double>& sums) {
        for (std::size_t i = 0; i < pair.nFirst; ++i) {
            squares[pair.first + i] = Panel::product(pair, sums, i, i);
        }
    });
    return squares;
}

/// A pair of columns, places within their panels, with the squares of both.
struct PlacedPair {
    const PanelPair& panels;
    const std::vector<double>& sums;
    std::size_t i, j;
    double xx, yy;
};

/// Calls visit(PlacedPair). Squares are summed as products are, so that those of equal columns are equal; of
/// one set they come from the panels on the diagonal.
template <class Panel, class Visit>
void forEachWithSquares(const ColumnPairs& pairs, const Visit& visit) {
    if (pairs.first.empty() || pairs.second.empty()) return;
    const Summing<Panel> summing(pairs);
    const std::size_t width = panelWidth(pairs, Panel::kColumns);
    std::vector<double> squaresFirst(pairs.first.size());
    std::vector<double> squaresSecond;
    const auto visitAll = [&](const PanelPair& panels, const std::vector<double>& sums) {
        const auto& ofSecond = pairs.symmetric ? squaresFirst : squaresSecond;
        visitPanels(panels, [&](std::size_t i, std::size_t j) {
            visit(PlacedPair{panels, sums, i, j, squaresFirst[panels.first + i], ofSecond[panels.second + j]});
        });
    };
    if (pairs.symmetric) {
        summing.run(onDiagonal(pairs.first.size(), width), [&](const PanelPair& panels, const auto& sums) {
            for (std::size_t i = 0; i < panels.nFirst; ++i) {
                squaresFirst[panels.first + i] = Panel::product(panels, sums, i, i);
            }
            visitAll(panels, sums);
        });
    } else {
        squaresFirst = squaresOf<Panel>(pairs.first, pairs.weights);
        squaresSecond = squaresOf<Panel>(pairs.second, pairs.weights);
    }
    summing.run(offDiagonal(pairs, width), visitAll);
}

}  // namespace

void forEachCompletePair(const ColumnPairs& pairs, const VisitSums& visit) {
    forEachWithSquares<CompletePanel>(pairs, [&](const PlacedPair& at) {
        const double sums[] = {at.xx, at.yy, CompletePanel::product(at.panels, at.sums, at.i, at.j)};
        visit(at.panels.first + at.i, at.panels.second + at.j, sums);
    });
}

void forEachNearlyCompletePair(const ColumnPairs& pairs, const VisitSums& visit) {
    using Panel = NearlyCompletePanel;
    forEachWithSquares<Panel>(pairs, [&](const PlacedPair& at) {
        const CentredColumn& x = pairs.first[at.panels.first + at.i];
        const CentredColumn& y = pairs.second[at.panels.second + at.j];
        const auto lessX = [&](AbsentSum s) { return Panel::absentFirst(at.panels, at.sums, at.i, at.j, s); };
        const auto lessY = [&](AbsentSum s) { return Panel::absentSecond(at.panels, at.sums, at.i, at.j, s); };
        const double sums[] = {x.weight - lessX(kAbsentWeight),
                               x.weight * x.rest - lessX(kAbsentValues),
                               y.weight * y.rest - lessY(kAbsentValues),
                               at.xx - lessX(kAbsentSquares),
                               at.yy - lessY(kAbsentSquares),
                               Panel::product(at.panels, at.sums, at.i, at.j)};
        visit(at.panels.first + at.i, at.panels.second + at.j, sums);
    });
}

void forEachMaskedPair(const ColumnPairs& pairs, const VisitSums& visit) {
    if (pairs.first.empty() || pairs.second.empty()) return;
    const Summing<MaskedPanel> summing(pairs);
    const auto visitAll = [&](const PanelPair& panels, const std::vector<double>& sums) {
        visitPanels(panels, [&](std::size_t i, std::size_t j) {
            visit(panels.first + i, panels.second + j,
                  std::span(sums).subspan((i * panels.nSecond + j) * kMaskedSums, kMaskedSums));
        });
    };
    if (pairs.symmetric) summing.run(onDiagonal(pairs.first.size(), MaskedPanel::kColumns), visitAll);
    summing.run(offDiagonal(pairs, MaskedPanel::kColumns), visitAll);
}

}  // namespace numcore::correlation
