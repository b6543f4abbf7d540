# The values that the engine and the peers must give before they are timed, by R: a line of JSON each.
# usage: Rscript reference.R describe|quantile FILE COLUMNS
arguments <- commandArgs(trailingOnly = TRUE)
columns <- as.integer(arguments[3])
cells <- matrix(readBin(arguments[2], "double", file.size(arguments[2]) / 8), ncol = columns)
line <- function(values) cat("[", paste(sprintf("%.17g", values), collapse = ", "), "]\n", sep = "")

describe <- function(x) {
  present <- x[!is.na(x)]
  c(sum(is.na(x)), length(present), min(present), max(present), mean(present), sd(present))
}

if (arguments[1] == "describe") {
  line(unlist(lapply(seq_len(columns), function(j) describe(cells[, j]))))
} else {
  for (type in c(4, 3, 1, 6, 2, 7)) line(quantile(cells, c(0.1, 0.5, 0.95), type = type, na.rm = TRUE))
}
