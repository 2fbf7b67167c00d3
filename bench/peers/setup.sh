#!/usr/bin/env bash
# Prepares the peers of bench/peers/run.sh: other open-source readers of CSPro
# text dictionaries, run side by side with keladmin-inspect.
#
#   bench/peers/setup.sh
#
# 1. Installs the Debian packages the peers need (apt-get, as root; only the
#    missing ones, so a second run does nothing).
# 2. Unpacks each peer's sources from a local git mirror into the cache folder
#    $KX_PEERS_DIR (default /tmp/kx-peers), one sub-folder per peer, with the
#    mirrored commit in its COMMIT file. Nothing of the peers is copied into
#    this repository.
# 3. Builds what needs building: CSPro2sql's reader with javac, the CSPro.NET
#    reader of csprousers/tools with mcs (Mono).
#
# The mirrors are looked up in $KX_MIRROR_DIR (default /work/.mirror), as
# OWNER+NAME/repo (a bare git directory, or a clone with a .git folder).
# A peer whose mirror is missing is skipped with a message; run.sh then
# leaves it out.
set -uo pipefail

here="$(cd "$(dirname "$0")" && pwd)"
cache="${KX_PEERS_DIR:-/tmp/kx-peers}"
mirrors="${KX_MIRROR_DIR:-/work/.mirror}"

packages=(hyperfine readstat python3 python3-transitions python3-chardet php-cli r-base-core
          default-jdk-headless mono-mcs mono-runtime libmono-i18n-west4.0-cil)
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ "${#missing[@]}" -gt 0 ]; then
    echo "setup: installing ${missing[*]}"
    if [ "$(id -u)" -ne 0 ]; then
        echo "setup: not root; install them with: apt-get install ${missing[*]}" >&2
        exit 2
    fi
    apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null \
        || { echo "setup: apt-get install failed" >&2; exit 2; }
fi

mkdir -p "$cache"

# unpack PEER OWNER+NAME [PATH...]: the mirror's HEAD (only PATHs, if given) into $cache/PEER
unpack() {
    local peer="$1" repo="$2"; shift 2
    local git="$mirrors/$repo/repo"
    [ -d "$git/.git" ] && git="$git/.git"
    if ! git --git-dir="$git" rev-parse --verify -q HEAD >/dev/null 2>&1; then
        echo "setup: SKIP $peer: no mirror of ${repo/+//} in $mirrors/$repo (fetch it first, see bench/peers/README.md)"
        rm -rf "${cache:?}/$peer"
        return 1
    fi
    rm -rf "${cache:?}/$peer"
    mkdir -p "$cache/$peer/src"
    git --git-dir="$git" archive HEAD "$@" | tar -x -C "$cache/$peer/src" || return 1
    echo "${repo/+//} $(git --git-dir="$git" rev-parse HEAD)" >"$cache/$peer/COMMIT"
    echo "setup: $peer: ${repo/+//} at $(git --git-dir="$git" rev-parse --short HEAD)"
}

unpack pycspro tech-acs+pycspro pycspro
unpack dhs-to-database harry-gibson+DHS-To-Database DHS_To_Database/cspro_parser
unpack rdhs ropensci+rdhs R/read_dhs_flat.R
unpack csweb csprousers+csweb src/AppBundle/CSPro/Dictionary

if unpack cspro2sql IstatCooperation+CSPro2sql src/cspro2sql; then
    mkdir -p "$cache/cspro2sql/classes"
    # -sourcepath: javac compiles only the classes the driver reaches (the
    # reader and its beans), not the database engines and their JDBC drivers.
    if javac -nowarn -encoding UTF-8 -d "$cache/cspro2sql/classes" -sourcepath "$cache/cspro2sql/src/src" \
            "$here/cspro2sql/CSPro2sqlCount.java" 2>"$cache/cspro2sql/javac.log"; then
        echo "setup: cspro2sql: built"
    else
        echo "setup: SKIP cspro2sql: javac failed, see $cache/cspro2sql/javac.log"
        rm -rf "$cache/cspro2sql/classes"
    fi
fi

if unpack cspro-net csprousers+tools CSPro.NET; then
    src="$cache/cspro-net/src/CSPro.NET"
    # The error texts live in Errors.resx, which needs Mono's resgen (mono-devel)
    # to embed; without it the reader still works and only an error message
    # would fail to load, so the file is compiled without the resource.
    if mcs -nologo -warn:0 -optimize+ -out:"$cache/cspro-net/CSProNetCount.exe" \
            "$here/cspro-net/CSProNetCount.cs" "$src"/*.cs >"$cache/cspro-net/mcs.log" 2>&1; then
        echo "setup: cspro-net: built"
    else
        echo "setup: SKIP cspro-net: mcs failed, see $cache/cspro-net/mcs.log"
        rm -f "$cache/cspro-net/CSProNetCount.exe"
    fi
fi
echo "setup: peers in $cache"
