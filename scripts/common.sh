# What the commands of this folder share. Sourced, never run.
#
# Settings, all optional:
#   KRHAUL_CACHE    folder for the Wine root and the prefix template
#                   (default: krhaul in the user's cache folder)
#   KRHAUL_WINE     a 32-bit Wine of your own; then no root is made
#   KRHAUL_MIRROR   Debian mirror to take the Wine root and the sources of libraries from
#                   (default: the one this machine uses)
#   KRHAUL_CURL     folder of a static libcurl for 32-bit Windows (include/ and lib/), which
#                   the sample caller is linked with in place of the one that is made

set -euo pipefail

TREE=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
CACHE=${KRHAUL_CACHE:-${XDG_CACHE_HOME:-${HOME:-/var/tmp}/.cache}/krhaul}
# A relative path would mean another folder to each script that changes its directory.
case $CACHE in /*) ;; *) CACHE=$PWD/$CACHE ;; esac
export KRHAUL_CACHE=$CACHE
case ${KRHAUL_CURL:-} in '' | /*) ;; *) export KRHAUL_CURL=$PWD/$KRHAUL_CURL ;; esac
case ${KRHAUL_WINE:-} in /*) ;; */*) export KRHAUL_WINE=$PWD/$KRHAUL_WINE ;; esac
# The number changes with the recipe, so that an old root is never taken for a new one.
WINE_ROOT=$CACHE/wine-root-1
PREFIX_TEMPLATE=$CACHE/prefix-1
# With a Wine of the user's own the template is made by that Wine.
[ -z "${KRHAUL_WINE:-}" ] || PREFIX_TEMPLATE=$CACHE/prefix-own-1
PROBE=$CACHE/probe-1/probe.exe
LIBRARIES=$CACHE/libraries-1
BUILD=$TREE/build
SCREEN=1280x960x24

# A tree's prefix carries the name of the template that it was made from.
prefix_named() { printf '%s/wine/%s-%s' "$BUILD" "$1" "$(basename "$PREFIX_TEMPLATE")"; }
# The prefix in use; a script that runs others hands its own on in KRHAUL_PREFIX.
PREFIX=${KRHAUL_PREFIX:-$(prefix_named default)}

say() { printf '%s: %s\n' "$(basename "$0")" "$*" >&2; }
die() {
    say "$*"
    exit 1
}

# It stands in one place only.
project_version() { sed -n 's/^project(krhaul VERSION \([0-9.]*\) .*/\1/p' "$TREE/CMakeLists.txt"; }

has_root() { [ -n "${KRHAUL_WINE:-}" ] || [ -d "$WINE_ROOT/usr/lib/wine" ]; }
has_template() { [ -f "$PREFIX_TEMPLATE/system.reg" ]; }
has_libraries() { [ -f "$LIBRARIES/licences/VERSIONS" ]; }
is_set_up() { has_root && has_template && [ -f "$PROBE" ] && has_libraries; }

# check_space FOLDER MEGABYTES ADVICE
check_space() {
    local free
    free=$(df -Pm "$1" | awk 'NR == 2 { print $4 }')
    [ "$free" -ge "$2" ] || die "no disk space: $1 has $free MB free, $2 MB are needed ($3)"
}

# The locks of these scripts are file descriptors from 5 to 9. What is started to stay gives
# them back, so that a lock ends with the script that took it.
unlock() { exec 5>&- 6>&- 7>&- 8>&- 9>&-; }

# What stays may not outlive its script either, whichever way that ends: it hangs on this.
LEASH=()
leash() { LEASH=(setpriv --pdeathsig TERM); }

# run_child PROGRAM [ARGS]: runs a program or function, without the locks, in a way that the
# end of this script ends it too. Gives its exit code.
run_child() {
    local status=0
    (
        unlock
        "$@"
    ) <&0 &
    CHILD=$!
    # Without these a signal would break into the shell wherever it is, and what the script
    # does at its end could wait for ever.
    trap 'exit 129' HUP
    trap 'exit 130' INT
    trap 'exit 143' TERM
    wait "$CHILD" || status=$?
    trap - HUP INT TERM
    CHILD=
    return "$status"
}

# A child that leads a session takes all that it has started with it.
end_child() {
    [ -n "${CHILD:-}" ] || return 0
    kill -s "${CHILD_SIGNAL:-TERM}" -- "-$CHILD" 2>/dev/null ||
        kill -s "${CHILD_SIGNAL:-TERM}" "$CHILD" 2>/dev/null || true
    wait "$CHILD" 2>/dev/null || true
    CHILD=
}

# Mounts, once for each run, what a program in the Wine root needs to see of this machine:
# the devices, /tmp (X socket, sockets of the Wine server) and the trees of the given paths.
# Prints shell text that is run inside a private mount namespace, where all of it vanishes
# with the last process. It begins by entering the root, so a root that isn't there is not
# made by the way.
mount_script() {
    local path top seen=" "
    printf 'cd %q || exit 1; mount --rbind /proc proc; mount --rbind /dev dev; mount --bind /tmp tmp;' \
        "$WINE_ROOT"
    for path in "$@"; do
        case $path in /tmp | /tmp/* | /) continue ;; /*) ;; *) continue ;; esac
        top=/$(cut -d/ -f2 <<<"$path")
        # A folder of the system stays the root's own; only the path below it is shown.
        case $top in
        /bin | /boot | /dev | /etc | /lib* | /proc | /run | /sbin | /sys | /usr | /var) top=$path ;;
        esac
        case $seen in *" $top "*) continue ;; esac
        seen="$seen$top "
        printf 'mkdir -p .%q && mount --rbind %q .%q;' "$top" "$top" "$top"
    done
    # All trees use the system files of one template, so no program may change them.
    if has_template; then
        printf 'mount --bind %q .%q && mount -o remount,bind,ro .%q;' \
            "$PREFIX_TEMPLATE" "$PREFIX_TEMPLATE" "$PREFIX_TEMPLATE"
    fi
}

# in_root PROGRAM [ARGS]: replaces this process by a program inside the Wine root.
in_root() {
    local auth=${XAUTHORITY:-} mounts keep=() name
    [ -d "$WINE_ROOT/usr" ] || die "there is no Wine root in $WINE_ROOT (scripts/setup makes it)"
    mounts=$(mount_script "$TREE" "$CACHE" "$PWD" "$(dirname -- "$1")" "$(dirname -- "${2:-.}")" \
        "${auth:+$(dirname "$auth")}")
    for name in $(compgen -e); do
        case $name in
        KRHAUL_* | GTEST_* | GCOV_* | LC_ALL | LOCPATH | WINEPATH | WINEDLLOVERRIDES) keep+=("$name=${!name}") ;;
        esac
    done
    exec "${LEASH[@]}" unshare -m --propagation private \
        bash -c "$mounts"' cd "$2" 2>/dev/null || cd /; root=$1; shift 2; exec chroot "$root" env -i "$@"' \
        bash "$WINE_ROOT" "$PWD" \
        HOME=/root USER=root PATH=/usr/bin:/bin:/usr/sbin:/sbin LANG=C.UTF-8 \
        DISPLAY="${DISPLAY:-}" ${auth:+XAUTHORITY="$auth"} \
        WINEPREFIX="${WINEPREFIX:-$PREFIX}" WINEARCH=win32 WINEDEBUG="${WINEDEBUG:--all}" \
        "${keep[@]}" \
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
        exec "${LEASH[@]}" "$tool" "$@"
    fi
    in_root "$@"
}

# The folders of the template that hold nearly all of it, and that only Wine's own set-up
# writes to. A prefix has a link in their place.
SHARED_FOLDERS=(drive_c/windows/system32 drive_c/windows/winsxs)

# Tells one template from a later one of the same name.
template_mark() { stat -c '%n %i %W' "$PREFIX_TEMPLATE"; }

prefix_fits() {
    [ -s "$PREFIX/template" ] && [ "$(cat "$PREFIX/template")" = "$(template_mark)" ]
}

copy_template() {
    local folder exclude=()
    for folder in "${SHARED_FOLDERS[@]}"; do
        exclude+=("--exclude=./$folder")
    done
    mkdir "$1" && tar -C "$PREFIX_TEMPLATE" "${exclude[@]}" -cf - . | tar -C "$1" -xf - || return 1
    for folder in "${SHARED_FOLDERS[@]}"; do
        ln -s "$PREFIX_TEMPLATE/$folder" "$1/$folder" || return 1
    done
    template_mark >"$1/template"
}

# Makes a prefix of this tree's own from the template, whole or not at all.
make_prefix() {
    ! prefix_fits || return 0
    mkdir -p "$BUILD/wine"
    (
        flock 9
        ! prefix_fits || exit 0
        check_space "$BUILD/wine" 200 "for the Wine prefix of this tree"
        # What runs in a prefix whose template has gone can't go on.
        [ ! -d "$PREFIX" ] || end_wine
        rm -rf "$PREFIX.part" "$PREFIX"
        trap 'rm -rf "$PREFIX.part" "$PREFIX.error"' EXIT
        copy_template "$PREFIX.part" 2>"$PREFIX.error" ||
            die "the Wine prefix could not be made: $(tail -n 1 "$PREFIX.error")"
        mv "$PREFIX.part" "$PREFIX"
    ) 9>"$BUILD/wine/lock"
}

# start_display: DISPLAY becomes a virtual display on a free number; its process id goes
# into DISPLAY_PID. The caller ends it with stop_display.
start_display() {
    local answer number problem
    [ -z "${KRHAUL_WINE:-}" ] || command -v Xvfb >/dev/null ||
        die "a virtual display is needed: install the package xvfb"
    answer=$(mktemp)
    (
        unlock
        leash
        set -- Xvfb -displayfd 3 -screen 0 "$SCREEN" -nolisten tcp
        [ -n "${KRHAUL_WINE:-}" ] || in_root "$@"
        exec "${LEASH[@]}" "$@"
    ) 3>"$answer" >/dev/null 2>"$answer.error" &
    DISPLAY_PID=$!
    for _ in $(seq 200); do
        [ ! -s "$answer" ] || break
        kill -0 "$DISPLAY_PID" 2>/dev/null || break
        sleep 0.05
    done
    number=$(cat "$answer")
    problem=$(tail -n 1 "$answer.error")
    rm -f "$answer" "$answer.error"
    [ -n "$number" ] || die "the virtual display did not start: $problem"
    export DISPLAY=:$number
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
    local answer text pid
    answer=$(mktemp)
    (
        unlock
        leash
        with_wine wine "$PROBE" hold
    ) </dev/null >"$answer" 2>&1 &
    pid=$!
    for _ in $(seq 600); do
        [ ! -s "$answer" ] || break
        kill -0 "$pid" 2>/dev/null || break
        sleep 0.05
    done
    text=$(tail -n 1 "$answer" | tr -d '\r')
    rm -f "$answer"
    [ "$text" = "drawing works" ] || die "Wine can't draw on display $DISPLAY: $text"
}

# Ends all that runs in the prefix in use.
end_wine() {
    (
        unlock
        with_wine wineserver -k -w
    ) >/dev/null 2>&1 || true
}

start_runtime() {
    end_wine
    start_display
    hold_runtime
}

end_runtime() {
    end_child
    end_wine
    stop_display
}

# use_own_runtime NAME: from here to its end the script has a prefix, a Wine server and a
# virtual display of its own, so that nothing else of this machine comes into its way. A
# second run of the same script waits for the first.
use_own_runtime() {
    PREFIX=$(prefix_named "$1")
    make_prefix
    exec 7>"$PREFIX.lock"
    flock -n 7 || {
        say "waiting for another run of this to end"
        flock 7
    }
    trap end_runtime EXIT
    start_runtime
    export KRHAUL_PREFIX=$PREFIX
}

# use_shared_runtime NAME: the same, but all scripts that ask for this name at one time have
# one runtime together. Each holds the lock "users" for as long as it lives; a keeper, which
# belongs to none of them, starts the runtime for the first and ends it behind the last.
# Locks end with their processes, so none has to tidy up who was killed.
use_shared_runtime() {
    PREFIX=$(prefix_named "$1")
    make_prefix
    trap end_child EXIT
    exec 6>"$PREFIX.gate" 7>"$PREFIX.users"
    flock 6
    # Given once a runtime that is just ending has ended.
    flock -s 7
    # A keeper that was killed leaves its file; its lock tells.
    if [ ! -s "$PREFIX.display" ] || flock -n "$PREFIX.keeper" true; then
        start_keeper
    fi
    DISPLAY=$(cat "$PREFIX.display")
    export DISPLAY KRHAUL_PREFIX=$PREFIX
    exec 6>&-
}

start_keeper() {
    local pid
    rm -f "$PREFIX.display"
    (
        unlock
        export KRHAUL_PREFIX=$PREFIX
        # A session of its own: what ends the first user must not end the others.
        exec setsid bash -c '. "$1/scripts/common.sh"; keep_runtime' "$(basename "$0")" "$TREE"
    ) </dev/null >/dev/null 2>"$PREFIX.error" &
    pid=$!
    until [ -s "$PREFIX.display" ]; do
        kill -0 "$pid" 2>/dev/null || die "$(tail -n 1 "$PREFIX.error" | sed 's/^[^:]*: //')"
        sleep 0.05
    done
}

# The whole life of the keeper.
keep_runtime() {
    exec 5>"$PREFIX.keeper" 7>"$PREFIX.users"
    flock 5
    trap 'rm -f "$PREFIX.display"; end_runtime' EXIT
    start_runtime
    echo "$DISPLAY" >"$PREFIX.display.part"
    mv "$PREFIX.display.part" "$PREFIX.display"
    # Given when nobody holds it any more. Who comes from now on waits for our end.
    flock 7 5>&-
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
