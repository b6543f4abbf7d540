// From values to pixels, and the ticks of an axis.
#pragma once

#include <string>
#include <vector>

namespace numcore::cli::plot {

/// A linear scale; the pixels may run downward.
class Scale {
  public:
    Scale(double low, double high, double pixelAtLow, double pixelAtHigh);

    double operator()(double value) const;
    double low() const { return low_; }
    double high() const { return high_; }

  private:
    double low_;
    double high_;
    double pixelAtLow_;
    double pixelsPerUnit_;
};

struct Tick {
    double value;
    std::string label;
};

/// Ticks at multiples of 1, 2 or 5 times a power of ten within [low, high], about `wanted` of them. Whole: no
/// ticks between whole numbers.
std::vector<Tick> niceTicks(double low, double high, int wanted, bool whole = false);

}  // namespace numcore::cli::plot
