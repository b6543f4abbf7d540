// Polyserial correlation in two steps. Drasgow, F. (1986), Polychoric and polyserial correlations, in Kotz and
// Johnson (eds), Encyclopedia of Statistical Sciences 7:68-74; Olsson, U., Drasgow, F. and Dorans, N. J.
// (1982), The polyserial correlation coefficient, Psychometrika 47:337-347.

#include <algorithm>
#include <cmath>
#include <limits>

#include "correlation/association/biserial.hpp"
#include "correlation/association/correlation_climb.hpp"
#include "distributions/laws/normal_tail.hpp"
#include "suite/vmcore.hpp"

namespace numcore::association {
namespace {

using distributions::normalDensity;
using distributions::normalLowerTail;
using distributions::normalUpperTail;

// What the estimate of the correlation takes as given.
struct Margins {
    std::vector<double> z;       // standardized numbers, divisor n
    std::vector<double> limits;  // thresholds with both infinite ends
    std::vector<double> totals;  // weight of each category
    double weight = 0.0;
};

// Slopes of the logarithm of the probability of a category given z.
struct Slopes {
    double rho = 0.0;
    double low = 0.0;   // in the threshold below the category
    double high = 0.0;  // in the threshold above
    double z = 0.0;
};

constexpr double kSmallestProbability = 1e-300;

Margins marginsOf(const GradedSample& sample) {
    Margins margins;
    const vmcore::Summary summary = vmcore::summarize(sample.x, sample.weights);
    const double deviation = std::sqrt(summary.sumSquares / summary.weight);
    margins.weight = summary.weight;
    if (!(deviation > 0.0) || !std::isfinite(deviation)) return margins;
    margins.totals.assign(static_cast<std::size_t>(sample.nCategories), 0.0);
    for (std::size_t i = 0; i < sample.x.size(); ++i) {
        margins.z.push_back((sample.x[i] - summary.mean) / deviation);
        margins.totals[static_cast<std::size_t>(sample.category[i])] += sample.weights[i];
    }
    margins.limits = thresholdsOf(margins.totals);
    margins.limits.insert(margins.limits.begin(), -std::numeric_limits<double>::infinity());
    margins.limits.push_back(std::numeric_limits<double>::infinity());
    return margins;
}

// Probability between two points of the normal law, from the tail that keeps its digits.
double between(double low, double high) {
    return low > 0.0 ? normalUpperTail(low) - normalUpperTail(high)
                     : normalLowerTail(high) - normalLowerTail(low);
}

double probabilityAt(double rho, double z, double low, double high) {
    const double spread = std::sqrt((1.0 - rho) * (1.0 + rho));
    if (spread > 0.0) return between((low - rho * z) / spread, (high - rho * z) / spread);
    return low < rho * z && rho * z <= high ? 1.0 : 0.0;
}

Slopes slopesAt(double rho, double z, double low, double high) {
    const double spread = std::sqrt((1.0 - rho) * (1.0 + rho));
    const double probability = std::max(probabilityAt(rho, z, low, high), kSmallestProbability);
    const double edgeLow = normalDensity((low - rho * z) / spread) / probability;
    const double edgeHigh = normalDensity((high - rho * z) / spread) / probability;
    const auto turned = [&](double edge, double limit) { return edge > 0.0 ? edge * (limit * rho - z) : 0.0; };
    return {(turned(edgeHigh, high) - turned(edgeLow, low)) / (spread * spread * spread), -edgeLow / spread,
            edgeHigh / spread, -rho * (edgeHigh - edgeLow) / spread};
}

Slopes slopesOf(const GradedSample& sample, const Margins& margins, double rho, std::size_t i) {
    const auto category = static_cast<std::size_t>(sample.category[i]);
    return slopesAt(rho, margins.z[i], margins.limits[category], margins.limits[category + 1]);
}

CorrelationScore scoreAt(const GradedSample& sample, const Margins& margins, double rho) {
    CorrelationScore sum;
    for (std::size_t i = 0; i < sample.x.size(); ++i) {
        const double slope = slopesOf(sample, margins, rho, i).rho;
        sum.score += sample.weights[i] * slope;
        sum.information += sample.weights[i] * slope * slope;
    }
    return sum;
}

double likelihoodAt(const GradedSample& sample, const Margins& margins, double rho) {
    double sum = 0.0;
    for (std::size_t i = 0; i < sample.x.size(); ++i) {
        const auto category = static_cast<std::size_t>(sample.category[i]);
        sum += sample.weights[i] * std::log(probabilityAt(rho, margins.z[i], margins.limits[category],
                                                          margins.limits[category + 1]));
    }
    return sum;
}

// Mean products of the slope in the correlation with those in what was estimated before.
struct Couplings {
    double rho = 0.0;
    double location = 0.0;
    double scale = 0.0;
    std::vector<double> thresholds;
};

Couplings couplingsAt(const GradedSample& sample, const Margins& margins, double rho) {
    Couplings mean;
    mean.thresholds.assign(margins.limits.size(), 0.0);
    for (std::size_t i = 0; i < sample.x.size(); ++i) {
        const Slopes slopes = slopesOf(sample, margins, rho, i);
        const auto category = static_cast<std::size_t>(sample.category[i]);
        const double share = sample.weights[i] / margins.weight * slopes.rho;
        mean.rho += share * slopes.rho;
        mean.location += share * slopes.z;
        mean.scale += share * slopes.z * margins.z[i];
        mean.thresholds[category] += share * slopes.low;
        mean.thresholds[category + 1] += share * slopes.high;
    }
    return mean;
}

// Error of the second step with that of the first: Murphy, K. M. and Topel, R. H. (1985), J. Bus. Econ.
// Statist. 3:370-379, by the influence of each observation on mean, deviation, thresholds and correlation.
double standardErrorAt(const GradedSample& sample, const Margins& margins, double rho) {
    const Couplings mean = couplingsAt(sample, margins, rho);
    const std::size_t nCategories = margins.totals.size();
    // By category: what its running shares do to the correlation through the thresholds.
    std::vector<double> carried(nCategories, 0.0);
    double centre = 0.0;
    double below = 0.0;
    for (std::size_t k = 1; k < nCategories; ++k) {
        const double effect = mean.thresholds[k] / normalDensity(margins.limits[k]);
        below += margins.totals[k - 1] / margins.weight;
        centre += effect * below;
        for (std::size_t category = 0; category < k; ++category) carried[category] += effect;
    }
    double square = 0.0;
    for (std::size_t i = 0; i < sample.x.size(); ++i) {
        const double z = margins.z[i];
        const double influence = slopesOf(sample, margins, rho, i).rho + mean.location * z +
                                 0.5 * mean.scale * (z * z - 1.0) -
                                 (carried[static_cast<std::size_t>(sample.category[i])] - centre);
        square += sample.weights[i] * influence * influence;
    }
    const double error = std::sqrt(square) / (margins.weight * mean.rho);
    return std::isfinite(error) ? error : kMissing;
}

double pearsonOfCategories(const GradedSample& sample, const Margins& margins) {
    std::vector<double> codes(sample.category.begin(), sample.category.end());
    const vmcore::Summary summary = vmcore::summarize(codes, sample.weights);
    double products = 0.0;
    for (std::size_t i = 0; i < codes.size(); ++i)
        products += sample.weights[i] * margins.z[i] * (codes[i] - summary.mean);
    return products / std::sqrt(margins.weight * summary.sumSquares);
}

}  // namespace

Association polyserial(const GradedSample& sample, Side side) {
    Association result;
    result.nCategories = sample.nCategories;
    if (sample.nCategories == 0) result.status = FitStatus::kTooFew;
    if (sample.x.empty() || sample.nCategories < 2) return result;
    const Margins margins = marginsOf(sample);
    result.weight = margins.weight;
    if (margins.z.empty()) return result;
    result.upperWeight = margins.weight - margins.totals[0];
    const double start = polyserialOf(pearsonOfCategories(sample, margins), margins.totals);
    const Climb climb = climbToMaximum(start, [&](double rho) { return scoreAt(sample, margins, rho); });
    result.coefficient = climb.rho;
    const double limit = climb.rho < 0.0 ? -1.0 : 1.0;
    if (likelihoodAt(sample, margins, limit) >= likelihoodAt(sample, margins, climb.rho)) {
        result.status = FitStatus::kAtLimit;
        result.coefficient = limit;
        return result;
    }
    result.status = climb.converged ? FitStatus::kConverged : FitStatus::kNotConverged;
    result.standardError = standardErrorAt(sample, margins, climb.rho);
    testByNormal(result.standardError, side, result);
    return result;
}

}  // namespace numcore::association
