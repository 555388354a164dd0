#!/usr/bin/env bash
# status.sh - logsift-status over a RAV directory of 1,000 pools, against
# reading the same newest reports with logsift one by one.
#
#   bench/status.sh [LOGSIFT]          (default: build/logsift of this tree)
#
# Each pool has two verify reports (the sample report, newest, and an older
# empty one) and every third pool a rebuild log (the sample log), so 2,334
# files in all. ROUNDS rounds (default 5), one right after the other, all
# writing to /dev/null:
#   logsift-status -P DIR                 every pool: one scan, then each
#                                         newest report and log read once
#   logsift-status --metrics -P DIR       the same pools as metrics
#   logsift -P DIR vbfn POOL, per pool    the reports one by one, each run
#                                         scanning the directory again
#   logsift -a vbf FILE, per pool         the same reports named, no scan
# A ratio is the median of the rounds' ratios; the times shown are medians.
# Peak resident memory of logsift-status is taken by /usr/bin/time -v.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
top=$(dirname "$here")
logsift=${1:-$top/build/logsift}
status=$(dirname "$logsift")/logsift-status
vbfgen=$top/tests/tools/vbfgen/vbfgen.py
rounds=${ROUNDS:-5}
pools=${POOLS:-1000}

[ -x "$logsift" ] || { echo "no logsift at $logsift (build it, or pass its path)" >&2; exit 1; }
[ -x "$status" ] || { echo "no logsift-status beside $logsift" >&2; exit 1; }
[ -x /usr/bin/time ] || { echo "/usr/bin/time is missing (Debian package: time)" >&2; exit 1; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
python3 "$vbfgen" "$top/examples/sample_verify.vbfdesc" -o "$work/sample.vbf"
mkdir "$work/rav"
for ((i = 0; i < pools; i++)); do
    name=$(printf 'pool%04d' "$i")
    cp "$work/sample.vbf" "$work/rav/${name}_verify_00000002_report.vbf"
    : >"$work/rav/${name}_verify_00000001_report.vbf"
    [ $((i % 3)) -eq 0 ] && cp "$top/examples/sample_rebuild.xml" "$work/rav/${name}_rebuild_00000001_log.xml"
done
files=$(ls "$work/rav" | wc -l)
"$status" -P "$work/rav" >/dev/null || true
/usr/bin/time -v -o "$work/time.txt" "$status" -P "$work/rav" >/dev/null 2>&1 || true
peak_kib=$(awk -F': ' '/Maximum resident set size/ { print $2 }' "$work/time.txt")

. "$here/common.sh"

one_by_one() {
    local name
    for name in "$work"/rav/*_verify_00000002_report.vbf; do
        name=${name##*/}
        "$logsift" -P "$work/rav" vbfn "${name%_verify_00000002_report.vbf}" >/dev/null
    done
}
named() {
    local file
    for file in "$work"/rav/*_verify_00000002_report.vbf; do
        "$logsift" -a vbf "$file" >/dev/null
    done
}

: >"$work/rounds.txt"
for ((r = 0; r < rounds; r++)); do
    s=$(timed "'$status' -P '$work/rav' >/dev/null || true")
    n=$(timed "one_by_one")
    f=$(timed "named")
    m=$(timed "'$status' --metrics -P '$work/rav' >/dev/null || true")
    echo "$s $n $f $m" >>"$work/rounds.txt"
done
med() { awk -v c="$1" '{ print $c }' "$work/rounds.txt" | median; }
ratio() { awk -v a="$1" -v b="$2" '{ print $a / $b }' "$work/rounds.txt" | median; }
printf 'directory         %d pools, %d files\n' "$pools" "$files"
printf 'medians of %d rounds:\n' "$rounds"
printf 'logsift-status    %.3f s, peak RSS %.1f MiB\n' "$(med 1)" "$(awk -v k="$peak_kib" 'BEGIN { print k / 1024 }')"
printf 'logsift vbfn x %d  %.3f s   (each run scans the directory)\n' "$pools" "$(med 2)"
printf 'logsift vbf x %d   %.3f s   (the files named)\n' "$pools" "$(med 3)"
printf 'ratio             logsift-status / logsift vbfn one by one = %.3f\n' "$(ratio 1 2)"
printf 'ratio             logsift-status / logsift vbf one by one = %.3f\n' "$(ratio 1 3)"
printf 'logsift-status --metrics  %.3f s\n' "$(med 4)"
printf 'ratio             --metrics / the table = %.2f\n' "$(ratio 4 1)"
