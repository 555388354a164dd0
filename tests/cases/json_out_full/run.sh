# A document that cannot be written: one line on standard error, status 2,
# for each kind of file.
json=$(dirname "$LOGSIFT")/logsift-json
cp "$FIXTURES/examples/sample_verify.vbf" report.vbf
cp "$TESTS_DIR/../examples/sample_rebuild.xml" .
(exec -a logsift-json "$json" vbf report.vbf >/dev/full)
echo "vbf status $?"
(exec -a logsift-json "$json" --no-lookup rtf sample_rebuild.xml >/dev/full)
echo "rtf status $?"
(exec -a logsift-json "$json" --help >/dev/full)
echo "help status $?"
