# "list_rows" counts the problem lists only, as it always did; the totals
# beside it say what each kind of list held.
json=$(dirname "$LOGSIFT")/logsift-json
"$json" vbf report.vbf | jq -c '.totals, [.sections[] | .section]'
