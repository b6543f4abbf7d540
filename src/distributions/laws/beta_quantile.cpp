#include "distributions/laws/beta_quantile.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "distributions/special/beta_ratio.hpp"
#include "distributions/special/polynomial.hpp"
#include "numcore/special.h"

namespace numcore::distributions {
namespace {

// Normal deviate of the starting value, by power of sqrt(-2 ln tail).
constexpr std::array<double, 2> kNumerator = {2.30753, 0.27061};
constexpr std::array<double, 3> kDenominator = {1.0, 0.99229, 0.04481};

// Kept: the publication's limits are 0.0001 and 0.9999, and it puts the starting value on the nearer one.
constexpr double kSmallestStart = 3e-308;
constexpr double kLargestStart = 0.9999999999999998;
constexpr double kOtherStart = 0.5;

// Kept: the accuracy target, as an exponent of 10. Remark AS R83 has -13 - 5 / shape^2 - 1 / tail^0.2 >= -37.
constexpr double kTargetConstant = -13.0;
constexpr double kTargetByShape = -2.5;
constexpr double kTargetByTail = -0.5;
constexpr double kSmallestTarget = 1e-300;

constexpr double kSettledChange = 1e-15;
constexpr double kQuadraticShare = 1e-8;  // after a step of this share of x the error is lost in the rounding
constexpr double kShrink = 3.0;
constexpr int kMaxSteps = 1000;
constexpr int kMaxShrinks = 1000;

constexpr double kSmallestDouble = std::numeric_limits<double>::denorm_min();
constexpr double kLogSmallest = -744.0;  // a little above its logarithm
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

struct Point {
    double x;
    double y;  // 1 - x

    double smaller() const { return std::min(x, y); }
    // The smaller one moves by the step, the other follows.
    Point moved(double step) const {
        if (x <= y) return {x - step, 1.0 - (x - step)};
        return {1.0 - (y + step), y + step};
    }
};

// I_x(a, b) = tail for a tail of at most 1/2.
class TailEquation {
  public:
    TailEquation(double tail, double a, double b) : tail_(tail), a_(a), b_(b), logBeta_(betaln(a, b)) {}

    /// The root, or no numbers.
    Point root() const;

  private:
    bool isPastEnd(double probability, double shape) const;
    double start() const;
    double carterStart(double deviate) const;
    double chiSquareStart(double deviate) const;
    double target() const;
    double newtonStep(const Point& at) const;
    double followingStep(double step, const Point& at) const;
    Point iterated(double x) const;

    double tail_;
    double a_;
    double b_;
    double logBeta_;
};

// The leading power x^shape / (shape B(a, b)) has the probability below the smallest double.
bool TailEquation::isPastEnd(double probability, double shape) const {
    return std::log(probability * shape) + logBeta_ < shape * kLogSmallest;
}

// Approximation of the beta law by Fisher's z, both shapes above 1.
double TailEquation::carterStart(double deviate) const {
    const double r = (deviate * deviate - 3.0) / 6.0;
    const double s = 1.0 / (2.0 * a_ - 1.0);
    const double t = 1.0 / (2.0 * b_ - 1.0);
    const double h = 2.0 / (s + t);
    const double w = deviate * std::sqrt(h + r) / h - (t - s) * (r + 5.0 / 6.0 - 2.0 / (3.0 * h));
    return a_ / (a_ + b_ * std::exp(2.0 * w));
}

// Through a chi-square variate, or by the leading power at either end where that does not serve.
double TailEquation::chiSquareStart(double deviate) const {
    const double variance = 1.0 / (9.0 * b_);
    const double root = 1.0 - variance + deviate * std::sqrt(variance);
    const double chiSquare = 2.0 * b_ * root * root * root;
    if (chiSquare <= 0.0) return 1.0 - std::exp((std::log((1.0 - tail_) * b_) + logBeta_) / b_);
    const double ratio = (4.0 * a_ + 2.0 * b_ - 2.0) / chiSquare;
    if (ratio <= 1.0) return std::exp((std::log(tail_ * a_) + logBeta_) / a_);
    return 1.0 - 2.0 / (ratio + 1.0);
}

double TailEquation::start() const {
    const double r = std::sqrt(-2.0 * std::log(tail_));
    const double deviate = r - polynomial(kNumerator, r) / polynomial(kDenominator, r);
    const double x = a_ > 1.0 && b_ > 1.0 ? carterStart(deviate) : chiSquareStart(deviate);
    return x >= kSmallestStart && x <= kLargestStart ? x : kOtherStart;
}

double TailEquation::target() const {
    const double exponent = kTargetConstant + kTargetByShape / (a_ * a_) + kTargetByTail / (tail_ * tail_);
    return std::max(std::pow(10.0, exponent), kSmallestTarget);
}

// What Newton's iteration takes from x and gives to y, at most 1 in size.
double TailEquation::newtonStep(const Point& at) const {
    const double excess = betaRatio(a_, b_, at.x, at.y).lower - tail_;
    if (excess == 0.0) return 0.0;
    const double step = excess * std::exp(logBeta_ + (1.0 - a_) * std::log(at.x) + (1.0 - b_) * std::log(at.y));
    return std::clamp(step, -1.0, 1.0);
}

// A bound of what the step after this one will be: the error that Newton's rule leaves is step^2 f'' / (2 f').
double TailEquation::followingStep(double step, const Point& at) const {
    const double curvature = std::abs(a_ - 1.0) / at.x + std::abs(b_ - 1.0) / at.y + 1.0 / at.smaller();
    return 0.5 * curvature * step * step;
}

// The step, shrunk below the limit and until it leads to a point inside (0, 1); NaN when nothing helps.
double shrunk(double step, const Point& at, double limit) {
    for (int shrink = 0; shrink <= kMaxShrinks; ++shrink) {
        if (std::abs(step) < limit && at.x - step > 0.0 && at.y + step > 0.0) return step;
        step /= kShrink;
    }
    return kNoNumber;
}

Point TailEquation::iterated(double x) const {
    const double accuracy = target();
    Point at = {x, 1.0 - x};
    double limit = 1.0;  // size of the last step before a change of direction
    double lastStep = 0.0;
    double lastTaken = 1.0;
    for (int i = 0; i < kMaxSteps; ++i) {
        const double step = newtonStep(at);
        if ((step > 0.0) != (lastStep > 0.0)) limit = std::abs(lastTaken);
        const double taken = shrunk(step, at, limit);
        if (std::isnan(taken)) break;
        const Point next = at.moved(taken);
        const double settled = kSettledChange * at.smaller();
        if (std::abs(taken) < settled || (next.x == at.x && next.y == at.y)) return next;
        // The step that would only confirm this one is not made.
        if (taken == step && followingStep(step, at) < settled) return next;
        const bool reached = limit <= accuracy || std::abs(step) <= accuracy;
        if (reached && std::abs(taken) <= kQuadraticShare * at.smaller()) return next;
        at = next;
        lastStep = step;
        lastTaken = taken;
    }
    return {kNoNumber, kNoNumber};
}

Point TailEquation::root() const {
    if (isPastEnd(tail_, a_)) return {kSmallestDouble, 1.0};
    if (isPastEnd(1.0 - tail_, b_)) return {1.0, kSmallestDouble};
    return iterated(start());
}

}  // namespace

BetaQuantile betaQuantile(double p, double alpha, double beta, bool lowerTail) {
    const bool fromAbove = (p > 0.5) == lowerTail;
    const double tail = p > 0.5 ? 1.0 - p : p;
    const Point root = (fromAbove ? TailEquation(tail, beta, alpha) : TailEquation(tail, alpha, beta)).root();
    const bool found = !std::isnan(root.x);
    return fromAbove ? BetaQuantile{root.y, root.x, found} : BetaQuantile{root.x, root.y, found};
}

}  // namespace numcore::distributions
