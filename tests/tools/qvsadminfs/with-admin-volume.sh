#!/usr/bin/env bash
# with-admin-volume.sh - mounts a simulated administration volume, runs one
# command, and always unmounts again (also when the command fails or the
# script is interrupted).
#
#   with-admin-volume.sh [--sim PATH] --state FILE [--log FILE] [--trace FILE]
#                        [--pool-dir DIR] [--sim-stderr FILE] [--private]
#                        MOUNTPOINT -- COMMAND [ARG]...
#
# The simulator binary is --sim, else $QVSADMINFS, else the one beside the
# tool named by $LOGSIFT (build tree: tests/tools/qvsadminfs/qvsadminfs).
# --private runs everything in a private mount namespace (unshare -m), so the
# mount (e.g. at /_admin) is seen by COMMAND only.
# Exit status: COMMAND's; 77 (skipped) without root, /dev/fuse or the
# simulator; 1 when the volume cannot be mounted; 2 for bad usage.
set -u

usage() {
    sed -n '5,8p' "$0" | sed 's/^# \{0,1\}//' >&2
    exit 2
}
skip() {
    echo "skipped: $*" >&2
    exit 77
}

sim=${QVSADMINFS:-}
if [ -z "$sim" ] && [ -n "${LOGSIFT:-}" ]; then
    sim="$(dirname "$LOGSIFT")/tests/tools/qvsadminfs/qvsadminfs"
fi
state= log= trace= pooldir= simerr= private=0 mnt=
orig_args=("$@")
while [ $# -gt 0 ]; do
    case $1 in
    --sim) sim=${2:-}; shift 2 ;;
    --state) state=${2:-}; shift 2 ;;
    --log) log=${2:-}; shift 2 ;;
    --trace) trace=${2:-}; shift 2 ;;
    --pool-dir) pooldir=${2:-}; shift 2 ;;
    --sim-stderr) simerr=${2:-}; shift 2 ;;
    --private) private=1; shift ;;
    --) shift; break ;;
    -*) usage ;;
    *) [ -z "$mnt" ] || usage; mnt=$1; shift ;;
    esac
done
[ -n "$state" ] && [ -n "$mnt" ] && [ $# -gt 0 ] || usage

[ "$(id -u)" -eq 0 ] || skip "mounting the simulated administration volume needs root"
[ -c /dev/fuse ] || skip "/dev/fuse is missing"
[ -n "$sim" ] && [ -x "$sim" ] || skip "the simulator qvsadminfs is not built (libfuse3 missing?)"

if [ "$private" -eq 1 ]; then
    command -v unshare >/dev/null || skip "unshare is missing"
    # Drop --private and start again inside a new mount namespace.
    args=()
    for a in "${orig_args[@]}"; do
        [ "$a" = "--private" ] || args+=("$a")
    done
    QVSADMINFS=$sim exec unshare -m --propagation private bash "$0" --sim "$sim" "${args[@]}"
fi

mounted() {
    awk -v m="$1" '$5 == m { found = 1 } END { exit !found }' /proc/self/mountinfo
}

# Runs that share a mount point below a shared directory (a case and its
# JSON twin at once) take turns: one's clean-up removes the directory the
# other has mounted.
parent=$(dirname "$mnt")
if [ "$parent" != "/" ] && command -v flock >/dev/null; then
    mkdir -p "$parent" && exec 8<"$parent" && flock 8
fi

# A top-level mount point (/_admin) is shared by the tests that mount there,
# each in a mount namespace of its own: the first one in makes it where it is
# missing, the last one out removes what the first one made (the rule of
# tests/tools/qvsadminfs/adminVolume.h). Users hold a shared lock on the
# directory itself, a lock on / makes taking and leaving it one step each,
# and the tests' mark lies inside it.
made_mark=$mnt/.made-by-tests
shared_root=0
created=0
if [ "$parent" = "/" ] && command -v flock >/dev/null; then
    exec 7</ && flock 7 || exit 1
    if [ ! -e "$mnt" ] && mkdir "$mnt"; then
        : >"$made_mark"
    fi
    exec 6<"$mnt" && flock -s 6 || exit 1
    exec 7<&-
    shared_root=1
elif [ ! -d "$mnt" ]; then
    mkdir -p "$mnt" || exit 1
    created=1
fi
mnt=$(cd "$mnt" && pwd -P)
mounted "$mnt" && { echo "$mnt is already a mount point" >&2; exit 1; }

errfile=$simerr
if [ -z "$errfile" ]; then
    errfile=$(mktemp) || exit 1
fi
pid= cmdpid=

cleanup() {
    if [ -n "$cmdpid" ] && kill -0 "$cmdpid" 2>/dev/null; then
        kill -TERM "$cmdpid" 2>/dev/null
        wait "$cmdpid" 2>/dev/null
    fi
    if [ -n "$pid" ]; then
        kill -TERM "$pid" 2>/dev/null
        for _ in $(seq 50); do
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.1
        done
        kill -KILL "$pid" 2>/dev/null
        wait "$pid" 2>/dev/null
    fi
    if mounted "$mnt"; then
        fusermount3 -u -z "$mnt" 2>/dev/null || umount -l "$mnt" 2>/dev/null
    fi
    if [ "$created" -eq 1 ]; then
        rmdir "$mnt" 2>/dev/null
    fi
    if [ "$shared_root" -eq 1 ]; then
        exec 7</ && flock 7
        exec 6<&-
        if flock -n -x "$mnt" true && [ -e "$made_mark" ] && rm -f "$made_mark"; then
            rmdir "$mnt" 2>/dev/null
        fi
        exec 7<&-
    fi
    [ -z "$simerr" ] && rm -f "$errfile"
}
trap cleanup EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
trap 'exit 129' HUP

simargs=(--state "$state" --die-with-parent)
[ -n "$log" ] && simargs+=(--log "$log")
[ -n "$trace" ] && simargs+=(--trace "$trace")
[ -n "$pooldir" ] && simargs+=(--pool-dir "$pooldir")
"$sim" "${simargs[@]}" "$mnt" 2>"$errfile" 6>&- &
pid=$!

ready=0
for _ in $(seq 200); do
    if [ -e "$mnt/Manage_QVS/manage.cmd" ]; then
        ready=1
        break
    fi
    kill -0 "$pid" 2>/dev/null || break
    sleep 0.05
done
if [ "$ready" -ne 1 ]; then
    echo "could not mount the simulated administration volume at $mnt" >&2
    cat "$errfile" >&2
    exit 1
fi

# In the background, so that a signal to this script is handled at once.
"$@" <&0 6>&- &
cmdpid=$!
wait "$cmdpid"
status=$?
cmdpid=
exit "$status"
