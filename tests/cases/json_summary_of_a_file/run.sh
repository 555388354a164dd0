# --summary of one named file: the sample report (errors found: status 4)
# and the sample log (its time is the file's modification time), whole.
json=$(dirname "$LOGSIFT")/logsift-json
cp "$FIXTURES/examples/sample_verify.vbf" report.vbf
cp "$TESTS_DIR/../examples/sample_rebuild.xml" log.xml
touch -d '2026-11-23 04:00:00 UTC' log.xml
"$json" --summary vbf report.vbf
echo "exit status $?"
"$json" --summary rtf log.xml
echo "exit status $?"
