#!/usr/bin/env bash
# Builds the Debian packages with scripts/make-deb.sh, checks them with
# lintian (no error), installs all five on this machine with dpkg -i, checks
# their Depends and what they put where, runs /usr/bin/keladmin-inspect,
# builds the examples against /usr, and removes the packages again, whatever
# happens in between. Needs root: exits 77 (skipped) otherwise, or when one
# of the packages, or a keladmin-inspect not from them, is already there.
# Arguments: SOURCE_DIR WORK_DIR VERSION
set -euo pipefail
root="$1" work="$2" version="$3"
packages=(libmodel-keladmin1 libmodel-keladmin1-widgets libkelcodebook1 libmodel-keladmin-dev keladmin-tools)
marker="$work/installed-by-test"   # present while this test has the packages installed

skip() { echo "skipped: $*"; exit 77; }
fail() { echo "FAIL: $*" >&2; exit 1; }
remove_packages() { dpkg --purge "${packages[@]}" >/dev/null 2>&1 || true; rm -f "$marker"; }
depends_of() { dpkg-query -W -f='${Depends}' "$1"; }

[ "$(id -u)" -eq 0 ] || skip "installing packages with dpkg -i needs root"
command -v dpkg >/dev/null 2>&1 || skip "no dpkg on this machine"
mkdir -p "$work"
# A run that was killed half-way (a time-out) left its packages: take them away.
[ -e "$marker" ] && remove_packages
for pkg in "${packages[@]}" libmodel-keladmin; do
    if dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "installed"; then
        skip "$pkg is already installed on this machine; the test leaves it alone"
    fi
done
[ -e /usr/bin/keladmin-inspect ] && skip "/usr/bin/keladmin-inspect exists and is not from these packages"

mapfile -t debs < <(KX_DEB_BUILD_DIR="$work/build" "$root/scripts/make-deb.sh" "$work/out" | tail -5)
[ "${#debs[@]}" -eq 5 ] || fail "scripts/make-deb.sh made ${#debs[@]} packages, not 5"

# lintian: no error (its warnings are listed in the README).
if command -v lintian >/dev/null 2>&1; then
    lintian --tag-display-limit 0 "${debs[@]}" >"$work/lintian.txt" 2>&1 || true
    grep -q '^E: ' "$work/lintian.txt" && { cat "$work/lintian.txt" >&2; fail "lintian reports errors"; }
    echo "lintian: $(grep -c '^W: ' "$work/lintian.txt" || true) warnings, no error"
else
    echo "lintian is not installed (Debian package lintian): the packages are not checked by it"
fi

trap remove_packages EXIT
trap 'exit 143' TERM INT HUP
touch "$marker"
dpkg -i "${debs[@]}" >/dev/null || fail "dpkg -i failed"

# The library depends on Qt Core and ReadStat, not on Qt's GUI libraries; its widgets module does.
runtime="$(depends_of libmodel-keladmin1)"
for dep in libqt5core5a libreadstat1; do
    [[ ",$runtime" == *[,\ ]"$dep "* ]] || fail "libmodel-keladmin1 Depends lacks $dep: $runtime"
done
[[ "$runtime" == *libqt5widgets5* || "$runtime" == *libqt5gui5* ]] && fail "libmodel-keladmin1 depends on Qt's GUI: $runtime"
[[ "$(depends_of libmodel-keladmin1-widgets)" == *libqt5widgets5* ]] || fail "the widgets module's package lacks libqt5widgets5"
[[ "$(depends_of libmodel-keladmin-dev)" == *"libmodel-keladmin1 (= $version)"* ]] || fail "the -dev package does not depend on its library"

for pkg in "${packages[@]}"; do
    [ -f "/usr/share/doc/$pkg/copyright" ] || fail "$pkg has no copyright file"
    head -1 "/usr/share/doc/$pkg/copyright" | grep -q '^Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/' \
        || fail "$pkg's copyright file is not machine-readable"
    [ -n "$(dpkg-query -W -f='${Maintainer}' "$pkg")" ] || fail "$pkg has no maintainer"
done
dpkg -L libmodel-keladmin1 | grep -q '/libmodel_KelAdmin\.so\.1$' || fail "no libmodel_KelAdmin.so.1 in libmodel-keladmin1"
dpkg -L libmodel-keladmin1 | grep -q '\.h$' && fail "headers in the runtime package"
dpkg -L libmodel-keladmin1-widgets | grep -q '/model_KelAdmin/widgets\.so$' || fail "no widgets module"
dpkg -L libkelcodebook1 | grep -q '/libkelcodebook\.so\.1$' || fail "no libkelcodebook.so.1 in libkelcodebook1"
for f in /usr/include/model_KelAdmin/model_KelAdmin.h /usr/include/KelCodebook/KxCodebook.h; do
    [ -f "$f" ] || fail "$f not installed"
done
dpkg -L libmodel-keladmin-dev | grep -q '/cmake/model_KelAdmin/model_KelAdminConfig.cmake$' || fail "no model_KelAdmin CMake package"
dpkg -L libmodel-keladmin-dev | grep -q '/cmake/KelCodebook/KelCodebookConfig.cmake$' || fail "no KelCodebook CMake package"
[ "$(pkg-config --modversion model_KelAdmin)" = "$version" ] || fail "pkg-config does not find model_KelAdmin $version"
[ "$(pkg-config --modversion KelCodebook)" = "$version" ] || fail "pkg-config does not find KelCodebook $version"
dpkg -L keladmin-tools | grep -q '/man1/keladmin-inspect\.1\.gz$' || fail "no man page in keladmin-tools"

# census.dcf: 30 items, one of them with 6 occurrences: 35 fields.
out="$(env -u LD_LIBRARY_PATH /usr/bin/keladmin-inspect "$root/samples/census.dcf")" \
    || fail "/usr/bin/keladmin-inspect census.dcf failed"
grep -Eq '^Fields: +35$' <<<"$out" || fail "expected 'Fields: 35' in: $out"
# Its codebook: 30 variables.
out="$(env -u LD_LIBRARY_PATH /usr/bin/keladmin-inspect --codebook "$root/samples/census.dcf")" \
    || fail "/usr/bin/keladmin-inspect --codebook census.dcf failed"
grep -Eq '^Variables: +30$' <<<"$out" || fail "expected 'Variables: 30' in: $out"
# areas.txt: 34 lines with distinct keys.
out="$(env -u LD_LIBRARY_PATH /usr/bin/keladmin-inspect --lookup "$root/samples/areas.txt" --separator tab)" \
    || fail "/usr/bin/keladmin-inspect --lookup areas.txt failed"
grep -Eq '^Entries: +34$' <<<"$out" || fail "expected 'Entries: 34' in: $out"

# A consumer: the examples built against /usr (find_package of both libraries).
if command -v cmake >/dev/null 2>&1 && command -v g++ >/dev/null 2>&1; then
    cmake -S "$root/examples" -B "$work/examples" >"$work/examples.log" 2>&1 \
        && cmake --build "$work/examples" >>"$work/examples.log" 2>&1 || { cat "$work/examples.log" >&2; fail "the examples do not build against /usr"; }
    "$work/examples/codebook" "$root/samples/languages.dcf" | grep -q '^cspro: 7 variables, 2 language(s)$' \
        || fail "the examples' codebook program does not read languages.dcf"
fi

remove_packages
trap - EXIT
[ ! -e /usr/bin/keladmin-inspect ] || fail "/usr/bin/keladmin-inspect is still there after removing the packages"
for pkg in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "installed" && fail "$pkg still installed"
done
echo "checked, installed, ran and removed ${#debs[@]} packages"
