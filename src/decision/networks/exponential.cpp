#include "decision/networks/exponential.hpp"

#include <algorithm>
#include <cmath>

#include "suite/vmcore.hpp"

namespace numcore::networks {
namespace {

struct Limit {
    std::int32_t degree;
    double norm;
};
constexpr Limit kLimits[] = {{3, 0.01495585217958292},
                             {5, 0.253939833006323},
                             {7, 0.9504178996162932},
                             {9, 2.097847961257068},
                             {13, 5.371920351148152}};
constexpr std::int32_t kSplitDegree = 13;

vmcore::ConstMatrixView view(const matrix<double>& a) {
    return {a.data(), a.rows(), a.columns()};
}

vmcore::MatrixView view(matrix<double>& a) {
    return {a.data(), a.rows(), a.columns()};
}

matrix<double> square(std::int32_t n) {
    return {n, n, 0.0};
}

matrix<double> product(const matrix<double>& a, const matrix<double>& b) {
    matrix<double> transposed = square(b.rows());
    for (std::int32_t j = 0; j < b.columns(); ++j)
        for (std::int32_t i = 0; i < b.rows(); ++i) transposed.at(j, i) = b.at(i, j);
    matrix<double> out = square(a.rows());
    vmcore::M_ProductATrB(view(a), view(transposed), view(out));
    return out;
}

void addScaled(matrix<double>& sum, double factor, const matrix<double>& a) {
    for (std::int32_t i = 0; i < sum.size(); ++i) sum[i] += factor * a[i];
}

void addToDiagonal(matrix<double>& sum, double value) {
    for (std::int32_t i = 0; i < sum.rows(); ++i) sum.at(i, i) += value;
}

/// The even powers a^2, a^4, ... up to a given one.
std::vector<matrix<double>> evenPowers(const matrix<double>& a, std::int32_t highest) {
    std::vector<matrix<double>> powers;
    powers.push_back(product(a, a));
    while (2 * static_cast<std::int32_t>(powers.size()) < highest)
        powers.push_back(product(powers.back(), powers.front()));
    return powers;
}

/// b[first] I + b[first + 2] a^2 + b[first + 4] a^4 + ..., as far as there are powers.
matrix<double> evenPolynomial(const std::vector<matrix<double>>& powers, const std::vector<double>& b,
                              std::size_t first) {
    matrix<double> sum = square(powers.front().rows());
    for (std::size_t k = powers.size(); k-- > 0;)
        if (first + 2 * (k + 1) < b.size()) addScaled(sum, b[first + 2 * (k + 1)], powers[k]);
    addToDiagonal(sum, b[first]);
    return sum;
}

/// The terms beyond a^6 of the degree 13: a^6 (b[first] a^2 + b[first + 2] a^4 + b[first + 4] a^6).
matrix<double> upperTerms(const std::vector<matrix<double>>& powers, const std::vector<double>& b,
                          std::size_t first) {
    matrix<double> sum = square(powers.front().rows());
    for (std::size_t k = 0; k < powers.size(); ++k) addScaled(sum, b[first + 2 * k], powers[k]);
    return product(powers.back(), sum);
}

}  // namespace

std::vector<double> padeCoefficients(std::int32_t degree) {
    // b[j] = (2m - j)! / ((m - j)! j!), from b[m] = 1 downwards; exact in 64 bits up to degree 13.
    const auto m = static_cast<std::uint64_t>(std::clamp(degree, 0, kSplitDegree));
    std::vector<double> b(m + 1);
    std::uint64_t value = 1;
    b[m] = 1.0;
    for (std::uint64_t j = m; j > 0; --j) {
        value = value * (2 * m - j + 1) * j / (m - j + 1);
        b[j - 1] = static_cast<double>(value);
    }
    return b;
}

std::int32_t padeDegree(double norm) {
    for (const Limit& limit : kLimits)
        if (limit.norm >= norm) return limit.degree;
    return 0;
}

double oneNorm(const matrix<double>& a) {
    double norm = 0.0;
    for (std::int32_t j = 0; j < a.columns(); ++j) {
        double sum = 0.0;
        for (std::int32_t i = 0; i < a.rows(); ++i) sum += std::abs(a.at(i, j));
        norm = std::max(norm, sum);
    }
    return norm;
}

void padeParts(const matrix<double>& a, std::int32_t degree, matrix<double>& u, matrix<double>& v) {
    const std::vector<double> b = padeCoefficients(degree);
    const bool isSplit = degree == kSplitDegree;
    const auto powers = evenPowers(a, isSplit ? 6 : degree - 1);
    matrix<double> odd = evenPolynomial(powers, b, 1);
    v = evenPolynomial(powers, b, 0);
    if (isSplit) {
        addScaled(odd, 1.0, upperTerms(powers, b, 9));
        addScaled(v, 1.0, upperTerms(powers, b, 8));
    }
    u = product(a, odd);
}

matrix<double> padeApproximant(const matrix<double>& a, std::int32_t degree) {
    const std::int32_t n = a.rows();
    const bool isKnown =
        std::ranges::any_of(kLimits, [&](const Limit& limit) { return limit.degree == degree; });
    // Kept: without a degree there is no scaling and squaring, and the result stays zero.
    if (!isKnown || n < 1 || a.columns() != n) return {n, a.columns(), 0.0};
    matrix<double> u;
    matrix<double> v;
    padeParts(a, degree, u, v);
    matrix<double> inverse = square(n);
    for (std::int32_t i = 0; i < inverse.size(); ++i) inverse[i] = v[i] - u[i];
    vmcore::M_InverseG2(view(inverse), view(inverse));
    addScaled(v, 1.0, u);
    return product(v, inverse);
}

}  // namespace numcore::networks
