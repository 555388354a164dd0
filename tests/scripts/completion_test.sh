#!/usr/bin/env bash
# completion_test.sh COMPLETION - drives the bash completion function the way
# bash does (COMP_WORDS, COMP_CWORD) and checks what it offers.
set -u
export LC_ALL=C
source "$1"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
mkdir -p rav other sub
: > rav/POOL1_verify_0000001A_report.vbf
: > rav/pool1_verify_00000020_report.vbf
: > rav/Data_verify_00000001_REPORT.VBF
: > rav/Logs_rebuild_00000001_log.xml
: > rav/short_verify_123_report.vbf
: > other/Elsewhere_rebuild_00000002_log.xml
: > report.vbf
: > rebuild.xml

fail=0
# check "expected words" word...  (the last word is the one being completed)
check() {
    local expected=$1; shift
    COMP_WORDS=("$@")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMPREPLY=()
    _logsift
    local got
    got=$(printf '%s\n' "${COMPREPLY[@]}" | sort | tr '\n' ' ' | sed 's/ $//')
    if [ "$got" != "$expected" ]; then
        echo "FAIL: ${COMP_WORDS[*]}|  expected [$expected] got [$got]"
        fail=1
    fi
}

check "rtf rtfn vbf vbfn" logsift ""
check "rtf rtfn" logsift -a rt
check "vbf vbfn" logsift -V 3 vb
check "--actions" logsift --ac
check "--actions --help --histograms --objects-details --path= --verbose= --version -H -P -V -a -h -o -v" logsift -
check "--help --histograms" logsift --h
check "report.vbf" logsift vbf rep
check "rebuild.xml" logsift -o rtf reb
check "" logsift vbf report.vbf ""
check "other rav sub" logsift -P ""
check "--path=other" logsift --path=ot
check "" logsift -V ""
check "Data POOL1 pool1" logsift -P rav vbfn ""
check "POOL1" logsift --path rav vbfn P
check "pool1" logsift --path rav vbfn p
check "Logs" logsift -P rav rtfn ""
check "Elsewhere" logsift --path=other rtfn ""
check "Elsewhere" logsift -Pother rtfn E
check "" logsift -P rav vbfn POOL1 ""
check "" logsift -P missing vbfn ""
[ "$fail" = 0 ] && echo "completion ok"
exit "$fail"
