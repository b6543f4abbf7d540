# R's side of compare_laws: a line of JSON per case, null when R has no such function. usage: Rscript peer.R CASES
cases <- read.table(commandArgs(trailingOnly = TRUE)[1], header = TRUE, sep = ";", quote = "", comment.char = "",
                    stringsAsFactors = FALSE)
line <- function(seconds, values) {
  digits <- sprintf("%.17g", values)
  digits[!is.finite(values)] <- "null"
  cat("{\"seconds\": ", sprintf("%.9g", seconds), ", \"result\": [", paste(digits, collapse = ", "), "]}\n", sep = "")
}
for (i in seq_len(nrow(cases))) {
  expression <- cases$R[i]
  if (is.na(expression) || expression == "") {
    cat("null\n")
    next
  }
  x <- seq(cases$from[i], cases$to[i], length.out = cases$points[i])
  # Long vectors: what R's loop costs, not what its call costs.
  copies <- if (grepl("tukey", expression)) 1 else ceiling(20000 / length(x))
  values <- eval(parse(text = expression))
  x <- rep(x, copies)
  work <- eval(parse(text = paste("function()", expression)))
  best <- Inf
  for (time in 1:4) {
    n <- 0
    start <- proc.time()[["elapsed"]]
    while ((elapsed <- proc.time()[["elapsed"]] - start) < 0.05) {
      suppressWarnings(work())
      n <- n + 1
    }
    best <- min(best, elapsed / (n * length(x)))
  }
  line(best, values)
}
