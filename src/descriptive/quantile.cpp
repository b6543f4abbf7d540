// Quantile methods. The rules are those of Hyndman, R. J. and Fan, Y. (1996), Sample quantiles in statistical
// packages, The American Statistician 50:361-365, with the treatment of positions below 1 kept as stated below.

#include "descriptive/quantile.hpp"

#include <algorithm>
#include <cmath>
#include <vector>

#include "numcore/descriptive.hpp"
#include "suite/vmcore.hpp"

namespace numcore {
namespace descriptive {
namespace {

/// How a quantile follows from one or two neighbouring order statistics X(k), X(k+1), k from 1.
struct Rule {
    enum class Blend { Constant, Lower, Next, Mean, Weighted, Offset };
    Blend blend = Blend::Constant;
    std::int64_t k = 1;
    double fraction = 0.0;
    double constant = 0.0;  // the result when no order statistic is needed
};

using Blend = Rule::Blend;

Rule lower(std::int64_t k) {
    return {Blend::Lower, k, 0.0, 0.0};
}

/// Position h = whole + fraction; the fraction is taken before the whole part is moved into 1..m-1.
struct Position {
    Position(double h, std::int64_t m)
        : whole(static_cast<std::int64_t>(std::floor(h))), fraction(h - std::floor(h)) {
        inside = std::clamp<std::int64_t>(whole, 1, m - 1);
    }
    std::int64_t whole;
    double fraction;
    std::int64_t inside;
};

Rule linearCdf(std::int64_t m, double p) {
    const double h = static_cast<double>(m) * p;
    const Position at(h, m);
    return h < 1.0 ? lower(1) : Rule{Blend::Weighted, at.inside, at.fraction, 0.0};
}

Rule nearestEven(std::int64_t m, double p) {
    const Position at(static_cast<double>(m) * p, m);
    const bool toNext = at.fraction == 0.5 ? at.inside % 2 != 0 : at.fraction > 0.5;
    return {toNext ? Blend::Next : Blend::Lower, at.inside, 0.0, 0.0};
}

Rule inverseCdf(std::int64_t m, double p) {
    // Kept: a position below 1 has a fraction, so it gives X(2).
    const Position at(static_cast<double>(m) * p, m);
    return {at.fraction == 0.0 ? Blend::Lower : Blend::Next, at.inside, 0.0, 0.0};
}

Rule weibull(std::int64_t m, double p) {
    const Position at(static_cast<double>(m + 1) * p, m);
    if (at.whole < 1) return lower(1);
    if (at.whole >= m) return lower(m);
    return {Blend::Weighted, at.whole, at.fraction, 0.0};
}

Rule averagedCdf(std::int64_t m, double p) {
    const double h = static_cast<double>(m) * p;
    const Position at(h, m);
    if (at.fraction == 0.0) return {Blend::Mean, at.inside, 0.0, 0.0};
    return h < 1.0 ? lower(1) : Rule{Blend::Next, at.inside, 0.0, 0.0};
}

Rule linear(std::int64_t m, double p) {
    const Position at(static_cast<double>(m - 1) * p + 1.0, m);
    return {Blend::Offset, at.inside, at.fraction, 0.0};
}

Rule ruleFor(std::int32_t method, std::int64_t m, double p) {
    if (m < 1 || !(p >= 0.0 && p <= 1.0)) return {Blend::Constant, 1, 0.0, kMissing};
    // Answered before the method number is looked at.
    if (m == 1 || p == 0.0) return lower(1);
    if (p == 1.0) return lower(m);
    switch (method) {
        case NUMCORE_QUANTILE_LINEAR_CDF:
            return linearCdf(m, p);
        case NUMCORE_QUANTILE_NEAREST_EVEN:
            return nearestEven(m, p);
        case NUMCORE_QUANTILE_INVERSE_CDF:
            return inverseCdf(m, p);
        case NUMCORE_QUANTILE_WEIBULL:
            return weibull(m, p);
        case NUMCORE_QUANTILE_AVERAGED_CDF:
            return averagedCdf(m, p);
        case NUMCORE_QUANTILE_LINEAR:
            return linear(m, p);
        default:
            return {};  // Kept: an unknown method gives 0
    }
}

double blended(const Rule& rule, double at, double next) {
    switch (rule.blend) {
        case Blend::Constant:
            return rule.constant;
        case Blend::Lower:
            return at;
        case Blend::Next:
            return next;
        case Blend::Mean:
            return at == next ? at : (at + next) / 2.0;
        // Equal neighbours and whole positions are answered without arithmetic, so that infinities do not
        // turn into NaN.
        case Blend::Weighted:
            return rule.fraction == 0.0 || at == next ? at : (1.0 - rule.fraction) * at + rule.fraction * next;
        case Blend::Offset:
            return rule.fraction == 0.0 || at == next ? at : at + rule.fraction * (next - at);
    }
    return kMissing;
}

}  // namespace

void quantiles(std::span<const double> cells, std::int32_t method, std::span<const double> orders,
               std::span<double> out) {
    const std::int64_t m = vmcore::countPresent(cells);
    std::vector<Rule> rules;
    std::vector<std::int64_t> ranks;  // from 0; two per rule that needs any
    for (const double p : orders) {
        rules.push_back(ruleFor(method, m, p));
        if (rules.back().blend == Blend::Constant) continue;
        ranks.push_back(rules.back().k - 1);
        ranks.push_back(std::min(rules.back().k, m - 1));
    }
    std::vector<double> found(ranks.size());
    vmcore::selectRanks(cells, ranks, found);
    std::size_t next = 0;
    for (std::size_t i = 0; i < rules.size(); ++i) {
        if (rules[i].blend == Blend::Constant) {
            out[i] = rules[i].constant;
        } else {
            out[i] = blended(rules[i], found[next], found[next + 1]);
            next += 2;
        }
    }
}

double quantile(std::span<const double> cells, std::int32_t method, double order) {
    double result = kMissing;
    quantiles(cells, method, {&order, 1}, {&result, 1});
    return result;
}

double weightedQuantile(std::span<const double> cells, std::span<const double> weights, double order) {
    if (!(order >= 0.0 && order <= 1.0)) return kMissing;
    const std::size_t n = std::min(cells.size(), weights.size());
    return vmcore::V_QuantileW2(cells.first(n), weights.first(n), order);
}

}  // namespace descriptive

namespace {

std::span<const double> firstCells(const matrix<double>* x, std::int32_t n) {
    if (x == nullptr || n < 1) return {};
    return x->span().first(static_cast<std::size_t>(std::min(n, x->size())));
}

}  // namespace

double V_QuantileMethod(matrix<double>* x, std::int32_t n, std::int16_t*, std::int16_t weighted,
                        matrix<double>* w, std::int32_t method, double p) {
    if (isTrue(weighted)) return descriptive::weightedQuantile(firstCells(x, n), firstCells(w, n), p);
    return descriptive::quantile(firstCells(x, n), method, p);
}

double V_QuantileMethod2(matrix<double>* x, std::int32_t n, std::int32_t method, double p) {
    return descriptive::quantile(firstCells(x, n), method, p);
}

double V_InterQuartileMethod(matrix<double>* x, std::int32_t n, std::int16_t weighted, matrix<double>* w,
                             std::int32_t method) {
    const double first = V_QuantileMethod(x, n, nullptr, weighted, w, method, 0.25);
    const double third = V_QuantileMethod(x, n, nullptr, weighted, w, method, 0.75);
    return first == kMissing || third == kMissing ? kMissing : third - first;
}

}  // namespace numcore
