#!/usr/bin/env bash
# Writes samples/census.sav and samples/census.dta through ReadStat's writer
# (tests/kit/make-samples/keladmin-make-samples.cpp). The text samples are written by hand.
# Usage: scripts/make-samples.sh [BUILD_DIR]   (default: build-samples)
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${1:-$root/build-samples}"
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release -DKX_BUILD_SAMPLE_MAKER=ON \
      -DKX_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" --target keladmin-make-samples -j2
"$build/tests/kit/make-samples/keladmin-make-samples" "$root/samples"
