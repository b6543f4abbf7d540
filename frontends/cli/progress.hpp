// A line on the terminal while a long read goes on.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace numcore::cli {

/// Shows how far a read has come, after half a second and only when standard error is a terminal.
/// Not for more than one thread at a time.
class Progress {
  public:
    explicit Progress(bool wanted);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    /// Bytes done, of a total (0: unknown).
    void report(std::size_t done, std::size_t total);
    /// Takes the line away.
    void finish();

  private:
    using Clock = std::chrono::steady_clock;

    bool wanted_;
    bool shown_ = false;
    Clock::time_point next_;
};

}  // namespace numcore::cli
