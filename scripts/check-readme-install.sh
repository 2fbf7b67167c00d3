#!/usr/bin/env bash
# Runs the commands of the README's "Installing" section as written, with the
# prefix /usr/local replaced by a scratch folder, in a fresh build folder;
# then runs the installed inspector on a sample. Used by CI.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

# The first sh block after the "## Installing" heading.
commands="$(awk '/^## Installing/{found=1} found && /^```sh/{inblock=1; next} inblock && /^```/{exit} inblock' \
            "$root/README.md")"
[ -n "$commands" ] || { echo "check-readme-install: no install commands in README.md" >&2; exit 1; }
echo "check-readme-install: running the README's install commands:"
printf '  %s\n' "$commands"

mkdir "$work/source"
tar -C "$root" --exclude='./build*' --exclude='./.git' --exclude='./_install*' -cf - . | tar -C "$work/source" -xf -
(cd "$work/source" && eval "${commands//\/usr\/local/$work/prefix}") >"$work/log" 2>&1 \
  || { tail -30 "$work/log" >&2; echo "check-readme-install: the install commands failed" >&2; exit 1; }

# Only what is installed was built: no test program.
if find "$work/source/build-release" -name 'tst_*' -type f -perm -u+x | grep -q .; then
    echo "check-readme-install: the install build built test programs" >&2
    exit 1
fi
"$work/prefix/bin/keladmin-inspect" --version
"$work/prefix/bin/keladmin-inspect" --codebook "$root/samples/census.dcf" >"$work/codebook.txt"
grep -q '^Name: *CENSUS2023_DICT$' "$work/codebook.txt" \
  || { echo "check-readme-install: the installed inspector did not print the census codebook" >&2; exit 1; }
echo "check-readme-install: the README's install commands work as written"
