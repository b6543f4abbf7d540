// An SVG picture: shapes with the classes of one style sheet, text as text.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace numcore::cli::plot {

struct Point {
    double x;
    double y;
};

struct Box {
    double left;
    double top;
    double right;
    double bottom;
};

enum class Anchor { kStart, kMiddle, kEnd };

/// Writes shapes in the order of the calls, later ones on top. Coordinates are pixels from the upper left
/// corner. Classes: frame, grid, curve, area, bar, bar-dense, bar-asked, dot, hint, hint-text, title, label; of
/// maps: positive, negative, cell, cell-text, cell-strong; of graphs: node, node-strong, node-between, arc,
/// arrow, name, detail, track, tick; of samples: mean.
class Svg {
  public:
    /// The description tells what the picture shows to those who cannot see it; none when it is empty.
    Svg(double width, double height, std::string_view title, std::string_view description = {});

    void line(Point from, Point to, const char* styleClass);
    void polyline(std::span<const Point> points, const char* styleClass);
    /// Cubic Bezier pieces: a point, then three for each piece.
    void bezier(std::span<const Point> points, const char* styleClass);
    void polygon(std::span<const Point> points, const char* styleClass);
    void rectangle(const Box& box, const char* styleClass);
    /// A rectangle of a class with its fill from 0 (none) to 1 (full).
    void shade(const Box& box, const char* styleClass, double fill);
    /// Diagonal lines over a box, from faint (0) to full (1).
    void hatch(const Box& box, double strength);
    void circle(Point centre, double radius, const char* styleClass);
    void text(Point at, std::string_view text, const char* styleClass, Anchor anchor = Anchor::kStart);
    /// Turned by a quarter to read upward.
    void textUpward(Point at, std::string_view text, const char* styleClass, Anchor anchor = Anchor::kMiddle);

    /// Shapes until the end of the clip are cut at a box.
    void beginClip(const Box& box);
    void endClip();

    /// The whole picture; nothing may be added after it.
    std::string finish();

  private:
    void appendPoints(std::span<const Point> points);

    std::string out_;
    int nClips_ = 0;
    bool hatched_ = false;
};

}  // namespace numcore::cli::plot
