// A loop over independent tasks on a few threads.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace numcore::cli {

/// Calls work(i) for i in 0..nTasks-1, on up to nThreads threads including the calling one, and
/// afterTask(nDone) on the calling thread now and then. The first exception is thrown again when all threads
/// have ended.
template <class Work, class AfterTask>
void forEachTask(std::size_t nTasks, std::size_t nThreads, Work work, AfterTask afterTask) {
    std::atomic<std::size_t> next{0};
    std::atomic<std::size_t> nDone{0};
    std::exception_ptr failure;
    std::mutex failureMutex;
    const auto run = [&](bool caller) {
        try {
            for (std::size_t i = next++; i < nTasks; i = next++) {
                work(i);
                const std::size_t done = ++nDone;
                if (caller) afterTask(done);
            }
        } catch (...) {
            next = nTasks;
            const std::lock_guard lock(failureMutex);
            if (!failure) failure = std::current_exception();
        }
    };
    std::vector<std::thread> threads;
    for (std::size_t k = 1; k < nThreads && k < nTasks; ++k) threads.emplace_back(run, false);
    run(true);
    for (std::thread& thread : threads) thread.join();
    if (failure) std::rethrow_exception(failure);
}

/// Threads worth starting for a number of tasks.
inline std::size_t threadsFor(std::size_t nTasks) {
    constexpr std::size_t kMost = 16;
    const std::size_t nCores = std::thread::hardware_concurrency();
    return std::min({nTasks, kMost, nCores == 0 ? std::size_t{1} : nCores});
}

}  // namespace numcore::cli
