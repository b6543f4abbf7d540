#include "cli/correlation/map.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "cli/output/writers.hpp"
#include "cli/plot/label.hpp"
#include "cli/plot/svg.hpp"
#include "numcore/api.h"

namespace numcore::cli {

namespace {

using plot::Anchor;
using plot::Box;
using plot::Point;
using plot::Svg;

constexpr double kMargin = 24.0;
constexpr double kTitleRoom = 52.0;
constexpr double kGroupRoom = 30.0;
constexpr double kCell = 54.0;
constexpr double kSmallCell = 42.0;  // beyond kMostLarge variables
constexpr std::size_t kMostLarge = 14;
constexpr double kCharacterWidth = 7.5;
constexpr int kLongestName = 24;
constexpr double kLegendWidth = 200.0;
constexpr double kDarkest = 0.85;  // of a coefficient of 1: its text still stands out

std::string labelOf(const std::string& name) {
    return plot::shortLabel(name, kLongestName);
}

double widthOf(const std::vector<std::string>& names) {
    int widest = 0;
    for (const std::string& name : names) widest = std::max(widest, displayWidth(labelOf(name)));
    return widest * kCharacterWidth;
}

/// The cells that are drawn, and where.
struct MapLayout {
    std::size_t firstRow;
    std::size_t nRows;
    std::size_t nColumns;
    bool triangle;
    double cell;
    double left;
    double columnRoom;

    bool has(std::size_t i, std::size_t j) const { return !triangle || j <= i; }
    double width() const { return static_cast<double>(nColumns) * cell; }
    double height() const { return static_cast<double>(nRows) * cell; }
    Box box(std::size_t i, std::size_t j, double top) const {
        const double x = left + static_cast<double>(j) * cell;
        const double y = top + static_cast<double>(i) * cell;
        return {x, y, x + cell, y + cell};
    }
};

MapLayout layoutOf(const Correlations& found) {
    MapLayout layout{};
    layout.triangle = !found.rectangular;
    layout.firstRow = layout.triangle ? 1 : 0;
    layout.nRows = found.rows.size() - layout.firstRow;
    layout.nColumns = found.columns.size() - layout.firstRow;
    layout.cell = std::max(layout.nRows, layout.nColumns) > kMostLarge ? kSmallCell : kCell;
    layout.left = kMargin + widthOf(found.rows) + 10.0;
    layout.columnRoom = widthOf(found.columns) + 16.0;
    return layout;
}

void drawShade(Svg& svg, const Box& box, double coefficient) {
    const bool negative = coefficient < 0.0;
    svg.shade(box, negative ? "negative" : "positive", kDarkest * std::min(std::abs(coefficient), 1.0));
    constexpr double kFaintest = 0.35;
    if (negative) svg.hatch(box, kFaintest + (1.0 - kFaintest) * std::min(std::abs(coefficient), 1.0));
    svg.rectangle(box, "cell");
}

/// Two decimals without the leading zero's sign of -0.
std::string textOf(double coefficient) {
    const std::string text = fmt::format("{:.2f}", coefficient);
    return text == "-0.00" ? "0.00" : text;
}

void drawCell(Svg& svg, const Box& box, const CorrelatedPair& pair, double alpha) {
    const Point middle{(box.left + box.right) / 2.0, (box.top + box.bottom) / 2.0 + 4.0};
    if (pair.coefficient == NUMCORE_MISSING || !std::isfinite(pair.coefficient)) {
        svg.rectangle(box, "cell");
        svg.text(middle, "–", "cell-text", Anchor::kMiddle);
        return;
    }
    drawShade(svg, box, pair.coefficient);
    const bool strong = pair.pValue != NUMCORE_MISSING && pair.pValue < alpha;
    svg.text(middle, textOf(pair.coefficient), strong ? "cell-strong" : "cell-text", Anchor::kMiddle);
}

void drawMap(Svg& svg, const Correlations& found, const MapLayout& layout, double alpha, double top) {
    for (std::size_t i = 0; i < layout.nRows; ++i) {
        const double y = top + (static_cast<double>(i) + 0.5) * layout.cell + 4.0;
        svg.text({layout.left - 8.0, y}, labelOf(found.rows[i + layout.firstRow]), "label", Anchor::kEnd);
        for (std::size_t j = 0; j < layout.nColumns; ++j) {
            if (layout.has(i, j)) drawCell(svg, layout.box(i, j, top), found.at(i + layout.firstRow, j), alpha);
        }
    }
    for (std::size_t j = 0; j < layout.nColumns; ++j) {
        const double x = layout.left + (static_cast<double>(j) + 0.5) * layout.cell + 4.0;
        svg.textUpward({x, top + layout.height() + 8.0}, labelOf(found.columns[j]), "label", Anchor::kEnd);
    }
}

/// A column of cells from 1 to -1, and what bold stands for.
void drawLegend(Svg& svg, Point at, const CorrelationRequest& request) {
    constexpr double kSteps[] = {1.0, 0.5, 0.0, -0.5, -1.0};
    constexpr double kWidth = 34.0;
    constexpr double kHeight = 22.0;
    double top = at.y;
    for (const double step : kSteps) {
        drawShade(svg, {at.x, top, at.x + kWidth, top + kHeight}, step);
        svg.text({at.x + kWidth + 8.0, top + 15.0}, textOf(step), "label");
        top += kHeight;
    }
    svg.text({at.x, top + 20.0}, "hatched: negative", "label");
    svg.text({at.x, top + 37.0}, fmt::format("bold: p < {}", request.alpha), "cell-strong");
    if (request.alternative != Alternative::kTwoSided)
        svg.text({at.x, top + 54.0}, fmt::format("alternative: {}", nameOf(request.alternative)), "label");
}

constexpr double kLegendHeight = 175.0;

}  // namespace

std::string drawCorrelationMap(const std::vector<GroupedCorrelations>& groups,
                               const CorrelationRequest& request, std::string_view title,
                               std::string_view file) {
    const MapLayout layout = layoutOf(groups.front().found);
    const bool grouped = !groups.front().group.empty();
    const double heading = grouped ? kGroupRoom : 0.0;
    const double mapHeight = heading + layout.height() + layout.columnRoom + kMargin;
    const double height = kTitleRoom + std::max(mapHeight * static_cast<double>(groups.size()), kLegendHeight);
    const std::string heading1 = fmt::format("{}: {}", title, file);
    const double titleWidth = 2.0 * kMargin + 10.0 * displayWidth(heading1);
    const double legendLeft = layout.left + layout.width() + 30.0;
    Svg svg(std::max(legendLeft + kLegendWidth, titleWidth), height, heading1);
    svg.text({kMargin, 32.0}, heading1, "title");
    double top = kTitleRoom;
    for (const auto& [group, found] : groups) {
        if (grouped) svg.text({kMargin, top + 16.0}, group, "cell-strong");
        drawMap(svg, found, layout, request.alpha, top + heading);
        top += mapHeight;
    }
    drawLegend(svg, {legendLeft, kTitleRoom + heading}, request);
    return svg.finish();
}

}  // namespace numcore::cli
