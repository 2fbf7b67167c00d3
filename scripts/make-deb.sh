#!/usr/bin/env bash
# Builds the Debian package of libmodel_KelAdmin: the library, its headers,
# CMake and pkg-config files, the inspector with its documentation, installed
# under /usr. Release build in build-deb/ (or $KX_DEB_BUILD_DIR), made by
# CPack; the package goes to OUTDIR (default: the build folder) and its path
# is the last line printed. Needs cmake, g++, dpkg-dev and file.
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
deb="$(ls -t "$out"/libmodel-keladmin_"$version"_*.deb | head -1)"
echo "$deb"
