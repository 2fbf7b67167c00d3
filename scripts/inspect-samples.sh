#!/usr/bin/env bash
# Runs the inspector on every bundled sample file.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${1:-$root/build}"
inspect="$build/tools/keladmin-inspect"
shopt -s nullglob
for f in "$root"/samples/*; do
    case "$f" in *.md|*.sh) continue ;; esac
    echo "== $(basename "$f")"
    "$inspect" "$f"
    echo
done
