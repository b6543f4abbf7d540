#include "tests/resampling/arrangements.hpp"

#include <algorithm>
#include <numeric>

namespace numcore::tests {
namespace {

// Observations dealt while every arrangement is tried: some ten seconds.
constexpr std::int64_t kMostDealt = 4'000'000'000;

// n over k, or limit + 1 when that is less.
std::int64_t chooseUpTo(std::int64_t n, std::int64_t k, std::int64_t limit) {
    k = std::min(k, n - k);
    std::int64_t ways = 1;
    for (std::int64_t j = 1; j <= k && ways <= limit; ++j) ways = ways * (n - k + j) / j;
    return std::min(ways, limit + 1);
}

}  // namespace

std::int64_t countArrangements(std::span<const std::int64_t> sizes, std::int64_t limit) {
    std::int64_t ways = 1;
    std::int64_t n = 0;
    for (const std::int64_t size : sizes) {
        n += size;
        ways *= chooseUpTo(n, size, limit);
        if (ways > limit) return limit + 1;
    }
    return ways;
}

Arrangements::Arrangements(std::span<const std::int64_t> sizes, const ResamplingSettings& settings)
    : places_(sizes.size()),
      size_(sizes.begin(), sizes.end()),
      begin_(sizes.size()),
      first_(sizes.size()),
      method_(settings.method),
      seed_(settings.seed),
      count_(settings.nResamples) {
    std::exclusive_scan(size_.begin(), size_.end(), first_.begin(), std::size_t{0});
    std::iota(places_.begin(), places_.end(), std::size_t{0});
    const auto largest = std::max_element(size_.begin(), size_.end()) - size_.begin();
    std::rotate(places_.begin() + largest, places_.begin() + largest + 1, places_.end());
    drawnGroup_ = places_.front();

    given_.reserve(first_.back() + size_.back());
    for (const std::size_t g : places_) {
        begin_[g] = given_.size();
        for (std::size_t i = 0; i < size_[g]; ++i) given_.push_back(static_cast<std::uint32_t>(first_[g] + i));
    }
    if (settings.method != ResamplingMethod::kAutomatic) return;
    const std::int64_t most =
        std::min(settings.maxArrangements, kMostDealt / std::max<std::int64_t>(std::ssize(given_), 1));
    const std::int64_t all = countArrangements(sizes, most);
    complete_ = all <= most;
    if (complete_) count_ = all;
}

// Of the numbers that a resample draws: none when every arrangement is tried.
std::vector<std::uint32_t> Arrangements::boundsOfDraws() const {
    std::vector<std::uint32_t> bounds;
    if (complete_) return bounds;
    if (method_ == ResamplingMethod::kBootstrap) {
        bounds.reserve(given_.size());
        for (const std::size_t g : places_)
            bounds.insert(bounds.end(), size_[g], static_cast<std::uint32_t>(size_[g]));
        return bounds;
    }
    bounds.reserve(nDrawn());
    for (std::size_t j = 0; j < nDrawn(); ++j) bounds.push_back(static_cast<std::uint32_t>(given_.size() - j));
    return bounds;
}

Arrangements::Cursor::Cursor(const Arrangements& arrangements)
    : all_(arrangements),
      draws_(all_.seed_, all_.boundsOfDraws()),
      order_(all_.given_),
      labels_(all_.complete_ ? order_.size() : 0),
      next_(all_.complete_ ? all_.nGroups() : 0) {}

void Arrangements::Cursor::moveTo(std::int64_t i) {
    if (!all_.complete_) {
        if (all_.method_ == ResamplingMethod::kBootstrap) {
            drawBootstrap(i);
        } else {
            drawPermutation(i);
        }
        return;
    }
    if (at_ >= 0 && i == at_ + 1) {
        std::next_permutation(labels_.begin(), labels_.end());
    } else {
        unrank(i);
    }
    at_ = i;
    deal();
}

// Arrangement i in lexicographic order of the labels.
void Arrangements::Cursor::unrank(std::int64_t i) {
    std::int64_t ways = all_.count_;
    auto left = static_cast<std::int64_t>(labels_.size());
    std::vector<std::int64_t> unused;
    unused.reserve(all_.places_.size());
    for (const std::size_t g : all_.places_) unused.push_back(static_cast<std::int64_t>(all_.size_[g]));
    for (std::uint32_t& label : labels_) {
        // Of the ways to go on, the share of a label is the share of its unused copies.
        label = 0;
        std::int64_t share = ways * unused[0] / left;
        while (i >= share) {
            i -= share;
            ++label;
            share = ways * unused[label] / left;
        }
        ways = share;
        --unused[label];
        --left;
    }
}

void Arrangements::Cursor::deal() {
    for (std::size_t place = 0; place < next_.size(); ++place) next_[place] = all_.begin_[all_.places_[place]];
    for (std::size_t j = 0; j < labels_.size(); ++j) order_[next_[labels_[j]]++] = all_.given_[j];
}

// The first places of a random permutation; what they leave is the largest group.
// Durstenfeld, R. (1964), Algorithm 235: random permutation, Comm. ACM 7:420.
void Arrangements::Cursor::drawPermutation(std::int64_t i) {
    if (at_ >= 0) putBack();
    at_ = i;
    drawn_ = draws_.draw(static_cast<std::uint64_t>(i));
    std::uint32_t* const order = order_.data();
    for (std::size_t j = 0; j < drawn_.size(); ++j) std::swap(order[j], order[j + drawn_[j]]);
}

// The given order again, after the places j and j + drawn_[j] have changed.
void Arrangements::Cursor::putBack() {
    constexpr std::size_t kCopyIsFaster = 8;
    if (order_.size() <= kCopyIsFaster * drawn_.size()) {
        std::copy(all_.given_.begin(), all_.given_.end(), order_.begin());
        return;
    }
    for (std::size_t j = 0; j < drawn_.size(); ++j) {
        order_[j] = all_.given_[j];
        order_[j + drawn_[j]] = all_.given_[j + drawn_[j]];
    }
}

void Arrangements::Cursor::drawBootstrap(std::int64_t i) {
    at_ = i;
    drawn_ = draws_.draw(static_cast<std::uint64_t>(i));
    for (const std::size_t g : all_.places_) {
        const auto first = static_cast<std::uint32_t>(all_.first_[g]);
        const std::size_t end = all_.begin_[g] + all_.size_[g];
        for (std::size_t j = all_.begin_[g]; j < end; ++j) order_[j] = first + drawn_[j];
    }
}

}  // namespace numcore::tests
