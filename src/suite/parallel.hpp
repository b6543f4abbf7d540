// Worksharing over independent items.
#pragma once

#include <cstdint>
#include <exception>

namespace numcore {

/// Calls body(i, scratch) for i from 0 to n - 1, shared among threads (static schedule) when inParallel is
/// true; each thread has a scratch of its own, which keeps its room from one body to the next. An exception
/// that leaves a body is thrown again here, after all bodies have ended; of several, the one of the lowest
/// index, so that the number of threads does not show.
/// @tparam Scratch  whose default construction does not throw
template <class Scratch, class Body>
void parallelForWith(std::int64_t n, bool inParallel, const Body& body) {
    std::exception_ptr failure;
    std::int64_t failedAt = n;
#pragma omp parallel if (inParallel)
    {
        Scratch scratch;
#pragma omp for schedule(static) nowait
        for (std::int64_t i = 0; i < n; ++i) {
            try {
                body(i, scratch);
            } catch (...) {
#pragma omp critical(numcoreParallelFailure)
                if (i < failedAt) {
                    failedAt = i;
                    failure = std::current_exception();
                }
            }
        }
    }
    if (failure) std::rethrow_exception(failure);
}

/// The same without a scratch: calls body(i).
template <class Body>
void parallelFor(std::int64_t n, bool inParallel, const Body& body) {
    struct None {};
    parallelForWith<None>(n, inParallel, [&body](std::int64_t i, None& /*scratch*/) { body(i); });
}

}  // namespace numcore
