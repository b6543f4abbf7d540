#include "tests/resampling/resampling.hpp"

#include <cmath>

#include "suite/rngcore_tasks.hpp"
#include "tests/resampling/engine.hpp"
#include "tests/resampling/fast_means.hpp"
#include "tests/resampling/formula.hpp"
#include "tests/resampling/null_model.hpp"
#include "tests/resampling/signs.hpp"

namespace numcore::tests {
namespace {

constexpr std::int64_t kMostSignBits = 62;
constexpr double kCancelled = 1e-6;  // the same as for two groups: the spread left is summed anew

struct Run {
    const ResamplingRequest& request;
    const ResamplingSettings& settings;
    const NullModel& model;
    ResamplingOptions& options;
};

Formula formulaOf(const Run& run) {
    return {run.request.statistic, run.model.givenVariances};
}

Extremes extremesOfRequest(const ResamplingRequest& request) {
    switch (request.statistic) {
        case Statistic::kBartlett:
        case Statistic::kLevene:
        case Statistic::kOneWayF:
        case Statistic::kWelchF:
            return Extremes::kUpper;
        case Statistic::kVarianceRatio:
            return request.alternative == Alternative::kTwoSided ? Extremes::kDoubled
                                                                 : extremesOf(request.alternative);
        default:
            return extremesOf(request.alternative);
    }
}

// ---- Groups

GroupStatistic fromMoments(const Formula& formula, std::span<const double> values,
                           std::span<const double> weights, std::size_t nGroups) {
    return [=](const Arrangements::Cursor& cursor) {
        std::vector<GroupMoments> groups(nGroups);
        for (std::size_t g = 0; g < nGroups; ++g) groups[g] = momentsOf(values, weights, cursor.group(g));
        return formula(groups);
    };
}

GroupStatistic fromSums(const Formula& formula, const NullModel& model, std::size_t drawnGroup) {
    return [=, sums = TwoGroupSums(model.data, model.weights)](const Arrangements::Cursor& cursor) {
        return formula(sums(cursor, drawnGroup));
    };
}

Resampled resampleGroups(const Run& run) {
    const Arrangements arrangements(run.model.sizes, run.settings);
    const Formula formula = formulaOf(run);
    const bool isBootstrap = run.settings.method == ResamplingMethod::kBootstrap;
    const bool isMeans = run.request.statistic == Statistic::kZ || run.request.statistic == Statistic::kT ||
                         run.request.statistic == Statistic::kWelch;
    const auto ofData = isMeans && !isBootstrap
                            ? fromSums(formula, run.model, arrangements.drawnGroup())
                            : fromMoments(formula, run.model.data, run.model.weights, arrangements.nGroups());
    const auto ofResample =
        isBootstrap ? fromMoments(formula, run.model.residuals, run.model.weights, arrangements.nGroups())
                    : ofData;
    const double observed = ofData(Arrangements::Cursor(arrangements));
    return resample(arrangements, ofResample, observed, extremesOfRequest(run.request), run.request.alpha,
                    run.settings, run.options);
}

// ---- Signs

class SignedGroup {
  public:
    SignedGroup(const Formula& formula, const NullModel& model)
        : formula_(formula), values_(model.data), weights_(model.weights), sums_(weightedValues(model)) {
        for (std::size_t i = 0; i < values_.size(); ++i) {
            const double weight = weights_.empty() ? 1.0 : weights_[i];
            weight_ += weight;
            squares_ += weight * values_[i] * values_[i];
        }
    }

    std::size_t nWords() const { return sums_.nWords(); }

    double operator()(std::span<const std::uint64_t> signs) const {
        const double sum = sums_(signs);
        GroupMoments moments = {static_cast<double>(values_.size()), weight_, sum / weight_,
                                squares_ - sum * (sum / weight_)};
        if (!(moments.squares > kCancelled * squares_)) moments = summedAnew(signs);
        return formula_({&moments, 1});
    }

  private:
    static std::vector<double> weightedValues(const NullModel& model) {
        std::vector<double> terms = model.data;
        for (std::size_t i = 0; i < model.weights.size(); ++i) terms[i] *= model.weights[i];
        return terms;
    }

    GroupMoments summedAnew(std::span<const std::uint64_t> signs) const {
        std::vector<double> values(values_.begin(), values_.end());
        std::vector<std::uint32_t> numbers(values.size());
        for (std::uint32_t i = 0; i < values.size(); ++i) {
            numbers[i] = i;
            if ((signs[i / 64] >> (i % 64) & 1U) != 0) values[i] = -values[i];
        }
        return momentsOf(values, weights_, numbers);
    }

    Formula formula_;
    std::span<const double> values_;
    std::span<const double> weights_;
    SignedSums sums_;
    double weight_ = 0.0;
    double squares_ = 0.0;
};

Resampled resampleSigns(const Run& run) {
    const SignedGroup group(formulaOf(run), run.model);
    const std::int64_t n = run.model.sizes.front();
    const std::size_t nWords = group.nWords();
    Resamples resamples;
    resamples.complete = n <= kMostSignBits && std::int64_t{1} << n <= run.settings.maxArrangements;
    resamples.count = resamples.complete ? std::int64_t{1} << n : run.settings.nResamples;
    resamples.workEach = n;
    resamples.fill = [&](std::int64_t from, std::span<double> out) {
        std::vector<std::uint64_t> signs(nWords);
        for (double& found : out) {
            const auto task = static_cast<std::uint64_t>(from++);
            if (resamples.complete) {
                signs[0] = task;
            } else {
                rngcore::fillTaskWords(run.settings.seed, task, 0, signs);
            }
            found = group(signs);
        }
    };
    const double observed = group(std::vector<std::uint64_t>(nWords, 0));
    return resample(resamples, observed, extremesOfRequest(run.request), run.request.alpha, run.settings,
                    run.options);
}

}  // namespace

Resampled resample(const ResamplingRequest& request, ResamplingOptions& options) {
    const ResamplingSettings settings = takeSettings(options);
    const bool isBootstrap = settings.method == ResamplingMethod::kBootstrap;
    NullModel model;
    if (!buildNullModel(request, isBootstrap, model)) return {};
    const Run run = {request, settings, model, options};
    return model.sizes.size() == 1 && !isBootstrap ? resampleSigns(run) : resampleGroups(run);
}

}  // namespace numcore::tests
