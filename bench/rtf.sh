#!/usr/bin/env bash
# rtf.sh - speed and memory of "logsift rtf" in one run, two measurements:
#
#   bench/rtf.sh [LOGSIFT]          (default: build/logsift of this tree)
#
# 1. Lookups: a log of ITEMS (default 100,000) named TOD items, each looked up
#    through the simulated administration volume, against a minimal client
#    (bench/minclient.c, built here) that performs the same open, mode switch,
#    request and chunked read per item through the same simulator.
#    Target: logsift / minimal client <= 1.2.
# 2. Messages: a log of about MB (default 200) megabytes of message items,
#    against grep -c '<messageItem>' on the same file, both writing to a file
#    (GNU grep stops at the first match when its output is /dev/null); the
#    ratio with logsift's output going into a pipe (| cat >/dev/null) is
#    printed beside it.
#    Targets: time ratio <= 2.5 (output to a file); peak RSS <= 1.1 x file
#    size + 16 MiB.
#    In the same rounds, logsift-json --no-lookup rtf on the same file (the
#    same messages as one JSON document), to a file, against logsift rtf to a
#    file. Target: logsift-json / logsift <= 1.5. And logsift-json on the
#    same log cut inside its last item (a rebuild still writing it), against
#    the whole log. Target: <= 1.05.
# Needs root and /dev/fuse for the first part (skipped otherwise, or with
# ITEMS=0). The lookups are the best of RUNS runs (default 3). The message
# runs take a fraction of a second and vary by a third on a busy machine, so
# MESSAGE_RUNS (default 9) rounds are made, each timing logsift to a file,
# logsift into a pipe and grep one right after the other; a ratio is the
# median of the rounds' ratios, and the times shown are medians too. A run
# is timed inside the shell that starts it, to the microsecond, and its
# output file is removed before the clock starts, so that freeing the last
# run's output is not counted.
set -eu
export LC_ALL=C
here=$(cd "$(dirname "$0")" && pwd)
top=$(dirname "$here")
logsift=${1:-$top/build/logsift}
logsift=$(cd "$(dirname "$logsift")" && pwd)/$(basename "$logsift")
logsift_json=$(dirname "$logsift")/logsift-json
items=${ITEMS:-100000}
megabytes=${MB:-200}
runs=${RUNS:-3}
message_runs=${MESSAGE_RUNS:-9}
sim=$(dirname "$logsift")/tests/tools/qvsadminfs/qvsadminfs
with_admin=$top/tests/tools/qvsadminfs/with-admin-volume.sh

[ -x "$logsift" ] || { echo "no logsift at $logsift (build it, or pass its path)" >&2; exit 1; }
[ -x /usr/bin/time ] || { echo "/usr/bin/time is missing (Debian package: time)" >&2; exit 1; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# best_of "command" [output]: prints "seconds peak_kib" of the fastest of
# $runs runs, the command's standard output going to the file output.
best_of() {
    local best_s="" best_kb=0 i s kb out=${2:-/dev/null}
    for i in $(seq "$runs"); do
        [ "$out" = /dev/null ] || rm -f "$out"
        rm -f wall.txt
        /usr/bin/time -v -o time.txt bash -c \
            "s=\$EPOCHREALTIME; $1 >'$out'; e=\$EPOCHREALTIME; echo \"\$s \$e\" >wall.txt" \
            >/dev/null 2>/dev/null || true
        s=$(awk '{ printf "%.4f", $2 - $1 }' wall.txt)
        kb=$(sed -n 's/.*Maximum resident set size (kbytes): //p' time.txt)
        if [ -z "$best_s" ] || awk -v a="$s" -v b="$best_s" 'BEGIN { exit !(a < b) }'; then
            best_s=$s best_kb=$kb
        fi
    done
    echo "$best_s $best_kb"
}
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", (b > 0 ? a / b : 0) }'; }

echo "== 1. $items name lookups through the simulated administration volume"
if [ "$items" -eq 0 ]; then
    echo "skipped: ITEMS=0"
elif [ "$(id -u)" -ne 0 ] || [ ! -c /dev/fuse ] || [ ! -x "$sim" ]; then
    echo "skipped: needs root, /dev/fuse and the simulator ($sim)"
else
    guid=11111111-2222-3333-80-01-a1a2a3a4a5a6
    {
        echo "volume guid=$guid name=VOL1 state=mounted"
        echo "object volume=$guid path=/bench/dir zid=0x10"
    } >state.txt
    awk -v n="$items" -v g="$guid" 'BEGIN {
        print "<rebuildLog><todHistory>"
        for (i = 1; i <= n; i++)
            printf "<todItem><key v=\"%d\"/><zid v=\"0x%x\"/><pZid v=\"0x10\"/><flag v=\"0x8101\"/><nameSpace v=\"2\"/><nameType v=\"0\"/><volumeID v=\"%s\"/><fileName>file%d.dat</fileName></todItem>\n", i, i + 4096, g, i
        print "</todHistory></rebuildLog>" }' >lookups.xml
    # The same requests, one per line, for the minimal client.
    awk -v n="$items" -v g="$guid" 'BEGIN {
        for (i = 1; i <= n; i++)
            printf "<qvsRequest><pool><poolVerify><action>64</action><zid>16</zid><nameSpace>2</nameSpace><nameType>0</nameType><volumeID>%s</volumeID></poolVerify></pool></qvsRequest>\n", g }' >requests.txt
    cc -O2 -o minclient "$here/minclient.c"
    export LOGSIFT=$logsift
    t_ls=$(best_of "bash '$with_admin' --private --state state.txt /_admin -- '$logsift' rtf lookups.xml")
    t_min=$(best_of "bash '$with_admin' --private --state state.txt /_admin -- ./minclient /_admin/Manage_QVS/manage.cmd requests.txt")
    # Mounting costs the same in both runs; it is measured alone and taken off.
    t_mount=$(best_of "bash '$with_admin' --private --state state.txt /_admin -- true")
    set -- $t_ls; ls_s=$1 ls_kb=$2
    set -- $t_min; min_s=$1
    set -- $t_mount; mount_s=$1
    ls_net=$(awk -v a="$ls_s" -v m="$mount_s" 'BEGIN { print a - m }')
    min_net=$(awk -v a="$min_s" -v m="$mount_s" 'BEGIN { print a - m }')
    lines=$("$logsift" rtf lookups.xml 2>/dev/null | wc -l || true)
    echo "logsift rtf:       ${ls_net} s for $items lookups (peak RSS ${ls_kb} KiB)"
    echo "minimal client:    ${min_net} s"
    echo "mount and unmount: ${mount_s} s (taken off both)"
    echo "ratio logsift/minimal client: $(ratio "$ls_net" "$min_net")   (target <= 1.2)"
fi

echo
echo "== 2. about $megabytes MB of message items"
awk -v mb="$megabytes" 'BEGIN {
    print "<rebuildLog><messageHistory>"
    n = int(mb * 1048576 / 150)
    for (i = 1; i <= n; i++)
        printf "<messageItem><key v=\"%d\"/><m><info loc=\"rebuild.c:812\">Object 0x%x in volume VOL1 was checked.</info></m></messageItem>\n", i, i
    print "</messageHistory></rebuildLog>" }' >messages.xml
size_kb=$(( $(stat -c %s messages.xml) / 1024 ))
# The same log as a rebuild still writing it leaves it: cut inside its last
# item, its history and root not closed.
head -c $(( $(stat -c %s messages.xml) - 200 )) messages.xml >unfinished.xml
sync # no writeback of the new files during the runs
cat messages.xml unfinished.xml >/dev/null # page cache warm for both

. "$here/common.sh"

: >rounds.txt
for i in $(seq "$message_runs"); do
    rm -f out.txt count.txt
    t_file=$(timed "'$logsift' rtf messages.xml >out.txt")
    rm -f out.txt
    t_pipe=$(timed "'$logsift' rtf messages.xml | cat >/dev/null")
    t_grep=$(timed "grep -c '<messageItem>' messages.xml >count.txt")
    t_json=-1 t_unfinished=-1
    if [ -x "$logsift_json" ]; then
        rm -f out.json
        t_json=$(timed "'$logsift_json' --no-lookup rtf messages.xml >out.json")
        rm -f out.json
        t_unfinished=$(timed "'$logsift_json' --no-lookup rtf unfinished.xml >out.json")
        rm -f out.json
    fi
    echo "$t_file $t_pipe $t_grep $t_json $t_unfinished" >>rounds.txt
done
/usr/bin/time -v -o time.txt "$logsift" rtf messages.xml >out.txt 2>/dev/null || true
ls_kb=$(sed -n 's/.*Maximum resident set size (kbytes): //p' time.txt)
file_s=$(awk '{ print $1 }' rounds.txt | median)
pipe_s=$(awk '{ print $2 }' rounds.txt | median)
grep_s=$(awk '{ print $3 }' rounds.txt | median)
file_ratio=$(awk '{ printf "%.4f\n", $1 / $3 }' rounds.txt | median)
pipe_ratio=$(awk '{ printf "%.4f\n", $2 / $3 }' rounds.txt | median)
limit_kb=$(( size_kb * 11 / 10 + 16384 ))
echo "file:              $((size_kb / 1024)) MiB, $(cat count.txt) message items"
echo "logsift rtf >file: ${file_s} s (median of $message_runs), peak RSS $((ls_kb / 1024)) MiB"
echo "logsift rtf |cat:  ${pipe_s} s"
echo "grep -c >file:     ${grep_s} s"
printf 'ratio logsift/grep, output to a file: %.2f   (target <= 2.5)\n' "$file_ratio"
printf 'ratio logsift/grep, output to a pipe: %.2f\n' "$pipe_ratio"
echo "peak RSS / (1.1 x file + 16 MiB): $(ratio "$ls_kb" "$limit_kb")   (target <= 1.0)"
if [ -x "$logsift_json" ]; then
    /usr/bin/time -v -o time.txt "$logsift_json" --no-lookup rtf messages.xml >out.json 2>/dev/null || true
    json_kb=$(sed -n 's/.*Maximum resident set size (kbytes): //p' time.txt)
    json_mb=$(( $(stat -c %s out.json) / 1048576 ))
    json_s=$(awk '{ print $4 }' rounds.txt | median)
    json_ratio=$(awk '{ printf "%.4f\n", $4 / $1 }' rounds.txt | median)
    echo "logsift-json >file: ${json_s} s, $json_mb MiB of JSON, peak RSS $((json_kb / 1024)) MiB"
    printf 'ratio logsift-json/logsift rtf, output to a file: %.2f   (target <= 1.5)\n' "$json_ratio"
    unfinished_s=$(awk '{ print $5 }' rounds.txt | median)
    unfinished_ratio=$(awk '{ printf "%.4f\n", $5 / $4 }' rounds.txt | median)
    echo "logsift-json, the log unfinished (cut inside its last item): ${unfinished_s} s"
    printf 'ratio logsift-json unfinished/finished: %.3f   (target <= 1.05)\n' "$unfinished_ratio"
else
    echo "logsift-json: skipped (not built beside $logsift)"
fi
