#include "cli/plot/panel.hpp"

#include <algorithm>
#include <vector>

namespace numcore::cli::plot {

namespace {

constexpr double kTickLength = 5.0;
constexpr double kCharacterWidth = 7.5;
constexpr double kPixelsPerXTick = 80.0;
constexpr double kPixelsPerYTick = 45.0;

int wantedTicks(double pixels, double pixelsPerTick) {
    return std::max(2, static_cast<int>(pixels / pixelsPerTick));
}

}  // namespace

Panel::Panel(Svg& svg, const Box& box, const View& view)
    : svg_(svg),
      box_(box),
      view_(view),
      x_(view.left, view.right, box.left, box.right),
      y_(view.bottom, view.top, box.bottom, box.top) {}

void Panel::axes(std::string_view xLabel, std::string_view yLabel, bool wholeX) {
    drawAxes(xLabel, yLabel, wholeX, true);
}

void Panel::axesAbove(std::string_view yLabel, bool wholeX) {
    drawAxes({}, yLabel, wholeX, false);
}

std::vector<Tick> Panel::xTicksThatFit(bool wholeX) const {
    const double width = box_.right - box_.left;
    constexpr double kGap = 14.0;
    std::vector<Tick> ticks;
    for (int wanted = wantedTicks(width, kPixelsPerXTick); wanted > 0; --wanted) {
        ticks = niceTicks(view_.left, view_.right, wanted, wholeX);
        std::size_t longest = 0;
        for (const Tick& tick : ticks) longest = std::max(longest, tick.label.size());
        const double needed = static_cast<double>(longest) * kCharacterWidth + kGap;
        if (ticks.size() < 2 || x_(ticks[1].value) - x_(ticks[0].value) >= needed) break;
    }
    return ticks;
}

void Panel::drawAxes(std::string_view xLabel, std::string_view yLabel, bool wholeX, bool xLabels) {
    for (const Tick& tick : xTicksThatFit(wholeX)) {
        const double x = x_(tick.value);
        svg_.line({x, box_.top}, {x, box_.bottom}, "grid");
        svg_.line({x, box_.bottom}, {x, box_.bottom + kTickLength}, "frame");
        if (xLabels) svg_.text({x, box_.bottom + 20.0}, tick.label, "label", Anchor::kMiddle);
    }
    drawYTicks();
    drawFrame(yLabel);
    const double middle = (box_.left + box_.right) / 2.0;
    if (!xLabel.empty()) svg_.text({middle, box_.bottom + 42.0}, xLabel, "label", Anchor::kMiddle);
}

void Panel::drawYTicks() const {
    for (const Tick& tick :
         niceTicks(view_.bottom, view_.top, wantedTicks(box_.bottom - box_.top, kPixelsPerYTick))) {
        const double y = y_(tick.value);
        svg_.line({box_.left, y}, {box_.right, y}, "grid");
        svg_.line({box_.left - kTickLength, y}, {box_.left, y}, "frame");
        svg_.text({box_.left - 9.0, y + 4.0}, tick.label, "label", Anchor::kEnd);
    }
}

void Panel::drawFrame(std::string_view yLabel) const {
    svg_.rectangle(box_, "frame");
    svg_.textUpward({box_.left - 58.0, (box_.top + box_.bottom) / 2.0}, yLabel, "label");
}

void Panel::categories(std::span<const std::string> names, std::string_view yLabel) {
    drawYTicks();
    for (std::size_t k = 0; k < names.size(); ++k) {
        const double x = x_(static_cast<double>(k));
        svg_.line({x, box_.bottom}, {x, box_.bottom + kTickLength}, "frame");
        svg_.text({x, box_.bottom + 20.0}, names[k], "label", Anchor::kMiddle);
    }
    drawFrame(yLabel);
}

void Panel::curve(std::span<const Point> points) {
    std::vector<Point> pixels;
    for (const Point& point : points) pixels.push_back(pixel(point));
    svg_.beginClip(box_);
    svg_.polyline(pixels, "curve");
    svg_.endClip();
}

void Panel::area(std::span<const Point> points) {
    if (points.size() < 2) return;
    std::vector<Point> pixels{pixel({points.front().x, 0.0})};
    for (const Point& point : points) pixels.push_back(pixel(point));
    pixels.push_back(pixel({points.back().x, 0.0}));
    svg_.beginClip(box_);
    svg_.polygon(pixels, "area");
    svg_.endClip();
}

void Panel::steps(std::span<const Point> points) {
    std::vector<Point> pixels;
    for (const Point& point : points) {
        if (!pixels.empty()) pixels.push_back({x_(point.x), pixels.back().y});
        pixels.push_back(pixel(point));
    }
    if (!pixels.empty()) pixels.push_back({box_.right, pixels.back().y});
    svg_.beginClip(box_);
    svg_.polyline(pixels, "curve");
    svg_.endClip();
}

void Panel::bar(double x, double height, double width, const char* styleClass) {
    const double left = std::max(x_(x - width / 2.0), box_.left);
    const double right = std::min(x_(x + width / 2.0), box_.right);
    svg_.rectangle({left, std::max(y_(height), box_.top), right, y_(0.0)}, styleClass);
}

void Panel::hint(Point from, Point to) {
    svg_.line(pixel(from), pixel(to), "hint");
}

void Panel::dot(Point at) {
    svg_.circle(pixel(at), 4.0, "dot");
}

void Panel::note(Point at, std::string_view text, Anchor anchor, double dx, double dy) {
    const Point place = pixel(at);
    svg_.text({place.x + dx, place.y + dy}, text, "hint-text", anchor);
}

}  // namespace numcore::cli::plot
