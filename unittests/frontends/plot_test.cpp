// Pictures: ticks, shapes, and laws drawn whole.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/errors.hpp"
#include "cli/laws/choose.hpp"
#include "cli/laws/law_plot.hpp"
#include "cli/laws/plot_range.hpp"
#include "cli/plot/panel.hpp"
#include "cli/plot/scale.hpp"
#include "cli/plot/svg.hpp"
#include "picture_checks.hpp"

namespace numcore::cli {
namespace {

using plot::niceTicks;
using plot::Svg;

std::vector<std::string> labels(double low, double high, int wanted, bool whole = false) {
    std::vector<std::string> out;
    for (const auto& tick : niceTicks(low, high, wanted, whole)) out.push_back(tick.label);
    return out;
}

std::string draw(const std::string& law, const std::vector<std::string>& parameters, const LawMarks& marks,
                 std::vector<std::string>* notes = nullptr) {
    std::vector<std::string> ignored;
    return drawLaw(chooseLaw(lawNamed(law), parameters), marks, notes == nullptr ? ignored : *notes);
}

TEST(Ticks, AreRoundAndWithinTheAxis) {
    using Labels = std::vector<std::string>;
    EXPECT_EQ(labels(0.0, 1.0, 5), (Labels{"0", "0.2", "0.4", "0.6", "0.8", "1.0"}));
    EXPECT_EQ(labels(-3.3, 3.3, 7), (Labels{"-3", "-2", "-1", "0", "1", "2", "3"}));
    EXPECT_EQ(labels(0.0, 0.00042, 4), (Labels{"0", "0.0001", "0.0002", "0.0003", "0.0004"}));
    EXPECT_EQ(labels(-0.8, 1.8, 8, true), (Labels{"0", "1"}));
    EXPECT_EQ(labels(0.0, 3e7, 3), (Labels{"0", "1e+07", "2e+07", "3e+07"}));
    EXPECT_EQ(labels(1e-9, 3e-9, 2), (Labels{"1e-09", "2e-09", "3e-09"}));
    EXPECT_EQ(labels(999998.5, 1000001.5, 3), (Labels{"999999", "1000000", "1000001"})) << "all different";
    EXPECT_EQ(labels(1e12 - 3.0, 1e12 + 3.0, 3), (Labels{"999999999998", "1000000000000", "1000000000002"}));
    for (const auto& [low, high] : {std::pair(1.0, 1.0), std::pair(2.0, 1.0), std::pair(0.0, 1.0 / 0.0),
                                    std::pair(1e16, 1e16 + 4.0), std::pair(-1.7e308, 1.7e308)}) {
        EXPECT_LE(labels(low, high, 5).size(), 12U) << low << " " << high;
    }
}

TEST(Svg, EscapesTextAndKeepsNumbersFinite) {
    Svg svg(100.0, 50.0, "a < b & \"c\"\x01");
    svg.text({-1e-9, 1.0 / 3.0}, "P(X <= x)", "label", plot::Anchor::kEnd);
    svg.line({0.0 / 0.0, 1e300}, {-1e300, 2.0}, "curve");
    const std::string picture = svg.finish();
    EXPECT_TRUE(isWellFormed(picture)) << picture;
    EXPECT_NE(picture.find("<title>a &lt; b &amp; &quot;c&quot;</title>"), std::string::npos);
    EXPECT_NE(picture.find("<text class=\"label\" x=\"0\" y=\"0.33\" text-anchor=\"end\">P(X &lt;= x)</text>"),
              std::string::npos);
    EXPECT_NE(picture.find("x1=\"0\" y1=\"100000\" x2=\"-100000\" y2=\"2\""), std::string::npos);
}

TEST(LawPlot, DrawsEveryLaw) {
    for (const Law& law : laws()) {
        std::vector<std::string> parameters;
        std::string words = law.example;
        for (std::size_t at = 0; at < words.size();) {
            const std::size_t blank = std::min(words.find(' ', at), words.size());
            parameters.push_back(words.substr(at, blank - at));
            at = blank + 1;
        }
        const std::string picture = draw(law.name, parameters, {});
        EXPECT_TRUE(isWellFormed(picture)) << law.name;
        EXPECT_EQ(countOf(picture, "class=\"frame\" x=\""), law.coded() || law.density != nullptr ? 2U : 1U)
            << law.name;
        EXPECT_GT(countOf(picture, law.discrete ? "<rect class=\"bar" : "<polyline class=\"curve\""), 0U)
            << law.name;
    }
}

TEST(LawPlot, MarksWhatWasAsked) {
    const std::string one = draw("normal", {"10", "2"}, {{13.0}, false, false});
    EXPECT_EQ(one, draw("normal", {"10", "2"}, {{13.0}, false, false})) << "the same picture each time";
    EXPECT_NE(one.find(">Normal law: mu = 10, sigma = 2</text>"), std::string::npos);
    EXPECT_NE(one.find(">P(X &lt;= x) = 0.93319</text>"), std::string::npos);
    EXPECT_EQ(countOf(one, "class=\"area\""), 1U);
    EXPECT_EQ(countOf(one, "class=\"dot\""), 2U);
    const std::string upper = draw("normal", {}, {{0.025}, true, true});
    EXPECT_NE(upper.find(">x = 1.96</text>"), std::string::npos);
    EXPECT_NE(upper.find(">P(X &gt; x) = 0.025</text>"), std::string::npos);
    EXPECT_EQ(countOf(draw("binomial", {"10", "0.3"}, {{2.0, 4.0}, false, false}), "class=\"bar-asked\""), 2U);
    std::vector<std::string> notes;
    EXPECT_TRUE(isWellFormed(draw("normal", {}, {{0.0, 1.0, 1e9, 1.0 / 0.0}, false, false}, &notes)));
    EXPECT_EQ(notes, std::vector<std::string>{"1 point outside the plot"});
}

/// The highest label of the upper panel's axis.
double topOfDensity(const std::string& law, const std::vector<std::string>& parameters) {
    const std::string picture = draw(law, parameters, {});
    const std::string anchor = "text-anchor=\"end\">";
    // The lower panel's labels run from 0 again.
    double top = 0.0;
    std::size_t nZeros = 0;
    for (std::size_t at = picture.find(anchor); at != std::string::npos; at = picture.find(anchor, at + 1)) {
        const double value = std::stod(picture.substr(at + anchor.size()));
        if (value == 0.0 && ++nZeros == 2) break;
        top = std::max(top, value);
    }
    return top;
}

TEST(LawPlot, CutsPolesNotPeaks) {
    // Infinite ends: the height is that of what lies between them.
    EXPECT_LT(topOfDensity("chisq", {"1"}), 3.0);
    EXPECT_LT(topOfDensity("beta", {"0.5", "0.5"}), 5.0);
    EXPECT_LT(topOfDensity("gamma", {"0.1"}), 20.0);
    // Finite ones are shown whole.
    EXPECT_EQ(topOfDensity("beta", {"1", "3"}), 3.0);
    EXPECT_EQ(topOfDensity("chisq", {"2"}), 0.5);
    EXPECT_EQ(topOfDensity("binomial", {"5", "1"}), 1.0);
    EXPECT_NEAR(topOfDensity("normal", {}), 0.4, 1e-9);
    // Many bars are one shape: none of them is left out.
    EXPECT_GT(countOf(draw("poisson", {"1e6"}, {}), "class=\"bar-dense\""), 300U);
    EXPECT_LT(draw("poisson", {"1e12"}, {}).size(), 300'000U);
    EXPECT_THROW(draw("poisson", {"1e17"}, {}), DataError) << "no whole numbers to step on";
}

TEST(LawPlot, LeavesRoomForLongLabels) {
    const std::string picture = draw("normal", {"1e12", "1e-3"}, {});
    const std::string label = "text-anchor=\"middle\">99999999999";
    EXPECT_GE(countOf(picture, label), 1U);
    EXPECT_LE(countOf(picture, label), 2U) << "they would run into one another";
}

TEST(LawPlot, ChoosesARangeThatShowsTheLaw) {
    const auto range = [](const char* law, const std::vector<std::string>& parameters,
                          std::vector<double> points) {
        return plotRange(chooseLaw(lawNamed(law), parameters), points);
    };
    const Interval normal = range("normal", {}, {});
    EXPECT_NEAR(normal.lower, -3.55, 0.1);
    EXPECT_NEAR(normal.upper, 3.55, 0.1);
    EXPECT_GT(range("normal", {}, {8.0}).upper, 8.0);
    EXPECT_LT(range("student", {"1"}, {}).upper, 20.0) << "a heavy tail is cut";
    const Interval distant = range("normal", {"1e12", "1"}, {});
    EXPECT_NEAR(distant.upper - distant.lower, 7.1, 0.2) << "a narrow law distant from 0";
    const Interval exponential = range("exp", {"1"}, {});
    EXPECT_LT(exponential.lower, 0.0);
    EXPECT_GT(exponential.lower, -0.5) << "some room before the start of the support";
    const Interval beta = range("beta", {"2", "3"}, {});
    EXPECT_NEAR(beta.lower, -0.04, 1e-3);
    EXPECT_NEAR(beta.upper, 1.04, 1e-3);
    for (const auto& parameters :
         std::vector<std::vector<std::string>>{{"0", "1e-300"}, {"1e300", "1"}, {"0", "1e300"}}) {
        const Interval extreme = range("normal", parameters, {});
        EXPECT_LE(extreme.lower, extreme.upper) << parameters[1];
    }
}

}  // namespace
}  // namespace numcore::cli
