#include "tests/resampling/signs.hpp"

namespace numcore::tests {

SignedSums::SignedSums(std::span<const double> terms)
    : nWords_((terms.size() + 63) / 64), sums_(nWords_ * kFromOneWord * kSums, 0.0) {
    for (std::size_t i = 0; i < terms.size(); ++i) {
        double* const sums = sums_.data() + i / kTogether * kSums;
        const std::size_t bit = std::size_t{1} << (i % kTogether);
        for (std::size_t pattern = 0; pattern < kSums; ++pattern)
            sums[pattern] += (pattern & bit) != 0 ? -terms[i] : terms[i];
    }
}

double SignedSums::operator()(std::span<const std::uint64_t> signs) const {
    const double* sums = sums_.data();
    double even = 0.0;
    double odd = 0.0;
    for (std::uint64_t word : signs.first(nWords_)) {
        for (std::size_t i = 0; i < kFromOneWord; i += 2) {
            even += sums[word % kSums];
            odd += sums[kSums + word / kSums % kSums];
            word /= kSums * kSums;
            sums += 2 * kSums;
        }
    }
    return even + odd;
}

}  // namespace numcore::tests
