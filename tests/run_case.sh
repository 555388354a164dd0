#!/usr/bin/env bash
# run_case.sh - runs one end-to-end case and compares its output byte for byte.
#
#   run_case.sh LOGSIFT CASEDIR WORKDIR FIXTURES
#
# A case directory holds:
#   args            the arguments after the program name (bash words), or
#   run.sh          a script to run instead (gets $LOGSIFT; exit 77 = skipped)
#   setup.sh        optional, run first in the work directory
#   *.vbfdesc       readable report descriptions; the build makes each into
#                   FIXTURES/cases/CASE/NAME (the description's name without
#                   the extension), which is copied into the work directory
#   expect.stdout   expected standard output   (absent: empty)
#   expect.stderr   expected standard error    (absent: empty)
#   expect.status   expected exit status       (absent: 0)
#   expect.requests optional: the management requests the case must send,
#                   compared with the simulator's request log requests.log
# The tool runs in WORKDIR as "logsift" with TZ=UTC, LC_ALL=C and no input.
# run.sh and setup.sh scripts get $LOGSIFT, $TESTS_DIR, $FIXTURES, $PYTHON,
# $WITH_ADMIN, and $SANITIZED (ON in the sanitizer build).
# A failing case leaves actual.* files and a diff in WORKDIR.
set -u
logsift=$1 casedir=$2 work=$3 fixtures=$4
here=$(cd "$(dirname "$0")" && pwd)
case=$(basename "$casedir")

rm -rf "$work" && mkdir -p "$work" || exit 1
cp -R "$casedir"/. "$work"/ || exit 1
cd "$work" || exit 1

export LOGSIFT="$logsift" TESTS_DIR="$here" TZ=UTC LC_ALL=C FIXTURES="$fixtures"
export PYTHON=${PYTHON:-python3}
# The simulated administration volume, for run.sh scripts:
#   bash "$WITH_ADMIN" --private --state S --log requests.log /_admin -- CMD...
export WITH_ADMIN="$here/tools/qvsadminfs/with-admin-volume.sh"

for desc in *.vbfdesc; do
    [ -e "$desc" ] || continue
    built=$fixtures/cases/$case/${desc%.vbfdesc}
    [ -f "$built" ] || { echo "fixture $built is not built (build the fixtures target)"; exit 1; }
    cp "$built" "${desc%.vbfdesc}" || exit 1
done
if [ -f setup.sh ]; then
    bash ./setup.sh || { echo "setup.sh failed"; exit 1; }
fi

if [ -f run.sh ]; then
    bash ./run.sh </dev/null >actual.stdout 2>actual.stderr
    status=$?
else
    eval "set -- $(cat args)"
    (exec -a logsift "$logsift" "$@") </dev/null >actual.stdout 2>actual.stderr
    status=$?
fi
if [ "$status" = 77 ] && [ -f run.sh ]; then
    echo "skipped: $(cat actual.stderr)"
    exit 77
fi
echo "$status" >actual.status

fail=0
for kind in stdout stderr status; do
    expected=expect.$kind
    if [ ! -f "$expected" ]; then
        if [ "$kind" = status ]; then echo 0 >"$expected"; else : >"$expected"; fi
    fi
    if ! cmp -s "$expected" "actual.$kind"; then
        echo "=== $kind differs (expected vs actual) ==="
        diff -u "$expected" "actual.$kind" | tee "$kind.diff" | head -n 60
        fail=1
    fi
done
if [ -f expect.requests ] && ! cmp -s expect.requests requests.log; then
    echo "=== requests differ (expected vs actual) ==="
    diff -u expect.requests requests.log | tee requests.diff | head -n 60
    fail=1
fi
[ "$fail" = 0 ] && echo "ok"
exit "$fail"
