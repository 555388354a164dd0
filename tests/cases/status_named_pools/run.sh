# Pools named on the command line, in any case and in the order given; a
# pool without a file is a line of its own and a message, and status 2.
status=$(dirname "$LOGSIFT")/logsift-status
mkdir -p rav
cp "$FIXTURES/examples/sample_verify.vbf" rav/DATA1_verify_00000010_report.vbf
cp "$TESTS_DIR/../examples/sample_rebuild.xml" rav/Data1_rebuild_00000001_log.xml
touch -d '2026-11-23 04:00:00 UTC' rav/Data1_rebuild_00000001_log.xml
exec -a logsift-status "$status" --max-age 36500 -P rav NOPOOL data1
