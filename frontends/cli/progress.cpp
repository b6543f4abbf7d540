#include "cli/progress.hpp"

#include <fmt/format.h>

#include <cstdio>

#include "cli/platform.hpp"

namespace numcore::cli {

namespace {

constexpr auto kFirstDelay = std::chrono::milliseconds(500);
constexpr auto kInterval = std::chrono::milliseconds(100);

}  // namespace

Progress::Progress(bool wanted) : wanted_(wanted && isTerminal(stderr)), next_(Clock::now() + kFirstDelay) {}

Progress::~Progress() {
    finish();
}

void Progress::report(std::size_t done, std::size_t total) {
    if (!wanted_ || Clock::now() < next_) return;
    next_ = Clock::now() + kInterval;
    shown_ = true;
    const double megabytes = static_cast<double>(done) / 1e6;
    if (total > 0) {
        fmt::print(stderr, "\rreading {:3.0f} %",
                   100.0 * static_cast<double>(done) / static_cast<double>(total));
    } else {
        fmt::print(stderr, "\rreading {:.0f} MB", megabytes);
    }
    std::fflush(stderr);
}

void Progress::finish() {
    if (!shown_) return;
    shown_ = false;
    fmt::print(stderr, "\r                    \r");
    std::fflush(stderr);
}

}  // namespace numcore::cli
