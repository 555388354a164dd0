# logsift-json's command-line errors: one line saying what is wrong, the
# hint, status 1, and nothing on standard output.
json=$(dirname "$LOGSIFT")/logsift-json
for args in "" "xyz f" "--bogus vbf f" "vbf" "rtf" "-P" "vbf a b" "vbfn p s x"; do
    echo "== logsift-json $args"
    (exec -a logsift-json "$json" $args 2>&1)
    echo "status $?"
done
