# vbfn and rtfn without a pool: every pool's newest file in one document,
# each value the document that pool alone would give (checked against one
# of them), as full documents and as summaries; then a directory without a
# file of the type. The pools are those of status_every_pool.
json=$(dirname "$LOGSIFT")/logsift-json
mkdir -p rav empty
mv ./*.vbf ./*.VBF rav/
cp "$TESTS_DIR/../examples/sample_rebuild.xml" rav/DATA1_rebuild_00000002_log.xml
cp "$TESTS_DIR/../examples/sample_rebuild.xml" rav/logs_only_rebuild_00000001_log.xml
mkdir rav/unreadable_verify_00000001_report.vbf
touch -d '2026-11-23 04:00:00 UTC' rav/DATA1_rebuild_00000002_log.xml
touch -d '2026-11-24 05:00:00 UTC' rav/logs_only_rebuild_00000001_log.xml
: >empty/notes.txt

"$json" -P rav --summary vbfn >summary.json 2>/dev/null
echo "--summary vbfn: exit status $?"
jq -c '{kind, file_type, directory, summary, totals, outcome}' summary.json
jq -c '.pools | to_entries[] | [.key, .value.kind, .value.summary.verdict,
    .value.summary.errors, .value.summary.warnings, .value.summary.problem_rows,
    .value.outcome.status]' summary.json

"$json" -P rav vbfn >full.json 2>/dev/null
echo "vbfn: exit status $?"
jq -c '.totals, (.pools | keys), [.pools[] | .kind]' full.json
"$json" -P rav vbfn my_pool >one.json 2>/dev/null
jq -e --slurpfile one one.json '.pools.my_pool == $one[0]' full.json >/dev/null &&
    echo "the pool's value is the document vbfn my_pool gives"

"$json" -P rav --summary rtfn >logs.json 2>/dev/null
echo "--summary rtfn: exit status $?"
jq -c '.pools | to_entries[] | [.key, .value.kind, .value.summary]' logs.json

"$json" -P empty --summary vbfn >none.json 2>/dev/null
echo "an empty directory: exit status $?"
jq -c '{pools, totals, outcome, error}' none.json
