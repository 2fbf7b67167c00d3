#!/usr/bin/env bash
# Sets up a Debian 12 machine for libmodel_KelAdmin, builds it and then either
# runs the inspector on the bundled samples ("inspect") or the test suite
# ("test"). Safe to run again: missing packages are installed once, the build
# folder is reused.
set -euo pipefail

mode="${1:-inspect}"
shift || true
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${KX_BUILD_DIR:-$root/build}"

packages=(cmake make g++ pkg-config qtbase5-dev libreadstat-dev libgtest-dev libgmock-dev
          fonts-liberation fontconfig)

install_missing_packages() {
    local missing=()
    for p in "${packages[@]}"; do
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
    echo "quickstart: installing ${missing[*]}"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

configure_and_build() {
    cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
    cmake --build "$build" -j"$(nproc)"
}

install_missing_packages
case "$mode" in
    inspect)
        configure_and_build
        "$root/scripts/inspect-samples.sh" "$build"
        ;;
    test)
        configure_and_build
        ctest --test-dir "$build" --output-on-failure -j"$(nproc)"
        ;;
    *)
        echo "usage: $0 inspect|test" >&2
        exit 2
        ;;
esac
