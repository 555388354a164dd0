#!/usr/bin/env bash
# demo.sh - shows logsift on the bundled sample files.
#   demo.sh LOGSIFT
# The sample verify report is built from its readable description into the
# build directory; nothing is written into examples/.
set -u
logsift=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
here=$(cd "$(dirname "$0")" && pwd)
out=$(dirname "$logsift")/examples
mkdir -p "$out"
run() {
    echo "\$ logsift $*"
    (cd "$out" && exec -a logsift "$logsift" "$@")
    echo
}

if ! command -v python3 >/dev/null; then
    echo "(the sample verify report is built from its description by a Python"
    echo " script, and python3 is not installed: the report is left out)"
    echo
    run --help
elif [ -f "$here/sample_verify.vbfdesc" ]; then
    python3 "$here/../tests/tools/vbfgen/vbfgen.py" "$here/sample_verify.vbfdesc" \
        -o "$out/sample_verify.vbf" || exit 1
    run -a -o -H vbf sample_verify.vbf
    # The newest-file search: the sample report under its RAV file name.
    mkdir -p "$out/rav"
    cp "$out/sample_verify.vbf" "$out/rav/POOL1_verify_6745A1C0_report.vbf"
    run -P rav vbfn POOL1
else
    run --help
fi
if [ -f "$here/sample_rebuild.xml" ]; then
    cp "$here/sample_rebuild.xml" "$out/sample_rebuild.xml"
    if [ -x "$here/demo-rebuild.sh" ]; then
        bash "$here/demo-rebuild.sh" "$logsift" "$out"
    else
        run rtf sample_rebuild.xml
    fi
fi
