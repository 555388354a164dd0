#!/usr/bin/env bash
# manpage_test.sh LOGSIFT MANPAGE - the manual page renders without warnings
# and lists exactly the options of the usage text.
set -u
logsift=$1 page=$2
fail=0
warnings=$(groff -man -ww -z "$page" 2>&1)
if [ -n "$warnings" ]; then
    echo "groff warnings:"; echo "$warnings"; fail=1
fi
# Options of the usage text: "      -h, --help  ..." and "--verbose=LEVEL".
usage=$("$logsift" --help | sed -n 's/^ *\(-[A-Za-z]\), \(--[a-z-]*\).*/\1 \2/p' | sort)
# Options of the page: ".BR \-h ", " \-\-help".
manual=$(sed -n 's/^\.BR \\-\([A-Za-z]\) ", " \\-\\-\([a-z\\-]*\).*/-\1 --\2/p' "$page" |
         sed 's/\\-/-/g' | sort)
if [ "$usage" != "$manual" ]; then
    echo "option lists differ:"; diff <(echo "$usage") <(echo "$manual"); fail=1
fi
[ "$(echo "$usage" | wc -l)" -eq 7 ] || { echo "expected 7 options, got: $usage"; fail=1; }
# Every file type and the two files are documented.
for word in rtf rtfn vbf vbfn /var/opt/kestrel/log/qvs/rav/ /_admin/Manage_QVS/manage.cmd \
            NAME SYNOPSIS DESCRIPTION OPTIONS FILETYPES ENVIRONMENT FILES "EXIT STATUS" EXAMPLES \
            "SEE ALSO" 'logsift\-json (1)' 'logsift\-status (1)'; do
    grep -q -F -- "$word" "$page" || { echo "manual page lacks $word"; fail=1; }
done
[ "$fail" = 0 ] && echo "manual page ok"
exit "$fail"
