#!/usr/bin/env bash
# exports_test.sh LOGSIFT NAMES - every class and free function listed in
# NAMES (one per line) is exported by name from the executable.
set -u
symbols=$(nm -DC --defined-only "$1" | sed 's/^[0-9a-f]* [A-Za-z] //')
fail=0
while IFS= read -r name; do
    case $name in ''|'#'*) continue ;; esac
    if ! grep -q -F -- "$name" <<<"$symbols"; then
        echo "not exported: $name"; fail=1
    fi
done <"$2"
[ "$fail" = 0 ] && echo "all names exported"
exit "$fail"
