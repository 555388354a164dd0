# Each walk keeps its own status: the message walk the damaged item's 20162,
# the TOD walk, which could not open the management command file, 20008; the
# document's outcome is the first of them.
json=$(dirname "$LOGSIFT")/logsift-json
"$json" -P rav rtfn POOL1 no-such-server-here >doc.json 2>stderr.txt
echo "exit status $?"
jq -c '.message_walk, .tod_walk, .outcome, {error: .error.status}' doc.json
cat stderr.txt
