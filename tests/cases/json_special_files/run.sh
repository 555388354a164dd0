# The same files through logsift-json's every-pool summaries and documents:
# each special file is its pool's document with an error, every other pool
# is read, and nothing is waited for; standard input is a pipe whose writer
# stays, and is not read.
json=$(dirname "$LOGSIFT")/logsift-json
exec 3< <(exec sleep 60 2>/dev/null)
writer=$!
for args in "--summary vbfn" "--summary rtfn" "vbfn" "--no-lookup rtfn"; do
    timeout 20 "$json" -P rav $args <&3 >doc.json
    echo "$args: status $?"
    jq -c '.pools | to_entries[] | [.key, .value.summary.verdict // .value.summary.loaded,
           .value.file.size, .value.error.status, .value.error.message]' doc.json
done
kill "$writer"
