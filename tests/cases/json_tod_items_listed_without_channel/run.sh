# Without a management channel every TOD item is still listed, each with the
# failure in place of its lookup, and "lookup_failure" says once why no name
# was asked. Each walk keeps its own status (the message walk the damaged
# item's 20162, the TOD walk 0: it came to its end); the document's outcome
# is the first failure, so the exit status is 2.
json=$(dirname "$LOGSIFT")/logsift-json
"$json" -P rav rtfn POOL1 no-such-server-here >doc.json 2>stderr.txt
echo "exit status $?"
jq -c '.message_walk, .tod_walk, .lookup_failure, .outcome, {error: .error.status}' doc.json
jq -c '.tod_items[] | {key, ignored, lookup}' doc.json
cat stderr.txt
