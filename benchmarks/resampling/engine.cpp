// The engine's side of benchmarks/compare_resampling: prints, for each test, a line of JSON with the seconds on
// one and on two threads (the fastest of several runs, alternating) and the p-value.
//
//   usage: numcore_resampling VALUES N RESAMPLES       VALUES: a text file of 2 N numbers, the two samples
#include "tests/resampling/resampling.hpp"

#include <omp.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

using namespace numcore::tests;

constexpr int kTimes = 9;

struct Timed {
    double seconds = 1e300;
    double pValue = 0.0;
};

void timeOnce(const ResamplingRequest& request, std::int64_t nResamples, int threads, Timed& best) {
    omp_set_num_threads(threads);
    ResamplingOptions options = {};
    options.method = NUMCORE_RESAMPLE_PERMUTATION;
    options.nResamples = nResamples;
    options.seedGiven = NUMCORE_TRUE;
    const auto start = std::chrono::steady_clock::now();
    best.pValue = resample(request, options).pValue;
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    best.seconds = std::min(best.seconds, elapsed.count());
}

void printLine(Statistic statistic, std::span<const Sample> groups, std::int64_t nResamples) {
    ResamplingRequest request;
    request.statistic = statistic;
    request.groups = groups;
    Timed one, two;
    for (int i = 0; i < kTimes; ++i) {
        timeOnce(request, nResamples, 1, one);
        timeOnce(request, nResamples, 2, two);
    }
    std::printf("{\"seconds\": %.9g, \"two_threads\": %.9g, \"p\": %.17g}\n", one.seconds, two.seconds,
                one.pValue);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    std::ifstream in(argv[1]);
    const std::vector<double> values{std::istream_iterator<double>(in), std::istream_iterator<double>()};
    const auto n = static_cast<std::size_t>(std::atoll(argv[2]));
    if (values.size() != 2 * n) return 2;
    const std::int64_t nResamples = std::atoll(argv[3]);
    const Sample groups[] = {{std::span(values).first(n), {}}, {std::span(values).subspan(n), {}}};
    std::vector<double> differences(n);
    for (std::size_t i = 0; i < n; ++i) differences[i] = values[i] - values[n + i];
    const Sample pairs[] = {{differences, {}}};
    printLine(Statistic::kT, groups, nResamples);
    printLine(Statistic::kPairedT, pairs, nResamples);
    return 0;
}
