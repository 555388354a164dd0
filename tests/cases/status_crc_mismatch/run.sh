# A report whose CRC does not match is damaged, never clean nor errors
# alone: in the table, in the summaries and in the whole document.
status=$(dirname "$LOGSIFT")/logsift-status
json=$(dirname "$LOGSIFT")/logsift-json
(exec -a logsift-status "$status" --max-age 36500 -P rav)
echo "status $?"
"$json" -P rav --summary vbfn | jq -c '.pools | to_entries[] | [.key, .value.summary.verdict,
    .value.error.status_name]'
for pool in CUT STORED; do
    "$json" -P rav vbfn $pool | jq -c '[.crc.matches, .outcome.status_name, .error.message]'
done
