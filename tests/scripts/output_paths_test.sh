#!/usr/bin/env bash
# output_paths_test.sh LOGSIFT CASES_DIR FIXTURES K/N - every end-to-end case
# that is run from its `args` (the K-th of every N of them, counted from 0, so
# that N tests share the work) gives the same report wherever standard
# output goes: into a regular file (the reference), into a pipe, to
# /dev/null (same standard
# error and status), onto a pseudo-terminal (what the terminal shows, line by
# line; cases whose report holds control characters or bytes that are not
# well-formed UTF-8 are left out there, as a terminal shows those escaped)
# and to /dev/full (where a report that prints anything ends with the write
# error and status 1).
set -u
logsift=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
cases=$(cd "$2" && pwd)
fixtures=$3 shard=${4%/*} shards=${4#*/}
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export TZ=UTC LC_ALL=C TESTS_DIR=$(cd "$here/.." && pwd) FIXTURES=$fixtures
export PYTHON=${PYTHON:-python3}
fail=0 count=0
# A line of well-formed UTF-8 characters, tab and printable ASCII only.
well_formed='^(?:[\x09\x20-\x7e]|[\xc2-\xdf][\x80-\xbf]|\xe0[\xa0-\xbf][\x80-\xbf]'
well_formed+='|[\xe1-\xec\xee\xef][\x80-\xbf]{2}|\xed[\x80-\x9f][\x80-\xbf]'
well_formed+='|\xf0[\x90-\xbf][\x80-\xbf]{2}|[\xf1-\xf3][\x80-\xbf]{3}|\xf4[\x80-\x8f][\x80-\xbf]{2})*$'

index=-1
for dir in "$cases"/*/; do
    name=$(basename "$dir")
    [ -f "$dir/args" ] || continue
    index=$((index + 1))
    [ $((index % shards)) = "$shard" ] || continue
    case_work=$work/$name
    mkdir -p "$case_work" && cp -R "$dir"/. "$case_work"/ && cd "$case_work" || exit 1
    for desc in *.vbfdesc; do
        [ -e "$desc" ] && cp "$fixtures/cases/$name/${desc%.vbfdesc}" .
    done
    [ -f setup.sh ] && bash ./setup.sh >/dev/null 2>&1
    eval "set -- $(cat args)"
    run() { (exec -a logsift "$logsift" "$@") </dev/null; }

    run "$@" >file.out 2>file.err
    file_status=$?
    run "$@" 2>pipe.err | cat >pipe.out
    pipe_status=${PIPESTATUS[0]}
    run "$@" >/dev/null 2>null.err
    null_status=$?
    run "$@" >/dev/full 2>full.err
    full_status=$?
    problems=()
    cmp -s file.out pipe.out || problems+=("into a pipe, standard output differs")
    cmp -s file.err pipe.err && [ "$pipe_status" = "$file_status" ] ||
        problems+=("into a pipe, standard error or status differs")
    cmp -s file.err null.err && [ "$null_status" = "$file_status" ] ||
        problems+=("to /dev/null, standard error or status differs")
    if [ -s file.out ]; then
        [ "$full_status" = 1 ] && [ "$(tail -n 1 full.err)" = "logsift: write error: No space left on device" ] ||
            problems+=("to /dev/full, no write error (status $full_status)")
    else
        cmp -s file.err full.err && [ "$full_status" = "$file_status" ] ||
            problems+=("to /dev/full, standard error or status differs")
    fi
    if ! LC_ALL=C grep -q -P '[\x00-\x08\x0b-\x1f\x7f-\x9f]' file.out &&
        ! LC_ALL=C grep -q -v -a -P "$well_formed" file.out; then
        "$PYTHON" "$here/pty_run.py" logsift "$logsift" "$@" >tty.out 2>tty.err </dev/null
        tty_status=$?
        cmp -s file.out tty.out || problems+=("on a terminal, what it shows differs")
        [ "$tty_status" = "$file_status" ] || problems+=("on a terminal, the status differs")
    fi
    count=$((count + 1))
    for p in "${problems[@]}"; do
        echo "FAIL $name: $p"
        fail=1
    done
    cd "$work" || exit 1
done
[ "$count" -gt 0 ] || { echo "no case was run"; exit 1; }
[ "$fail" = 0 ] && echo "$count cases (shard $shard of $shards): the same report into a file, a pipe, /dev/null, /dev/full and a terminal"
exit "$fail"
