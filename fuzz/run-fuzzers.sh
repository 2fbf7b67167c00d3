#!/usr/bin/env bash
# Builds the libFuzzer targets with clang, AddressSanitizer and
# UndefinedBehaviorSanitizer, and runs each target for SECONDS seconds, one
# after another.
#
#   fuzz/run-fuzzers.sh SECONDS [TARGET...]
#
# TARGET is one of cspro_text cspro_json lookup spss stata codebook_text
# codebook_json codebook_spss codebook_stata (default: all).
# Environment: KX_FUZZ_BUILD (build folder, default /tmp/build-fuzz),
# KX_FUZZ_OUT (findings, default $KX_FUZZ_BUILD/findings), KX_JOBS (build
# jobs, default 2), KX_FUZZ_READSTAT_SOURCE (a folder of ReadStat's sources,
# of the system library's version: ReadStat is built from it instrumented too,
# and fuzz/ubsan-readstat.supp is used; default empty, the system library).
# The seeds are the test inputs: tests/data/seeds/<target>, the kept findings
# tests/data/regress/<target>, the census dictionaries of samples/, and for
# spss and stata the files keladmin-make-samples --seeds writes (ReadStat's
# writer). Crashes, hangs and sanitizer reports are saved as
# $KX_FUZZ_OUT/<target>/crash-*, timeout-*, oom-*; the inputs that grew
# coverage go to $KX_FUZZ_BUILD/corpus/<target> (the seed folders are only
# read). Each run's log is $KX_FUZZ_OUT/<target>-<date>.log; libFuzzer's
# final stats end it.
# Exit status 1 when any target found something.
set -euo pipefail

if [[ $# -lt 1 || ! $1 =~ ^[0-9]+$ ]]; then
  sed -n '2,22p' "$0" | sed 's/^# \{0,1\}//'
  exit 2
fi
seconds=$1
shift
targets=("$@")
[[ ${#targets[@]} -gt 0 ]] || targets=(cspro_text cspro_json lookup spss stata codebook_text codebook_json codebook_spss codebook_stata)

here=$(cd "$(dirname "$0")" && pwd)
src=$(cd "$here/.." && pwd)
build=${KX_FUZZ_BUILD:-/tmp/build-fuzz}
out=${KX_FUZZ_OUT:-$build/findings}
readstat_source=${KX_FUZZ_READSTAT_SOURCE:-}

CC=clang CXX=clang++ cmake -S "$src" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DKX_BUILD_FUZZERS=ON -DKX_SANITIZE=ON -DKX_BUILD_TESTS=OFF -DKX_BUILD_TOOLS=OFF -DKX_BUILD_SAMPLE_MAKER=ON \
  -DCMAKE_CXX_FLAGS="-fsanitize=fuzzer-no-link" -DKX_FUZZ_READSTAT_SOURCE="$readstat_source" >/dev/null
cmake --build "$build" -j"${KX_JOBS:-2}" --target keladmin-make-samples \
  $(printf 'fuzz_%s ' "${targets[@]}")

data="$src/tests/data"
mkdir -p "$build/seeds"
"$build/tests/kit/make-samples/keladmin-make-samples" --seeds "$build/seeds" >/dev/null

# The readers leave their dictionary model alive on purpose and the targets
# free it themselves; leak reports would stop at the first error path.
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=0:abort_on_error=1:symbolize=1}
ubsan=print_stacktrace=1:halt_on_error=1
# ReadStat built from its sources reports three harmless places; see the file.
[[ -z $readstat_source ]] || ubsan+=:suppressions=$here/ubsan-readstat.supp
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-$ubsan}

status=0
summary=()
for target in "${targets[@]}"; do
  corpus="$build/corpus/$target"
  artifacts="$out/$target"
  mkdir -p "$corpus" "$artifacts"
  # libFuzzer takes folders: the census sample dictionaries join the written seeds.
  case $target in
    cspro_text) mkdir -p "$build/seeds/$target" && cp "$src/samples/census.dcf" "$build/seeds/$target/" ;;
    cspro_json) mkdir -p "$build/seeds/$target" && cp "$src/samples/census.json" "$build/seeds/$target/" ;;
    codebook_text) mkdir -p "$build/seeds/$target" && cp "$src/samples/"*.dcf "$build/seeds/$target/" ;;
    codebook_json) mkdir -p "$build/seeds/$target" && cp "$src/samples/census.json" "$build/seeds/$target/" ;;
  esac
  # A codebook target starts from the seeds of the front end's reader of its format.
  reader=${target#codebook_}
  case $reader in text|json) reader=cspro_$reader ;; esac
  seeds=()
  for folder in "$data/seeds/$target" "$data/regress/$target" "$build/seeds/$target" \
                "$data/seeds/$reader" "$data/regress/$reader" "$build/seeds/$reader"; do
    [[ -d $folder ]] && seeds+=("$folder")
  done
  dict=()
  case $target in
    cspro_text|codebook_text|lookup) dict=(-dict="$here/cspro.dict") ;;
    cspro_json|codebook_json) dict=(-dict="$here/json.dict") ;;
  esac
  log="$out/$target-$(date +%Y%m%d-%H%M%S).log"
  # Findings of this run only: artifacts newer than this mark.
  mark="$artifacts/.started"
  touch "$mark"
  echo "== $target: ${seconds}s, log $log"
  set +e
  "$build/fuzz/fuzz_$target" "$corpus" "${seeds[@]}" "${dict[@]}" \
    -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=65536 \
    -close_fd_mask=1 -print_final_stats=1 -artifact_prefix="$artifacts/" >"$log" 2>&1
  rc=$?
  set -e
  execs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | grep -o '[0-9]*$' || true)
  speed=$(grep -o 'stat::average_exec_per_sec: *[0-9]*' "$log" | grep -o '[0-9]*$' || true)
  cov=$(grep -o 'cov: [0-9]*' "$log" | tail -1 | grep -o '[0-9]*' || true)
  found=$(find "$artifacts" -type f -newer "$mark" ! -name .started | wc -l)
  [[ $rc -eq 0 && $found -eq 0 ]] || status=1
  summary+=("$(printf '%-11s exit %-3s executions %-10s exec/s %-7s coverage %-6s findings %s' \
    "$target" "$rc" "${execs:-?}" "${speed:-?}" "${cov:-?}" "$found")")
done

echo
printf '%s\n' "${summary[@]}"
exit $status
