#!/usr/bin/env bash
# manpage_json_test.sh PROGRAM MANPAGE [WORD]... - a companion program's
# manual page renders without warnings, documents every option of its
# --help, and holds its sections and the words given.
set -u
program=$1 page=$2
shift 2
fail=0
warnings=$(groff -man -ww -z "$page" 2>&1)
[ -z "$warnings" ] || { echo "groff warnings:"; echo "$warnings"; fail=1; }
for option in $("$program" --help | grep -o -- '--[a-z-]*' | sort -u); do
    grep -q -F -- "$(sed 's/-/\\-/g' <<<"$option")" "$page" ||
        { echo "manual page lacks $option"; fail=1; }
done
for word in NAME SYNOPSIS DESCRIPTION OPTIONS "EXIT STATUS" ENVIRONMENT EXAMPLES "SEE ALSO" "$@"; do
    grep -q -F -- "$word" "$page" || { echo "manual page lacks $word"; fail=1; }
done
[ "$fail" = 0 ] && echo "manual page ok"
exit "$fail"
