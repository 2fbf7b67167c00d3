#!/usr/bin/env bash
# Times other open-source CSPro dictionary readers ("peers") and
# keladmin-inspect side by side on the same generated CSPro text dictionaries,
# whole process each, with hyperfine.
#
#   bench/peers/run.sh BUILD_DIR
#
# Run bench/peers/setup.sh first. BUILD_DIR holds tools/keladmin-inspect
# (a Release build), and bench/parse-count when it was configured with
# -DKX_BUILD_BENCHMARKS=ON. Environment:
#   KX_PEERS_DIR    the peers, as setup.sh left them (default /tmp/kx-peers)
#   KX_SIZES        item counts of the dictionaries (default "1000 10000 100000")
#   KX_WARMUP, KX_RUNS  hyperfine's --warmup and --runs (default 2 and 5)
#   KX_PARSE_REPEAT readings per process for the in-process times, and
#                   processes for the front end's reading (default 5)
#   KX_READSTAT_ROUNDS  rounds of bench/inspector-vs-readstat.sh run at the end
#                   (default 10; 0 leaves it out)
#   KX_RESULTS_DIR  where hyperfine's JSON exports are kept
#                   (default /tmp/kx-peers-results)
#   KX_COMMIT       the commit BUILD_DIR was built from, for the table's
#                   heading (default: this repository's HEAD, marked "+
#                   uncommitted changes" when tracked files differ from it)
#
# The dictionaries are written into a temporary folder, removed at the end.
# Before timing, every peer parses every dictionary once and must print the
# dictionary's real number of [Item] sections; a peer that does not is left
# out of the timing, with a message. Then every reader parses every dictionary
# KX_PARSE_REPEAT times in one process and prints each parse's own time (the
# drivers' "parse-seconds:" line on stderr): the in-process times, without
# the runtimes' start-up. The front end's reading (parse-count --front-end)
# is timed the same way, to tell what share of `keladmin-inspect --json` is
# output and exit. The tables are printed in Markdown, the targets' verdicts
# after them, and last the inspector against `readstat`
# (bench/inspector-vs-readstat.sh, which needs the sample writer in BUILD_DIR).
set -euo pipefail

build="${1:?usage: $0 BUILD_DIR}"
here="$(cd "$(dirname "$0")" && pwd)"
repo="$(cd "$here/../.." && pwd)"
inspect="$build/tools/keladmin-inspect"
parse_count="$build/bench/parse-count"
cache="${KX_PEERS_DIR:-/tmp/kx-peers}"
sizes="${KX_SIZES:-1000 10000 100000}"
warmup="${KX_WARMUP:-2}"
runs="${KX_RUNS:-5}"
repeat="${KX_PARSE_REPEAT:-5}"
results="${KX_RESULTS_DIR:-/tmp/kx-peers-results}"
export KX_PEERS_DIR="$cache"

[ -x "$inspect" ] || { echo "$0: no $inspect (build the keladmin-inspect target first)" >&2; exit 2; }
[ -x "$parse_count" ] || { echo "$0: no $parse_count (configure with -DKX_BUILD_BENCHMARKS=ON and build the parse-count target)" >&2; exit 2; }
for tool in hyperfine python3; do
    command -v "$tool" >/dev/null || { echo "$0: $tool is missing (bench/peers/setup.sh installs it)" >&2; exit 2; }
done

# name|command (the dictionary's path is appended)|what must exist
candidates=(
    "pycspro|/usr/bin/python3 $here/pycspro-count.py|$cache/pycspro/src/pycspro/DictionaryParser.py"
    "CSWeb (PHP)|php $here/csweb-count.php|$cache/csweb/src/src/AppBundle/CSPro/Dictionary/Parser.php"
    "CSPro2sql (Java)|java -cp $cache/cspro2sql/classes CSPro2sqlCount|$cache/cspro2sql/classes/CSPro2sqlCount.class"
    "DHS-To-Database|/usr/bin/python3 $here/dhs-to-database-count.py|$cache/dhs-to-database/src/DHS_To_Database/cspro_parser/DCF_Parser.py"
    "rdhs (R)|Rscript $here/rdhs-count.R|$cache/rdhs/src/R/read_dhs_flat.R"
    "CSPro.NET (C#, Mono)|mono $cache/cspro-net/CSProNetCount.exe|$cache/cspro-net/CSProNetCount.exe"
)
ours=(
    "keladmin-inspect --codebook --json|$inspect --codebook --json"
    "keladmin-inspect --json|$inspect --json"
)
# Start-up alone (the file's path is appended, and ignored by --version).
startup="keladmin-inspect --version|$inspect --version"

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
mkdir -p "$results"
# shellcheck disable=SC2086
python3 "$here/make-dictionaries.py" "$work" $sizes

peers=()
for c in "${candidates[@]}"; do
    IFS='|' read -r name cmd needs <<<"$c"
    if [ ! -e "$needs" ]; then
        echo "run: SKIP $name: $needs is missing (run bench/peers/setup.sh)" >&2
        continue
    fi
    ok=1
    for n in $sizes; do
        want="$(grep -c '^\[Item\]' "$work/dict-$n.dcf")"
        got="$($cmd "$work/dict-$n.dcf" 2>"$work/stderr" | tail -n 1)" || true
        if [ "$got" != "$want" ]; then
            echo "run: SKIP $name: printed '$got' items for dict-$n.dcf, which has $want" >&2
            sed 's/^/    /' "$work/stderr" | tail -n 5 >&2
            ok=0
            break
        fi
    done
    if [ "$ok" = 1 ]; then
        echo "run: $name counts the items right" >&2
        peers+=("$name|$cmd")
    fi
done
for n in $sizes; do
    want="$(grep -c '^\[Item\]' "$work/dict-$n.dcf")"
    got="$("$inspect" --json "$work/dict-$n.dcf" | python3 -c 'import json,sys; print(len(json.load(sys.stdin)["fields"]))')"
    [ "$got" = "$want" ] || { echo "$0: keladmin-inspect read $got items of $want in dict-$n.dcf" >&2; exit 1; }
done

for n in $sizes; do
    args=()
    for p in "${peers[@]}" "${ours[@]}" "$startup"; do
        IFS='|' read -r name cmd <<<"$p"
        args+=(--command-name "$name" "$cmd $work/dict-$n.dcf")
    done
    echo "run: timing dict-$n.dcf ($(du -h "$work/dict-$n.dcf" | cut -f1))" >&2
    hyperfine -N --style none --warmup "$warmup" --runs "$runs" \
        --export-json "$results/peers-$n.json" "${args[@]}" >/dev/null
done

# In-process: each reader's own parse times, KX_PARSE_REPEAT of them per
# process, collected into one file per size.
for n in $sizes; do
    echo "run: parsing dict-$n.dcf $repeat times in each reader's process" >&2
    for p in "${peers[@]}" "codebook reader (parse-count)|$parse_count"; do
        IFS='|' read -r name cmd <<<"$p"
        # shellcheck disable=SC2086
        if ! KX_PARSE_REPEAT="$repeat" $cmd "$work/dict-$n.dcf" >/dev/null 2>"$work/stderr"; then
            echo "$0: $name failed on dict-$n.dcf" >&2
            cat "$work/stderr" >&2
            exit 1
        fi
        printf '%s\t%s\n' "$name" "$(sed -n 's/^parse-seconds: *//p' "$work/stderr" | tail -n 1)"
    done >"$results/inprocess-$n.tsv"
    frontend=()
    for _ in $(seq "$repeat"); do
        "$parse_count" --front-end "$work/dict-$n.dcf" >/dev/null 2>"$work/stderr"
        frontend+=("$(sed -n 's/^parse-seconds: *//p' "$work/stderr")")
    done
    printf '%s\n' "${frontend[*]}" >"$results/frontend-$n.txt"
done

commit="${KX_COMMIT:-$(git -C "$repo" rev-parse --short HEAD 2>/dev/null || echo unknown)}"
if [ -z "${KX_COMMIT:-}" ] && [ -n "$(git -C "$repo" status --porcelain --untracked-files=no 2>/dev/null)" ]; then
    commit="$commit + uncommitted changes"
fi
echo
echo "Measured $(date -u '+%Y-%m-%d %H:%M UTC') at commit $commit," \
     "$(nproc) CPUs ($(lscpu | sed -n 's/^Model name: *//p' | head -n 1)), hyperfine --warmup $warmup --runs $runs," \
     "whole process, mean ± standard deviation:"
echo
python3 - "$results" "$repeat" $sizes <<'EOF'
import json, statistics, sys
folder, repeat, sizes = sys.argv[1], int(sys.argv[2]), [int(s) for s in sys.argv[3:]]
table = {}  # name -> {size: (mean, stddev)}
order = []
for n in sizes:
    with open(f"{folder}/peers-{n}.json") as f:
        for r in json.load(f)["results"]:
            if r["command"] not in table:
                order.append(r["command"])
                table[r["command"]] = {}
            table[r["command"]][n] = (r["mean"], r["stddev"] or 0.0)

def fmt(mean, sd):
    return f"{mean * 1e3:.0f} ± {sd * 1e3:.0f} ms" if mean < 1 else f"{mean:.2f} ± {sd:.2f} s"

ours = [c for c in order if c.startswith("keladmin-inspect") and c != "keladmin-inspect --version"]
peers = [c for c in order if not c.startswith("keladmin-inspect")]
print("| Reader | " + " | ".join(f"{n:,} items" for n in sizes) + " |")
print("|---|" + "---|" * len(sizes))
for c in peers + ours + ["keladmin-inspect --version"]:
    name = f"**{c}**" if c in ours else c
    print(f"| {name} | " + " | ".join(fmt(*table[c][n]) for n in sizes) + " |")
for mine in ours:
    cells = []
    for n in sizes:
        if not peers:
            cells.append("–")
            continue
        best = min(peers, key=lambda c: table[c][n][0])
        cells.append(f"{table[best][n][0] / table[mine][n][0]:.1f} ({best})")
    print(f"| fastest peer / `{mine[len('keladmin-inspect '):]}` | " + " | ".join(cells) + " |")

# In-process: the best of each reader's parse times (the JIT-compiled peers'
# later parses are their fastest), the median after it.
inproc = {}  # name -> {size: [seconds]}
inorder = []
for n in sizes:
    with open(f"{folder}/inprocess-{n}.tsv") as f:
        for line in f:
            name, times = line.rstrip("\n").split("\t")
            if name not in inproc:
                inorder.append(name)
                inproc[name] = {}
            inproc[name][n] = [float(t) for t in times.split()]

def fmt_s(t):
    if t < 0.01:
        return f"{t * 1e3:.1f} ms"
    return f"{t * 1e3:.0f} ms" if t < 1 else f"{t:.2f} s"

print()
print(f"In process, {repeat} parses of the file in one process per reader, "
      "best (median); the runtimes' start-up is not counted:")
print()
mine = [c for c in inorder if c.startswith("codebook reader")]
others = [c for c in inorder if c not in mine]
print("| Reader | " + " | ".join(f"{n:,} items" for n in sizes) + " |")
print("|---|" + "---|" * len(sizes))
for c in others + mine:
    name = f"**{c}**" if c in mine else c
    print(f"| {name} | " + " | ".join(
        f"{fmt_s(min(inproc[c][n]))} ({fmt_s(statistics.median(inproc[c][n]))})" for n in sizes) + " |")
for c in mine:
    cells = []
    for n in sizes:
        if not others:
            cells.append("–")
            continue
        best = min(others, key=lambda o: min(inproc[o][n]))
        cells.append(f"{min(inproc[best][n]) / min(inproc[c][n]):.1f} ({best})")
    print("| fastest peer / codebook reader | " + " | ".join(cells) + " |")

# The front end's --json: output and exit (the whole process less its
# start-up and its reading) as a share of the reading.
print()
print("The front end's `--json`: reading in process (median of "
      f"{repeat} processes), output and exit = whole `--json` less `--version` and the reading:")
print()
print("| | " + " | ".join(f"{n:,} items" for n in sizes) + " |")
print("|---|" + "---|" * len(sizes))
reading = {}
for n in sizes:
    with open(f"{folder}/frontend-{n}.txt") as f:
        reading[n] = statistics.median(float(t) for t in f.read().split())
shares = {n: (table["keladmin-inspect --json"][n][0] - table["keladmin-inspect --version"][n][0] - reading[n])
             / reading[n] for n in sizes}
print("| reading (parse-count --front-end) | " + " | ".join(fmt_s(reading[n]) for n in sizes) + " |")
print("| whole `--json` | " + " | ".join(fmt_s(table["keladmin-inspect --json"][n][0]) for n in sizes) + " |")
print("| output and exit / reading | " + " | ".join(f"{shares[n] * 100:.0f} %" for n in sizes) + " |")

def verdict(ok):
    return "met" if ok else "NOT MET"

print()
if others:
    whole = [min(table[c][n][0] for c in peers) / table["keladmin-inspect --codebook --json"][n][0] for n in sizes]
    print(f"Target: --codebook --json at least 2 x the fastest peer at every size: "
          f"{', '.join(f'{r:.1f}' for r in whole)}: {verdict(min(whole) >= 2)}")
    largest = max(sizes)
    best = min(min(inproc[o][largest]) for o in others)
    inr = best / min(inproc[mine[0]][largest])
    print(f"Target: the codebook reader in process at least 3 x the fastest peer at {largest:,} items: "
          f"{inr:.1f}: {verdict(inr >= 3)}")
# Judged at the largest size, where the reading takes seconds as in the issue
# that set it; at small sizes the process's own fixed costs beyond --version
# (application object, logging set-up, format detection, about 1 ms) weigh
# on a reading of a few milliseconds, and the share is shown for information.
print(f"Target: the front end's output and exit at most 30 % of its reading at {max(sizes):,} items: "
      f"{shares[max(sizes)] * 100:.0f} %: {verdict(shares[max(sizes)] <= 0.30)} "
      f"(all sizes: {', '.join(f'{shares[n] * 100:.0f} %' for n in sizes)})")
EOF

rounds="${KX_READSTAT_ROUNDS:-10}"
if [ "$rounds" != 0 ]; then
    echo
    echo "The inspector against readstat (bench/inspector-vs-readstat.sh, $rounds rounds):"
    echo
    "$here/../inspector-vs-readstat.sh" "$build" "$rounds" 30 \
        || echo "run: bench/inspector-vs-readstat.sh could not run (see above)" >&2
fi
