#!/usr/bin/env bash
# demo.sh - shows logsift, logsift-json and logsift-status on the bundled
# sample files, each in part (a few screens in all), and says how to see the
# rest.
#   demo.sh LOGSIFT
# Everything it makes stays in the build directory beside LOGSIFT: the
# sample verify report built from its readable description, a RAV directory,
# and, where the simulated administration volume can be mounted, its mount
# point, which is undone when the demo ends or is interrupted.
set -u
logsift=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
json=$(dirname "$logsift")/logsift-json
here=$(cd "$(dirname "$0")" && pwd)
out=$(dirname "$logsift")/examples
mkdir -p "$out/rav" || exit 1
cd "$out" || exit 1

# show COMMAND-LINE FILTER [RUNNER...]: the command line as a user types it,
# then what the filter keeps of its output, and how much was left out.
# RUNNER, when given, runs the command (inside the simulated volume's
# mount namespace).
show() {
    local line=$1 filter=$2
    shift 2
    echo "\$ $line${filter:+ | $filter}"
    "$@" bash -c "$line" >output.txt 2>&1
    if [ -n "$filter" ]; then
        bash -c "$filter" <output.txt
        local kept
        kept=$(bash -c "$filter" <output.txt | wc -l)
        echo "  [... $kept of $(wc -l <output.txt) lines shown]"
    else
        cat output.txt
    fi
    echo
}
# The programs by the names a user types.
export PATH="$(dirname "$logsift"):$PATH"

echo "logsift on the bundled samples (examples/), each shown in part."
echo

if command -v python3 >/dev/null && [ -f "$here/sample_verify.vbfdesc" ]; then
    python3 "$here/../tests/tools/vbfgen/vbfgen.py" "$here/sample_verify.vbfdesc" \
        -o sample_verify.vbf || exit 1
    cp sample_verify.vbf rav/POOL1_verify_6745A1C0_report.vbf
    echo "== A verify report (examples/sample_verify.vbfdesc, built into sample_verify.vbf)"
    echo
    show "logsift -a -o -H vbf sample_verify.vbf" "head -n 45"
    echo "== Its problem lists, and the newest report of pool POOL1 in a RAV directory"
    echo
    show "logsift -a vbf sample_verify.vbf" "grep -B 2 'records to follow'"
    show "logsift -P rav vbfn POOL1" "grep 'will be used'"
else
    echo "(the sample verify report is built from its description by a Python script,"
    echo " and python3 is not installed: the report is left out)"
    echo
fi

cp "$here/sample_rebuild.xml" rav/DATA1_rebuild_00000002_log.xml
cp "$here/sample_rebuild.xml" "$here/sample_admin_state.txt" .
echo "== A rebuild log (examples/sample_rebuild.xml): its messages, and the objects"
echo "   the rebuild truncated or deleted with their names asked of the storage system"
echo
# The simulated administration volume is mounted under the build directory,
# in a mount namespace of its own, and reached as a server directory: the
# name after the pool is the directory that holds _admin.
server=${out#/}/server
sim_rebuild() {
    LOGSIFT=$logsift bash "$here/../tests/tools/qvsadminfs/with-admin-volume.sh" --private \
        --state sample_admin_state.txt "$out/server/_admin" -- "$@"
}
if sim_rebuild true 2>mount.err; then
    echo "(the storage system is simulated: a volume mounted at $out/server/_admin)"
    show "logsift -P rav rtfn DATA1 $server" "sed -n '/^Rebuild messages/,\$p' | sed '5,10d'" \
        sim_rebuild
    sim_rebuild bash -c "logsift-json -P rav rtfn DATA1 $server >rebuild.json" 2>/dev/null
else
    echo "(no storage system here, and the simulated one cannot be mounted:"
    echo " $(tail -n 1 mount.err))"
    show "logsift rtf sample_rebuild.xml" "sed -n '/^Rebuild messages/,\$p' | sed '5,10d'"
    logsift-json rtf sample_rebuild.xml >rebuild.json 2>/dev/null
fi

echo "== The same as JSON, for monitoring and scripts (one document per file)"
echo
if command -v jq >/dev/null; then
    [ -f sample_verify.vbf ] &&
        show "logsift-json vbf sample_verify.vbf" "jq -c '.totals, .outcome'"
    echo "\$ logsift-json ... rtfn DATA1 ... | jq -c '.tod_items[2] | {file_name, action_name, reason_name, lookup}'"
    jq -c '.tod_items[2] | {file_name, action_name, reason_name, lookup}' rebuild.json
    echo
else
    [ -f sample_verify.vbf ] && show "logsift-json vbf sample_verify.vbf" "head -n 12"
fi

echo "== Every pool of the RAV directory at a glance, from its newest report and log"
echo
show "logsift-status -P rav" ""

echo "To see them whole:"
echo "  cd $out"
[ -f sample_verify.vbf ] && echo "  logsift -a -o -H vbf sample_verify.vbf | less"
echo "  logsift rtf sample_rebuild.xml | less"
[ -f sample_verify.vbf ] && echo "  logsift-json vbf sample_verify.vbf | less"
echo "  less rebuild.json"
echo "  logsift-status -P rav --metrics | less    # the pools' health for Prometheus"
echo "(the programs are in $(dirname "$logsift"); make install puts them on the PATH)"
rm -f output.txt mount.err
