#!/usr/bin/env bash
# Builds the Debian package with scripts/make-deb.sh, installs it into this
# machine with dpkg -i, checks what it put where, runs /usr/bin/keladmin-inspect
# on samples and removes the package again, whatever happens in between.
# Needs root: exits 77 (skipped) otherwise, or when the package or a
# keladmin-inspect not from it is already there.
# Arguments: SOURCE_DIR WORK_DIR VERSION
set -euo pipefail
root="$1" work="$2" version="$3"
pkg=libmodel-keladmin
marker="$work/installed-by-test"   # present while this test has the package installed

skip() { echo "skipped: $*"; exit 77; }
fail() { echo "FAIL: $*" >&2; exit 1; }
remove_package() { dpkg --purge "$pkg" >/dev/null 2>&1 || true; rm -f "$marker"; }

[ "$(id -u)" -eq 0 ] || skip "installing a package with dpkg -i needs root"
command -v dpkg >/dev/null 2>&1 || skip "no dpkg on this machine"
mkdir -p "$work"
# A run that was killed half-way (a time-out) left its package: take it away.
[ -e "$marker" ] && remove_package
if dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "installed"; then
    skip "$pkg is already installed on this machine; the test leaves it alone"
fi
[ -e /usr/bin/keladmin-inspect ] && skip "/usr/bin/keladmin-inspect exists and is not from $pkg; not overwriting it"

deb="$(KX_DEB_BUILD_DIR="$work/build" "$root/scripts/make-deb.sh" "$work/out" | tail -1)"
[ -f "$deb" ] || fail "scripts/make-deb.sh made no package ($deb)"

trap remove_package EXIT
trap 'exit 143' TERM INT HUP
touch "$marker"
dpkg -i "$deb" >/dev/null || fail "dpkg -i $deb failed"

depends="$(dpkg-query -W -f='${Depends}' "$pkg")"
for dep in libqt5core5a libqt5gui5 libqt5widgets5 libreadstat1; do
    [[ ",$depends" == *[,\ ]"$dep "* ]] || fail "Depends lacks $dep: $depends"
done
for f in /usr/include/model_KelAdmin/model_KelAdmin.h /usr/include/model_KelAdmin/model_KelAdmin_version.h \
         /usr/share/doc/model_KelAdmin/LICENSE /usr/share/doc/model_KelAdmin/CHANGELOG.md; do
    [ -f "$f" ] || fail "$f not installed"
done
dpkg -L "$pkg" | grep -q '/cmake/model_KelAdmin/model_KelAdminConfig.cmake$' || fail "no CMake package file"
dpkg -L "$pkg" | grep -q '/model_KelAdmin/widgets.so$' || fail "no widgets module beside the library"
[ "$(pkg-config --modversion model_KelAdmin)" = "$version" ] || fail "pkg-config does not find model_KelAdmin $version"

# census.dcf: 30 items, one of them with 6 occurrences: 35 fields.
out="$(env -u LD_LIBRARY_PATH /usr/bin/keladmin-inspect "$root/samples/census.dcf")" \
    || fail "/usr/bin/keladmin-inspect census.dcf failed"
grep -Eq '^Fields: +35$' <<<"$out" || fail "expected 'Fields: 35' in: $out"
# areas.txt: 34 lines with distinct keys.
out="$(env -u LD_LIBRARY_PATH /usr/bin/keladmin-inspect --lookup "$root/samples/areas.txt" --separator tab)" \
    || fail "/usr/bin/keladmin-inspect --lookup areas.txt failed"
grep -Eq '^Entries: +34$' <<<"$out" || fail "expected 'Entries: 34' in: $out"

remove_package
trap - EXIT
[ ! -e /usr/bin/keladmin-inspect ] || fail "/usr/bin/keladmin-inspect is still there after removing $pkg"
dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "installed" && fail "$pkg still installed"
echo "installed, ran and removed $(basename "$deb")"
