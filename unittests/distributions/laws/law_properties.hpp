// What holds for every law, whatever its formulas: a table with a row per law goes through these checks.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "numcore/markers.hpp"

namespace numcore::testing {

using Parameters = std::vector<double>;

/// A function of a law: the point or probability and the parameters, all as doubles. Made from a plain function
/// (integers are truncated and clamped to their range) or from one that takes the list.
class LawFunction {
  public:
    template <class Result, class Point, class... Rest>
    LawFunction(Result (*function)(Point, Rest...))  // NOLINT(google-explicit-constructor): a table of names
        : call_([function](double x, const Parameters& p) {
              return invoke(function, x, p, std::index_sequence_for<Rest...>());
          }) {}
    LawFunction(double (*call)(double, const Parameters&))  // NOLINT(google-explicit-constructor)
        : call_(call) {}
    LawFunction(std::function<double(double, const Parameters&)> call)  // NOLINT(google-explicit-constructor)
        : call_(std::move(call)) {}

    double operator()(double x, const Parameters& p) const { return call_(x, p); }

  private:
    template <class T>
    static T argument(double value) {
        if constexpr (std::is_integral_v<T>) {
            if (std::isnan(value)) return 0;
            return static_cast<T>(std::clamp(value, static_cast<double>(std::numeric_limits<T>::min()),
                                             static_cast<double>(std::numeric_limits<T>::max())));
        } else {
            return value;
        }
    }

    template <class Result, class Point, class... Rest, std::size_t... I>
    static double invoke(Result (*function)(Point, Rest...), double x, const Parameters& p,
                         std::index_sequence<I...>) {
        return static_cast<double>(function(argument<Point>(x), argument<Rest>(p.at(I))...));
    }

    std::function<double(double, const Parameters&)> call_;
};

/// Parameters outside the domain of the functions named by their letters: d density, p distribution, q
/// quantile.
struct BadParameters {
    Parameters values;
    std::string functions = "dpq";
    double point = 0.5;  // also the probability
};

struct Law {
    std::string name;
    LawFunction density;
    LawFunction distribution;
    LawFunction quantile;
    std::vector<Parameters> good;
    std::vector<BadParameters> bad;
    double quantileTolerance = 1e-12;  // of distribution(quantile(p)), relative to min(p, 1 - p)
    bool discrete = false;
    bool checksParameters = true;  // false: the stated formula is used whatever the parameters
    std::vector<double> probabilities = {1e-6, 0.001, 0.025, 0.1, 0.3, 0.5, 0.7, 0.9, 0.975, 0.999, 1 - 1e-6};
};

inline void PrintTo(const Law& law, std::ostream* out) {
    *out << law.name;
}

/// The missing value, or 0xFFFFFFFF of an unsigned quantile.
inline bool isMarker(double value) {
    return value == kMissing || value == 4294967295.0;
}

inline std::string shown(const Law& law, const Parameters& parameters, double x) {
    std::string text = law.name + " at " + ::testing::PrintToString(x) + " with";
    for (const double p : parameters) text += " " + ::testing::PrintToString(p);
    return text;
}

/// Points from tail to tail with others between them.
inline std::vector<double> pointsOf(const Law& law, const Parameters& parameters) {
    std::vector<double> points;
    for (const double p : law.probabilities) points.push_back(law.quantile(p, parameters));
    std::sort(points.begin(), points.end());
    for (std::size_t i = points.size(); i-- > 1;) {
        const double between = 0.5 * (points[i - 1] + points[i]);
        points.insert(points.begin() + static_cast<std::ptrdiff_t>(i),
                      law.discrete ? std::floor(between) : between);
    }
    return points;
}

inline constexpr double kRounding = 1e-12;

/// Density >= 0; distribution within [0, 1] and rising but for roundings.
inline void expectDistribution(const Law& law) {
    for (const Parameters& parameters : law.good) {
        double below = 0.0;
        for (const double x : pointsOf(law, parameters)) {
            SCOPED_TRACE(shown(law, parameters, x));
            EXPECT_GE(law.density(x, parameters), 0.0);
            const double probability = law.distribution(x, parameters);
            EXPECT_GE(probability, std::max(0.0, below - kRounding));
            EXPECT_LE(probability, 1.0 + kRounding);
            below = std::max(below, probability);
        }
    }
}

/// The quantile undoes the distribution; that of a discrete law is the first count to reach the probability.
inline void expectQuantileInverse(const Law& law) {
    for (const Parameters& parameters : law.good) {
        for (const double p : law.probabilities) {
            SCOPED_TRACE(shown(law, parameters, p));
            const double x = law.quantile(p, parameters);
            const double reached = law.distribution(x, parameters);
            const double rounding = law.quantileTolerance * std::min(p, 1.0 - p);
            if (!law.discrete) {
                EXPECT_NEAR(reached, p, rounding) << "quantile " << x;
                continue;
            }
            EXPECT_GE(reached, p - rounding) << "quantile " << x;
            if (x <= 0.0) continue;
            EXPECT_LE(law.distribution(x - 1.0, parameters), p + rounding) << "quantile " << x;
        }
    }
}

/// The density is the slope of the distribution, by a symmetric difference; a mass is its jump.
inline void expectDensityIsSlope(const Law& law, double tolerance = 1e-5) {
    constexpr double kShareOfTail = 1e-4;
    for (const Parameters& parameters : law.good) {
        for (const double p : law.probabilities) {
            const double x = law.quantile(p, parameters);
            SCOPED_TRACE(shown(law, parameters, x));
            const double density = law.density(x, parameters);
            const double left = law.discrete ? 1.0 : kShareOfTail * std::min(p, 1.0 - p) / density;
            const double right = law.discrete ? 0.0 : left;
            const double gained =
                law.distribution(x + right, parameters) - law.distribution(x - left, parameters);
            EXPECT_NEAR(gained / (left + right), density, tolerance * density);
        }
    }
}

inline void expectMarkers(const Law& law) {
    for (const BadParameters& bad : law.bad) {
        SCOPED_TRACE(shown(law, bad.values, bad.point));
        for (const char function : bad.functions) {
            const LawFunction& call = function == 'd'   ? law.density
                                      : function == 'p' ? law.distribution
                                                        : law.quantile;
            EXPECT_TRUE(isMarker(call(bad.point, bad.values)))
                << function << " " << call(bad.point, bad.values);
        }
    }
}

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr std::array<double, 25> kHostile = {std::numeric_limits<double>::quiet_NaN(),
                                                    kInfinity,
                                                    -kInfinity,
                                                    kMissing,
                                                    kOverflow,
                                                    1e300,
                                                    -1e300,
                                                    1e100,
                                                    1e18,
                                                    -1e18,
                                                    4294967296.0,
                                                    1e6,
                                                    -1e6,
                                                    1000.5,
                                                    -1.0,
                                                    -0.0,
                                                    0.0,
                                                    std::numeric_limits<double>::denorm_min(),
                                                    1e-300,
                                                    1e-17,
                                                    0.3,
                                                    0.5,
                                                    1.0 - 0x1p-53,
                                                    1.0,
                                                    1.0 + 0x1p-52};

/// A value that the law may give for any input at all.
inline void expectSensible(const Law& law, double x, const Parameters& parameters) {
    const double density = law.density(x, parameters);
    const double probability = law.distribution(x, parameters);
    const double quantile = law.quantile(x, parameters);
    if (!law.checksParameters) return;
    const bool sensible = (std::isnan(density) || isMarker(density) || density >= 0.0) &&
                          (std::isnan(probability) || isMarker(probability) ||
                           (probability >= 0.0 && probability <= 1.0 + kRounding)) &&
                          !std::isinf(quantile);
    if (sensible) return;
    ADD_FAILURE() << shown(law, parameters, x) << ": density " << density << ", distribution " << probability
                  << ", quantile " << quantile;
}

/// Every call ends, whatever it is fed: each pair of arguments runs through the nasty doubles while the others
/// are good.
inline void expectHostileEnd(const Law& law) {
    for (const Parameters& parameters : law.good) {
        Parameters all = {0.5};
        all.insert(all.end(), parameters.begin(), parameters.end());
        for (std::size_t i = 0; i + 1 < all.size(); ++i) {
            for (std::size_t j = i + 1; j < all.size(); ++j) {
                for (const double one : kHostile) {
                    for (const double other : kHostile) {
                        Parameters fed = all;
                        fed[i] = one;
                        fed[j] = other;
                        expectSensible(law, fed[0], Parameters(fed.begin() + 1, fed.end()));
                    }
                }
            }
        }
        for (const double x : kHostile) expectSensible(law, x, parameters);
    }
}

/// All of them.
inline void expectLaw(const Law& law) {
    expectDistribution(law);
    expectQuantileInverse(law);
    expectDensityIsSlope(law);
    expectMarkers(law);
    expectHostileEnd(law);
}

}  // namespace numcore::testing
