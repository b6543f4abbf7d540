#include "cli/tests/picture.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <set>
#include <utility>

#include "cli/errors.hpp"
#include "cli/moments.hpp"
#include "cli/plot/label.hpp"
#include "cli/plot/panel.hpp"
#include "numcore/descriptive.h"

namespace numcore::cli {

namespace {

using plot::Anchor;
using plot::Box;
using plot::Panel;
using plot::Point;
using plot::Svg;

constexpr double kWidth = 760.0;
constexpr double kLeft = 96.0;
constexpr double kRight = 730.0;
constexpr double kTop = 84.0;
constexpr double kPanelHeight = 260.0;
constexpr double kGap = 62.0;
constexpr std::size_t kMostPanels = 12;
constexpr std::size_t kMostBoxes = 24;
constexpr double kHalfBox = 0.24;
constexpr double kBeside = 0.34;  // of the mean, from the middle of its box
constexpr double kWhisker = 1.5;  // quartile distances
constexpr double kCharacterWidth = 7.5;
constexpr double kAgreement = 1.959963984540054;  // normal quantile of 0.975

/// The values between two ends, with some room around them.
struct Range {
    double low = std::numeric_limits<double>::infinity();
    double high = -low;

    void add(double value) {
        if (!std::isfinite(value) || value == NUMCORE_MISSING || value == NUMCORE_OVERFLOW) return;
        low = std::min(low, value);
        high = std::max(high, value);
    }
    Range withRoom() const {
        constexpr double kRoom = 0.06;
        if (low > high) return {0.0, 1.0};
        if (!std::isfinite(high - low)) throw DataError("--plot: the values are too far apart to be drawn");
        const double width = high > low ? high - low : std::max(1.0, std::abs(low) * 0.1);
        return {low - kRoom * width, high + kRoom * width};
    }
};

/// Quartiles, the ends of the whiskers and the values beyond them.
struct Summary {
    double lower = 0.0;
    double median = 0.0;
    double upper = 0.0;
    double lowEnd = 0.0;
    double highEnd = 0.0;
    std::vector<double> beyond;
};

double quantileOf(const TestSample& sample, double p) {
    std::vector<double> values = sample.values;
    std::vector<double> weights = sample.weights;
    return Cpp_V_QuantileMethod(values.data(), sample.n(), nullptr,
                                weights.empty() ? NUMCORE_FALSE : NUMCORE_TRUE,
                                weights.empty() ? nullptr : weights.data(), NUMCORE_QUANTILE_LINEAR, p);
}

Summary summaryOf(const TestSample& sample) {
    Summary out{quantileOf(sample, 0.25), quantileOf(sample, 0.5), quantileOf(sample, 0.75), 0.0, 0.0, {}};
    const double reach = kWhisker * (out.upper - out.lower);
    out.lowEnd = out.lower;
    out.highEnd = out.upper;
    for (const double value : sample.values) {
        if (!std::isfinite(value)) continue;
        if (value < out.lower - reach || value > out.upper + reach) {
            out.beyond.push_back(value);
        } else {
            out.lowEnd = std::min(out.lowEnd, value);
            out.highEnd = std::max(out.highEnd, value);
        }
    }
    return out;
}

bool isDrawn(double value) {
    return std::isfinite(value) && value != NUMCORE_MISSING && value != NUMCORE_OVERFLOW;
}

/// Circles, one for all points of a pixel.
class Dots {
  public:
    Dots(Svg& svg, const Panel& panel) : svg_(svg), panel_(panel) {}
    void add(Point value) {
        const Point at = panel_.pixel(value);
        constexpr double kRadius = 3.0;
        if (seen_.insert({std::lround(at.x), std::lround(at.y)}).second) svg_.circle(at, kRadius, "dot");
    }

  private:
    Svg& svg_;
    const Panel& panel_;
    std::set<std::pair<long, long>> seen_;
};

void drawSegment(Svg& svg, const Panel& panel, Point from, Point to, const char* styleClass) {
    svg.line(panel.pixel(from), panel.pixel(to), styleClass);
}

void drawBox(Svg& svg, const Panel& panel, double x, const Summary& summary) {
    const Point low = panel.pixel({x - kHalfBox, summary.lower});
    const Point high = panel.pixel({x + kHalfBox, summary.upper});
    svg.rectangle({low.x, high.y, high.x, low.y}, "bar");
    drawSegment(svg, panel, {x - kHalfBox, summary.median}, {x + kHalfBox, summary.median}, "curve");
    for (const auto& [from, to] :
         {std::pair(summary.lower, summary.lowEnd), std::pair(summary.upper, summary.highEnd)}) {
        drawSegment(svg, panel, {x, from}, {x, to}, "frame");
        drawSegment(svg, panel, {x - kHalfBox / 2.0, to}, {x + kHalfBox / 2.0, to}, "frame");
    }
    Dots dots(svg, panel);
    for (const double value : summary.beyond) dots.add({x, value});
}

void drawMean(Svg& svg, const Panel& panel, double x, const MeanLimits& mean) {
    if (!isDrawn(mean.mean)) return;
    constexpr double kCap = 0.05;
    constexpr double kDiamond = 5.0;
    if (isDrawn(mean.lower) && isDrawn(mean.upper)) {
        drawSegment(svg, panel, {x, mean.lower}, {x, mean.upper}, "mean");
        for (const double end : {mean.lower, mean.upper})
            drawSegment(svg, panel, {x - kCap, end}, {x + kCap, end}, "mean");
    }
    const Point at = panel.pixel({x, mean.mean});
    const Point corners[] = {
        {at.x - kDiamond, at.y}, {at.x, at.y - kDiamond}, {at.x + kDiamond, at.y}, {at.x, at.y + kDiamond}};
    svg.polygon(corners, "mean");
}

std::int32_t sizeOf(const TestSample& sample) {
    return sample.n();
}

std::int32_t sizeOf(const CountSample& sample) {
    return sample.trials;
}

template <class AnySample>
std::vector<std::string> labelsOf(const std::vector<AnySample>& samples) {
    const double room = (kRight - kLeft) / static_cast<double>(samples.size());
    std::vector<std::string> labels;
    labels.reserve(samples.size());
    for (const AnySample& sample : samples) {
        const std::string count = fmt::format(" ({})", sizeOf(sample));
        const int longest = static_cast<int>(room / kCharacterWidth) - static_cast<int>(count.size());
        labels.push_back(longest < 2 ? plot::shortLabel(sample.name, longest + static_cast<int>(count.size()))
                                     : plot::shortLabel(sample.name, longest) + count);
    }
    return labels;
}

void drawBoxes(Svg& svg, double top, const Comparison& comparison, const Picture& picture) {
    std::vector<Summary> summaries;
    std::vector<MeanLimits> means;
    Range range;
    for (const TestSample& sample : comparison.samples) {
        summaries.push_back(summaryOf(sample));
        means.push_back(limitsOfMean(sample, picture.alpha));
        for (const double value : sample.values) range.add(value);
        for (const double value : {means.back().lower, means.back().upper}) range.add(value);
    }
    if (picture.mu) range.add(*picture.mu);
    const Range shown = range.withRoom();
    const double last = static_cast<double>(comparison.samples.size()) - 0.5;
    Panel panel(svg, {kLeft, top, kRight, top + kPanelHeight}, {-0.5, last, shown.low, shown.high});
    const std::string& name = comparison.variable;
    panel.categories(labelsOf(comparison.samples), name.empty() ? "Value" : plot::shortLabel(name, 32));
    if (picture.mu) panel.hint({-0.5, *picture.mu}, {last, *picture.mu});
    for (std::size_t k = 0; k < summaries.size(); ++k) {
        if (comparison.samples[k].values.empty() || !isDrawn(summaries[k].median)) continue;
        drawBox(svg, panel, static_cast<double>(k), summaries[k]);
        drawMean(svg, panel, static_cast<double>(k) + kBeside, means[k]);
    }
}

/// A line across the panel with its name and value above its right end.
void drawLevel(Svg& svg, const Panel& panel, double level, const char* name, const char* styleClass) {
    const plot::View& view = panel.view();
    if (!(level > view.bottom && level < view.top)) return;
    drawSegment(svg, panel, {view.left, level}, {view.right, level}, styleClass);
    const Point end = panel.pixel({view.right, level});
    svg.text({end.x - 6.0, end.y - 5.0}, fmt::format("{} {:.4g}", name, level), "hint-text", Anchor::kEnd);
}

void drawPairs(Svg& svg, double top, const Picture& picture) {
    const Pairs& pairs = *picture.pairs;
    const TestOutcome& found = *picture.difference;
    const double deviation =
        momentsOf(pairs.differences, picture.comparisons->front().samples[0].weights).deviation;
    const double spread = kAgreement * deviation;
    Range across;
    Range up;
    for (const double value : pairs.means) across.add(value);
    for (const double value : pairs.differences) up.add(value);
    for (const double value : {0.0, found.estimate - spread, found.estimate + spread, found.lower, found.upper})
        up.add(value);
    const Range x = across.withRoom();
    const Range y = up.withRoom();
    Panel panel(svg, {kLeft, top, kRight, top + kPanelHeight}, {x.low, x.high, y.low, y.high});
    const double low = isDrawn(found.lower) ? found.lower : y.low;
    const double high = isDrawn(found.upper) ? found.upper : y.high;
    const Point corner = panel.pixel({x.low, high});
    const Point opposite = panel.pixel({x.high, low});
    svg.rectangle({corner.x, corner.y, opposite.x, opposite.y}, "area");
    panel.axes("Mean of the pair", "Difference", false);
    drawSegment(svg, panel, {x.low, 0.0}, {x.high, 0.0}, "frame");
    drawLevel(svg, panel, found.estimate, "mean", "curve");
    drawLevel(svg, panel, found.estimate - spread, "-1.96 SD", "hint");
    drawLevel(svg, panel, found.estimate + spread, "+1.96 SD", "hint");
    Dots dots(svg, panel);
    for (std::size_t i = 0; i < pairs.means.size(); ++i) dots.add({pairs.means[i], pairs.differences[i]});
}

void checkSamples(std::size_t nSamples) {
    if (nSamples <= kMostBoxes) return;
    throw DataError(fmt::format("--plot draws up to {} samples, here are {}; choose some by --groups",
                                kMostBoxes, nSamples));
}

void checkSize(const std::vector<Comparison>& comparisons) {
    if (comparisons.size() > kMostPanels) {
        throw DataError(fmt::format("--plot draws up to {} variables, here are {}; choose some by --columns",
                                    kMostPanels, comparisons.size()));
    }
    checkSamples(comparisons[0].samples.size());
}

/// One line where all levels are the same, else one beneath each sample.
void drawLevels(Svg& svg, Panel& panel, const ProportionLevels& levels) {
    if (levels.values.empty()) return;
    if (std::ranges::adjacent_find(levels.values, std::not_equal_to()) == levels.values.end()) {
        drawLevel(svg, panel, levels.values[0], levels.name, "hint");
        return;
    }
    for (std::size_t k = 0; k < levels.values.size(); ++k) {
        const auto x = static_cast<double>(k);
        panel.hint({x - kBeside, levels.values[k]}, {x + kBeside, levels.values[k]});
    }
}

}  // namespace

std::string drawSamples(const Picture& picture) {
    const std::vector<Comparison>& comparisons = *picture.comparisons;
    checkSize(comparisons);
    const auto nPanels = static_cast<double>(comparisons.size() + (picture.pairs ? 1 : 0));
    const std::string title = plot::shortLabel(fmt::format("{}: {}", picture.title, picture.file), 66);
    std::string legend =
        fmt::format("boxes: quartiles, whiskers up to 1.5 times their distance; diamonds: means, {}",
                    limitsOf(picture.alpha));
    if (!picture.groupsName.empty()) legend = fmt::format("by {}; {}", picture.groupsName, legend);
    std::string description = legend;
    if (picture.pairs) description += "; below: the difference of each pair over its mean, shaded: its limits";
    Svg svg(kWidth, kTop + nPanels * (kPanelHeight + kGap), title, description);
    svg.text({kLeft, 32.0}, title, "title");
    svg.text({kLeft, 56.0}, legend, "label");
    double top = kTop;
    for (const Comparison& comparison : comparisons) {
        drawBoxes(svg, top, comparison, picture);
        top += kPanelHeight + kGap;
    }
    if (picture.pairs) drawPairs(svg, top, picture);
    return svg.finish();
}

std::string drawProportions(const ProportionPicture& picture) {
    const std::vector<CountSample>& samples = *picture.samples;
    checkSamples(samples.size());
    const std::string place = picture.file.empty() ? "" : ": " + picture.file;
    const std::string title = plot::shortLabel(picture.title + place, 66);
    std::string legend = fmt::format("diamonds: proportions, {}", picture.limitsName);
    if (!picture.levels.values.empty()) legend += fmt::format("; dashed: {}", picture.levels.name);
    if (!picture.groupsName.empty()) legend = fmt::format("by {}; {}", picture.groupsName, legend);
    Svg svg(kWidth, kTop + kPanelHeight + kGap, title, legend);
    svg.text({kLeft, 32.0}, title, "title");
    svg.text({kLeft, 56.0}, legend, "label");
    Range range;
    for (const double level : picture.levels.values) range.add(level);
    for (std::size_t k = 0; k < samples.size(); ++k) {
        for (const double value : {samples[k].proportion(), picture.limits[k].lower, picture.limits[k].upper})
            range.add(value);
    }
    const Range shown = range.withRoom();
    const double last = static_cast<double>(samples.size()) - 0.5;
    Panel panel(svg, {kLeft, kTop, kRight, kTop + kPanelHeight}, {-0.5, last, shown.low, shown.high});
    panel.categories(labelsOf(samples), "Proportion");
    drawLevels(svg, panel, picture.levels);
    for (std::size_t k = 0; k < samples.size(); ++k) {
        drawMean(svg, panel, static_cast<double>(k),
                 {samples[k].proportion(), picture.limits[k].lower, picture.limits[k].upper});
    }
    return svg.finish();
}

}  // namespace numcore::cli
