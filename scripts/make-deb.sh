#!/usr/bin/env bash
# Builds the Debian packages of libmodel_KelAdmin, installed under /usr:
# libmodel-keladmin1 (the library), libmodel-keladmin1-widgets (its widgets
# module), libkelcodebook1 (the codebook library), libmodel-keladmin-dev
# (headers, CMake and pkg-config files) and keladmin-tools (the inspector).
# Release build in build-deb/ (or $KX_DEB_BUILD_DIR), made by CPack; the
# packages go to OUTDIR (default: the build folder) and their paths are the
# last five lines printed. Needs cmake, g++, dpkg-dev and file.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${KX_DEB_BUILD_DIR:-$root/build-deb}"
out="${1:-$build}"
mkdir -p "$build" "$out"
build="$(cd "$build" && pwd)" out="$(cd "$out" && pwd)"

# Installed in the system's library folder, the programs need no run path.
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr \
      -DCMAKE_SKIP_INSTALL_RPATH=ON -DKX_BUILD_TESTS=OFF -DKX_BUILD_TOOLS=ON >/dev/null
cmake --build "$build" -j"$(nproc)" >/dev/null
if ! (cd "$build" && cpack -G DEB -B "$out" >"$build/cpack.log" 2>&1); then
    cat "$build/cpack.log" >&2
    exit 1
fi
version="$(sed -n 's/^project(model_KelAdmin VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")"
for package in libmodel-keladmin1 libmodel-keladmin1-widgets libkelcodebook1 libmodel-keladmin-dev keladmin-tools; do
    deb="$(ls -t "$out"/"$package"_"$version"_*.deb 2>/dev/null | head -1)"
    [ -n "$deb" ] || { echo "make-deb: no package $package in $out" >&2; cat "$build/cpack.log" >&2; exit 1; }
    echo "$deb"
done
