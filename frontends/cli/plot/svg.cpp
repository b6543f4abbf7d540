#include "cli/plot/svg.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace numcore::cli::plot {

namespace {

// Dark lines on white that stay apart in grey: the curve is dark, areas are light, what is asked is dashed.
constexpr const char* kStyle = R"(<style>
text { font-family: "DejaVu Sans", "Liberation Sans", Arial, Helvetica, sans-serif; font-size: 12px; fill: #222; }
.title { font-size: 16px; font-weight: bold; }
.hint-text { font-size: 11px; fill: #8a3b00; paint-order: stroke; stroke: #fff; stroke-width: 3px; }
.paper { fill: #fff; }
.frame { stroke: #444; stroke-width: 1; fill: none; }
.grid { stroke: #e4e4e4; stroke-width: 1; }
.curve { stroke: #1f4e79; stroke-width: 2; fill: none; stroke-linejoin: round; }
.area { fill: #cfdcea; stroke: none; }
.bar { fill: #b5c8dd; stroke: #1f4e79; stroke-width: 1; }
.bar-dense { fill: #9db5d0; }
.bar-asked { fill: #a84a12; stroke: #8a3b00; stroke-width: 1; }
.hint { stroke: #8a3b00; stroke-width: 1; stroke-dasharray: 5 3; fill: none; }
.positive { fill: #2f6fad; stroke: none; }
.negative { fill: #b5561c; stroke: none; }
.cell { stroke: #777; stroke-width: 1; fill: none; }
.cell-text, .cell-strong { paint-order: stroke; stroke: #fff; stroke-width: 3px; }
.cell-strong { font-weight: bold; }
.mean { stroke: #8a3b00; stroke-width: 2; fill: #8a3b00; }
.dot { fill: #fff; stroke: #8a3b00; stroke-width: 2; }
.node { fill: #fff; stroke: #444; stroke-width: 1; }
.node-strong { fill: #fff; stroke: #8a3b00; stroke-width: 3; }
.node-between { fill: #eef1f5; stroke: #444; stroke-width: 1; stroke-dasharray: 4 2; }
.arc { stroke: #555; stroke-width: 1.3; fill: none; }
.arrow { fill: #555; stroke: none; }
.name { font-weight: bold; }
.detail { font-size: 11px; }
.track { fill: #f1f1f1; stroke: none; }
.tick { stroke: #111; stroke-width: 2; }
</style>
)";

std::string escaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        if (c == '&') {
            out += "&amp;";
        } else if (c == '<') {
            out += "&lt;";
        } else if (c == '>') {
            out += "&gt;";
        } else if (c == '"') {
            out += "&quot;";
        } else if (static_cast<unsigned char>(c) >= 0x20) {
            out += c;  // control characters are no XML
        }
    }
    return out;
}

/// A coordinate with two decimals, kept within what viewers can draw.
std::string number(double value) {
    constexpr double kLargest = 1e5;
    const double kept = std::isnan(value) ? 0.0 : std::clamp(value, -kLargest, kLargest);
    std::string text = fmt::format("{:.2f}", kept);
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
    return text == "-0" ? "0" : text;
}

const char* anchorName(Anchor anchor) {
    switch (anchor) {
        case Anchor::kMiddle:
            return "middle";
        case Anchor::kEnd:
            return "end";
        case Anchor::kStart:
            break;
    }
    return "start";
}

}  // namespace

Svg::Svg(double width, double height, std::string_view title, std::string_view description) {
    const std::string w = number(width);
    const std::string h = number(height);
    out_ = fmt::format(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\" "
        "role=\"img\">\n<title>{2}</title>\n",
        w, h, escaped(title));
    if (!description.empty()) out_ += fmt::format("<desc>{}</desc>\n", escaped(description));
    out_ += kStyle;
    rectangle({0.0, 0.0, width, height}, "paper");
}

void Svg::line(Point from, Point to, const char* styleClass) {
    out_ += fmt::format("<line class=\"{}\" x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\"/>\n", styleClass,
                        number(from.x), number(from.y), number(to.x), number(to.y));
}

void Svg::appendPoints(std::span<const Point> points) {
    for (const Point& point : points) {
        out_ += fmt::format("{}{},{}", &point == points.data() ? "" : " ", number(point.x), number(point.y));
    }
    out_ += "\"/>\n";
}

void Svg::polyline(std::span<const Point> points, const char* styleClass) {
    out_ += fmt::format("<polyline class=\"{}\" points=\"", styleClass);
    appendPoints(points);
}

void Svg::bezier(std::span<const Point> points, const char* styleClass) {
    if (points.empty()) return;
    out_ += fmt::format("<path class=\"{}\" d=\"M{},{}", styleClass, number(points[0].x), number(points[0].y));
    for (std::size_t i = 1; i + 2 < points.size(); i += 3) {
        out_ += fmt::format(" C{},{} {},{} {},{}", number(points[i].x), number(points[i].y),
                            number(points[i + 1].x), number(points[i + 1].y), number(points[i + 2].x),
                            number(points[i + 2].y));
    }
    out_ += "\"/>\n";
}

void Svg::polygon(std::span<const Point> points, const char* styleClass) {
    out_ += fmt::format("<polygon class=\"{}\" points=\"", styleClass);
    appendPoints(points);
}

void Svg::rectangle(const Box& box, const char* styleClass) {
    out_ += fmt::format("<rect class=\"{}\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"/>\n", styleClass,
                        number(box.left), number(box.top), number(box.right - box.left),
                        number(box.bottom - box.top));
}

void Svg::shade(const Box& box, const char* styleClass, double fill) {
    out_ +=
        fmt::format("<rect class=\"{}\" fill-opacity=\"{}\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"/>\n",
                    styleClass, number(fill), number(box.left), number(box.top), number(box.right - box.left),
                    number(box.bottom - box.top));
}

void Svg::hatch(const Box& box, double strength) {
    if (!hatched_) {
        out_ +=
            "<pattern id=\"hatch\" width=\"7\" height=\"7\" patternUnits=\"userSpaceOnUse\" "
            "patternTransform=\"rotate(45)\"><line x1=\"0\" y1=\"0\" x2=\"0\" y2=\"7\" stroke=\"#4d2208\" "
            "stroke-width=\"1.6\"/></pattern>\n";
        hatched_ = true;
    }
    out_ += fmt::format(
        "<rect fill=\"url(#hatch)\" fill-opacity=\"{}\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"/>\n",
        number(strength), number(box.left), number(box.top), number(box.right - box.left),
        number(box.bottom - box.top));
}

void Svg::circle(Point centre, double radius, const char* styleClass) {
    out_ += fmt::format("<circle class=\"{}\" cx=\"{}\" cy=\"{}\" r=\"{}\"/>\n", styleClass, number(centre.x),
                        number(centre.y), number(radius));
}

void Svg::text(Point at, std::string_view text, const char* styleClass, Anchor anchor) {
    out_ += fmt::format("<text class=\"{}\" x=\"{}\" y=\"{}\" text-anchor=\"{}\">{}</text>\n", styleClass,
                        number(at.x), number(at.y), anchorName(anchor), escaped(text));
}

void Svg::textUpward(Point at, std::string_view text, const char* styleClass, Anchor anchor) {
    const std::string x = number(at.x);
    const std::string y = number(at.y);
    out_ += fmt::format(
        "<text class=\"{0}\" x=\"{1}\" y=\"{2}\" text-anchor=\"{4}\" transform=\"rotate(-90 {1} "
        "{2})\">{3}</text>\n",
        styleClass, x, y, escaped(text), anchorName(anchor));
}

void Svg::beginClip(const Box& box) {
    ++nClips_;
    out_ += fmt::format("<clipPath id=\"clip{}\">", nClips_);
    rectangle(box, "clip");
    out_ += fmt::format("</clipPath>\n<g clip-path=\"url(#clip{})\">\n", nClips_);
}

void Svg::endClip() {
    out_ += "</g>\n";
}

std::string Svg::finish() {
    out_ += "</svg>\n";
    return std::move(out_);
}

}  // namespace numcore::cli::plot
