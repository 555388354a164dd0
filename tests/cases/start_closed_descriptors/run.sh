# Started with standard descriptors closed (as some daemons and cron wrappers
# start their children), neither program lets a file it opens become its
# standard output or error: the management command file holds only the
# requests, exactly as when every descriptor is open, and the exit status is
# the same. Every combination of closed 0, 1 and 2, for both programs.
json=$(dirname "$LOGSIFT")/logsift-json
server=${PWD#/}/srv
cmd=srv/_admin/Manage_QVS/manage.cmd

# run CLOSED ARGV0 PROGRAM ARGS...: the exit status of a run with the
# descriptors CLOSED closed and the others open on files.
run() {
    local closed=$1
    shift
    : >"$cmd"
    (
        exec </dev/null >out.txt 2>err.txt
        for fd in $closed; do eval "exec $fd>&-"; done
        exec -a "$@"
    )
}

check() {
    local what=$1
    shift
    run "" "$@"
    local reference=$?
    cp "$cmd" reference.cmd
    for closed in 0 1 2 "0 1" "0 2" "1 2" "0 1 2"; do
        run "$closed" "$@"
        local status=$?
        local file="the command file as with all open"
        cmp -s "$cmd" reference.cmd || file="THE COMMAND FILE DIFFERS"
        [ "$status" = "$reference" ] || status="$status, NOT $reference"
        echo "$what, closed $closed: status $status, $file"
    done
}

check "logsift rtfn" logsift "$LOGSIFT" -V 0x8000000C -P rav rtfn DATA1 "$server"
check "logsift vbfn" logsift "$LOGSIFT" -a -o -P rav vbfn DATA1
check "logsift-json rtfn" logsift-json "$json" -P rav rtfn DATA1 "$server"
check "logsift-json vbfn" logsift-json "$json" -P rav vbfn DATA1
# Nothing read was changed either.
cmp rav/DATA1_rebuild_00000001_log.xml DATA1_rebuild_00000001_log.xml &&
    cmp rav/DATA1_verify_00000001_report.vbf DATA1_verify_00000001_report.vbf &&
    echo "the log and the report are unchanged"
