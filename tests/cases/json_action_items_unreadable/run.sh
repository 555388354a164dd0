# Action items that cannot be read are passed over, each reported with its
# offset and status, and the walk ends at an item without its closing tag:
# nothing is left out silently.
json=$(dirname "$LOGSIFT")/logsift-json
"$json" --no-lookup rtf log.xml >doc.json
echo "exit status $?"
jq -c '.action_items[] | {key, description}' doc.json
jq -c '.action_walk, .totals, .outcome, .error' doc.json
jq -r '.reader_messages[]' doc.json
