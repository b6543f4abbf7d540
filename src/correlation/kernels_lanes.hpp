// The bodies of the kernels, written over lanes; instantiated once for each instruction set, in a file of its
// own that is compiled for that set. Nothing of the standard library is called here: an inline function
// compiled for a wider set could be the copy that the linker keeps for all.
#pragma once

#include "correlation/kernels.hpp"
#include "numcore/markers.hpp"

namespace numcore::correlation {

/// @tparam Lanes  in an unnamed namespace of the including file; Lanes::Real is a vector of 2 or 4 doubles, the
///                tiles are how many columns are worked on together
template <class Lanes>
class LaneKernels {
  public:
    static constexpr Kernels table() {
        return {&packComplete, &packMasked, &addProducts, &addMasked, &addAbsent, &countPairs};
    }

  private:
    using Real = typename Lanes::Real;
    static constexpr std::size_t kLanes = 4;
    static constexpr std::size_t kWidth = sizeof(Real) / sizeof(double);
    static constexpr std::size_t kParts = kLanes / kWidth;
    static constexpr std::size_t kMaskedStride = kMaskedArrays * kBlockRows;
    static constexpr double kEpsilon = 2.220446049250313e-16;

    static Real load(const double* from) {
        Real lanes;
        __builtin_memcpy(&lanes, from, sizeof lanes);
        return lanes;
    }

    static double addLanes(const Real (&parts)[kParts]) {
        const auto lane = [&parts](std::size_t i) { return parts[i / kWidth][i % kWidth]; };
        return (lane(0) + lane(2)) + (lane(1) + lane(3));
    }

    static void packComplete(const double* cells, std::size_t n, double centre, const double* weights,
                             double* out) {
        if (weights == nullptr) {
            for (std::size_t i = 0; i < n; ++i) out[i] = cells[i] - centre;
        } else {
            for (std::size_t i = 0; i < n; ++i) out[i] = weights[i] * (cells[i] - centre);
        }
        for (std::size_t i = n; i < kBlockRows; ++i) out[i] = 0.0;
    }

    static void packMasked(const double* cells, std::size_t n, double centre, const double* weights,
                           double* out) {
        double* squares = out + kBlockRows;
        double* present = squares + kBlockRows;
        for (std::size_t i = 0; i < n; ++i) {
            const double weight = weights == nullptr ? 1.0 : weights[i];
            const double deviation = cells[i] - centre;
            const bool isPresent = cells[i] != kMissing;
            out[i] = isPresent ? weight * deviation : 0.0;
            squares[i] = isPresent ? weight * deviation * deviation : 0.0;
            present[i] = isPresent ? weight : 0.0;
        }
        for (std::size_t i = n; i < kBlockRows; ++i) out[i] = squares[i] = present[i] = 0.0;
    }

    // Products of nFirst with nSecond columns from (i, j) on.
    template <std::size_t nFirst, std::size_t nSecond>
    static void addTile(const Panels& panels, std::size_t i, std::size_t j, double* sums) {
        const double* first = panels.first + i * kBlockRows;
        const double* second = panels.second + j * kBlockRows;
        Real products[nFirst][nSecond][kParts] = {};
        for (std::size_t row = 0; row < kBlockRows; row += kLanes) {
#pragma GCC unroll 2
            for (std::size_t part = 0; part < kParts; ++part) {
                const std::size_t from = row + part * kWidth;
                Real y[nSecond];
#pragma GCC unroll 4
                for (std::size_t b = 0; b < nSecond; ++b) y[b] = load(second + b * kBlockRows + from);
#pragma GCC unroll 4
                for (std::size_t a = 0; a < nFirst; ++a) {
                    const Real x = load(first + a * kBlockRows + from);
#pragma GCC unroll 4
                    for (std::size_t b = 0; b < nSecond; ++b) products[a][b][part] += x * y[b];
                }
            }
        }
        for (std::size_t a = 0; a < nFirst; ++a) {
            for (std::size_t b = 0; b < nSecond; ++b) {
                sums[(i + a) * panels.nSecond + j + b] += addLanes(products[a][b]);
            }
        }
    }

    template <std::size_t nFirst>
    static void addTiles(const Panels& panels, std::size_t i, double* sums) {
        constexpr std::size_t kStep = Lanes::kTileSecond;
        std::size_t j = panels.upper ? i / kStep * kStep : 0;
        for (; j + kStep <= panels.nSecond; j += kStep) addTile<nFirst, kStep>(panels, i, j, sums);
        for (; j < panels.nSecond; ++j) addTile<nFirst, 1>(panels, i, j, sums);
    }

    static void addProducts(const Panels& panels, double* sums) {
        std::size_t i = 0;
        for (; i + Lanes::kTileFirst <= panels.nFirst; i += Lanes::kTileFirst) {
            addTiles<Lanes::kTileFirst>(panels, i, sums);
        }
        for (; i < panels.nFirst; ++i) addTiles<1>(panels, i, sums);
    }

    template <std::size_t nFirst>
    static void addMaskedTile(const Panels& panels, std::size_t i, std::size_t j, double* sums) {
        const double* first = panels.first + i * kMaskedStride;
        const double* second = panels.second + j * kMaskedStride;
        Real found[nFirst][kMaskedSums][kParts] = {};
        for (std::size_t row = 0; row < kBlockRows; row += kLanes) {
#pragma GCC unroll 2
            for (std::size_t part = 0; part < kParts; ++part) {
                const std::size_t from = row + part * kWidth;
                const Real y = load(second + from);
                const Real yy = load(second + kBlockRows + from);
                const Real hasY = load(second + 2 * kBlockRows + from);
#pragma GCC unroll 2
                for (std::size_t a = 0; a < nFirst; ++a) {
                    const double* column = first + a * kMaskedStride + from;
                    const Real x = load(column);
                    const Real weight = load(column + 2 * kBlockRows);
                    found[a][0][part] += weight * hasY;
                    found[a][1][part] += x * hasY;
                    found[a][2][part] += weight * y;
                    found[a][3][part] += load(column + kBlockRows) * hasY;
                    found[a][4][part] += weight * yy;
                    found[a][5][part] += x * y;
                }
            }
        }
        for (std::size_t a = 0; a < nFirst; ++a) {
            double* out = sums + ((i + a) * panels.nSecond + j) * kMaskedSums;
            for (std::size_t s = 0; s < kMaskedSums; ++s) out[s] += addLanes(found[a][s]);
        }
    }

    static void addMasked(const Panels& panels, double* sums) {
        constexpr std::size_t kStep = Lanes::kMaskedTile;
        std::size_t i = 0;
        for (; i + kStep <= panels.nFirst; i += kStep) {
            for (std::size_t j = panels.upper ? i : 0; j < panels.nSecond; ++j) {
                addMaskedTile<kStep>(panels, i, j, sums);
            }
        }
        for (; i < panels.nFirst; ++i) {
            for (std::size_t j = panels.upper ? i : 0; j < panels.nSecond; ++j) {
                addMaskedTile<1>(panels, i, j, sums);
            }
        }
    }

    // nVectors vectors of columns from column c on; their sums stay in registers.
    template <std::size_t nVectors>
    static void addAbsentColumns(const AbsentRows& absent, std::size_t c, double* sums) {
        const double* cells = absent.cells + c;
        const std::size_t n = absent.nColumns;
        Real found[kAbsentSums][nVectors] = {};
        for (std::size_t k = 0; k < absent.nRows; ++k) {
            const double* row = cells + 2 * n * absent.rows[k];
#pragma GCC unroll 4
            for (std::size_t v = 0; v < nVectors; ++v) {
                const Real weight = load(row + v * kWidth);
                const Real x = load(row + n + v * kWidth);
                const Real weighted = weight * x;
                found[0][v] += weight;
                found[1][v] += weighted;
                found[2][v] += weighted * x;
            }
        }
        for (std::size_t s = 0; s < kAbsentSums; ++s) {
            double* out = sums + s * n + c;
            for (std::size_t i = 0; i < nVectors * kWidth; ++i) out[i] += found[s][i / kWidth][i % kWidth];
        }
    }

    static void addAbsent(const AbsentRows& absent, double* sums) {
        constexpr std::size_t kVectors = 4;
        constexpr std::size_t kStep = kVectors * kWidth;
        std::size_t c = 0;
        for (; c + kStep <= absent.nColumns; c += kStep) addAbsentColumns<kVectors>(absent, c, sums);
        for (; c < absent.nColumns; c += kWidth) addAbsentColumns<1>(absent, c, sums);
    }

    static Real absolute(const Real& x) {
        return x < 0.0 ? -x : x;
    }

    // Towards zero. Beyond 2^51, where the sum below would not round to whole numbers, x has hardly a fraction.
    static Real truncated(const Real& x) {
        constexpr double kShift = 4503599627370496.0;  // 2^52
        const Real size = absolute(x);
        Real whole = (size + kShift) - kShift;
        whole -= whole > size ? Real{} + 1.0 : Real{};
        whole = size < kShift / 2.0 ? whole : size;
        return x < 0.0 ? -whole : whole;
    }

    struct CountLanes {
        Real untiedX[kParts] = {};
        Real untiedY[kParts] = {};
        Real score[kParts] = {};
        Real nTied[kParts] = {};

        // NaN, of infinities that are equal or meet an equal value, is a tie.
        void take(std::size_t part, const Real& dx, const Real& dy, const Real& weight, const Real& one) {
            const Real zero = {};
            const Real product = dx * dy;
            const auto differ = absolute(product) > kEpsilon;
            untiedX[part] += (differ | (absolute(dx) > kEpsilon)) ? weight : zero;
            untiedY[part] += (differ | (absolute(dy) > kEpsilon)) ? weight : zero;
            const Real gain = product > 0.0 ? weight : -weight;
            score[part] += differ ? gain : zero;
            nTied[part] += differ ? zero : one;
        }
    };

    static void countPairs(const PairedCells& cells, std::size_t i, std::size_t from, std::size_t to,
                           PairCounts& counts) {
        CountLanes lanes;
        const Real one = Real{} + 1.0;
        const auto step = [&](const double* x, const double* y, const double* weights, const Real& used,
                              std::size_t part) {
            const Real weight = weights == nullptr ? used : truncated(load(weights) * cells.weights[i]) * used;
            lanes.take(part, load(x) - cells.x[i], load(y) - cells.y[i], weight, used);
        };
        std::size_t j = from;
        for (; j + kWidth <= to; j += kWidth) {
            step(cells.x + j, cells.y + j, cells.weights == nullptr ? nullptr : cells.weights + j, one, 0);
        }
        for (; j < to; ++j) {
            double x[kWidth] = {};
            double y[kWidth] = {};
            double weights[kWidth] = {};
            Real used = {};
            x[0] = cells.x[j];
            y[0] = cells.y[j];
            used[0] = 1.0;
            if (cells.weights != nullptr) weights[0] = cells.weights[j];
            step(x, y, cells.weights == nullptr ? nullptr : weights, used, 0);
        }
        counts.untiedX += addLanes(lanes.untiedX);
        counts.untiedY += addLanes(lanes.untiedY);
        counts.score += addLanes(lanes.score);
        counts.nTied += addLanes(lanes.nTied);
    }
};

}  // namespace numcore::correlation
