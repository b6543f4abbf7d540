// A panel: a box with two axes, and what is drawn between them in the values' own units.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/plot/scale.hpp"
#include "cli/plot/svg.hpp"

namespace numcore::cli::plot {

/// The values that a panel shows.
struct View {
    double left;
    double right;
    double bottom;
    double top;
};

class Panel {
  public:
    Panel(Svg& svg, const Box& box, const View& view);

    /// Grid, frame, ticks and labels; wholeX keeps ticks of x at whole numbers.
    void axes(std::string_view xLabel, std::string_view yLabel, bool wholeX);
    /// Ticks without labels below: for a panel that shares its axis with the one under it.
    void axesAbove(std::string_view yLabel, bool wholeX);

    /// Ticks of y only; below, names at whole numbers of x from 0.
    void categories(std::span<const std::string> names, std::string_view yLabel);

    // What lies outside the panel is cut.
    void curve(std::span<const Point> points);
    /// The area between a curve and y = 0.
    void area(std::span<const Point> points);
    /// A step function: from each point to the right.
    void steps(std::span<const Point> points);
    void bar(double x, double height, double width, const char* styleClass);
    void hint(Point from, Point to);

    void dot(Point at);
    void note(Point at, std::string_view text, Anchor anchor, double dx, double dy);

    Point pixel(Point value) const { return {x_(value.x), y_(value.y)}; }
    bool contains(double x) const { return x >= view_.left && x <= view_.right; }
    const View& view() const { return view_; }

  private:
    std::vector<Tick> xTicksThatFit(bool wholeX) const;
    void drawYTicks() const;
    void drawFrame(std::string_view yLabel) const;
    void drawAxes(std::string_view xLabel, std::string_view yLabel, bool wholeX, bool xLabels);

    Svg& svg_;
    Box box_;
    View view_;
    Scale x_;
    Scale y_;
};

}  // namespace numcore::cli::plot
