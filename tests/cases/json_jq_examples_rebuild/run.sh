# The README's and the manual page's jq example on the bundled sample log, its
# names looked up through the simulated volume: the deleted objects as
# logsift shows them.
command -v jq >/dev/null || { echo "jq is missing" >&2; exit 77; }
cp "$TESTS_DIR/../examples/sample_rebuild.xml" "$TESTS_DIR/../examples/sample_admin_state.txt" .
json=$(dirname "$LOGSIFT")/logsift-json
bash "$WITH_ADMIN" --private --state sample_admin_state.txt /_admin -- \
    "$json" rtf sample_rebuild.xml >log.json
status=$?
[ "$status" = 77 ] && exit 77
echo "exit status $status"
jq -r '.tod_items[]
  | select(.action_name == "DELETED" and .lookup.outcome == "found")
  | .lookup.volume_name + .lookup.path + .name_space_separator + .file_name' log.json
jq -c '.totals' log.json
