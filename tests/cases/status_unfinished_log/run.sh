# A log still being written shows its counts so far and the word
# unfinished, and alone does not make the exit status 2; the pool's health
# weighs what it holds so far. logsift-json gives every complete item, says
# "finished": false, and each walk says where the text ended; exit status 0
# without lookups. The damaged ones stay damaged. logsift keeps its text.
status=$(dirname "$LOGSIFT")/logsift-status
json=$(dirname "$LOGSIFT")/logsift-json
"$status" --max-age 36500 -P rav DATA1
echo "status $?"
"$status" --max-age 36500 -P rav
echo "status $?"
"$json" -P rav --summary rtfn DATA1 | jq -c '.summary'
"$json" -P rav --no-lookup rtfn DATA1 >doc.json
echo "logsift-json: status $?"
jq -c '{finished, message_walk, tod_walk, action_walk, totals, outcome}' doc.json
(exec -a logsift "$LOGSIFT" -P rav rtfn DATA1) | tail -n 3
