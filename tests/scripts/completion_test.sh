#!/usr/bin/env bash
# completion_test.sh COMPLETION PROGRAMS - the bash completion as a user
# meets it: an interactive bash on a pseudo-terminal (a tmux pane), with the
# bash-completion package's library loaded (which alone loads the file) and
# the built programs (directory PROGRAMS) on the PATH, keys typed into it,
# the screen read back.
#
# After the Tab key a marker (X) is typed, so that the screen shows exactly
# what the completion inserted, a trailing blank included; a number of its own
# follows the marker, and each check waits (a bounded number of times) until
# that is on the screen.
set -u
completion=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
programs=$(cd "$2" && pwd)
command -v tmux >/dev/null || { echo "skipped: tmux is missing"; exit 77; }
library=/usr/share/bash-completion/bash_completion
[ -f "$library" ] || { echo "skipped: the bash-completion package is missing"; exit 77; }
work=$(mktemp -d)
# Each bash gets a tmux server of its own, on a socket of its own: a new
# server on the socket of one just killed can meet it still shutting down.
servers=0
socket=$work/tmux.0.socket
trap 'for s in "$work"/tmux.*.socket; do tmux -S "$s" kill-server 2>/dev/null; done; rm -rf "$work"' EXIT
cd "$work" || exit 1

mkdir -p rav other "dir with space"
: >rav/POOL1_verify_0000001A_report.vbf
: >rav/pool1_verify_00000020_report.vbf
: >rav/Data_verify_00000001_REPORT.VBF
: >"rav/my pool_verify_00000002_report.vbf"
: >rav/Logs_rebuild_00000001_log.xml
: >"dir with space/Inner_verify_00000003_report.vbf"
: >other/Elsewhere_rebuild_00000002_log.xml
: >"a b.vbf"
: >report.vbf

fail=0
checks=0
# screen: the pane as it is now.
screen() { tmux -S "$socket" capture-pane -p -t t; }

# start WITH_LIBRARY: a new interactive bash in a new pane. A tmux server
# that ends as it starts (seen once on a loaded machine: "server exited
# unexpectedly") is given one more try; what it runs is not at fault there.
start() {
    {
        echo "PS1='$ '"
        echo "bind 'set show-all-if-ambiguous on'"
        echo "bind 'set bell-style none'"
        echo "bind 'set page-completions off'"
        echo "bind 'set completion-query-items 0'"
        [ "$1" = yes ] && echo "source '$library'"
        echo "source '$completion'"
        echo "cd '$work'"
        echo "echo READY"
    } >"$work/rc"
    local attempt
    for attempt in 1 2; do
        tmux -S "$socket" kill-server 2>/dev/null
        servers=$((servers + 1))
        socket=$work/tmux.$servers.socket
        env -i HOME="$work" TERM=xterm PATH="$programs:$PATH" LC_ALL=C \
            tmux -S "$socket" new-session -d -s t -x 200 -y 50 \
            "bash --noprofile --rcfile '$work/rc' -i" || continue
        for _ in $(seq 100); do
            screen 2>/dev/null | grep -q '^READY' && return 0
            tmux -S "$socket" has-session -t t 2>/dev/null || break
            sleep 0.05
        done
        echo "tmux or bash ended before the prompt (attempt $attempt)"
    done
    echo "FAIL: the interactive bash did not start"; fail=1
}

# check NAME TYPED EXPECTED-LINE [EXPECTED-LISTING]: types TYPED, Tab and the
# marker, then expects the screen's last line to be "$ EXPECTED-LINE" and,
# when given, a line listing the matches.
check() {
    local name=$1 typed=$2 expected=$3 listing=${4:-} shot="" line
    checks=$((checks + 1))
    # A pane that is gone fails the check at once, not after every wait.
    if ! tmux -S "$socket" has-session -t t 2>/dev/null; then
        echo "FAIL [$mode] $name: the interactive bash is gone"; fail=1; return
    fi
    tmux -S "$socket" send-keys -t t C-u C-l
    tmux -S "$socket" send-keys -t t -l "$typed"
    tmux -S "$socket" send-keys -t t Tab
    tmux -S "$socket" send-keys -t t -l "X@$checks"
    for _ in $(seq 100); do
        shot=$(screen | sed '/^$/d')
        line=$(tail -n 1 <<<"$shot")
        [[ $line == *"X@$checks" ]] && break
        sleep 0.05
    done
    line=${line%"@$checks"}
    if [ "$line" != "\$ $expected" ]; then
        echo "FAIL [$mode] $name: expected [\$ $expected], the screen shows [$line]"
        fail=1
    fi
    if [ -n "$listing" ] && ! grep -q -x -F -- "$listing" <<<"$(sed 's/  */ /g; s/ $//' <<<"$shot")"; then
        echo "FAIL [$mode] $name: no listing [$listing] on the screen:"
        echo "$shot"
        fail=1
    fi
}

mode=with-bash-completion
start yes
{
    check "option with = gets no blank" "logsift --pa" "logsift --path=X"
    check "verbose value" "logsift --verb" "logsift --verbose=X"
    check "verbose value then the file type" "logsift --verbose=3 vb" "logsift --verbose=3 vbfX" \
        "vbf vbfn"
    check "file types" "logsift -a rt" "logsift -a rtfX" "rtf rtfn"
    check "directory after --path=" "logsift --path=ra" "logsift --path=rav/X"
    check "directory after -P" "logsift -P oth" "logsift -P other/X"
    # POOL1 and pool1 are one pool, named by its newest report.
    check "pool after --path=DIR" "logsift --path=rav vbfn p" "logsift --path=rav vbfn pool1 X"
    check "pools listed" "logsift --path=rav vbfn " "logsift --path=rav vbfn X" \
        "Data my pool pool1"
    check "pool name with a blank" "logsift -P rav vbfn my" "logsift -P rav vbfn my\\ pool X"
    check "rebuild pools" "logsift --path rav rtfn " "logsift --path rav rtfn Logs X"
    check "-P value quoted" 'logsift -P "dir with space" vbfn ' \
        'logsift -P "dir with space" vbfn Inner X'
    check "-P value with escapes" 'logsift -P dir\ with\ space vbfn I' \
        'logsift -P dir\ with\ space vbfn Inner X'
    check "-PDIR" "logsift -Pother rtfn E" "logsift -Pother rtfn Elsewhere X"
    check "file name with a blank" "logsift vbf a" "logsift vbf a\\ b.vbf X"
    check "file name" "logsift -o rtf rep" "logsift -o rtf report.vbf X"
    check "nothing after the operand" "logsift vbf report.vbf " "logsift vbf report.vbf X"
    check "nothing for a missing directory" "logsift -P missing vbfn " "logsift -P missing vbfn X"
    check "logsift-json's own option" "logsift-json --no" "logsift-json --no-lookup X"
    check "logsift-json --summary" "logsift-json --su" "logsift-json --summary X"
    check "logsift-json has no --verbose" "logsift-json --ver" "logsift-json --version X"
    check "logsift-json pools" "logsift-json --path=rav rtfn " "logsift-json --path=rav rtfn Logs X"
    check "logsift-json file types" "logsift-json --no-lookup r" "logsift-json --no-lookup rtfX" \
        "rtf rtfn"
    check "logsift-status pools" "logsift-status -P rav " "logsift-status -P rav X" \
        "Data Logs my pool pool1"
    check "logsift-status a second pool" "logsift-status -P rav Data L" \
        "logsift-status -P rav Data Logs X"
    check "logsift-status options" "logsift-status --li" "logsift-status --listX" \
        "--list --list="
    check "logsift-status list types" "logsift-status --list=r" "logsift-status --list=rtfn X"
    check "logsift-status views" "logsift-status --me" "logsift-status --metrics X"
    check "logsift-status --output takes a file" "logsift-status --outp" "logsift-status --output=X"
    check "logsift-status pools after a view" "logsift-status -x -P rav my" \
        "logsift-status -x -P rav my\\ pool X"
    check "logsift-status pools after --max-age" "logsift-status --max-age 3 -P rav po" \
        "logsift-status --max-age 3 -P rav pool1 X"
}
[ "$fail" = 0 ] && echo "completion ok"
exit "$fail"
