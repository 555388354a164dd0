#!/usr/bin/env bash
# demo-rebuild.sh LOGSIFT DIR - shows the sample rebuild log with its names
# looked up through the simulated administration volume when one can be
# mounted, and otherwise what the tool prints with no storage system.
set -u
logsift=$1 out=$2
here=$(cd "$(dirname "$0")" && pwd)
with_admin="$here/../tests/tools/qvsadminfs/with-admin-volume.sh"
cp "$here/sample_admin_state.txt" "$out/"
echo "\$ logsift rtf sample_rebuild.xml      (storage system simulated at /_admin)"
(cd "$out" && LOGSIFT="$logsift" bash "$with_admin" --private --state sample_admin_state.txt \
    /_admin -- bash -c 'exec -a logsift "$LOGSIFT" rtf sample_rebuild.xml' 2>"$out/demo.err")
status=$?
if [ "$status" -eq 77 ] || [ "$status" -eq 1 ]; then
    echo "(the simulated administration volume cannot be mounted here: $(tail -n 1 "$out/demo.err"))"
    echo "\$ logsift rtf sample_rebuild.xml      (no storage system running)"
    (cd "$out" && exec -a logsift "$logsift" rtf sample_rebuild.xml)
else
    cat "$out/demo.err" >&2
fi
echo
