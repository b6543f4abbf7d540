# Expected values by R 4.2.2 for tests beside those of the other tables: Rscript make_more_tests.R > more_tests.csv
num <- function(x) paste(ifelse(is.na(x), "MISSING", sprintf("%.17g", x)), collapse = ":")
row <- function(test, x = "", n = "", w = "", o1 = "", o2 = "", alpha = 0.05, alternative = 0, expected, tol = 1e-9)
  cat(test, x, n, w, o1, o2, alpha, alternative, num(expected), tol, sep = ",", fill = FALSE, "\n")
line <- function(...) { out <- capture.output(row(...)); cat(sub(",? ?$", "", paste(out, collapse = "")), "\n", sep = "") }
cat("# By make_more_tests.R, R 4.2.2. Lists by \":\"; x holds the values group after group, n the group sizes.\n")
cat("# expected: welch F, df1, df2, p, critical (oneway.test). bartlett statistic, df, p (bartlett.test). median, mean: Levene F,\n")
cat("# df1, df2, p (anova of lm). chi2: statistic, df, p, critical (prop.test without correction; o1 theoretical). pairs: the\n")
cat("# differences, critical values and p-values of the pairs 1-2, 1-3, 2-3. fratio: x variances, n sizes, o1 R: ratio, F,\n")
cat("# p, lower, upper (pf, qf). z: o1 mean, o2 known variance: z, p, lower, upper (pnorm, qnorm). monte: exact p (dbinom),\n")
cat("# x proportions, o1 D.\n")
cat("test,x,n,w,o1,o2,alpha,alternative,expected,tol\n")

welch <- function(x, n, w = NULL, alpha = 0.05) {
  k <- if (is.null(w)) rep(1, length(x)) else w
  g <- factor(rep(rep(seq_along(n), n), k))
  h <- oneway.test(rep(x, k) ~ g)
  line("welch", num(x), num(n), if (is.null(w)) "" else num(w), alpha = alpha,
       expected = c(h$statistic, h$parameter, h$p.value, qf(1 - alpha, h$parameter[1], h$parameter[2])), tol = 1e-8)
}
plants <- split(PlantGrowth$weight, PlantGrowth$group)
welch(unlist(plants), lengths(plants))
air <- split(airquality$Wind, airquality$Month)
welch(unlist(air), lengths(air), alpha = 0.01)
uneven <- c(1, 4, 2, 8, 5, 7, 1.5, 9, 3, 3.5, 4.25, 6, 2.5)
welch(uneven, c(4, 6, 3), c(1, 2, 1, 3, 1, 1, 2, 1, 1, 2, 2, 1, 3))

spread <- function(x, n) {
  g <- factor(rep(seq_along(n), n))
  b <- bartlett.test(x, g)
  line("bartlett", num(x), num(n), expected = c(b$statistic, b$parameter, b$p.value))
  for (centre in c("median", "mean")) {
    d <- abs(x - ave(x, g, FUN = get(centre)))
    a <- anova(lm(d ~ g))
    line(centre, num(x), num(n), expected = c(a[1, 4], a[1, 1], a[2, 1], a[1, 5]))
  }
}
spread(uneven, c(4, 6, 3))
ozone <- airquality[!is.na(airquality$Ozone), ]
spread(ozone$Ozone, table(ozone$Month))

n <- c(86, 93, 136, 82)
p <- c(83, 90, 129, 70) / n
h <- prop.test(round(n * p), n, correct = FALSE)
line("chi2", num(p), num(n), expected = c(h$statistic, h$parameter, h$p.value, qchisq(0.95, 3)))
given <- c(0.95, 0.95, 0.9, 0.9)
h <- prop.test(round(n * p), n, p = given, correct = FALSE)
line("chi2", num(p), num(n), o1 = num(given), alpha = 0.01,
     expected = c(h$statistic, h$parameter, h$p.value, qchisq(0.99, 4)))
n <- c(25, 30, 40); p <- c(0.6, 1 / 6, 0.45)
i <- c(1, 1, 2); j <- c(2, 3, 3)
d <- abs(p[i] - p[j]); v <- (p * (1 - p) / n)[i] + (p * (1 - p) / n)[j]
line("pairs", num(p), num(n), expected = c(d, sqrt(qchisq(0.95, 2)) * sqrt(v), pchisq(d^2 / v, 2, lower.tail = FALSE)))

ratio <- function(v, n, R, alpha, alternative) {
  r <- v[1] / v[2]; f <- r / R; d <- n - 1
  q <- pf(f, d[1], d[2], lower.tail = FALSE)
  p <- switch(as.character(alternative), "0" = 2 * min(q, 1 - q), "1" = q, "-1" = 1 - q)
  limits <- switch(as.character(alternative),
    "0" = r / qf(c(1 - alpha / 2, alpha / 2), d[1], d[2]),
    "1" = c(r / qf(1 - alpha, d[1], d[2]), 1.79769313486231e308),
    "-1" = c(0, r / qf(alpha, d[1], d[2])))
  line("fratio", num(v), num(n), o1 = R, alpha = alpha, alternative = alternative, expected = c(r, f, p, limits), tol = 1e-8)
}
ratio(c(12.5, 4.25), c(11, 16), 1, 0.05, 0)
ratio(c(12.5, 4.25), c(11, 16), 2, 0.01, 1)
ratio(c(3.5, 4.25), c(21, 9), 1.5, 0.1, -1)

z <- function(x, mu, v, alternative) {
  n <- length(x); s <- sqrt(v / n); t <- (mean(x) - mu) / s
  if (alternative == 0) { p <- 2 * pnorm(-abs(t)); l <- mean(x) + c(-1, 1) * qnorm(0.975) * s }
  if (alternative == 1) { p <- pnorm(t, lower.tail = FALSE); l <- c(mean(x) - qnorm(0.95) * s, 1.79769313486231e308) }
  if (alternative == -1) { p <- pnorm(t); l <- c(NA, mean(x) + qnorm(0.95) * s) }
  line("z", num(x), "", o1 = mu, o2 = num(v), alternative = alternative, expected = c(t, p, l))
}
for (a in c(0, 1, -1)) z(sleep$extra, 1, 4, a)
z(sleep$extra, 1, var(sleep$extra), 0)

monte <- function(p, n, D, alternative) {
  p2 <- min(max((n[1] * (p[1] - D) + n[2] * p[2]) / sum(n), 0), 1); p1 <- min(max(p2 + D, 0), 1)
  d <- outer(0:n[1] / n[1], 0:n[2] / n[2], "-") - D; w <- outer(dbinom(0:n[1], n[1], p1), dbinom(0:n[2], n[2], p2))
  o <- p[1] - p[2] - D
  far <- switch(as.character(alternative), "0" = abs(d) >= abs(o) - 1e-12, "1" = d >= o - 1e-12, "-1" = d <= o + 1e-12)
  line("monte", num(p), num(n), o1 = D, alternative = alternative, expected = sum(w[far]), tol = 0)
}
monte(c(0.6, 0.3), c(25, 30), 0, 0)
monte(c(0.6, 0.3), c(25, 30), 0.1, 1)
monte(c(0.125, 0.25), c(8, 200), 0, -1)
monte(c(1, 0.75), c(5, 4), 0, 0)
monte(c(0.002, 0.001), c(5000, 3000), 0, 0)
