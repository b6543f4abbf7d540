# A file to its descriptive table in a process of its own, with R. usage: Rscript describe_csv.R FILE
table <- read.csv(commandArgs(trailingOnly = TRUE)[1])
table <- table[vapply(table, is.numeric, TRUE)]
statistics <- function(x) {
  found <- summary(x)
  missing <- sum(is.na(x))
  c(missing, length(x) - missing, found[["Min."]], found[["Max."]], found[["Mean"]], sd(x, na.rm = TRUE))
}
cat("[", paste(sprintf("%.17g", unlist(lapply(table, statistics))), collapse = ", "), "]\n", sep = "")
