#!/usr/bin/env bash
# promtool_test.sh RULES_DIR - the alert rules in RULES_DIR pass
# `promtool check rules` and their unit tests (`promtool test rules`).
# Skipped where promtool (Debian's prometheus package) is missing.
set -u
rules=${1:?usage: promtool_test.sh RULES_DIR}
command -v promtool >/dev/null || { echo "promtool is missing (package prometheus): skipped"; exit 77; }
for f in logsift.rules.yml logsift.rules.test.yml; do
    [ -f "$rules/$f" ] || { echo "missing: $rules/$f"; exit 1; }
done
cd "$rules" || exit 1
fail=0
promtool check rules logsift.rules.yml || fail=1
# Every alert is tested both firing (a list of expected alerts) and not
# (exp_alerts: []): an alert that no test names is one whose expression
# nothing holds to.
tested=$(awk '/alertname:/ { a = $NF }
              /exp_alerts:/ { if ($NF == "[]") quiet[a] = 1; else firing[a] = 1 }
              END { for (a in firing) if (a in quiet) print a }' logsift.rules.test.yml)
for alert in $(sed -n 's/^ *- alert: *\([A-Za-z0-9_]*\).*/\1/p' logsift.rules.yml); do
    grep -q -x -F "$alert" <<<"$tested" ||
        { echo "alert $alert is not tested both firing and not firing"; fail=1; }
done
promtool test rules logsift.rules.test.yml || fail=1
[ "$fail" = 0 ] && echo "rules ok"
exit "$fail"
