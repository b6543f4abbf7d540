#include "tests/resampling/null_model.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "tests/resampling/formula.hpp"

namespace numcore::tests {
namespace {

bool hasOneGroup(Statistic statistic) {
    return statistic == Statistic::kPairedZ || statistic == Statistic::kPairedT ||
           statistic == Statistic::kOneMean;
}

bool comparesMeans(Statistic statistic) {
    return hasOneGroup(statistic) || statistic == Statistic::kZ || statistic == Statistic::kT ||
           statistic == Statistic::kWelch;
}

bool comparesVariances(Statistic statistic) {
    return statistic == Statistic::kVarianceRatio || statistic == Statistic::kBartlett;
}

bool hasRightGroups(const ResamplingRequest& request) {
    const std::size_t n = request.groups.size();
    if (hasOneGroup(request.statistic)) return n == 1;
    if (comparesMeans(request.statistic) || request.statistic == Statistic::kVarianceRatio) return n == 2;
    return n >= 2;
}

bool isSound(const Sample& sample) {
    if (!sample.weights.empty() && sample.weights.size() != sample.values.size()) return false;
    const auto isFinite = [](double x) { return std::isfinite(x) && x != kMissing; };
    return std::all_of(sample.values.begin(), sample.values.end(), isFinite) &&
           std::all_of(sample.weights.begin(), sample.weights.end(),
                       [](double weight) { return std::isfinite(weight) && weight > 0.0; });
}

bool isMeaningful(const ResamplingRequest& request) {
    if (!std::isfinite(request.hypothesised)) return false;
    if (request.statistic == Statistic::kVarianceRatio && !(request.hypothesised > 0.0)) return false;
    if (request.givenVariances.empty()) return true;
    return request.givenVariances.size() == request.groups.size() &&
           std::all_of(request.givenVariances.begin(), request.givenVariances.end(),
                       [](double variance) { return std::isfinite(variance) && variance >= 0.0; });
}

bool gather(const ResamplingRequest& request, NullModel& model) {
    std::size_t n = 0;
    bool hasWeights = false;
    model.sizes.reserve(request.groups.size());
    for (const Sample& group : request.groups) {
        if (!isSound(group)) return false;
        n += group.values.size();
        hasWeights = hasWeights || !group.weights.empty();
        model.sizes.push_back(std::ssize(group.values));
    }
    if (n == 0 || n > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) return false;
    model.data.reserve(n);
    if (hasWeights) model.weights.reserve(n);
    for (const Sample& group : request.groups) {
        model.data.insert(model.data.end(), group.values.begin(), group.values.end());
        if (!hasWeights) continue;
        if (group.weights.empty()) {
            model.weights.insert(model.weights.end(), group.values.size(), 1.0);
        } else {
            model.weights.insert(model.weights.end(), group.weights.begin(), group.weights.end());
        }
    }
    return true;
}

// Largest exponent among the values and the hypothesised difference.
int exponentOf(const NullModel& model, double difference) {
    double largest = std::abs(difference);
    for (const double value : model.data) largest = std::max(largest, std::abs(value));
    int exponent = 0;
    std::frexp(largest, &exponent);
    return exponent;
}

class Groups {
  public:
    explicit Groups(const NullModel& model) : model_(model), numbers_(model.data.size()) {
        std::iota(numbers_.begin(), numbers_.end(), 0U);
    }

    // change(moments of the group, its values) for each group.
    template <class Change>
    void forEach(std::vector<double>& values, const Change& change) const {
        std::size_t first = 0;
        for (const std::int64_t size : model_.sizes) {
            const auto n = static_cast<std::size_t>(size);
            change(moments(values, first, n), std::span(values).subspan(first, n));
            first += n;
        }
    }

    GroupMoments moments(std::span<const double> values, std::size_t first, std::size_t n) const {
        return momentsOf(values, model_.weights, std::span(numbers_).subspan(first, n));
    }

  private:
    const NullModel& model_;
    std::vector<std::uint32_t> numbers_;
};

void centre(const GroupMoments& group, std::span<double> values) {
    for (double& value : values) value -= group.mean;
}

// Groups centred, and with the variance that they have together.
void equaliseVariances(const Groups& groups, std::vector<double>& values) {
    double squares = 0.0;
    double freedom = 0.0;
    groups.forEach(values, [&](const GroupMoments& group, std::span<double>) {
        squares += group.squares;
        freedom += group.weight - 1.0;
    });
    const double pooled = squares / freedom;
    groups.forEach(values, [&](const GroupMoments& group, std::span<double> own) {
        const double factor = group.variance() > 0.0 ? std::sqrt(pooled / group.variance()) : 1.0;
        for (double& value : own) value = factor * (value - group.mean);
    });
}

// The hypothesis made true of the first group if it is true of the data.
void imposeHypothesis(const ResamplingRequest& request, double difference, NullModel& model) {
    const Groups groups(model);
    const auto first = std::span(model.data).first(static_cast<std::size_t>(model.sizes.front()));
    if (comparesVariances(request.statistic)) {
        groups.forEach(model.data, centre);
        if (request.statistic != Statistic::kVarianceRatio) return;
        for (double& value : first) value /= std::sqrt(request.hypothesised);
        return;
    }
    if (comparesMeans(request.statistic)) {
        for (double& value : first) value -= difference;
    }
    if (!hasOneGroup(request.statistic)) centre(groups.moments(model.data, 0, model.data.size()), model.data);
}

}  // namespace

bool buildNullModel(const ResamplingRequest& request, bool forBootstrap, NullModel& model) {
    if (!hasRightGroups(request) || !isMeaningful(request) || !gather(request, model)) return false;
    const double difference = comparesMeans(request.statistic) ? request.hypothesised : 0.0;
    // Bartlett's statistic may depend on the unit.
    const int exponent = request.statistic == Statistic::kBartlett ? 0 : exponentOf(model, difference);
    for (double& value : model.data) value = std::ldexp(value, -exponent);
    model.givenVariances.reserve(request.givenVariances.size());
    for (const double variance : request.givenVariances)
        model.givenVariances.push_back(std::ldexp(variance, -2 * exponent));
    imposeHypothesis(request, std::ldexp(difference, -exponent), model);
    if (!forBootstrap) return true;
    model.residuals = model.data;
    const Groups groups(model);
    if (comparesVariances(request.statistic)) {
        equaliseVariances(groups, model.residuals);
    } else {
        groups.forEach(model.residuals, centre);
    }
    return true;
}

}  // namespace numcore::tests
