#include "tests/resampling/fast_means.hpp"

#include "tests/resampling/formula.hpp"

namespace numcore::tests {
namespace {

// Below this share of the whole spread what is left within the groups has lost digits to the difference.
constexpr double kCancelled = 1e-6;

}  // namespace

TwoGroupSums::TwoGroupSums(std::span<const double> values, std::span<const double> weights)
    : values_(values), weights_(weights) {
    if (!weights.empty()) terms_.reserve(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double weight = weights.empty() ? 1.0 : weights[i];
        const Sums term = {weight, weight * values[i], weight * values[i] * values[i]};
        total_.weight += term.weight;
        total_.values += term.values;
        total_.squares += term.squares;
        if (!weights.empty()) terms_.push_back(term);
    }
}

TwoGroupSums::Sums TwoGroupSums::sumUnitWeights(std::span<const std::uint32_t> numbers) const {
    Sums sums;
    sums.weight = static_cast<double>(numbers.size());
    sums.values = sumOver(numbers, [this](std::uint32_t i) { return values_[i]; });
    sums.squares = sumOver(numbers, [this](std::uint32_t i) { return values_[i] * values_[i]; });
    return sums;
}

TwoGroupSums::Sums TwoGroupSums::sumWeighted(std::span<const std::uint32_t> numbers) const {
    Sums sums;
    for (const std::uint32_t i : numbers) {
        sums.weight += terms_[i].weight;
        sums.values += terms_[i].values;
        sums.squares += terms_[i].squares;
    }
    return sums;
}

std::array<GroupMoments, 2> TwoGroupSums::operator()(const Arrangements::Cursor& cursor,
                                                     std::size_t drawnGroup) const {
    const auto numbers = cursor.group(drawnGroup);
    const Sums drawn = weights_.empty() ? sumUnitWeights(numbers) : sumWeighted(numbers);
    const Sums rest = {total_.weight - drawn.weight, total_.values - drawn.values,
                       total_.squares - drawn.squares};
    std::array<GroupMoments, 2> groups;
    const auto set = [&groups](std::size_t g, std::size_t count, const Sums& sums) {
        const double mean = sums.values / sums.weight;
        groups[g] = {static_cast<double>(count), sums.weight, mean, sums.squares - sums.values * mean};
    };
    set(drawnGroup, numbers.size(), drawn);
    set(1 - drawnGroup, values_.size() - numbers.size(), rest);
    if (groups[0].squares + groups[1].squares > kCancelled * total_.squares) return groups;
    return {momentsOf(values_, weights_, cursor.group(0)), momentsOf(values_, weights_, cursor.group(1))};
}

}  // namespace numcore::tests
