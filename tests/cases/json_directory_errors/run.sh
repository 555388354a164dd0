# A RAV directory that cannot be read is said for what it is, not as a pool
# without a file: a file in its place, and a directory that does not exist;
# nothing of it on standard error, which stays for the program's own lines.
json=$(dirname "$LOGSIFT")/logsift-json
: >file
for path in file/ missing/; do
    for args in "vbfn POOL" "--summary vbfn POOL" "--no-lookup rtfn POOL" "--summary vbfn"; do
        "$json" -P "$path" $args >doc.json
        echo "-P $path $args: status $?"
        jq -c '.error' doc.json
    done
done
