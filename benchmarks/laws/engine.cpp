// The engine's and Boost.Math's side of benchmarks/compare_laws: times each case of cases.csv and prints, for
// each, a line of JSON with the seconds of one call and the values at the points.
//
//   usage: numcore_laws CASES engine|boost
#include <boost/math/distributions.hpp>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "numcore/numcore.h"

namespace {

constexpr double kShortest = 0.02;  // seconds of repeated work that are timed at once
constexpr int kTimes = 5;           // of which the fastest counts

struct Case {
    std::string law, function;
    std::int32_t code = 0;
    double p[4] = {0.0, 0.0, 0.0, 0.0};
    std::vector<double> points;
};

/// A function of a point, or nothing.
using Function = std::function<double(double)>;

std::vector<Case> readCases(const char* path) {
    std::ifstream in(path);
    std::vector<Case> cases;
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
        std::vector<std::string> cells;
        std::istringstream row(line);
        for (std::string cell; std::getline(row, cell, ';');) cells.push_back(cell);
        Case found{cells[0], cells[1], std::stoi(cells[2]), {}, {}};
        for (std::size_t i = 0; i < 4; ++i) found.p[i] = cells[3 + i].empty() ? 0.0 : std::stod(cells[3 + i]);
        const double from = std::stod(cells[7]);
        const double to = std::stod(cells[8]);
        const int n = std::stoi(cells[9]);
        for (int i = 0; i < n; ++i) found.points.push_back(from + (to - from) * i / (n - 1));
        cases.push_back(std::move(found));
    }
    return cases;
}

Function codedFunction(const Case& c) {
    const auto call = [&c](auto general) {
        return [general, code = c.code, p = c.p](double x) { return general(x, code, p[0], p[1], p[2], p[3]); };
    };
    if (c.function == "density") return call(PDFGeneral);
    if (c.function == "distribution") return call(CDFGeneral);
    return call(InvCDFGeneral);
}

Function engineFunction(const Case& c) {
    if (c.code >= 0) return codedFunction(c);
    const double* p = c.p;
    const std::map<std::string, Function> functions = {
        {"noncentral Student density", [p](double x) { return PDFStudentNC(x, p[0], p[1]); }},
        {"noncentral Student distribution", [p](double x) { return CDFStudentNC(x, p[0], p[1]); }},
        {"noncentral Student quantile", [p](double x) { return InvCDFStudentNC(x, p[0], p[1]); }},
        {"noncentral chi-square distribution", [p](double x) { return CDFchiSqNC(x, p[0], p[1]); }},
        {"noncentral Fisher distribution", [p](double x) { return CDFFisherNC(x, p[0], p[1], p[2]); }},
        {"noncentral beta distribution", [p](double x) { return CDFbetaNC(x, p[0], p[1], p[2]); }},
        {"hypergeometric density", [p](double x) { return PDFHyperG(x, p[0], p[1], p[2]); }},
        {"hypergeometric distribution", [p](double x) { return CDFHyperG(x, p[0], p[1], p[2]); }},
        {"bivariate normal density", [p](double x) { return PDFBiNormalStd(x, p[0], p[1]); }},
        {"bivariate normal distribution", [p](double x) { return CDFBiNormalStd(x, p[0], p[1]); }},
        {"studentized range distribution", [p](double x) { return ptukey(x, p[0], p[1], p[2]); }},
        {"studentized range quantile", [p](double x) { return qtukey(x, p[0], p[1], p[2]); }},
        {"studentized range of 50 distribution", [p](double x) { return ptukey(x, p[0], p[1], p[2]); }},
        {"studentized range of 50 quantile", [p](double x) { return qtukey(x, p[0], p[1], p[2]); }},
    };
    return functions.at(c.law + " " + c.function);
}

template <class Law>
Function boostFunction(const Case& c, Law law) {
    if (c.function == "density") return [law](double x) { return pdf(law, x); };
    if (c.function == "distribution") return [law](double x) { return cdf(law, x); };
    return [law](double p) { return quantile(law, p); };
}

Function boostFunction(const Case& c) {
    using namespace boost::math;
    const double* p = c.p;
    const std::string& law = c.law;
    if (law == "beta") return boostFunction(c, beta_distribution<>(p[0], p[1]));
    if (law == "binomial") return boostFunction(c, binomial(p[0], p[1]));
    if (law == "negative binomial 1") return boostFunction(c, negative_binomial(p[0], p[1]));
    if (law == "negative binomial 2") return boostFunction(c, negative_binomial(p[0], 1.0 / (1.0 + p[1])));
    if (law == "chi-square") return boostFunction(c, chi_squared(p[0]));
    if (law == "exponential") return boostFunction(c, exponential(p[0]));
    if (law == "Fisher") return boostFunction(c, fisher_f(p[0], p[1]));
    if (law == "Gumbel standard") return boostFunction(c, extreme_value(0.0, 1.0));
    if (law == "Gumbel 1") return boostFunction(c, extreme_value(0.0, p[0]));
    if (law == "Gumbel 2") return boostFunction(c, extreme_value(p[1], p[0]));
    if (law == "gamma 1") return boostFunction(c, gamma_distribution<>(p[0], 1.0));
    if (law == "gamma 2") return boostFunction(c, gamma_distribution<>(p[0], p[1]));
    if (law == "Erlang") return boostFunction(c, gamma_distribution<>(p[0], 1.0 / p[1]));
    if (law == "log-normal") return boostFunction(c, lognormal(p[0], p[1]));
    if (law == "normal") return boostFunction(c, normal(p[0], p[1]));
    if (law == "standard normal") return boostFunction(c, normal(0.0, 1.0));
    if (law == "Pareto") return boostFunction(c, pareto(p[1], p[0]));
    if (law == "Poisson") return boostFunction(c, poisson(p[0]));
    if (law == "Student") return boostFunction(c, students_t(p[0]));
    if (law == "uniform") return boostFunction(c, uniform(p[0], p[1]));
    if (law == "Weibull 1") return boostFunction(c, weibull(p[0], 1.0));
    if (law == "Weibull 2") return boostFunction(c, weibull(p[0], p[1]));
    if (law == "triangular") return boostFunction(c, triangular(p[0], p[1], p[2]));
    if (law == "logistic") return boostFunction(c, logistic(p[0], p[1]));
    if (law == "arcsine") return boostFunction(c, arcsine(0.0, 1.0));
    if (law == "noncentral Student") return boostFunction(c, non_central_t(p[0], p[1]));
    if (law == "noncentral chi-square") return boostFunction(c, non_central_chi_squared(p[0], p[1]));
    if (law == "noncentral Fisher") return boostFunction(c, non_central_f(p[0], p[1], p[2]));
    if (law == "noncentral beta") return boostFunction(c, non_central_beta(p[0], p[1], p[2]));
    return nullptr;
}

double timeOnce(const Function& function, const std::vector<double>& points, long repetitions) {
    volatile double sink = 0.0;
    const auto start = std::chrono::steady_clock::now();
    for (long i = 0; i < repetitions; ++i) {
        for (const double x : points) sink = function(x);
    }
    static_cast<void>(sink);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double secondsOfACall(const Function& function, const std::vector<double>& points) {
    long repetitions = 1;
    double seconds = timeOnce(function, points, repetitions);
    while (seconds < kShortest) {
        repetitions *= 2;
        seconds = timeOnce(function, points, repetitions);
    }
    for (int i = 1; i < kTimes; ++i) seconds = std::min(seconds, timeOnce(function, points, repetitions));
    return seconds / (static_cast<double>(repetitions) * static_cast<double>(points.size()));
}

void printLine(const Case& c, const Function& function) {
    std::printf("{\"seconds\": %.9g, \"result\": [", secondsOfACall(function, c.points));
    const char* separator = "";
    for (const double x : c.points) {
        const double value = function(x);
        // JSON has neither infinities nor NaN.
        if (value - value != 0.0) {
            std::printf("%snull", separator);
        } else {
            std::printf("%s%.17g", separator, value);
        }
        separator = ", ";
    }
    std::printf("]}\n");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: numcore_laws CASES engine|boost\n");
        return 1;
    }
    const bool boost = std::string_view(argv[2]) == "boost";
    for (const Case& c : readCases(argv[1])) {
        const Function function = boost ? boostFunction(c) : engineFunction(c);
        if (function) {
            printLine(c, function);
        } else {
            std::printf("null\n");
        }
        std::fflush(stdout);
    }
    return 0;
}
