# What the commands of this folder share. Sourced, never run.
#
# Settings, all optional:
#   KRHAUL_CACHE    folder for the Wine root, the prefix template and the libraries
#                   (default: krhaul in the user's cache folder)
#   KRHAUL_SUITE    generation of Debian that the Wine root is made from (default: bookworm)
#   KRHAUL_WINE     a 32-bit Wine of your own; then no root is made
#   KRHAUL_MIRROR   Debian mirror to take the Wine root and the sources of libraries from
#                   (default: the one this machine uses)
#   KRHAUL_CURL     folder of a static libcurl for 32-bit Windows (include/ and lib/), which
#                   the sample caller is linked with in place of the one that is made

set -euo pipefail

TREE=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
BUILD=$TREE/build
CACHE=${KRHAUL_CACHE:-${XDG_CACHE_HOME:-${HOME:-/var/tmp}/.cache}/krhaul}
SUITE=${KRHAUL_SUITE:-bookworm}
# A relative path would mean another folder to each script that changes its directory.
case $CACHE in /*) ;; *) CACHE=$PWD/$CACHE ;; esac
case ${KRHAUL_CURL:-} in '' | /*) ;; *) export KRHAUL_CURL=$PWD/$KRHAUL_CURL ;; esac
case ${KRHAUL_WINE:-} in /*) ;; */*) export KRHAUL_WINE=$PWD/$KRHAUL_WINE ;; esac

# The numbers change with the recipes, so that an old folder is never taken for a new one.
suite_suffix=-$SUITE
[ "$SUITE" != bookworm ] || suite_suffix=
WINE_ROOT=$CACHE/wine-root$suite_suffix-1
PREFIX_TEMPLATE=$CACHE/prefix$suite_suffix-1
# With a Wine of the user's own the template is made by that Wine.
[ -z "${KRHAUL_WINE:-}" ] || PREFIX_TEMPLATE=$CACHE/prefix-own-1
PROBE=$CACHE/probe-1/probe.exe
LIBRARIES=$CACHE/libraries-1
export KRHAUL_CACHE=$CACHE KRHAUL_TREE=$TREE KRHAUL_ROOT=$WINE_ROOT
export KRHAUL_TEMPLATE=$PREFIX_TEMPLATE KRHAUL_PROBE=$PROBE KRHAUL_COMMAND=${0##*/}

say() { printf '%s: %s\n' "${0##*/}" "$*" >&2; }
die() {
    say "$*"
    exit 1
}

# It is stated in one place only.
project_version() { sed -n 's/^project(krhaul VERSION \([0-9.]*\) .*/\1/p' "$TREE/CMakeLists.txt"; }

has_root() { [ -n "${KRHAUL_WINE:-}" ] || [ -d "$WINE_ROOT/usr/lib/wine" ]; }
has_template() { [ -f "$PREFIX_TEMPLATE/system.reg" ]; }
# Where there is no apt-get to fetch their sources with, the examples do without.
has_libraries() { [ -f "$LIBRARIES/licences/VERSIONS" ] || ! command -v apt-get >/dev/null; }
is_set_up() { has_root && has_template && [ -f "$PROBE" ] && has_libraries; }

# check_space FOLDER MEGABYTES ADVICE
check_space() {
    local free
    free=$(df -Pm "$1" | awk 'NR == 2 { print $4 }')
    [ "$free" -ge "$2" ] || die "no disk space: $1 has $free MB free, $2 MB are needed ($3)"
}

# runtime ACTION [ARGS]: becomes scripts/runtime.py, which says what the actions are.
runtime() {
    # Not any python3 that comes first: some are scripts that take longer than what they start.
    local python=/usr/bin/python3
    [ -x "$python" ] || python=python3
    exec "$python" -I -S "$TREE/scripts/runtime.py" "$@"
}

# run_hidden [--drive LETTER=FOLDER] COMMAND [ARGS]: becomes a command in a runtime of its own,
# on a virtual display even if there is a real one.
run_hidden() {
    unset DISPLAY
    runtime run "$@"
}

# to_png FROM TO: makes a PNG of a bitmap file. Without dates in it, the same picture gives the
# same file.
to_png() {
    local tool
    for tool in convert-im6.q16 magick convert; do
        ! command -v "$tool" >/dev/null || break
    done
    "$tool" "$1" -strip -define png:exclude-chunks=date,time "$2" || die "$2 could not be made from $1 (is ImageMagick installed?)"
    rm -f "$1"
}
