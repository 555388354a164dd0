#!/usr/bin/env bash
# readonly_test.sh LOGSIFT FIXTURES K/N - runs every command path of the tool
# with every switch on a tree of fixture files (the built reports of every
# case and of the sample, and the cases' rebuild logs), then proves that no
# file changed (content and modification time) and that no file was created
# or removed anywhere in the tree. Lookups go through the simulated
# administration volume when one can be mounted. The runs are split into N
# shares, of which this runs the K-th (counted from 0), each on a tree of
# its own, so that N tests share the work.
set -u
logsift=$1 fixtures=$2 shard=${3%/*} shards=${3#*/}
here=$(cd "$(dirname "$0")/.." && pwd)
top=$(dirname "$here")
with_admin=$here/tools/qvsadminfs/with-admin-volume.sh
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
tree=$work/tree
mkdir -p "$tree/reports" "$tree/logs" "$tree/rav" || exit 1

# The fixtures: every verify report of the cases and the sample, every
# rebuild log of the cases, and a RAV directory holding copies of them.
for report in "$fixtures"/cases/*/* "$fixtures"/examples/*; do
    name=$(basename "$(dirname "$report")")-$(basename "$report")
    cp "$report" "$tree/reports/$name" || exit 1
done
cp "$top"/examples/sample_rebuild.xml "$tree/logs/"
for log in "$here"/cases/rtf_*/*.xml; do
    cp "$log" "$tree/logs/$(basename "$(dirname "$log")")-$(basename "$log")" || exit 1
done
cp "$tree/reports/examples-sample_verify.vbf" "$tree/rav/POOL1_verify_0000001A_report.vbf" || exit 1
cp "$tree/reports/examples-sample_verify.vbf" "$tree/rav/pool1_verify_00000020_report.vbf"
cp "$tree/logs/sample_rebuild.xml" "$tree/rav/DATA1_rebuild_00000002_log.xml"
cp "$top/examples/sample_admin_state.txt" "$work/state.txt"
touch -d '2020-01-01 00:00:00' $(find "$tree" -type f)

snapshot() {
    (cd "$tree" && find . -printf '%y %p %s %T@ %m\n' | sort && find . -type f -exec sha256sum {} + | sort)
}
snapshot >"$work/before"

run() { (cd "$tree" && exec -a logsift "$logsift" "$@") >/dev/null 2>&1 </dev/null; }
count=0 group=-1
# mine: whether the next group of runs is this share's.
mine() {
    group=$((group + 1))
    [ $((group % shards)) = "$shard" ]
}
for report in "$tree"/reports/*; do
    mine || continue
    for switches in "" -a -H -o "-a -H" "-a -o" "-H -o" "-a -H -o"; do
        # shellcheck disable=SC2086
        run $switches vbf "$report" && run $switches -V 0xffffffff vbf "$report"
        count=$((count + 2))
    done
done
for log in "$tree"/logs/*; do
    mine || continue
    run rtf "$log"; run -V 0xffffffff rtf "$log"; run -a -H -o rtf "$log"
    count=$((count + 3))
done
for switches in "" -a "-a -H -o" "-V 0xffffffff"; do
    mine || continue
    # shellcheck disable=SC2086
    run $switches -P rav vbfn pool1; run $switches -P rav rtfn DATA1
    run $switches -P rav/ vbfn pool1 server; run $switches -P rav rtfn DATA1 nosuchserver
    run $switches -P rav vbfn nopool; run $switches -P rav rtfn nopool
    count=$((count + 6))
done
# logsift-status over every pool, over pools named, and their names alone;
# logsift-json over every pool, whole and summed up.
status=$(dirname "$logsift")/logsift-status
json=$(dirname "$logsift")/logsift-json
if mine; then
    (cd "$tree" || exit; "$status" -P rav; "$status" -P rav POOL1 DATA1 nopool
        "$status" -P rav --list; "$json" -P rav vbfn; "$json" -P rav --summary vbfn
        "$json" -P rav --no-lookup rtfn; "$json" -P rav --summary rtfn) >/dev/null 2>&1 </dev/null
    count=$((count + 7))
fi
# The lookups through a simulated storage system, when one can be mounted.
looked=0
if mine && LOGSIFT=$logsift bash "$with_admin" --private --state "$work/state.txt" /_admin -- true 2>/dev/null; then
    LOGSIFT=$logsift bash "$with_admin" --private --state "$work/state.txt" /_admin -- bash -c '
        cd "$1" || exit 1
        for log in logs/*; do exec -a logsift "$2" -V 0xffffffff rtf "$log" >/dev/null 2>&1; done
        exec -a logsift "$2" -P rav rtfn DATA1 >/dev/null 2>&1' _ "$tree" "$logsift"
    looked=$(ls "$tree"/logs | wc -l)
    count=$((count + looked + 1))
fi

snapshot >"$work/after"
if ! cmp -s "$work/before" "$work/after"; then
    echo "the fixture tree changed:"
    diff "$work/before" "$work/after" | head -n 40
    exit 1
fi
[ "$count" -gt 0 ] || { echo "no run in share $shard of $shards"; exit 1; }
echo "read-only, share $shard of $shards: $count runs ($looked with lookups) left $(grep -c '^f' "$work/before") files unchanged"
