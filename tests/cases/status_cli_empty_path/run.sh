# An empty directory name after -P would read the root directory: it is a
# command-line error for both companions (logsift itself keeps its rule,
# a lone slash).
for program in logsift-json logsift-status; do
    path=$(dirname "$LOGSIFT")/$program
    for args in "-P '' vbfn" "--path= vbfn p" "-P ''"; do
        echo "== $program $args"
        eval "(exec -a $program \"$path\" $args 2>&1)"
        echo "status $?"
    done
done
