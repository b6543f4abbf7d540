#include "cli/laws/law_plot.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "cli/errors.hpp"
#include "cli/laws/evaluate.hpp"
#include "cli/laws/plot_range.hpp"
#include "cli/plot/panel.hpp"
#include "numcore/api.h"

namespace numcore::cli {

namespace {

using plot::Anchor;
using plot::Box;
using plot::Panel;
using plot::Point;
using plot::Svg;

constexpr double kWidth = 720.0;
constexpr double kHeight = 640.0;
constexpr double kHeightOfOne = 380.0;
constexpr double kLeft = 90.0;
constexpr double kRight = 695.0;
constexpr double kTop = 56.0;
constexpr double kGap = 28.0;
constexpr double kBottomRoom = 56.0;
constexpr int kSamples = 500;
constexpr double kMostBars = 150.0;

/// A point of the distribution function that was asked for.
struct Mark {
    double x;
    double lowerTail;
    std::string valueText;
    std::string tailText;
};

std::vector<Mark> makeMarks(const ChosenLaw& chosen, const LawMarks& asked) {
    std::vector<Mark> marks;
    const Tail tail = asked.upper ? Tail::kUpper : Tail::kLower;
    for (const double point : asked.points) {
        const double x = asked.probabilities ? quantileAt(chosen, point, tail) : point;
        if (x == NUMCORE_MISSING || x == NUMCORE_OVERFLOW || !std::isfinite(x)) continue;
        const double probability = asked.probabilities ? point : distributionAt(chosen, x, tail);
        if (probability == NUMCORE_MISSING) continue;
        marks.push_back({x, asked.upper ? 1.0 - probability : probability, fmt::format("x = {:.5g}", x),
                         fmt::format("P(X {} x) = {:.5g}", asked.upper ? ">" : "<=", probability)});
    }
    std::ranges::sort(marks, {}, &Mark::x);
    return marks;
}

std::vector<double> samplePoints(const Interval& range, const Interval& support) {
    const double hair = 1e-4 * (range.upper - range.lower);
    const double low = std::max(range.lower, support.lower + hair);
    const double high = std::min(range.upper, support.upper - hair);
    std::vector<double> xs;
    for (int i = 0; i <= kSamples; ++i) xs.push_back(low + (high - low) * i / kSamples);
    return xs;
}

/// The density on the range, 0 where the law is not.
std::vector<Point> densityCurve(const ChosenLaw& chosen, const Interval& range) {
    const Interval support = chosen.law->support(chosen.parameters);
    std::vector<Point> points;
    for (const double x : samplePoints(range, support)) {
        const double y = densityAt(chosen, x);
        if (y == NUMCORE_MISSING || std::isnan(y)) continue;
        points.push_back({x, y});
    }
    if (points.empty()) return points;
    if (support.lower > range.lower)
        points.insert(points.begin(),
                      {{range.lower, 0.0}, {support.lower, 0.0}, {support.lower, points.front().y}});
    if (support.upper < range.upper)
        points.insert(points.end(),
                      {{support.upper, points.back().y}, {support.upper, 0.0}, {range.upper, 0.0}});
    return points;
}

/// The top of the density's axis: its highest point, but where it climbs without bound at an end of the support
/// the height a little inside.
double densityTop(const std::vector<Point>& curve, const Interval& shown) {
    constexpr double kMargin = 0.03;
    constexpr double kClimb = 3.0;
    double top = 0.0;
    double insideTop = 0.0;
    const double margin = kMargin * (shown.upper - shown.lower);
    for (const Point& point : curve) {
        top = std::max(top, point.y);
        const bool inside = point.x > shown.lower + margin && point.x < shown.upper - margin;
        if (inside) insideTop = std::max(insideTop, point.y);
    }
    return 1.06 * (insideTop > 0.0 && top > kClimb * insideTop ? 1.5 * insideTop : top);
}

/// The tail that was asked for, when it is one.
std::vector<Point> shadedPart(const std::vector<Point>& curve, double x, double density, bool upper) {
    std::vector<Point> part;
    if (upper) part.push_back({x, density});
    for (const Point& point : curve) {
        if (upper ? point.x > x : point.x < x) part.push_back(point);
    }
    if (!upper) part.push_back({x, density});
    return part;
}

void drawDensity(Svg& svg, const Box& box, const ChosenLaw& chosen, const Interval& range,
                 const std::vector<Mark>& marks, bool upper) {
    std::vector<Point> curve = densityCurve(chosen, range);
    if (curve.empty()) return;
    const Interval support = chosen.law->support(chosen.parameters);
    const double top =
        densityTop(curve, {std::max(range.lower, support.lower), std::min(range.upper, support.upper)});
    if (!(top > 0.0)) return;
    // Where the density is infinite the curve leaves the panel.
    for (Point& point : curve) point.y = std::min(point.y, 4.0 * top);
    Panel panel(svg, box, {range.lower, range.upper, 0.0, top});
    panel.axesAbove("Density", false);
    const auto heightAt = [&](double x) {
        const double y = densityAt(chosen, x);
        return y == NUMCORE_MISSING ? 0.0 : std::min(y, top);
    };
    if (marks.size() == 1) panel.area(shadedPart(curve, marks[0].x, heightAt(marks[0].x), upper));
    panel.curve(curve);
    for (const Mark& mark : marks) {
        if (!panel.contains(mark.x)) continue;
        panel.hint({mark.x, 0.0}, {mark.x, heightAt(mark.x)});
        panel.dot({mark.x, heightAt(mark.x)});
    }
}

void drawBars(Svg& svg, const Box& box, const ChosenLaw& chosen, const Interval& range,
              const std::vector<Mark>& marks) {
    // Many bars are one shape without gaps, a little over one another; very many are drawn as every n-th one.
    const bool many = range.upper - range.lower > kMostBars;
    const double stride = std::max(1.0, std::ceil((range.upper - range.lower) / kMostBars / 4.0));
    const double width = stride * (many ? 1.5 : 0.8);
    std::vector<Point> heights;
    double top = 0.0;
    for (double k = std::ceil(range.lower); k <= range.upper; k += stride) {
        const double probability = densityAt(chosen, k);
        if (probability == NUMCORE_MISSING) continue;
        heights.push_back({k, probability});
        top = std::max(top, probability);
    }
    Panel panel(svg, box, {range.lower, range.upper, 0.0, top > 0.0 ? 1.06 * top : 1.0});
    panel.axesAbove("Probability", true);
    for (const Point& bar : heights) {
        if (bar.y <= 0.0) continue;
        const bool asked =
            std::ranges::any_of(marks, [&](const Mark& mark) { return std::floor(mark.x) == bar.x; });
        panel.bar(bar.x, bar.y, width, asked ? "bar-asked" : many ? "bar-dense" : "bar");
    }
}

bool overlap(const Box& a, const Box& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

/// Where the rising curve leaves room: right of a point and below it, or left of it and above. A label that
/// would cover another one is left out.
void labelMark(Panel& panel, const Mark& mark, std::vector<Box>& taken) {
    constexpr double kCharacterWidth = 6.4;
    constexpr double kLow = 0.15;  // nothing fits below a lower point
    constexpr double kHigh = 0.8;  // nor above a higher one
    const Point at{mark.x, mark.lowerTail};
    const Point place = panel.pixel(at);
    const double width =
        kCharacterWidth * static_cast<double>(std::max(mark.valueText.size(), mark.tailText.size()));
    const bool roomAtRight = place.x + width + 9.0 < kRight;
    const bool above = mark.lowerTail < kLow || (mark.lowerTail < kHigh && !roomAtRight);
    const bool startsAtPoint = above ? place.x - width - 9.0 < kLeft : roomAtRight;
    // Below a point near the right edge the label ends at the edge.
    const double dx = startsAtPoint ? 9.0 : above ? -9.0 : kRight - 6.0 - place.x;
    const double dy = above ? -22.0 : 18.0;
    const double left = place.x + dx - (startsAtPoint ? 0.0 : width);
    const Box box{left, place.y + dy - 11.0, left + width, place.y + dy + 18.0};
    if (std::ranges::any_of(taken, [&](const Box& other) { return overlap(box, other); })) return;
    taken.push_back(box);
    const Anchor anchor = startsAtPoint ? Anchor::kStart : Anchor::kEnd;
    panel.note(at, mark.valueText, anchor, dx, dy);
    panel.note(at, mark.tailText, anchor, dx, dy + 14.0);
}

void drawDistribution(Svg& svg, const Box& box, const ChosenLaw& chosen, const Interval& range,
                      const std::vector<Mark>& marks) {
    Panel panel(svg, box, {range.lower, range.upper, 0.0, 1.04});
    panel.axes("x", "P(X <= x)", chosen.law->discrete);
    std::vector<Point> points;
    const auto add = [&](double x) {
        const double y = distributionAt(chosen, x, Tail::kLower);
        if (y != NUMCORE_MISSING) points.push_back({x, std::clamp(y, 0.0, 1.0)});
    };
    if (chosen.law->discrete) {
        add(range.lower);
        const double stride = std::max(1.0, std::ceil((range.upper - range.lower) / 2000.0));
        for (double k = std::ceil(range.lower); k <= range.upper; k += stride) add(k);
        panel.steps(points);
    } else {
        for (int i = 0; i <= kSamples; ++i) add(range.lower + (range.upper - range.lower) * i / kSamples);
        panel.curve(points);
    }
    for (const Mark& mark : marks) {
        if (!panel.contains(mark.x)) continue;
        const Point at{mark.x, mark.lowerTail};
        panel.hint({mark.x, 0.0}, at);
        panel.hint({range.lower, mark.lowerTail}, at);
        panel.dot(at);
    }
    std::vector<Box> taken;
    for (const Mark& mark : marks) {
        if (panel.contains(mark.x)) labelMark(panel, mark, taken);
    }
}

}  // namespace

std::string drawLaw(const ChosenLaw& chosen, const LawMarks& asked, std::vector<std::string>& notes) {
    const std::vector<Mark> marks = makeMarks(chosen, asked);
    std::vector<double> xs;
    xs.reserve(marks.size());
    for (const Mark& mark : marks) xs.push_back(mark.x);
    const Interval range = plotRange(chosen, xs);
    if (!std::isfinite(range.upper - range.lower))
        throw DataError(fmt::format("the {} law is too wide to be drawn", chosen.name));
    constexpr double kLargestStep = 4503599627370496.0;  // whole numbers have halves between them up to here
    if (chosen.law->discrete && range.upper > kLargestStep)
        throw DataError(fmt::format("the {} law is too far from 0 to be drawn", chosen.name));
    const auto nOutside = static_cast<std::size_t>(
        std::ranges::count_if(xs, [&](double x) { return x < range.lower || x > range.upper; }));
    if (nOutside > 0) notes.push_back(fmt::format("{} outside the plot", counted(nOutside, "point")));

    std::string title = chosen.name + " law";
    title[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(title[0])));
    if (chosen.nParameters > 0) title += ": " + chosen.parameterText();
    const bool two = hasDensity(*chosen.law);
    const double height = two ? kHeight : kHeightOfOne;
    Svg svg(kWidth, height, title);
    svg.text({(kLeft + kRight) / 2.0, 32.0}, title, "title", Anchor::kMiddle);
    const double bottom = height - kBottomRoom;
    const double middle = (kTop + bottom) / 2.0;
    if (two) {
        const Box box{kLeft, kTop, kRight, middle - kGap / 2.0};
        if (chosen.law->discrete) {
            drawBars(svg, box, chosen, range, marks);
        } else {
            drawDensity(svg, box, chosen, range, marks, asked.upper);
        }
    }
    drawDistribution(svg, {kLeft, two ? middle + kGap / 2.0 : kTop, kRight, bottom}, chosen, range, marks);
    return svg.finish();
}

}  // namespace numcore::cli
