# What the commands of this folder share. Sourced, never run.
#
# Settings, all optional:
#   KRHAUL_CACHE    folder for the Wine root and the prefix template
#                   (default: krhaul in the user's cache folder)
#   KRHAUL_WINE     a 32-bit Wine of your own; then no root is made
#   KRHAUL_MIRROR   Debian mirror to take the Wine root from
#                   (default: the one this machine uses)

set -euo pipefail

TREE=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
CACHE=${KRHAUL_CACHE:-${XDG_CACHE_HOME:-${HOME:-/var/tmp}/.cache}/krhaul}
# The number changes with the recipe, so that an old root is never taken for a new one.
WINE_ROOT=$CACHE/wine-root-1
PREFIX_TEMPLATE=$CACHE/prefix-1
# With a Wine of the user's own the template is made by that Wine.
[ -z "${KRHAUL_WINE:-}" ] || PREFIX_TEMPLATE=$CACHE/prefix-own-1
BUILD=$TREE/build
# The prefix in use; a script that runs others hands its own on in KRHAUL_PREFIX.
PREFIX=${KRHAUL_PREFIX:-$BUILD/wine/default}
PROBE=$CACHE/probe-1/probe.exe
SCREEN=1280x960x24

say() { printf '%s: %s\n' "$(basename "$0")" "$*" >&2; }
die() {
    say "$*"
    exit 1
}

# Mounts, once for each run, what a program in the Wine root needs to see of this machine:
# the devices, /tmp (X socket, sockets of the Wine server) and the trees of the given paths.
# Prints shell text that is run inside a private mount namespace, where all of it vanishes
# with the last process.
mount_script() {
    local path top seen=" "
    printf 'mount --rbind /proc %q/proc; mount --rbind /dev %q/dev; mount --bind /tmp %q/tmp;' \
        "$WINE_ROOT" "$WINE_ROOT" "$WINE_ROOT"
    for path in "$@"; do
        case $path in /tmp | /tmp/* | /) continue ;; /*) ;; *) continue ;; esac
        top=/$(cut -d/ -f2 <<<"$path")
        # A folder of the system stays the root's own; only the path below it is shown.
        case $top in
        /bin | /boot | /dev | /etc | /lib* | /proc | /run | /sbin | /sys | /usr | /var) top=$path ;;
        esac
        case $seen in *" $top "*) continue ;; esac
        seen="$seen$top "
        printf 'mkdir -p %q && mount --rbind %q %q;' "$WINE_ROOT$top" "$top" "$WINE_ROOT$top"
    done
}

# in_root PROGRAM [ARGS]: replaces this process by a program inside the Wine root.
in_root() {
    local auth=${XAUTHORITY:-} mounts keep=() name
    mounts=$(mount_script "$TREE" "$CACHE" "$PWD" "$(dirname "$1")" "${auth:+$(dirname "$auth")}")
    for name in $(compgen -e); do
        case $name in
        KRHAUL_* | GTEST_* | GCOV_* | WINEPATH | WINEDLLOVERRIDES) keep+=("$name=${!name}") ;;
        esac
    done
    exec unshare -m --propagation private bash -c "$mounts"' cd "$2" 2>/dev/null || cd /; root=$1; cwd=$2; shift 2;
        exec chroot "$root" env -i "$@"' bash "$WINE_ROOT" "$PWD" \
        HOME=/root USER=root PATH=/usr/bin:/bin:/usr/sbin:/sbin LANG=C.UTF-8 \
        DISPLAY="${DISPLAY:-}" ${auth:+XAUTHORITY="$auth"} \
        WINEPREFIX="${WINEPREFIX:-$PREFIX}" WINEARCH=win32 WINEDEBUG="${WINEDEBUG:--all}" \
        ${keep[@]+"${keep[@]}"} \
        sh -c 'cd "$1" 2>/dev/null; shift; exec "$@"' sh "$PWD" "$@"
}

# with_wine PROGRAM [ARGS]: replaces this process by a program of the Wine installation
# (wine, wineserver, wineboot), ours or the user's.
with_wine() {
    if [ -n "${KRHAUL_WINE:-}" ]; then
        local tool=$1
        shift
        case $tool in
        wine) tool=$KRHAUL_WINE ;;
        *) tool=$(dirname "$(command -v "$KRHAUL_WINE")")/$tool ;;
        esac
        export WINEPREFIX="${WINEPREFIX:-$PREFIX}" WINEARCH=win32 WINEDEBUG="${WINEDEBUG:--all}"
        exec "$tool" "$@"
    fi
    in_root "$@"
}

# Makes a prefix of this tree's own from the template, whole or not at all.
make_prefix() {
    [ -d "$PREFIX" ] && return 0
    mkdir -p "$BUILD/wine"
    (
        flock 9
        [ -d "$PREFIX" ] && exit 0
        rm -rf "$PREFIX.part"
        cp -a "$PREFIX_TEMPLATE" "$PREFIX.part" || die "no disk space for the Wine prefix in $BUILD"
        mv "$PREFIX.part" "$PREFIX"
    ) 9>"$BUILD/wine/lock"
}

# start_display: DISPLAY becomes a virtual display on a free number; its process id goes
# into DISPLAY_PID. The caller ends it with stop_display.
start_display() {
    local answer
    answer=$(mktemp)
    if [ -n "${KRHAUL_WINE:-}" ]; then
        command -v Xvfb >/dev/null || die "no display: set DISPLAY or install the package xvfb"
        Xvfb -displayfd 3 -screen 0 "$SCREEN" -nolisten tcp 3>"$answer" 7>&- 8>&- >/dev/null 2>&1 &
    else
        (in_root Xvfb -displayfd 3 -screen 0 "$SCREEN" -nolisten tcp 3>"$answer" 7>&- 8>&- >/dev/null 2>&1) &
    fi
    DISPLAY_PID=$!
    for _ in $(seq 200); do
        [ -s "$answer" ] && break
        kill -0 "$DISPLAY_PID" 2>/dev/null || break
        sleep 0.05
    done
    DISPLAY=:$(cat "$answer")
    rm -f "$answer"
    [ "$DISPLAY" != : ] || die "the virtual display did not start"
    export DISPLAY
}

stop_display() {
    [ -n "${DISPLAY_PID:-}" ] || return 0
    kill "$DISPLAY_PID" 2>/dev/null || true
    wait "$DISPLAY_PID" 2>/dev/null || true
    DISPLAY_PID=
}

# Starts Wine and keeps it: a program that is the first in its prefix waits for the processes
# of Wine itself, and these would hold on to that program's output.
hold_runtime() {
    local answer
    answer=$(mktemp)
    (with_wine wine "$PROBE" hold) 7>&- 8>&- >"$answer" 2>&1 &
    for _ in $(seq 600); do
        [ -s "$answer" ] && break
        sleep 0.05
    done
    grep -q 'drawing works' "$answer" || die "Wine can't draw on display $DISPLAY: $(cat "$answer")"
    rm -f "$answer"
}

# use_own_runtime NAME: from here to its end the script has a prefix, a Wine server and a
# virtual display of its own, so that nothing else of this machine comes into its way. A
# second run of the same script waits for the first.
use_own_runtime() {
    PREFIX=$BUILD/wine/$1
    make_prefix
    exec 7>"$BUILD/wine/$1.lock"
    flock -n 7 || { say "waiting for another run of this to end"; flock 7; }
    (with_wine wineserver -k -w) 7>&- >/dev/null 2>&1 || true
    start_display
    trap '(with_wine wineserver -k -w) 7>&- >/dev/null 2>&1; stop_display' EXIT
    hold_runtime
    export KRHAUL_PREFIX=$PREFIX
}

# to_png FROM TO: makes a PNG of a bitmap file.
to_png() {
    local tool
    for tool in convert-im6.q16 magick convert; do
        command -v "$tool" >/dev/null && break
    done
    "$tool" "$1" "$2" && rm -f "$1"
}
