#include "correlation/association/polychoric.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "correlation/association/correlation_climb.hpp"
#include "distributions/laws/normal_tail.hpp"
#include "numcore/continuous_laws.h"
#include "suite/vmcore.hpp"

namespace numcore::association {
namespace {

constexpr std::int32_t kFullSteps = 500;
constexpr std::int32_t kHalvings = 40;
constexpr double kStepTolerance = 1e-10;
// A gain in the log-likelihood per unit of weight that rounding could hide.
constexpr double kTrustedGain = 1e-11;
// Likelihoods that differ by less in relative terms are the same: the limit is then as likely as what is near
// it.
constexpr double kSameLikelihood = 1e-13;

double likelihoodAt(const OrdinalTable& table, LatentLaw law, double rho) {
    law.rho = rho;
    return logLikelihood(table.counts, cellsOf(law).probability);
}

// Slopes of the fitted correlation in the shares of the cells: by the score of the cell itself and, through the
// thresholds, by the running shares of its row and its column (Joereskog 1994).
std::vector<double> influences(const OrdinalTable& table, const LatentLaw& law) {
    const auto nRows = static_cast<std::size_t>(table.nRows);
    const auto nColumns = static_cast<std::size_t>(table.nColumns);
    const std::size_t nParameters = nRows + nColumns - 1;
    const CellGrid cells = cellsOf(law);
    const std::vector<double> information = derivatives(table, law).information;
    // A share in category i moves every threshold k >= i by the reciprocal of the density there.
    const auto carried = [&](std::span<const double> thresholds, std::size_t firstParameter) {
        std::vector<double> sums(thresholds.size() + 1, 0.0);
        for (std::size_t k = thresholds.size(); k-- > 0;) {
            const double coupling = information[(firstParameter + k) * nParameters];
            sums[k] = sums[k + 1] + coupling / distributions::normalDensity(thresholds[k]);
        }
        return sums;
    };
    const auto byRow = carried(law.rows, 1);
    const auto byColumn = carried(law.columns, nRows);
    std::vector<double> slopes(cells.probability.size(), 0.0);
    for (std::size_t cell = 0; cell < slopes.size(); ++cell) {
        if (!(cells.probability[cell] > 0.0)) continue;
        const double own = cells.slopeRho[cell] / cells.probability[cell];
        slopes[cell] = (own - byRow[cell % nRows] - byColumn[cell / nRows]) / information[0];
    }
    return slopes;
}

double twoStepError(const OrdinalTable& table, const LatentLaw& law) {
    const auto slopes = influences(table, law);
    const auto share = cellsOf(law).probability;
    double mean = 0.0;
    double square = 0.0;
    for (std::size_t cell = 0; cell < slopes.size(); ++cell) {
        mean += share[cell] * slopes[cell];
        square += share[cell] * slopes[cell] * slopes[cell];
    }
    const double error = std::sqrt((square - mean * mean) / table.total);
    return std::isfinite(error) ? error : kMissing;
}

double dot(std::span<const double> a, std::span<const double> b) {
    return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

// Inverse of the negative second derivatives of the log-likelihood per unit of weight, symmetric.
class Curvature {
  public:
    /// From the expected information; false when that is singular.
    bool set(const std::vector<double>& information, std::int32_t n) {
        size_ = static_cast<std::size_t>(n);
        inverse_.resize(information.size());
        return vmcore::M_InverseG2({information.data(), n, n}, {inverse_.data(), n, n});
    }

    double variance(std::size_t parameter) const { return inverse_[parameter * size_ + parameter]; }

    std::vector<double> times(std::span<const double> vector) const {
        std::vector<double> out(size_, 0.0);
        for (std::size_t j = 0; j < size_; ++j) {
            for (std::size_t i = 0; i < size_; ++i) out[i] += inverse_[j * size_ + i] * vector[j];
        }
        return out;
    }

    /// The update of Broyden, Fletcher, Goldfarb and Shanno: what the gradient lost over a step corrects the
    /// curvature. Nocedal and Wright (2006), Numerical Optimization, 2nd ed., equation 6.17.
    void learn(std::span<const double> step, std::span<const double> lost) {
        const double scale = dot(step, lost);
        if (!(scale > 0.0)) return;
        const std::vector<double> turned = times(lost);
        const double weight = (1.0 + dot(lost, turned) / scale) / scale;
        for (std::size_t j = 0; j < size_; ++j) {
            for (std::size_t i = 0; i < size_; ++i) {
                inverse_[j * size_ + i] +=
                    weight * step[i] * step[j] - (turned[i] * step[j] + step[i] * turned[j]) / scale;
            }
        }
    }

  private:
    std::size_t size_ = 0;
    std::vector<double> inverse_;
};

std::vector<double> gradientPerWeight(const OrdinalTable& table, const LatentLaw& law) {
    std::vector<double> gradient = derivatives(table, law).gradient;
    for (double& slope : gradient) slope /= table.total;
    return gradient;
}

LatentLaw moved(const LatentLaw& law, std::span<const double> step) {
    LatentLaw to = law;
    to.rho += step[0];
    for (std::size_t k = 0; k < law.rows.size(); ++k) to.rows[k] += step[1 + k];
    for (std::size_t k = 0; k < law.columns.size(); ++k) to.columns[k] += step[1 + law.rows.size() + k];
    return to;
}

// Moves by the first of the step, its half, its quarter, ... that raises the likelihood, and leaves in `step`
// what it took; false when none does. A gain that rounding could hide is taken on trust.
bool take(const OrdinalTable& table, std::vector<double>& step, double gain, PolychoricFit& fit) {
    for (std::int32_t halving = 0; halving < kHalvings; ++halving) {
        LatentLaw next = moved(fit.law, step);
        if (isLaw(next) && std::abs(next.rho) < 1.0) {
            const double reached = logLikelihood(table.counts, cellsOf(next).probability);
            if (reached > fit.logLikelihood || gain <= kTrustedGain) {
                fit.law = std::move(next);
                fit.logLikelihood = reached;
                return true;
            }
        }
        for (double& change : step) change *= 0.5;
    }
    return false;
}

bool isSmall(std::span<const double> step) {
    return std::all_of(step.begin(), step.end(),
                       [](double change) { return std::abs(change) <= kStepTolerance; });
}

// Raises the likelihood from the law in `fit`, whose curvature is given; false when it stops elsewhere than at
// a maximum.
bool climb(const OrdinalTable& table, Curvature curvature, PolychoricFit& fit) {
    std::vector<double> gradient = gradientPerWeight(table, fit.law);
    for (std::int32_t nSteps = 0; nSteps < kFullSteps; ++nSteps) {
        std::vector<double> step = curvature.times(gradient);
        if (!take(table, step, dot(step, gradient), fit)) return false;
        ++fit.nSteps;
        if (isSmall(step)) return true;
        std::vector<double> next = gradientPerWeight(table, fit.law);
        for (std::size_t k = 0; k < next.size(); ++k) gradient[k] -= next[k];
        curvature.learn(step, gradient);
        gradient = std::move(next);
    }
    return false;
}

}  // namespace

PolychoricFit fitTwoStep(const OrdinalTable& table, double start) {
    PolychoricFit fit;
    if (table.nRows == 0) {
        fit.status = FitStatus::kTooFew;
        return fit;
    }
    if (table.counts.empty() || table.nRows < 2 || table.nColumns < 2) return fit;
    fit.law = {0.0, thresholdsOf(rowTotals(table)), thresholdsOf(columnTotals(table))};
    if (!isLaw(fit.law)) {
        fit.status = FitStatus::kTooFew;
        return fit;
    }
    const Climb found = climbToMaximum(start, [&](double rho) {
        LatentLaw at = fit.law;
        at.rho = rho;
        return correlationScore(table, cellsOf(at));
    });
    fit.nSteps = found.nSteps;
    fit.status = found.converged ? FitStatus::kConverged : FitStatus::kNotConverged;
    fit.rho = fit.law.rho = found.rho;
    fit.logLikelihood = likelihoodAt(table, fit.law, found.rho);
    const double limit = found.rho < 0.0 ? -1.0 : 1.0;
    const double atLimit = likelihoodAt(table, fit.law, limit);
    if (atLimit >= fit.logLikelihood - kSameLikelihood * std::abs(fit.logLikelihood)) {
        fit.status = FitStatus::kAtLimit;
        fit.rho = fit.law.rho = limit;
        fit.logLikelihood = atLimit;
        return fit;
    }
    fit.standardError = twoStepError(table, fit.law);
    return fit;
}

PolychoricFit fitFull(const OrdinalTable& table, double start) {
    PolychoricFit fit = fitTwoStep(table, start);
    if (fit.status != FitStatus::kConverged) return fit;
    const std::int32_t nParameters = table.nRows + table.nColumns - 1;
    Curvature curvature;
    const bool known = curvature.set(derivatives(table, fit.law).information, nParameters);
    fit.status = known && climb(table, curvature, fit) ? FitStatus::kConverged : FitStatus::kNotConverged;
    fit.rho = fit.law.rho;
    const bool hasError = curvature.set(derivatives(table, fit.law).information, nParameters);
    fit.standardError = hasError ? std::sqrt(curvature.variance(0) / table.total) : kMissing;
    return fit;
}

NormalityTest testNormality(const OrdinalTable& table, const PolychoricFit& fit) {
    NormalityTest test;
    if (fit.rho == kMissing) return test;
    double saturated = 0.0;
    for (const double count : table.counts) {
        if (count > 0.0) saturated += count * std::log(count / table.total);
    }
    test.statistic = std::max(0.0, 2.0 * (saturated - fit.logLikelihood));
    test.degreesOfFreedom = table.nRows * table.nColumns - table.nRows - table.nColumns;
    if (test.degreesOfFreedom > 0) test.pValue = pValChiSq(test.statistic, test.degreesOfFreedom);
    return test;
}

}  // namespace numcore::association
