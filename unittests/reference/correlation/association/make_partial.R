# Prints the rows of partial_matrix.csv: partial correlations of mtcars columns given all others, from residuals of
# lm(), with the two-sided p-value of t with n - p degrees of freedom.
d <- read.csv("../../../data/mtcars.csv")[c("mpg", "hp", "wt", "qsec", "disp")]
n <- nrow(d)
p <- ncol(d)
cat("# Partial correlation given all other columns of mtcars (mpg, hp, wt, qsec, disp) | R 4.2.2, make_partial.R\n")
cat("i,j,r,p\n")
for (i in 1:(p - 1)) for (j in (i + 1):p) {
    rest <- as.matrix(d[-c(i, j)])
    r <- cor(resid(lm(d[[i]] ~ rest)), resid(lm(d[[j]] ~ rest)))
    t <- r * sqrt((n - p) / (1 - r^2))
    cat(sprintf("%d,%d,%.17g,%.17g\n", i - 1, j - 1, r, 2 * pt(-abs(t), n - p)))
}
