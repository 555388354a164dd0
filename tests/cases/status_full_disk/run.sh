# Output into a full disk: the write error and status 2.
status=$(dirname "$LOGSIFT")/logsift-status
mkdir -p rav
cp "$FIXTURES/examples/sample_verify.vbf" rav/DATA1_verify_00000010_report.vbf
exec -a logsift-status "$status" -P rav >/dev/full
