#!/usr/bin/env bash
# vbf.sh - speed and memory of "logsift -a -o -H vbf" on a large verify report.
#
#   bench/vbf.sh [LOGSIFT]          (default: build/logsift of this tree)
#
# Builds a report of about 100 MB, nearly all of it variable-data lists (about
# two million records), and a second one of half that size. On each it times
# "logsift -a -o -H vbf FILE" against "xxd FILE", both writing to /dev/null,
# with /usr/bin/time -v for wall time and peak resident memory, and prints the
# figures and their ratios:
#   time ratio   logsift / xxd on the 100 MB report (target <= 1.0)
#   peak RSS     logsift on the 100 MB report (target < 32 MiB)
#   linearity    logsift 50 MB / logsift 100 MB (target 0.5 within 10%)
# Each command runs RUNS times (default 3); the best run counts.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
top=$(dirname "$here")
logsift=${1:-$top/build/logsift}
vbfgen=$top/tests/tools/vbfgen/vbfgen.py
runs=${RUNS:-3}

[ -x "$logsift" ] || { echo "no logsift at $logsift (build it, or pass its path)" >&2; exit 1; }
[ -x /usr/bin/time ] || { echo "/usr/bin/time is missing (Debian package: time)" >&2; exit 1; }
command -v xxd >/dev/null || { echo "xxd is missing (Debian package: xxd)" >&2; exit 1; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# describe SCALE: a report whose lists hold SCALE/100 of the full record counts.
describe() {
    local scale=$1
    n() { echo $(( $1 * scale / 100 )); }
    cat <<EOF
section header
section overall
  statusValid = 1
  poolName = "BENCH"
  blockSize = 4096
  totalBlocks = 26214400
  verifyStartTime = 2026-11-15T08:37:14Z
  finalStatusValid = 1
  verifyEndTime = 2026-11-15T09:37:14Z
section pool
  poolName = "BENCH"
  vdb.blockQuota = 0x7ffffffffffff
section volume
  volumeName = "VOL1"
  vdb.blockQuota = 0x7ffffffffffff
section ntzNotInBT
  record
    repeat = $(n 100000)
    zid = 0x100000
    step.zid = 1
    parentZid = 0x2a
    nameType = 1
    nameSpaceMask = 0x6
    fileName = "a_reasonably_long_file_name_0001.dat"
    status = 20405
    sourceSetter = "ntVerifyEntry"
section unreadableZid
  record
    repeat = $(n 700000)
    zid = 0x200000
    step.zid = 3
    status = 20100
    sourceSetter = "btReadLeaf"
section duplicateZidsL
  record
    repeat = $(n 500000)
    zid = 0x300000
    step.zid = 1
    block = 1000000
    step.block = 7
section outOfRange
  record
    repeat = $(n 400000)
    zid = 0xffff0000
    step.zid = 1
section unaccountedBlocks
  record
    repeat = $(n 300000)
    startBlock = 0x10000
    step.startBlock = 16
    endBlock = 0x1000f
    step.endBlock = 16
section conflicts
  record
    repeat = 1000
    block = 0x1000
    step.block = 1
    object1 = 0x2a
    volume1 = 1
    object2 = 0x2b
    volume2 = 2
section action
  record
    repeat = 1000
    key = 1
    step.key = 1
    endSeconds = 60
    object = "VOL1"
    subObject = "tree"
    action = "Verify"
EOF
}

# measure CMD...: prints "SECONDS KIB" of the best of $runs runs.
measure() {
    local best_s="" best_k="" i s k
    for ((i = 0; i < runs; i++)); do
        /usr/bin/time -v -o "$work/time.txt" "$@" >/dev/null 2>&1
        s=$(awk -F': ' '/Elapsed \(wall clock\)/ {
                n = split($2, p, ":"); t = 0
                for (j = 1; j <= n; j++) t = t * 60 + p[j]
                print t }' "$work/time.txt")
        k=$(awk -F': ' '/Maximum resident set size/ { print $2 }' "$work/time.txt")
        if [ -z "$best_s" ] || awk "BEGIN { exit !($s < $best_s) }"; then best_s=$s; fi
        if [ -z "$best_k" ] || [ "$k" -lt "$best_k" ]; then best_k=$k; fi
    done
    echo "$best_s $best_k"
}

for scale in 100 50; do
    describe $scale >"$work/r$scale.vbfdesc"
    python3 "$vbfgen" "$work/r$scale.vbfdesc" -o "$work/r$scale.vbf"
done
size100=$(stat -c %s "$work/r100.vbf")
size50=$(stat -c %s "$work/r50.vbf")
records=$(( 100000 + 700000 + 500000 + 400000 + 300000 ))

read -r l100 k100 < <(measure "$logsift" -a -o -H vbf "$work/r100.vbf")
read -r x100 xk100 < <(measure xxd "$work/r100.vbf")
read -r l50 k50 < <(measure "$logsift" -a -o -H vbf "$work/r50.vbf")
out_bytes=$("$logsift" -a -o -H vbf "$work/r100.vbf" | wc -c)

awk -v s100="$size100" -v s50="$size50" -v rec="$records" -v out="$out_bytes" \
    -v l100="$l100" -v k100="$k100" -v x100="$x100" -v xk100="$xk100" -v l50="$l50" -v k50="$k50" 'BEGIN {
    printf "report            %.1f MB, %d variable-data records (half: %.1f MB)\n", s100 / 1e6, rec, s50 / 1e6
    printf "logsift output    %.1f MB of text\n", out / 1e6
    printf "logsift 100 MB    %.2f s, peak RSS %.1f MiB\n", l100, k100 / 1024
    printf "xxd 100 MB        %.2f s, peak RSS %.1f MiB\n", x100, xk100 / 1024
    printf "logsift 50 MB     %.2f s, peak RSS %.1f MiB\n", l50, k50 / 1024
    printf "time ratio        logsift/xxd = %.2f   (target <= 1.0)\n", l100 / x100
    printf "peak RSS          %.1f MiB          (target < 32 MiB)\n", k100 / 1024
    printf "linearity         50 MB/100 MB = %.2f (target 0.45 to 0.55)\n", l50 / l100
}'
