# The README's jq examples on the bundled sample report, as they are printed
# there; the exit status 4 says the report found errors.
command -v jq >/dev/null || { echo "jq is missing" >&2; exit 77; }
json=$(dirname "$LOGSIFT")/logsift-json
cp "$FIXTURES/examples/sample_verify.vbf" report.vbf
"$json" vbf report.vbf | jq -c '.sections[] | select(.section == "pool")
    | {pool_name, errors_names, warnings_names, cross_linked_blocks, unaccounted_blocks}'
"$json" vbf report.vbf | jq -r '.sections[] | select(.section == "problem_list")
    | "\(.count)\t\(.title)"'
"$json" vbf report.vbf >report.json
echo "exit status $?"
jq -c '{outcome, error}' report.json
