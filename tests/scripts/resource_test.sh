#!/usr/bin/env bash
# resource_test.sh LOGSIFT SANITIZED FIXTURES - hostile sizes and counts (the
# reports are built from tests/resources/fixtures/ into FIXTURES/resources/
# with the tests): the tool must
# end cleanly, in bounded time, with peak memory no more than 1.5 times the
# size of the file it reads (1.1 times for a rebuild log, which is held whole
# and nothing more) plus a constant (16 MiB; 160 MiB under the sanitizers,
# whose runtime needs its own).
set -u
logsift=$(cd "$(dirname "$1")" && pwd)/$(basename "$1") sanitized=$2 fixtures=$3
here=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
constant_kb=16384
case $sanitized in ON | on | 1 | TRUE | true) constant_kb=163840 ;; esac
[ -x /usr/bin/time ] || { echo "skipped: /usr/bin/time is missing"; exit 77; }

fail=0
# check NAME EXPECTED-TEXT ARGS...: runs logsift, checks its status, that its
# output holds EXPECTED-TEXT, its time and its peak memory.
check() {
    local name=$1 expected=$2 file=${*: -1}
    shift 2
    local size_kb=$(( $(stat -c %s "$file") / 1024 ))
    local factor=15 # tenths
    [ "$1" = rtf ] && factor=11
    local limit_kb=$(( size_kb * factor / 10 + constant_kb ))
    timeout 60 /usr/bin/time -f '%M %e' -o "$name.time" \
        bash -c 'exec -a logsift "$0" "$@"' "$logsift" "$@" >"$name.out" 2>"$name.err" </dev/null
    local status=$? rss seconds
    read -r rss seconds <"$name.time"
    if [ "$status" -ne 0 ]; then
        echo "FAIL $name: exit status $status"; tail -n 5 "$name.err"; fail=1; return
    fi
    if ! grep -q -F -- "$expected" "$name.out"; then
        echo "FAIL $name: output lacks: $expected"; tail -n 5 "$name.out"; fail=1; return
    fi
    if [ "$rss" -gt "$limit_kb" ]; then
        echo "FAIL $name: peak RSS ${rss} KiB above ${limit_kb} KiB (file ${size_kb} KiB)"; fail=1; return
    fi
    echo "ok   $name: ${seconds}s, peak RSS ${rss} KiB (file ${size_kb} KiB, limit ${limit_kb} KiB)"
}

# An action list claiming 2^32-1 records of 162 bytes, its size field made to
# agree in 32-bit arithmetic, in a file of a few hundred bytes.
cp "$fixtures/resources/actions.vbf" actions.vbf || exit 1
check actions "Status - 20100" -a vbf actions.vbf

# A conflict list claiming 2^28 records (10 GiB).
cp "$fixtures/resources/conflicts.vbf" conflicts.vbf || exit 1
check conflicts "Status - 20100" vbf conflicts.vbf

# A skipped-volume list of a million records, 548 MB claimed, 1 MB present.
cp "$fixtures/resources/skipped.vbf" skipped.vbf || exit 1
head -c 1048576 /dev/zero >>skipped.vbf
check skipped "Status - 20100" vbf skipped.vbf

# A variable-data list claiming 2^32-1 records with three present: rows are
# printed as read, nothing is kept.
cp "$fixtures/resources/variable.vbf" variable.vbf || exit 1
check variable "4294967295 records to follow." vbf variable.vbf

# A section size field far beyond the end of the file.
cp "$fixtures/resources/seek.vbf" seek.vbf || exit 1
check seek " Message record section will be skipped." -V 0x40000004 vbf seek.vbf

# Rebuild logs of 32 MB: an item whose closing tag never comes, a million
# items of which only the last is closed, one line without any tag, the
# smallest items there can be and items that are almost all message text.
"${PYTHON:-python3}" - <<'P'
n = 32 * 1024 * 1024
with open("open_item.xml", "w") as f:
    f.write("<rebuildLog></rebuildLog><todHistory><todItem>" + "x" * n)
with open("one_closed.xml", "w") as f:
    f.write("<rebuildLog><messageHistory>" + "<messageItem>" * (n // 13) +
            "<key v=\"1\"/><m><info>last</info></m></messageItem></messageHistory></rebuildLog>")
with open("no_tags.xml", "w") as f:
    f.write("<rebuildLog>" + "y" * n + "</rebuildLog>")
small = "<messageItem><key v=\"1\"/><m><info>x</info></m></messageItem>"
with open("small_items.xml", "w") as f:
    f.write("<rebuildLog><messageHistory>" + small * (n // len(small)) + "</messageHistory></rebuildLog>")
text = "z" * (1024 * 1024)
long = "<messageItem><key v=\"1\"/><m><info>" + text + "</info></m></messageItem>"
with open("long_messages.xml", "w") as f:
    f.write("<rebuildLog><messageHistory>" + long * 32 + "</messageHistory></rebuildLog>")
P
check open_item "Unable to process complete file: 20162" rtf open_item.xml
check one_closed "Found 1 messages." rtf one_closed.xml
check no_tags "Found 0 items that were deleted or truncated." rtf no_tags.xml
check small_items "Found 559240 messages." rtf small_items.xml
check long_messages "Found 32 messages." rtf long_messages.xml
exit "$fail"
