# R's side of compare_correlation. usage: Rscript peer.R pearson|spearman|kendall FILE COLUMNS
args <- commandArgs(trailingOnly = TRUE)
columns <- as.integer(args[3])
cells <- matrix(readBin(args[2], "double", file.size(args[2]) / 8), ncol = columns)
start <- proc.time()[["elapsed"]]
r <- cor(cells, use = if (anyNA(cells)) "pairwise.complete.obs" else "everything", method = args[1])
seconds <- proc.time()[["elapsed"]] - start
cat(sprintf("{\"seconds\": [%.6f], \"result\": [%s]}\n", seconds, paste(sprintf("%.17g", r), collapse = ", ")))
