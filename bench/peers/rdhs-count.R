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
args <- commandArgs(trailingOnly = TRUE)
peers <- Sys.getenv("KX_PEERS_DIR", "/tmp/kx-peers")
source(file.path(peers, "rdhs", "src", "R", "read_dhs_flat.R"))
dcf <- readLines(args[1], encoding = "UTF-8", warn = FALSE)
dct <- parse_dcf(dcf)
cat(nrow(dct), "\n", sep = "")
