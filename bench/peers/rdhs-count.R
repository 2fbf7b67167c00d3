#!/usr/bin/env Rscript
# rdhs (ropensci/rdhs) parses a CSPro text dictionary; prints its item count.
#
#   Rscript rdhs-count.R FILE.dcf
#
# parse_dcf() is an internal function of rdhs (R/read_dhs_flat.R) that uses
# base R only, so the file is sourced from $KX_PEERS_DIR/rdhs/src (see
# setup.sh) instead of installing the package and its many imports. The
# dictionary is read with readLines(), as rdhs's own example does, and the
# count is the rows of the table parse_dcf() returns (one per item; the
# generated dictionaries have no occurrences to expand).
#
# With KX_PARSE_REPEAT=K the file is read and parsed K times in this process,
# and each time's wall-clock seconds go to stderr ("parse-seconds: ...").
args <- commandArgs(trailingOnly = TRUE)
peers <- Sys.getenv("KX_PEERS_DIR", "/tmp/kx-peers")
source(file.path(peers, "rdhs", "src", "R", "read_dhs_flat.R"))
repeat_count <- max(1L, as.integer(Sys.getenv("KX_PARSE_REPEAT", "1")))
times <- numeric(0)
for (i in seq_len(repeat_count)) {
  start <- proc.time()[["elapsed"]]
  dcf <- readLines(args[1], encoding = "UTF-8", warn = FALSE)
  dct <- parse_dcf(dcf)
  times <- c(times, proc.time()[["elapsed"]] - start)
}
cat("parse-seconds:", sprintf("%.4f", times), "\n", file = stderr())
cat(nrow(dct), "\n", sep = "")
