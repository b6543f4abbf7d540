// Worksharing over independent items.
#pragma once

#include <cstdint>
#include <exception>

namespace numcore {

/// Calls body(i) for i from 0 to n - 1, shared among threads (static schedule) when inParallel is true. An
/// exception that leaves a body is thrown again here, after all bodies have ended; of several, the one of the
/// lowest index, so that the number of threads does not show.
template <class Body>
void parallelFor(std::int64_t n, bool inParallel, const Body& body) {
    std::exception_ptr failure;
    std::int64_t failedAt = n;
#pragma omp parallel for schedule(static) if (inParallel)
    for (std::int64_t i = 0; i < n; ++i) {
        try {
            body(i);
        } catch (...) {
#pragma omp critical(numcoreParallelFailure)
            if (i < failedAt) {
                failedAt = i;
                failure = std::current_exception();
            }
        }
    }
    if (failure) std::rethrow_exception(failure);
}

}  // namespace numcore
