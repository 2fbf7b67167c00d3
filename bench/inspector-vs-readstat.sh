#!/usr/bin/env bash
# The inspector against ReadStat's own `readstat`, whole process, on the large
# SPSS and Stata files of the speed measurements (200 labelled variables,
# 2,000,000 rows, written by keladmin-make-samples --large).
#
#   bench/inspector-vs-readstat.sh BUILD_DIR [ROUNDS] [RUNS]
#
# On a virtual machine the speed of the same command drifts by 20 to 40 %
# within a minute, so one long hyperfine run of each command in turn would
# compare the two in different weather. Instead every round times all the
# commands one after the other (hyperfine -N, RUNS runs each, 3 warm-ups),
# the ratio of medians is taken within each round, and the median of the
# rounds' ratios is the figure. Needs hyperfine, readstat and python3
# (apt-get install hyperfine readstat).
set -euo pipefail

build="${1:?usage: $0 BUILD_DIR [ROUNDS] [RUNS]}"
rounds="${2:-10}"
runs="${3:-30}"
inspect="$build/tools/keladmin-inspect"
maker="$build/tests/kit/make-samples/keladmin-make-samples"
for tool in hyperfine readstat python3; do
    command -v "$tool" >/dev/null || { echo "$0: $tool is missing (apt-get install hyperfine readstat)" >&2; exit 2; }
done
[ -x "$inspect" ] || { echo "$0: no $inspect" >&2; exit 2; }
[ -x "$maker" ] || { echo "$0: no $maker (a build with the tests or -DKX_BUILD_SAMPLE_MAKER=ON)" >&2; exit 2; }

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
"$maker" --large "$work" >/dev/null

for round in $(seq "$rounds"); do
    hyperfine -N --style none --warmup 3 --runs "$runs" --export-json "$work/round-$round.json" \
        "readstat $work/large.sav" "$inspect $work/large.sav" \
        "readstat $work/large.dta" "$inspect $work/large.dta" \
        "$inspect --help" \
        "$inspect --codebook $work/large.sav" "$inspect --codebook $work/large.dta" >/dev/null
done

python3 - "$work" "$rounds" <<'EOF'
import json, statistics, sys
work, rounds = sys.argv[1], int(sys.argv[2])
medians = []  # per round: readstat sav, inspector sav, readstat dta, inspector dta, --help,
              # --codebook sav, --codebook dta (ms)
for r in range(1, rounds + 1):
    with open(f"{work}/round-{r}.json") as f:
        medians.append([res["median"] * 1e3 for res in json.load(f)["results"]])
sav = [m[1] / m[0] for m in medians]
dta = [m[3] / m[2] for m in medians]
csav = [m[5] / m[0] for m in medians]
cdta = [m[6] / m[2] for m in medians]
print("round  readstat.sav  inspect.sav  ratio  readstat.dta  inspect.dta  ratio  --help  "
      "codebook.sav  ratio  codebook.dta  ratio  (medians, ms)")
for r, m in enumerate(medians, 1):
    print(f"{r:5d}  {m[0]:12.2f}  {m[1]:11.2f}  {sav[r-1]:5.2f}  {m[2]:12.2f}  {m[3]:11.2f}  {dta[r-1]:5.2f}  "
          f"{m[4]:6.2f}  {m[5]:12.2f}  {csav[r-1]:5.2f}  {m[6]:12.2f}  {cdta[r-1]:5.2f}")
help_ms = statistics.median(m[4] for m in medians)
def verdict(ok):
    return "met" if ok else "NOT MET"
print()
print(f"SPSS  inspector / readstat, median of rounds: {statistics.median(sav):.2f} "
      f"(rounds {min(sav):.2f} to {max(sav):.2f})  at most 3: {verdict(statistics.median(sav) <= 3)}")
print(f"Stata inspector / readstat, median of rounds: {statistics.median(dta):.2f} "
      f"(rounds {min(dta):.2f} to {max(dta):.2f})  at most 3: {verdict(statistics.median(dta) <= 3)}")
print(f"--help, median of rounds: {help_ms:.2f} ms  under 3 ms: {verdict(help_ms < 3)}")
print(f"SPSS  --codebook / readstat, median of rounds: {statistics.median(csav):.2f} "
      f"(rounds {min(csav):.2f} to {max(csav):.2f})  at most 2: {verdict(statistics.median(csav) <= 2)}")
print(f"Stata --codebook / readstat, median of rounds: {statistics.median(cdta):.2f} "
      f"(rounds {min(cdta):.2f} to {max(cdta):.2f})  at most 2: {verdict(statistics.median(cdta) <= 2)}")
EOF
