#!/usr/bin/env bash
# Sets up a Debian 12 machine for libmodel_KelAdmin, builds it and then either
# runs the inspector on the bundled samples ("inspect": only the library and
# the inspector, and only the packages they need) or the test suite ("test":
# everything the tests and CI use). Safe to run again: missing packages are
# installed once, the build folder is reused.
set -euo pipefail

mode="${1:-inspect}"
shift || true
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${KX_BUILD_DIR:-$root/build}"

# The library and the inspector.
inspect_packages=(cmake make g++ qtbase5-dev libreadstat-dev)
# The tests and CI on top: GoogleTest, the fonts the path helpers measure
# with, the qmake and pkg-config consumer, Doxygen, the man-page check, the
# JSON Schema check, the Debian package (dpkg-shlibdeps needs dpkg-dev and file),
# the inspector's HTML pages read back with Python, rendered and printed to PDF
# in Chromium and the PDF read with poppler-utils, and its CSV imported by a
# spreadsheet (Gnumeric's ssconvert).
test_packages=("${inspect_packages[@]}" libgtest-dev libgmock-dev fonts-liberation fontconfig
               pkg-config qt5-qmake doxygen groff python3-jsonschema dpkg-dev file python3 chromium
               poppler-utils gnumeric lintian)

install_missing_packages() {
    local missing=()
    for p in "$@"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local sudo=""
    if [ "$(id -u)" -ne 0 ]; then
        if command -v sudo >/dev/null 2>&1 && sudo -n true 2>/dev/null; then
            sudo="sudo"
        else
            echo "quickstart: these Debian packages are missing: ${missing[*]}" >&2
            echo "quickstart: run as root (or with sudo rights): apt-get install ${missing[*]}" >&2
            exit 1
        fi
    fi
    mkdir -p "$build"
    local log="$build/quickstart-packages.log"
    echo "quickstart: installing ${missing[*]} (package manager output: $log)"
    if ! { $sudo apt-get update -q && DEBIAN_FRONTEND=noninteractive \
            $sudo apt-get install -y -q --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
        echo "quickstart: the package installation failed; see $log" >&2
        exit 1
    fi
}

# configure_and_build TESTS(ON|OFF) [TARGET]
configure_and_build() {
    cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKX_BUILD_TESTS="$1" >/dev/null
    cmake --build "$build" -j"$(nproc)" ${2:+--target "$2"}
}

case "$mode" in
    inspect)
        install_missing_packages "${inspect_packages[@]}"
        configure_and_build OFF keladmin-inspect
        "$root/scripts/inspect-samples.sh" "$build"
        ;;
    test)
        install_missing_packages "${test_packages[@]}"
        configure_and_build ON
        ctest --test-dir "$build" --output-on-failure -j"$(nproc)"
        ;;
    *)
        echo "usage: $0 inspect|test" >&2
        exit 2
        ;;
esac
