# R's side of compare_resampling: a line of JSON per test. usage: Rscript peer.R VALUES N RESAMPLES
arguments <- commandArgs(trailingOnly = TRUE)
x <- scan(arguments[1], quiet = TRUE)
n <- as.integer(arguments[2])
times <- as.integer(arguments[3])

# A loop as a careful user writes it: only the sum of one group is needed, the rest is known beforehand.
pooled_t <- function() {
  total <- sum(x)
  squares <- sum(x^2)
  statistic <- function(first) {
    rest <- total - first
    within <- squares - first^2 / n - rest^2 / n
    (first - rest) / n / sqrt(within / (2 * n - 2) * 2 / n)
  }
  observed <- abs(statistic(sum(x[1:n])))
  extreme <- 0
  for (i in seq_len(times)) {
    if (abs(statistic(sum(x[sample.int(2 * n, n)]))) >= observed - 1e-9) extreme <- extreme + 1
  }
  (extreme + 1) / (times + 1)
}

paired_t <- function() {
  d <- x[1:n] - x[(n + 1):(2 * n)]
  squares <- sum(d^2)
  statistic <- function(sum) sum / n / sqrt((squares - sum^2 / n) / (n - 1) / n)
  observed <- abs(statistic(sum(d)))
  extreme <- 0
  for (i in seq_len(times)) {
    if (abs(statistic(sum(d * sample(c(-1, 1), n, replace = TRUE)))) >= observed - 1e-9) extreme <- extreme + 1
  }
  (extreme + 1) / (times + 1)
}

set.seed(1)
for (test in list(pooled_t, paired_t)) {
  best <- Inf
  for (time in 1:2) {
    start <- proc.time()[["elapsed"]]
    p <- test()
    best <- min(best, proc.time()[["elapsed"]] - start)
  }
  cat("{\"seconds\": ", sprintf("%.9g", best), ", \"p\": ", sprintf("%.17g", p), "}\n", sep = "")
}
