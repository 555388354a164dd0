#!/usr/bin/env bash
# vbf.sh - speed and memory of "logsift -a -o -H vbf" on a large verify report.
#
#   bench/vbf.sh [LOGSIFT]          (default: build/logsift of this tree)
#
# Builds a report of about 100 MB, nearly all of it variable-data lists (about
# two million records), and a second one of half that size. ROUNDS rounds
# (default 9) each time, one right after the other, all writing to /dev/null:
#   logsift -a -o -H vbf on the 100 MB report, and on the 50 MB one;
#   xxd on the 100 MB report;
#   the copy floor: cat of the report and cat of logsift's output (saved once),
#   that is reading the report and writing as many bytes as logsift writes.
#   logsift-json vbf on the 100 MB report (the same content as one JSON
#   document), against logsift -a -o -H vbf in the same round.
# A ratio is the median of the rounds' ratios; the times shown are medians.
# Peak resident memory is taken by /usr/bin/time -v in a run of its own.
# Targets:
#   logsift / xxd                 <= 0.12 (100 MB)
#   logsift / copy floor          <= 10
#   peak RSS of logsift           < 32 MiB
#   linearity                     logsift 50 MB / logsift 100 MB = 0.5 within 10%
#   logsift-json / logsift        <= 1.5, peak RSS < 32 MiB
set -eu
here=$(cd "$(dirname "$0")" && pwd)
top=$(dirname "$here")
logsift=${1:-$top/build/logsift}
logsift_json=$(dirname "$logsift")/logsift-json
vbfgen=$top/tests/tools/vbfgen/vbfgen.py
rounds=${ROUNDS:-9}

[ -x "$logsift" ] || { echo "no logsift at $logsift (build it, or pass its path)" >&2; exit 1; }
[ -x /usr/bin/time ] || { echo "/usr/bin/time is missing (Debian package: time)" >&2; exit 1; }
[ -x "$logsift_json" ] || { echo "no logsift-json beside $logsift" >&2; exit 1; }
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

for scale in 100 50; do
    describe $scale >"$work/r$scale.vbfdesc"
    python3 "$vbfgen" "$work/r$scale.vbfdesc" -o "$work/r$scale.vbf"
done
size100=$(stat -c %s "$work/r100.vbf")
size50=$(stat -c %s "$work/r50.vbf")
records=$(( 100000 + 700000 + 500000 + 400000 + 300000 ))
"$logsift" -a -o -H vbf "$work/r100.vbf" >"$work/out100.txt"
out_bytes=$(stat -c %s "$work/out100.txt")
/usr/bin/time -v -o "$work/time.txt" "$logsift" -a -o -H vbf "$work/r100.vbf" >/dev/null 2>&1
peak_kib=$(awk -F': ' '/Maximum resident set size/ { print $2 }' "$work/time.txt")
"$logsift_json" vbf "$work/r100.vbf" >"$work/out100.json" || true
json_bytes=$(stat -c %s "$work/out100.json")
/usr/bin/time -v -o "$work/time.txt" "$logsift_json" vbf "$work/r100.vbf" >/dev/null 2>&1 || true
json_peak_kib=$(awk -F': ' '/Maximum resident set size/ { print $2 }' "$work/time.txt")
sync

. "$here/common.sh"

: >"$work/rounds.txt"
for ((i = 0; i < rounds; i++)); do
    l100=$(timed "'$logsift' -a -o -H vbf '$work/r100.vbf' >/dev/null")
    x100=$(timed "xxd '$work/r100.vbf' >/dev/null")
    floor=$(timed "cat '$work/r100.vbf' >/dev/null; cat '$work/out100.txt' >/dev/null")
    l50=$(timed "'$logsift' -a -o -H vbf '$work/r50.vbf' >/dev/null")
    j100=$(timed "'$logsift_json' vbf '$work/r100.vbf' >/dev/null || true")
    echo "$l100 $x100 $floor $l50 $j100" >>"$work/rounds.txt"
done
column() { awk -v c="$1" '{ print $c }' "$work/rounds.txt" | median; }
ratio() { awk -v a="$1" -v b="$2" '{ printf "%.4f\n", $a / $b }' "$work/rounds.txt" | median; }

awk -v s100="$size100" -v s50="$size50" -v rec="$records" -v out="$out_bytes" \
    -v l100="$(column 1)" -v x100="$(column 2)" -v floor="$(column 3)" -v l50="$(column 4)" \
    -v rx="$(ratio 1 2)" -v rf="$(ratio 1 3)" -v rl="$(ratio 4 1)" -v peak="$peak_kib" \
    -v rounds="$rounds" -v j100="$(column 5)" -v rj="$(ratio 5 1)" -v jout="$json_bytes" \
    -v jpeak="$json_peak_kib" 'BEGIN {
    printf "report            %.1f MB, %d variable-data records (half: %.1f MB)\n", s100 / 1e6, rec, s50 / 1e6
    printf "logsift output    %.1f MB of text\n", out / 1e6
    printf "medians of %d rounds:\n", rounds
    printf "logsift 100 MB    %.3f s\n", l100
    printf "xxd 100 MB        %.3f s\n", x100
    printf "copy floor        %.3f s (cat of the report and of the output)\n", floor
    printf "logsift 50 MB     %.3f s\n", l50
    printf "time ratio        logsift/xxd = %.3f   (target <= 0.12)\n", rx
    printf "floor ratio       logsift/copy floor = %.1f   (target <= 10)\n", rf
    printf "peak RSS          %.1f MiB   (target < 32 MiB)\n", peak / 1024
    printf "linearity         50 MB/100 MB = %.2f   (target 0.45 to 0.55)\n", rl
    printf "logsift-json      %.3f s, %.1f MB of JSON, peak RSS %.1f MiB   (target < 32 MiB)\n", j100, jout / 1e6, jpeak / 1024
    printf "json ratio        logsift-json/logsift = %.2f   (target <= 1.5)\n", rj
}'
