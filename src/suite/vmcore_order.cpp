// Order statistics without sorting: Floyd, R. W. and Rivest, R. L. (1975), Expected time bounds for selection,
// Comm. ACM 18:165-172. Their sample brackets the wanted rank; here each rank, or run of near ranks, has one
// bracket.
//
// 1. A sample of about n^(2/3) cells gives, for each rank, two cells that enclose it almost surely.
// 2. One pass over all cells counts those below a bracket and at its ends, and gathers those inside.
// 3. Ranks at the ends are answered by the counts (so long runs of ties are never gathered), ranks inside by a
//    selection among the gathered cells.
// 4. If a rank lies outside its bracket after all, a copy of the cells answers it.

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include "suite/vmcore.hpp"
#include "suite/vmcore_kernels.hpp"

namespace numcore::vmcore {
namespace {

constexpr std::size_t kSampleFrom = 4096;  // cells; fewer are copied at once
constexpr std::size_t kMostBrackets = 8;   // more ranks than so many brackets hold are cheaper in a copy
constexpr std::size_t kBlock = 2048;       // cells counted and then gathered while they are in the cache
constexpr double kStandardErrors = 3.5;    // half-width of a bracket: missed about once in 2000 times

// Ranks ascending without repeats, and where their values go.
struct Wanted {
    std::span<const std::int64_t> ranks;
    std::span<double> values;

    Wanted part(std::size_t first, std::size_t n) const {
        return {ranks.subspan(first, n), values.subspan(first, n)};
    }
};

// Values of ranks (less `offset`) among numbers, which are reordered; middle rank first, then both sides.
void selectAll(std::span<double> numbers, std::int64_t offset, const Wanted& wanted) {
    if (wanted.ranks.empty()) return;
    const std::size_t middle = wanted.ranks.size() / 2;
    const auto place = static_cast<std::size_t>(wanted.ranks[middle] - offset);
    const auto nth = numbers.begin() + static_cast<std::ptrdiff_t>(place);
    if (place + 1 == numbers.size()) {  // the rank next to one that was selected
        std::iter_swap(nth, std::max_element(numbers.begin(), numbers.end()));
    } else {
        std::nth_element(numbers.begin(), nth, numbers.end());
    }
    wanted.values[middle] = *nth;
    selectAll(numbers.first(place), offset, wanted.part(0, middle));
    selectAll(numbers.subspan(place + 1), wanted.ranks[middle] + 1,
              wanted.part(middle + 1, wanted.ranks.size() - middle - 1));
}

// All ranks from a copy of the cells; NaN stands after the numbers.
void selectInCopy(std::span<const double> cells, const Wanted& wanted) {
    const auto copy = std::make_unique_for_overwrite<double[]>(cells.size());
    const auto nPresent = static_cast<std::size_t>(compact(cells, copy.get()));
    double* const end =
        std::partition(copy.get(), copy.get() + nPresent, [](double x) { return !std::isnan(x); });
    const std::span<double> numbers(copy.get(), end);
    const auto firstNan = std::lower_bound(wanted.ranks.begin(), wanted.ranks.end(), std::ssize(numbers));
    const auto nNumeric = static_cast<std::size_t>(firstNan - wanted.ranks.begin());
    selectAll(numbers, 0, wanted.part(0, nNumeric));
    std::ranges::fill(wanted.values.subspan(nNumeric), std::numeric_limits<double>::quiet_NaN());
}

// A cell of each of equal stretches, at a place in it that has no period: SplitMix64, Steele, Lea and Flood
// (2014), OOPSLA, 453-472. The same cells each time.
std::vector<double> drawSample(std::span<const double> cells) {
    const auto nWanted = static_cast<std::size_t>(
        std::cbrt(static_cast<double>(cells.size()) * static_cast<double>(cells.size())));
    std::vector<double> sample;
    sample.reserve(nWanted);
    std::uint64_t state = 0;
    for (std::size_t i = 0; i < nWanted; ++i) {
        state += 0x9e3779b97f4a7c15U;
        std::uint64_t mixed = state;
        mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111ebU;
        const std::size_t first = i * cells.size() / nWanted;
        const std::size_t stretch = (i + 1) * cells.size() / nWanted - first;
        const double x = cells[first + (mixed ^ (mixed >> 31)) % stretch];
        if (!IsMissingValue(x)) sample.push_back(std::isnan(x) ? std::numeric_limits<double>::infinity() : x);
    }
    return sample;
}

// Ranks wanted.ranks[firstRank ...], all between the cells of these two places in the sorted sample. A place
// before the first or after the last cell leaves the bracket open at that end.
struct Bracket {
    std::int64_t lowPlace;
    std::int64_t highPlace;
    std::size_t firstRank;
    std::size_t nRanks;
    double low = 0.0;
    double high = 0.0;
};

std::vector<Bracket> planBrackets(std::span<const std::int64_t> ranks, std::int64_t nPresent,
                                  std::size_t nSample) {
    std::vector<Bracket> brackets;
    const auto sampleSize = static_cast<double>(nSample);
    for (std::size_t i = 0; i < ranks.size(); ++i) {
        const double share = (static_cast<double>(ranks[i]) + 0.5) / static_cast<double>(nPresent);
        const double margin = kStandardErrors * std::sqrt(sampleSize * share * (1.0 - share)) + 2.0;
        const auto lowPlace = static_cast<std::int64_t>(std::floor(share * sampleSize - margin));
        const auto highPlace = static_cast<std::int64_t>(std::ceil(share * sampleSize + margin));
        if (!brackets.empty() && lowPlace <= brackets.back().highPlace) {
            brackets.back().lowPlace = std::min(brackets.back().lowPlace, lowPlace);
            brackets.back().highPlace = std::max(brackets.back().highPlace, highPlace);
            brackets.back().nRanks += 1;
        } else {
            brackets.push_back({lowPlace, highPlace, i, 1});
        }
    }
    return brackets;
}

void setEnds(std::span<Bracket> brackets, std::span<double> sample) {
    const auto inSample = [&](std::int64_t place) { return place >= 0 && place < std::ssize(sample); };
    std::vector<std::int64_t> places;  // ascending: brackets follow each other without overlap
    for (const Bracket& bracket : brackets) {
        for (const std::int64_t place : {bracket.lowPlace, bracket.highPlace}) {
            if (inSample(place)) places.push_back(place);
        }
    }
    std::vector<double> ends(places.size());
    selectAll(sample, 0, {places, ends});

    // An end at or below the missing value would let missing cells in.
    const double lowest = std::nextafter(kMissing, 0.0);
    auto end = ends.cbegin();
    for (Bracket& bracket : brackets) {
        bracket.low = inSample(bracket.lowPlace) ? std::max(lowest, *end++) : lowest;
        bracket.high = inSample(bracket.highPlace) ? *end++ : std::numeric_limits<double>::infinity();
    }
}

// What the pass over the cells leaves of one bracket.
class Gathered {
  public:
    Gathered(const Bracket& bracket, std::size_t nCells, std::size_t nSample)
        : bracket_(bracket), capacity_(roomFor(bracket, nCells, nSample)) {
        inside_ = std::make_unique_for_overwrite<double[]>(capacity_);
    }

    // False when the bracket holds far more cells than the sample told.
    bool take(std::span<const double> block) {
        if (nInside_ + block.size() > capacity_) return false;
        const BracketCounts counts = kernels().scanBracket(block.data(), block.size(), bracket_.low,
                                                           bracket_.high, inside_.get() + nInside_);
        nBelow_ += counts.nBelow;
        nAtLow_ += counts.nAtLow;
        nAtHigh_ += counts.nAtHigh;
        nInside_ += counts.nInside;
        return true;
    }

    // False when a rank lies outside the bracket.
    bool answer(std::int64_t nMissing, const Wanted& all) {
        const Wanted wanted = all.part(bracket_.firstRank, bracket_.nRanks);
        const std::int64_t atLow = nBelow_ - nMissing;  // missing cells lie below every bracket
        const std::int64_t inside = atLow + nAtLow_;
        const std::int64_t atHigh = inside + static_cast<std::int64_t>(nInside_);
        const std::int64_t above = atHigh + (bracket_.low < bracket_.high ? nAtHigh_ : 0);
        const bool holdsAllAbove = bracket_.high == std::numeric_limits<double>::infinity();
        if (wanted.ranks.front() < atLow || (wanted.ranks.back() >= above && !holdsAllAbove)) return false;
        const auto before = [&](std::int64_t rank) {
            return static_cast<std::size_t>(std::lower_bound(wanted.ranks.begin(), wanted.ranks.end(), rank) -
                                            wanted.ranks.begin());
        };
        const std::size_t firstInside = before(inside);
        const std::size_t firstAtHigh = before(atHigh);
        const std::size_t firstNan = before(above);
        std::ranges::fill(wanted.values.first(firstInside), bracket_.low);
        selectAll({inside_.get(), nInside_}, inside, wanted.part(firstInside, firstAtHigh - firstInside));
        std::ranges::fill(wanted.values.subspan(firstAtHigh, firstNan - firstAtHigh), bracket_.high);
        std::ranges::fill(wanted.values.subspan(firstNan), std::numeric_limits<double>::quiet_NaN());
        return true;
    }

  private:
    static std::size_t roomFor(const Bracket& bracket, std::size_t nCells, std::size_t nSample) {
        const auto nPlaces = static_cast<std::size_t>(bracket.highPlace - bracket.lowPlace + 2);
        return std::min(nCells, 2 * nPlaces * (nCells / nSample + 1)) + kBlock;
    }

    Bracket bracket_;
    std::size_t capacity_;
    std::unique_ptr<double[]> inside_;
    std::size_t nInside_ = 0;
    std::int64_t nBelow_ = 0;
    std::int64_t nAtLow_ = 0;
    std::int64_t nAtHigh_ = 0;
};

// Ranks within [0, nPresent). False when brackets do not serve.
bool selectInBrackets(std::span<const double> cells, std::int64_t nPresent, const Wanted& wanted) {
    std::vector<double> sample = drawSample(cells);
    if (sample.empty()) return false;
    std::vector<Bracket> brackets = planBrackets(wanted.ranks, nPresent, sample.size());
    if (brackets.size() > kMostBrackets) return false;
    setEnds(brackets, sample);
    std::vector<Gathered> gathered;
    gathered.reserve(brackets.size());
    for (const Bracket& bracket : brackets) gathered.emplace_back(bracket, cells.size(), sample.size());
    for (std::size_t first = 0; first < cells.size(); first += kBlock) {
        const auto block = cells.subspan(first, std::min(kBlock, cells.size() - first));
        if (!std::all_of(gathered.begin(), gathered.end(), [&](Gathered& g) { return g.take(block); }))
            return false;
    }
    const std::int64_t nMissing = std::ssize(cells) - nPresent;
    return std::all_of(gathered.begin(), gathered.end(),
                       [&](Gathered& g) { return g.answer(nMissing, wanted); });
}

}  // namespace

std::int64_t countPresent(std::span<const double> cells) {
    return std::ssize(cells) - kernels().countMissing(cells.data(), cells.size());
}

std::int64_t compact(std::span<const double> cells, double* out) {
    std::int64_t n = 0;
    for (const double x : cells) {
        out[n] = x;
        n += static_cast<std::int64_t>(!IsMissingValue(x));
    }
    return n;
}

std::int64_t selectRanks(std::span<const double> cells, std::span<const std::int64_t> ranks,
                         std::span<double> out) {
    const std::int64_t nPresent = countPresent(cells);
    std::vector<std::int64_t> sorted;
    for (const std::int64_t rank : ranks) {
        if (rank >= 0 && rank < nPresent) sorted.push_back(rank);
    }
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    std::vector<double> values(sorted.size());
    const Wanted wanted{sorted, values};
    if (!sorted.empty() && (cells.size() < kSampleFrom || !selectInBrackets(cells, nPresent, wanted))) {
        selectInCopy(cells, wanted);
    }
    for (std::size_t i = 0; i < std::min(ranks.size(), out.size()); ++i) {
        const auto found = std::lower_bound(sorted.begin(), sorted.end(), ranks[i]);
        const bool known = found != sorted.end() && *found == ranks[i];
        out[i] = known ? values[static_cast<std::size_t>(found - sorted.begin())] : kMissing;
    }
    return nPresent;
}

OrderPair selectPair(std::span<const double> cells, std::int64_t rank) {
    const std::int64_t ranks[] = {rank, rank + 1};
    double values[2];
    const std::int64_t nPresent = selectRanks(cells, ranks, values);
    return {values[0], rank >= 0 && rank + 1 == nPresent ? values[0] : values[1]};
}

}  // namespace numcore::vmcore
