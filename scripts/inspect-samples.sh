#!/usr/bin/env bash
# Runs the inspector on every bundled sample file.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${1:-$root/build}"
inspect="$build/tools/keladmin-inspect"
shopt -s nullglob
for f in "$root"/samples/*; do
    case "$f" in
        *.md|*.sh) continue ;;
        # Lookup files: tab between the area code and its name.
        *.txt) args=(--lookup "$f" --separator tab --check) ;;
        *) args=("$f") ;;
    esac
    echo "== $(basename "$f")"
    "$inspect" "${args[@]}"
    echo
done
