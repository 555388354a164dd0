#!/usr/bin/env bash
# promtool_metrics_test.sh LOGSIFT CASES FIXTURES - the metrics of every
# logsift-status case's RAV directory pass Prometheus' own linter
# (promtool check metrics): HELP and TYPE for every family, base units,
# label values escaped. Each case's directory is made by its setup as the
# case makes it; then logsift-status --metrics reads it, also into a file
# with --output. Skipped (77) only when promtool is missing.
set -u
logsift=$1 cases=$(cd "$2" && pwd) fixtures=$(cd "$3" && pwd)
status=$(dirname "$logsift")/logsift-status
command -v promtool >/dev/null || { echo "promtool is missing (Debian package prometheus)"; exit 77; }
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail=0 linted=0
for dir in "$cases"/status_*/; do
    case=$(basename "$dir")
    [ -f "$dir/setup.sh" ] || grep -q 'mkdir.*rav' "$dir/run.sh" 2>/dev/null || continue
    rm -rf "${work:?}/$case" && cp -R "$dir" "$work/$case" && cd "$work/$case" || exit 1
    for desc in *.vbfdesc; do
        [ -e "$desc" ] && cp "$fixtures/cases/$case/${desc%.vbfdesc}" "${desc%.vbfdesc}"
    done
    export TESTS_DIR="$here/.." FIXTURES="$fixtures" PYTHON=${PYTHON:-python3}
    if [ -f setup.sh ]; then
        bash ./setup.sh >/dev/null 2>&1 || { echo "$case: setup failed"; fail=1; continue; }
    else
        # The cases that make their directory in run.sh: the lines before
        # the first run of the program.
        sed -n '/"\$status"\|exec -a logsift-status/q;p' run.sh >make.sh
        LOGSIFT=$logsift bash ./make.sh >/dev/null 2>&1
    fi
    [ -d rav ] || continue
    "$status" --metrics -P rav >metrics.prom 2>/dev/null
    rc=$?
    if [ "$rc" -ne 0 ] && [ "$rc" -ne 2 ]; then
        echo "$case: exit status $rc"; fail=1
    fi
    if ! promtool check metrics <metrics.prom >lint.out 2>&1; then
        echo "$case: promtool check metrics:"; cat lint.out; fail=1
    fi
    "$status" --metrics -P rav --output out.prom 2>/dev/null
    cmp -s metrics.prom out.prom || { echo "$case: --output wrote other metrics"; fail=1; }
    linted=$((linted + 1))
done
echo "$linted status cases' metrics linted"
[ "$linted" -ge 5 ] || { echo "too few cases"; fail=1; }
exit "$fail"
