#!/usr/bin/env bash
# Measures the test suite's coverage of the library and the tools: builds the
# project with gcc --coverage (Debug, -O0) in its own folder, runs the whole
# CTest suite and prints, per file of model_KelAdmin/, codebook/ and tools/
# (the inspector), line coverage and branch coverage counted two ways: raw, and
# without the branches gcc adds for exceptions and those it marks unreachable
# (gcovr --exclude-throw-branches --exclude-unreachable-branches). The table
# ends with one TOTAL line. tests/, bench/, fuzz/, examples/ and generated files
# (moc, autogen) are not counted.
#
# Usage: scripts/coverage.sh [BUILD_DIR]     (default: build-coverage)
# Environment: KX_COVERAGE_CTEST_ARGS   extra arguments for ctest (for example
#                                       "-E ^package\." to leave out a test)
#              KX_COVERAGE_HTML=DIR     also write gcovr's annotated HTML pages
#                                       (lines and branches missed) into DIR
# Exit status: 0 when every test passed, 1 when a test failed (the table is
# printed all the same), 2 on a usage or set-up error.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${1:-$root/build-coverage}"
case "$build" in /*) ;; *) build="$PWD/$build" ;; esac
jobs="$(nproc)"

install_gcovr() {
    command -v gcovr >/dev/null 2>&1 && return 0
    local sudo=""
    if [ "$(id -u)" -ne 0 ]; then
        if command -v sudo >/dev/null 2>&1 && sudo -n true 2>/dev/null; then
            sudo="sudo"
        else
            echo "coverage: gcovr is missing; run as root (or with sudo rights): apt-get install gcovr" >&2
            exit 2
        fi
    fi
    mkdir -p "$build"
    local log="$build/coverage-packages.log"
    echo "coverage: installing gcovr (package manager output: $log)"
    if ! { $sudo apt-get update -q && DEBIAN_FRONTEND=noninteractive \
            $sudo apt-get install -y -q --no-install-recommends gcovr; } >"$log" 2>&1; then
        echo "coverage: the installation of gcovr failed; see $log" >&2
        exit 2
    fi
}

# gcc --coverage on every compile and every link (programs, the library and
# the inspector's dlopen'ed module), no optimisation, so that lines and
# branches map one to one onto the sources.
configure_and_build() {
    # gcovr finds the sources through the absolute paths and the compile
    # folder recorded in the .gcno files: ccache must not rewrite them into
    # relative paths, nor take an object compiled in another folder.
    unset CCACHE_BASEDIR CCACHE_NOHASHDIR
    cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Debug \
        -DCMAKE_CXX_COMPILER=g++ \
        -DCMAKE_CXX_FLAGS="--coverage -O0" \
        -DCMAKE_EXE_LINKER_FLAGS="--coverage" \
        -DCMAKE_SHARED_LINKER_FLAGS="--coverage" \
        -DCMAKE_MODULE_LINKER_FLAGS="--coverage" \
        -DKX_BUILD_TESTS=ON -DKX_BUILD_TOOLS=ON -DKX_SANITIZE=OFF >/dev/null
    cmake --build "$build" -j"$jobs"
}

# Every program and the module write their counts (.gcda, beside the object
# files of this build folder, wherever the program itself runs from) when the
# process ends normally; counts of an earlier run are cleared first.
run_suite() {
    find "$build" -name '*.gcda' -delete
    # shellcheck disable=SC2086
    ctest --test-dir "$build" -j"$jobs" --output-on-failure ${KX_COVERAGE_CTEST_ARGS:-}
}

regex_escape() { printf '%s' "$1" | sed 's/[].[^$*+?(){}|\\]/\\&/g'; }

# gcovr_summary OUT [EXTRA_OPTIONS...]: gcovr's JSON summary of the counted files.
gcovr_summary() {
    local out="$1"; shift
    local r b; r="$(regex_escape "$root")" b="$(regex_escape "$build")"
    # CMake's compiler check leaves a .gcno without sources: not searched.
    gcovr --root "$root" --object-directory "$build" \
        --filter "$r/model_KelAdmin/" --filter "$r/codebook/" --filter "$r/tools/" \
        --exclude '.*_autogen/.*' --exclude '.*/moc_[^/]*' \
        --exclude-directories "$b/CMakeFiles/[0-9].*" \
        "$@" --json-summary "$out" --json-summary-pretty
}

print_table() {
    /usr/bin/python3 - "$1" "$2" <<'EOF'
import json, sys
raw = {f["filename"]: f for f in json.load(open(sys.argv[1]))["files"]}
net = {f["filename"]: f for f in json.load(open(sys.argv[2]))["files"]}

def pct(covered, total):
    return "     -" if total == 0 else "%5.1f%%" % (100.0 * covered / total)

def row(name, lc, lt, brc, brt, bnc, bnt):
    return "%-38s %6d/%-6d %s  %6d/%-6d %s  %6d/%-6d %s" % (
        name, lc, lt, pct(lc, lt), brc, brt, pct(brc, brt), bnc, bnt, pct(bnc, bnt))

print("%-38s %20s  %20s  %20s" % ("", "lines", "branches (raw)", "branches (net)"))
print("%-38s %20s  %20s  %20s" % ("File", "covered/total", "covered/total", "covered/total"))
print("-" * 104)
sums = [0] * 6
for name in sorted(raw):
    r, n = raw[name], net[name]
    vals = [r["line_covered"], r["line_total"], r["branch_covered"], r["branch_total"],
            n["branch_covered"], n["branch_total"]]
    sums = [a + b for a, b in zip(sums, vals)]
    print(row(name, *vals))
print("-" * 104)
print(row("TOTAL", *sums))
EOF
}

install_gcovr
configure_and_build
status=0
run_suite || status=1

summary="$build/coverage"
mkdir -p "$summary"
gcovr_summary "$summary/raw.json"
net_options=(--exclude-throw-branches --exclude-unreachable-branches)
if [ -n "${KX_COVERAGE_HTML:-}" ]; then
    mkdir -p "$KX_COVERAGE_HTML"
    net_options+=(--html-details "$KX_COVERAGE_HTML/index.html")
fi
gcovr_summary "$summary/net.json" "${net_options[@]}"

echo
echo "Coverage of model_KelAdmin/ and tools/ ($(date +%F), gcovr $(gcovr --version | head -1 | awk '{print $2}'), gcc $(gcc -dumpfullversion))"
echo "branches (raw): every branch gcc counts; branches (net): without throw and unreachable"
echo "branches (gcovr --exclude-throw-branches --exclude-unreachable-branches)"
echo
print_table "$summary/raw.json" "$summary/net.json"
[ "$status" -eq 0 ] || echo "coverage: some tests failed (see above); the figures count the run as it was" >&2
exit "$status"
